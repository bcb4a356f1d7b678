// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "client/Metrics.h"

#include "foundation/UntrustedText.h"

#include <QDateTime>
#include <QFileInfo>
#include <QJsonArray>
#include <QList>
#include <QSaveFile>

#include <utility>

namespace brevok::client {

using namespace Qt::StringLiterals;

namespace {

using Labels = QList<std::pair<QString, QString>>;

// Puts the samples together, each metric with its explanation once.
class Writer {
public:
    explicit Writer(QString user)
        : m_user(std::move(user))
    {
    }

    void begin(const QString &name, const QString &help)
    {
        m_name = u"tolvane_brevok_"_s + name;
        m_text += u"# HELP %1 %2\n# TYPE %1 gauge\n"_s.arg(m_name, help);
    }
    void add(qint64 value, const Labels &labels = {})
    {
        QStringList words{labelText(u"user"_s, m_user)};
        for (const auto &[label, text] : labels) {
            words.append(labelText(label, text));
        }
        m_text += u"%1{%2} %3\n"_s.arg(m_name, words.join(u',')).arg(value);
    }
    [[nodiscard]] const QString &text() const { return m_text; }

private:
    static QString labelText(const QString &label, const QString &text)
    {
        constexpr qsizetype longest = 200;
        QString value = oneLine(text, longest);
        value.replace(u'\\', "\\\\"_L1).replace(u'"', "\\\""_L1);
        return u"%1=\"%2\""_s.arg(label, value);
    }

    QString m_user;
    QString m_name;
    QString m_text;
};

void addPackages(const QJsonArray &packages, Writer &writer)
{
    int failed = 0;
    writer.begin(u"package"_s, u"What a package is in this machine's targets; see the status names."_s);
    for (const QJsonValue value : packages) {
        const QJsonObject package = value.toObject();
        failed += package[u"failures"_s].isArray() ? 1 : 0;
        writer.add(package[u"status"_s].toInteger(),
            {{u"name"_s, package[u"name"_s].toString()}, {u"prefix"_s, package[u"prefix"_s].toString()},
                {u"version"_s, package[u"version"_s].toString()},
                {u"status"_s, package[u"statusName"_s].toString()}});
    }
    writer.begin(u"packages_failed"_s, u"Packages whose last install or removal failed."_s);
    writer.add(failed);
}

} // namespace

QString metricsText(const QJsonObject &status, const QString &user)
{
    Writer writer(user);
    const QJsonObject installer = status[u"installer"_s].toObject();
    writer.begin(u"info"_s, u"Versions of the program and of its installer's interface."_s);
    writer.add(1,
        {{u"version"_s, status[u"version"_s].toString()},
            {u"installer"_s, QString::number(installer[u"version"_s].toInteger())}});
    writer.begin(u"signed_in"_s, u"Whether somebody is signed in to the service."_s);
    writer.add(status[u"session"_s][u"signedIn"_s].toBool() ? 1 : 0);
    writer.begin(u"updates_waiting"_s, u"Packages that wait for an update."_s);
    writer.add(status[u"updates"_s].toInteger());
    const QDateTime checked = QDateTime::fromString(status[u"lastCheck"_s].toString(), Qt::ISODate);
    writer.begin(u"last_check_timestamp_seconds"_s, u"When both lists were last read well; 0: never."_s);
    writer.add(checked.isValid() ? checked.toSecsSinceEpoch() : 0);
    addPackages(status[u"packages"_s].toArray(), writer);
    return writer.text();
}

QString writeMetrics(const QString &path, const QString &user, const QString &text)
{
    QString name = user;
    name.replace(u'/', u'_');
    const bool isFolder = path.endsWith(u'/') || QFileInfo(path).isDir();
    QSaveFile file(isFolder ? u"%1/tolvane-brevok-%2.prom"_s.arg(path, name) : path);
    constexpr auto readableByAll =
        QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ReadGroup | QFileDevice::ReadOther;
    const bool written = file.open(QIODevice::WriteOnly) && file.setPermissions(readableByAll)
        && file.write(text.toUtf8()) >= 0 && file.commit();
    return written ? QString() : u"%1 cannot be written: %2"_s.arg(file.fileName(), file.errorString());
}

QString userName()
{
    const QString name = qEnvironmentVariable("USER");
    return name.isEmpty() ? qEnvironmentVariable("LOGNAME", u"unknown"_s) : name;
}

} // namespace brevok::client
