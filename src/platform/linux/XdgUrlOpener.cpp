// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/XdgUrlOpener.h"

#include "foundation/Log.h"

#include <QProcess>
#include <QStandardPaths>

namespace brevok {

bool XdgUrlOpener::open(const QUrl &url)
{
    const bool web = url.scheme() == QStringLiteral("https") || url.scheme() == QStringLiteral("http");
    if (!web || !url.isValid() || url.host().isEmpty()) {
        return false;
    }
    QProcess opener;
    opener.setProgram(QStandardPaths::findExecutable(QStringLiteral("xdg-open")));
    opener.setArguments({url.toString(QUrl::FullyEncoded)});
    // What the browser prints belongs in no log of ours.
    opener.setStandardOutputFile(QProcess::nullDevice());
    opener.setStandardErrorFile(QProcess::nullDevice());
    if (opener.program().isEmpty() || !opener.startDetached()) {
        logLine(QStringLiteral("No browser could be started for %1").arg(url.host()));
        return false;
    }
    return true;
}

} // namespace brevok
