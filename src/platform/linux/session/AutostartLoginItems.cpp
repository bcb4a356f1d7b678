// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/session/AutostartLoginItems.h"

#include "foundation/Log.h"
#include "platform/RegularFile.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QMap>
#include <QSaveFile>

#include <filesystem>
#include <system_error>

namespace brevok {

namespace {

constexpr qint64 sizeLimit = 64LL * 1024;
constexpr QLatin1StringView applicationKey("X-Tolvane-Application-URL");

// A value of type string, as the desktop entry format escapes it.
QString escaped(QString text)
{
    return text.replace(u'\\', QStringLiteral("\\\\"))
        .replace(u'\n', QStringLiteral("\\n"))
        .replace(u'\r', QStringLiteral("\\r"))
        .replace(u'\t', QStringLiteral("\\t"));
}

// One argument of a command line: quoted against the shell's rules and the format's field codes.
QString quoted(const QString &argument)
{
    QString result = QStringLiteral("\"");
    for (const QChar c : argument) {
        if (c == u'"' || c == u'`' || c == u'$' || c == u'\\') {
            result += u'\\';
        } else if (c == u'%') {
            result += u'%';
        }
        result += c;
    }
    return result + u'"';
}

// The group "Desktop Entry"; empty when the file is none.
QMap<QString, QString> readEntry(const QString &path)
{
    QMap<QString, QString> values;
    bool inside = false;
    const QString text = QString::fromUtf8(readRegularFile(path, sizeLimit).value_or(QByteArray()));
    for (const QStringView raw : QStringView(text).split(u'\n')) {
        const QStringView line = raw.trimmed();
        if (line.startsWith(u'[')) {
            inside = line == u"[Desktop Entry]";
        } else if (const qsizetype sign = line.indexOf(u'='); inside && sign > 0 && line[0] != u'#') {
            values.insert(line.first(sign).trimmed().toString(), line.sliced(sign + 1).trimmed().toString());
        }
    }
    return values;
}

// Why it failed, or nothing.
QString writeEntry(const QString &path, const QByteArray &bytes)
{
    std::error_code noFolder;
    std::filesystem::create_directories(QFileInfo(path).filesystemAbsolutePath(), noFolder);
    QSaveFile file(path);
    const bool written =
        !noFolder && file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit();
    return written ? QString()
                   : QStringLiteral("The login item cannot be written to %1: %2")
                         .arg(path, noFolder ? qt_error_string(noFolder.value()) : file.errorString());
}

QString removeEntry(const QString &path)
{
    QFile file(path);
    return file.remove()
        ? QString()
        : QStringLiteral("The login item %1 cannot be removed: %2").arg(path, file.errorString());
}

bool holdsItem(const QString &path, const QUrl &application)
{
    const QMap<QString, QString> entry = readEntry(path);
    const bool switchedOff = entry.value(QStringLiteral("Hidden")) == QStringLiteral("true")
        || entry.value(QStringLiteral("X-GNOME-Autostart-enabled")) == QStringLiteral("false");
    return !switchedOff && !application.isEmpty()
        && entry.value(QString(applicationKey)) == application.toString(QUrl::FullyEncoded);
}

QByteArray entryFor(const QUrl &application, const QString &displayName)
{
    const QString program = application.toLocalFile();
    return QStringLiteral("[Desktop Entry]\n"
                          "Type=Application\n"
                          "Version=1.0\n"
                          "Name=%1\n"
                          "Exec=%2 --background\n"
                          "TryExec=%3\n"
                          "Terminal=false\n"
                          "%4=%5\n")
        .arg(escaped(displayName), escaped(quoted(program)), escaped(program), applicationKey,
            application.toString(QUrl::FullyEncoded))
        .toUtf8();
}

} // namespace

AutostartLoginItems::AutostartLoginItems(QString file, QString displayName)
    : m_file(std::move(file))
    , m_displayName(std::move(displayName))
{
}

bool AutostartLoginItems::contains(const QUrl &application) const
{
    const bool isKnown =
        m_unwritten->load(std::memory_order_acquire) > 0 && m_lastChange.first == application;
    return isKnown ? m_lastChange.second : holdsItem(m_file, application);
}

void AutostartLoginItems::set(const QUrl &application, bool wanted, StoreWaiter waiter)
{
    m_lastChange = {application, wanted};
    m_unwritten->fetch_add(1, std::memory_order_relaxed);
    m_disk.add([unwritten = m_unwritten, path = m_file, name = m_displayName, application, wanted,
                   waiter = std::move(waiter)] {
        QString problem;
        if (holdsItem(path, application) != wanted) {
            problem = wanted ? writeEntry(path, entryFor(application, name)) : removeEntry(path);
        }
        if (!problem.isEmpty()) {
            logLine(problem);
        }
        unwritten->fetch_sub(1, std::memory_order_release);
        onMain(QCoreApplication::instance(), [problem, waiter] {
            waiter.tell(
                problem.isEmpty() ? std::nullopt : std::optional(BrevokError{.description = problem}));
        });
    });
}

} // namespace brevok
