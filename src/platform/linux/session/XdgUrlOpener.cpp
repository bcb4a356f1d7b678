// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/session/XdgUrlOpener.h"

#include "foundation/Log.h"

#include <QElapsedTimer>
#include <QProcess>
#include <QStandardPaths>

#include <unistd.h>

namespace brevok {

namespace {

// Where no desktop runs, the opener is there as long as the browser, and ends as the browser does.
constexpr int browserWasThereMs = 60'000;

} // namespace

void XdgUrlOpener::open(const QUrl &url)
{
    const bool web = url.scheme() == QStringLiteral("https") || url.scheme() == QStringLiteral("http");
    const QString program = QStandardPaths::findExecutable(QStringLiteral("xdg-open"));
    if (!web || !url.isValid() || url.host().isEmpty() || program.isEmpty()) {
        fail(url);
        return;
    }
    // Nobody's child, as its end would be the browser's.
    auto *opener = new QProcess;
    opener->setProgram(program);
    opener->setArguments({url.toString(QUrl::FullyEncoded)});
    // What the browser prints belongs in no log of ours.
    opener->setStandardInputFile(QProcess::nullDevice());
    opener->setStandardOutputFile(QProcess::nullDevice());
    opener->setStandardErrorFile(QProcess::nullDevice());
    opener->setChildProcessModifier([] { ::setsid(); });
    QElapsedTimer running;
    running.start();
    connect(opener, &QProcess::finished, this, [this, url, running](int code, QProcess::ExitStatus) {
        if (code != 0 && !running.hasExpired(browserWasThereMs)) {
            fail(url);
        }
    });
    connect(opener, &QProcess::errorOccurred, this, [this, url](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart) {
            fail(url);
        }
    });
    connect(opener, &QProcess::finished, opener, &QObject::deleteLater);
    connect(opener, &QProcess::errorOccurred, opener, &QObject::deleteLater);
    opener->start();
}

void XdgUrlOpener::fail(const QUrl &url)
{
    logLine(QStringLiteral("No browser could be started for %1").arg(url.host()));
    Q_EMIT failed(url);
}

} // namespace brevok
