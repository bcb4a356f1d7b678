// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "reporting/LogTails.h"

#include "foundation/Secrets.h"
#include "platform/LogFile.h"
#include "platform/RegularFile.h"

#include <QDirIterator>
#include <QFileInfo>

#include <algorithm>
#include <optional>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

// Text that begins in the middle of a file: a line, or at least a character, that is cut through goes.
QByteArrayView fromWholeLine(const QByteArray &bytes)
{
    if (const qsizetype lineBreak = bytes.indexOf('\n'); lineBreak >= 0) {
        return QByteArrayView(bytes).sliced(lineBreak + 1);
    }
    constexpr qsizetype longestRest = 3; // of a character's bytes
    qsizetype start = 0;
    while (start < std::min(longestRest, bytes.size())
        && (static_cast<unsigned char>(bytes.at(start)) & 0xC0U) == 0x80U) {
        ++start;
    }
    return QByteArrayView(bytes).sliced(start);
}

bool isNewer(const PathWithModDate &first, const std::optional<PathWithModDate> &second)
{
    return !second || first.modDate > second->modDate;
}

} // namespace

QString logTail(const QString &path)
{
    const QString name = QFileInfo(path).fileName();
    if (!QFileInfo::exists(path)) {
        return u"File %1 doesn't exist."_s.arg(name);
    }
    std::optional<FileTail> tail = readFileTail(path, longestTail);
    if (!tail) {
        return u"Can't get handle for %1."_s.arg(name);
    }
    if (const qint64 left = longestTail - tail->bytes.size(); tail->whole && left > 0) {
        if (const std::optional<FileTail> before = readFileTail(movedAside(path), left)) {
            tail->bytes.prepend(before->bytes);
            tail->whole = before->whole;
        }
    }
    // What an earlier version logged, or another program, was not looked through.
    return withoutSecrets(
        QString::fromUtf8(tail->whole ? QByteArrayView(tail->bytes) : fromWholeLine(tail->bytes)),
        Words::OursToo);
}

void addLogFile(const QString &path, QList<ReportItem> &items, const QString &name)
{
    items.append({name, logTail(path)});
}

// Folders may hold thousands of crash reports: only the newest of each kind is kept while they are walked.
void addCrashReports(const QString &logsFolder, QList<ReportItem> &items)
{
    struct Kind {
        QLatin1StringView prefix;
        QString itemName;
        std::optional<PathWithModDate> newest;
    };
    std::array kinds{Kind{"Adobe InDesign "_L1, u"InDesign.crash"_s, {}},
        Kind{"Tolvane Brevok_"_L1, u"Tolvane Brevok.crash"_s, {}}};
    QDirIterator entries(logsFolder + "/DiagnosticReports"_L1,
        QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System);
    while (entries.hasNext()) {
        entries.next();
        const QString name = entries.fileName();
        for (Kind &kind : kinds) {
            if (!name.startsWith(kind.prefix) || !name.endsWith(".crash"_L1)) {
                continue;
            }
            const PathWithModDate found{entries.filePath(), entries.fileInfo().lastModified()};
            if (isNewer(found, kind.newest)) {
                kind.newest = found;
            }
        }
    }
    for (const Kind &kind : kinds) {
        if (kind.newest) {
            addLogFile(kind.newest->path, items, kind.itemName);
        }
    }
}

} // namespace brevok
