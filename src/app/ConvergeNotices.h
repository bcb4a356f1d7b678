// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "install/ConvergeOutcome.h"
#include "platform/UserNotificationCenter.h"

#include <QObject>
#include <QSet>

#include <optional>

namespace brevok {

class BrevokPackages;
class Converger;
class SettingsStore;
class StateStore;

/// What a click on a notice, or on the desktop entry, asks of the program.
namespace ActionNames {
inline constexpr QLatin1StringView open("open"); ///< the panel
inline constexpr QLatin1StringView update("update"); ///< every package that waits
} // namespace ActionNames

/// The notice about one run, when there is something new to say: what was changed, or that updates wait that
/// were not spoken of before. @p waiting and @p told are names of packages.
[[nodiscard]] std::optional<UserNotification> noticeOf(
    const ConvergeOutcome &outcome, const QStringList &waiting, const QSet<QString> &told);

/// Tells the person, in one notice, what was done without asking. Main thread.
class ConvergeNotices final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ConvergeNotices)

public:
    /// References outlive this object.
    struct Collaborators {
        SettingsStore &settings;
        StateStore &state;
        UserNotificationCenter &center;
        BrevokPackages &packages;
        Converger &converger;
    };

    explicit ConvergeNotices(const Collaborators &collaborators, QObject *parent = nullptr);
    ~ConvergeNotices() override;

private:
    void load();
    void tell(const ConvergeOutcome &outcome);

    Collaborators m_with;
    QSet<QString> m_told; ///< the packages whose updates were spoken of, by name
};

} // namespace brevok
