// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/windows/SoftwareUpdateFace.h"

#include "foundation/Texts.h"

#include <QLocale>

#include <algorithm>

namespace brevok {

namespace {

using Bar = SoftwareUpdateFace::Bar;

SoftwareUpdateFace offered(const UpdateState &state)
{
    return {.headline = Texts::tr("A new version of Tolvane Brevok is available."),
        .text = Texts::tr("Version %1 is available; you have version %2. Would you like to install it now?")
                    .arg(state.version, state.installedVersion),
        .notes = true,
        .skip = true,
        .later = true,
        .install = Texts::tr("Install Update")};
}

SoftwareUpdateFace downloading(const UpdateState &state)
{
    const auto size = [locale = QLocale()](qint64 bytes) {
        return locale.formattedDataSize(bytes, 1, QLocale::DataSizeSIFormat); // as the panel's rows count
    };
    const qint64 done = std::clamp(state.done, qint64(0), std::max(state.total, qint64(0)));
    return {.headline = Texts::tr("Downloading version %1…").arg(state.version),
        .bar = Bar::Part,
        .permille = state.total > 0 ? static_cast<int>(done * 1000 / state.total) : 0,
        .progress = Texts::tr("%1 of %2").arg(size(done), size(state.total)),
        .notes = true,
        .cancel = true};
}

SoftwareUpdateFace installing(const UpdateState &state)
{
    return {.headline = Texts::tr("Installing version %1…").arg(state.version),
        .text = Texts::tr("The system may ask for an administrator's password."),
        .bar = state.percent < 0 ? Bar::Busy : Bar::Part,
        .permille = std::clamp(state.percent, 0, 100) * 10,
        .notes = true,
        .ok = Texts::tr("Hide")};
}

SoftwareUpdateFace failed(const UpdateState &state)
{
    SoftwareUpdateFace face{.headline = state.hasOffer()
            ? Texts::tr("Version %1 was not installed.").arg(state.version)
            : Texts::tr("Could not check for updates to Tolvane Brevok."),
        .text = state.error ? state.error->description : QString()};
    if (state.error && !state.error->recoverySuggestion.isEmpty()) {
        face.text += u'\n' + state.error->recoverySuggestion;
    }
    if (state.hasOffer()) {
        face.later = true;
        face.install = Texts::tr("Try Again");
    } else {
        face.ok = Texts::tr("OK");
    }
    return face;
}

} // namespace

SoftwareUpdateFace faceFor(const UpdateState &state)
{
    switch (state.phase) {
    case UpdateState::Phase::Checking:
        return {.headline = Texts::tr("Checking for updates…"), .bar = Bar::Busy, .cancel = true};
    case UpdateState::Phase::UpToDate:
        return {.headline = Texts::tr("Tolvane Brevok is up to date."),
            .text = Texts::tr("Version %1 is the latest version.").arg(state.installedVersion),
            .ok = Texts::tr("OK")};
    case UpdateState::Phase::Offered:
        return offered(state);
    case UpdateState::Phase::Downloading:
        return downloading(state);
    case UpdateState::Phase::Verifying:
        return {.headline = Texts::tr("Verifying version %1…").arg(state.version),
            .bar = Bar::Busy,
            .notes = true,
            .cancel = true};
    case UpdateState::Phase::Installing:
        return installing(state);
    case UpdateState::Phase::Installed:
        return {.headline = Texts::tr("Version %1 is installed.").arg(state.version),
            .text = Texts::tr("It will be used the next time Tolvane Brevok starts."),
            .ok = Texts::tr("OK")};
    case UpdateState::Phase::Failed:
        return failed(state);
    case UpdateState::Phase::Idle:
        break;
    }
    return {};
}

} // namespace brevok
