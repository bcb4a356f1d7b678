// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/AutostartLoginItems.h"

#include "foundation/Log.h"
#include "platform/RegularFile.h"

#include <QDir>
#include <QFileInfo>
#include <QMap>
#include <QSaveFile>

namespace brevok {

namespace {

constexpr qint64 sizeLimit = 64LL * 1024;

// A value of type string, as the desktop entry format escapes it.
QString escaped(const QString &text)
{
    QString result;
    for (const QChar c : text) {
        switch (c.unicode()) {
        case u'\\':
            result += QStringLiteral("\\\\");
            break;
        case u'\n':
            result += QStringLiteral("\\n");
            break;
        case u'\r':
            result += QStringLiteral("\\r");
            break;
        case u'\t':
            result += QStringLiteral("\\t");
            break;
        default:
            result += c;
        }
    }
    return result;
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

QString said(const QString &problem)
{
    logLine(problem);
    return problem;
}

QString applicationKey()
{
    return QStringLiteral("X-Tolvane-Application-URL");
}

} // namespace

AutostartLoginItems::AutostartLoginItems(QString file, QString displayName)
    : m_file(std::move(file))
    , m_displayName(std::move(displayName))
{
}

bool AutostartLoginItems::contains(const QUrl &application) const
{
    const QMap<QString, QString> entry = readEntry(m_file);
    const bool switchedOff = entry.value(QStringLiteral("Hidden")) == QStringLiteral("true")
        || entry.value(QStringLiteral("X-GNOME-Autostart-enabled")) == QStringLiteral("false");
    return !switchedOff && !application.isEmpty()
        && entry.value(applicationKey()) == application.toString(QUrl::FullyEncoded);
}

QString AutostartLoginItems::insert(const QUrl &application)
{
    const QString program = application.toLocalFile();
    const QString text = QStringLiteral("[Desktop Entry]\n"
                                        "Type=Application\n"
                                        "Version=1.0\n"
                                        "Name=%1\n"
                                        "Exec=%2 --background\n"
                                        "TryExec=%3\n"
                                        "Terminal=false\n"
                                        "%4=%5\n")
                             .arg(escaped(m_displayName), escaped(quoted(program)), escaped(program),
                                 applicationKey(), application.toString(QUrl::FullyEncoded));
    QDir().mkpath(QFileInfo(m_file).absolutePath());
    QSaveFile file(m_file);
    const QByteArray bytes = text.toUtf8();
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit()) {
        return said(
            QStringLiteral("The login item cannot be written to %1: %2").arg(m_file, file.errorString()));
    }
    return {};
}

QString AutostartLoginItems::remove(const QUrl &application)
{
    QFile file(m_file);
    if (contains(application) && !file.remove()) {
        return said(
            QStringLiteral("The login item %1 cannot be removed: %2").arg(m_file, file.errorString()));
    }
    return {};
}

} // namespace brevok
