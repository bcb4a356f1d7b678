// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/PartFiles.h"

#include <QDir>
#include <QFileInfo>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

void removeParts(const QDir &folder, const QDateTime &before)
{
    const QFileInfoList parts =
        folder.entryInfoList({u"*%1*"_s.arg(partMark)}, QDir::Files | QDir::Hidden | QDir::NoSymLinks);
    for (const QFileInfo &part : parts) {
        // The clock may have been set back since an earlier run.
        if (part.lastModified() < before || part.lastModified() > QDateTime::currentDateTimeUtc()) {
            QFile::remove(part.filePath());
        }
    }
}

} // namespace

void removePartsOf(const QString &folder, const QDateTime &before)
{
    removeParts(QDir(folder), before);
    const QStringList inside = QDir(folder).entryList(QDir::Dirs | QDir::NoDotAndDotDot | QDir::NoSymLinks);
    for (const QString &name : inside) {
        removeParts(QDir(folder + u'/' + name), before);
    }
}

} // namespace brevok
