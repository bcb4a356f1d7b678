// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "client/Tables.h"

#include "foundation/UntrustedText.h"

#include <QList>
#include <QStringList>

namespace brevok::client {

using namespace Qt::StringLiterals;

namespace {

QString table(const QList<QStringList> &rows)
{
    QList<qsizetype> widths;
    for (const QStringList &row : rows) {
        for (qsizetype column = 0; column < row.size(); ++column) {
            if (column == widths.size()) {
                widths.append(0);
            }
            widths[column] = std::max(widths[column], row[column].size());
        }
    }
    QString text;
    for (const QStringList &row : rows) {
        QString line;
        for (qsizetype column = 0; column < row.size(); ++column) {
            line += row[column].leftJustified(widths[column]) + u"  "_s;
        }
        while (line.endsWith(u' ')) {
            line.chop(1);
        }
        text += line + u'\n';
    }
    return text;
}

QString stateOf(const QJsonObject &target)
{
    if (target[u"removed"_s].toBool()) {
        return u"removed"_s;
    }
    if (target[u"invalid"_s].toBool()) {
        return u"missing"_s;
    }
    return target[u"enabled"_s].toBool() ? u"enabled"_s : u"disabled"_s;
}

// What went wrong lately, below the table.
QString failuresOf(const QJsonArray &packages)
{
    QString text;
    for (const QJsonValue value : packages) {
        const QJsonArray failures = value.toObject()[u"failures"_s].toArray();
        for (const QJsonValue failure : failures) {
            text += u"Failed: %1\n"_s.arg(oneLine(failure.toString()));
        }
    }
    return text.isEmpty() ? text : u'\n' + text;
}

} // namespace

QString targetsText(const QJsonArray &targets)
{
    if (targets.isEmpty()) {
        return u"No targets.\n"_s;
    }
    QList<QStringList> rows{{u"TARGET"_s, u"STATE"_s, u"PATH"_s}};
    for (const QJsonValue value : targets) {
        const QJsonObject target = value.toObject();
        rows.append(
            {oneLine(target[u"label"_s].toString()), stateOf(target), oneLine(target[u"path"_s].toString())});
    }
    return table(rows);
}

QString statusText(const QJsonObject &status)
{
    const QJsonObject session = status[u"session"_s].toObject();
    const QString email = oneLine(session[u"email"_s].toString());
    QString text;
    const QJsonArray warnings = status[u"warnings"_s].toArray();
    for (const QJsonValue warning : warnings) {
        text += u"Warning: %1\n"_s.arg(oneLine(warning.toString()));
    }
    text += session[u"signedIn"_s].toBool() ? u"Signed in as %1"_s.arg(email) : u"Signed out"_s;
    if (session[u"updating"_s].toBool()) {
        text += u" (a request is under way)"_s;
    }
    const int updates = status[u"updates"_s].toInt();
    text += updates == 1 ? u"\n1 package waits for an update\n\n"_s
                         : u"\n%1 packages wait for an update\n\n"_s.arg(updates);

    QList<QStringList> rows{{u"PACKAGE"_s, u"VERSION"_s, u"STATUS"_s, u"PREFIX"_s}};
    const QJsonArray packages = status[u"packages"_s].toArray();
    for (const QJsonValue value : packages) {
        const QJsonObject package = value.toObject();
        rows.append({oneLine(package[u"name"_s].toString()), oneLine(package[u"version"_s].toString()),
            package[u"statusName"_s].toString(), oneLine(package[u"prefix"_s].toString())});
    }
    text += packages.isEmpty() ? u"No packages.\n"_s : table(rows);
    text += failuresOf(packages);
    text += u'\n' + targetsText(status[u"targets"_s].toArray());
    const QJsonObject installer = status[u"installer"_s].toObject();
    text += installer[u"helper"_s].toBool() ? u"\nInstaller: privileged helper"_s
                                            : u"\nInstaller: this user's rights"_s;
    return text + u" (interface %1)\n"_s.arg(installer[u"version"_s].toInt());
}

QString convergeText(const QJsonObject &document)
{
    QString text;
    const QJsonArray notes = document[u"notes"_s].toArray();
    for (const QJsonValue note : notes) {
        text += u"Note: %1\n"_s.arg(oneLine(note.toString()));
    }
    QList<QStringList> rows;
    for (const auto &[list, word] :
        {std::pair(u"changed"_s, document[u"foreseen"_s].toBool() ? u"would be "_s : QString()),
            std::pair(u"deferred"_s, u"deferred: "_s), std::pair(u"waiting"_s, u"waiting: "_s)}) {
        const QJsonArray entries = document[list].toArray();
        for (const QJsonValue value : entries) {
            const QJsonObject entry = value.toObject();
            const QString reason = entry[u"reason"_s].toString();
            rows.append({oneLine(entry[u"package"_s].toString()), oneLine(entry[u"plugin"_s].toString()),
                oneLine(entry[u"label"_s].toString()),
                word + oneLine(reason.isEmpty() ? entry[u"result"_s].toString() : reason)});
        }
    }
    return text + (rows.isEmpty() ? u"Nothing to do.\n"_s : table(rows));
}

QString settingText(const QJsonValue &value)
{
    if (value.isBool()) {
        return value.toBool() ? u"yes"_s : u"no"_s;
    }
    return QString::number(value.toInteger());
}

QString settingsText(const QJsonObject &settings)
{
    QString text;
    for (auto setting = settings.begin(); setting != settings.end(); ++setting) {
        text += u"%1 = %2\n"_s.arg(setting.key(), settingText(setting.value()));
    }
    return text;
}

} // namespace brevok::client
