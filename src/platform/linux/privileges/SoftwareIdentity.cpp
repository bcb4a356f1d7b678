// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/SoftwareInstaller.h"

#include <QProcess>

namespace brevok {

using namespace Qt::StringLiterals;

std::optional<SoftwareIdentity> softwareIdentity(const QString &path)
{
    constexpr int patienceMs = 60000;
    QProcess dpkg;
    dpkg.setStandardErrorFile(QProcess::nullDevice());
    dpkg.start(u"dpkg-deb"_s, {u"--show"_s, u"--showformat=${Package}\n${Version}"_s, path});
    if (!dpkg.waitForFinished(patienceMs) || dpkg.exitStatus() != QProcess::NormalExit
        || dpkg.exitCode() != 0) {
        dpkg.kill();
        dpkg.waitForFinished();
        return std::nullopt;
    }
    const QStringList fields = QString::fromUtf8(dpkg.readAllStandardOutput()).split(u'\n');
    return SoftwareIdentity{fields.value(0), fields.value(1)};
}

} // namespace brevok
