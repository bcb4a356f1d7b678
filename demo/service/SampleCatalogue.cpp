// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "SampleCatalogue.h"

#include "SampleArchive.h"
#include "SampleIcon.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QSaveFile>

namespace brevok::demo {

using namespace Qt::StringLiterals;

namespace {

/// The name as it stands in addresses and file names.
QString slug(const QString &name)
{
    static const QRegularExpression other(u"[^a-z0-9]+"_s);
    return name.toLower().replace(other, u"-"_s);
}

QString writeFile(const QString &path, const QByteArray &data)
{
    QSaveFile file(path);
    const bool done = QDir().mkpath(QFileInfo(path).path()) && file.open(QIODevice::WriteOnly)
        && file.write(data) == data.size() && file.commit();
    return done ? QString() : u"cannot write '%1': %2"_s.arg(path, file.errorString());
}

QString writeList(const QString &path, const QJsonArray &list)
{
    return writeFile(path, QJsonDocument(list).toJson());
}

QString checksumOf(const QString &path)
{
    QFile file(path);
    QCryptographicHash hash(QCryptographicHash::Sha256);
    return file.open(QIODevice::ReadOnly) && hash.addData(&file) ? QString::fromLatin1(hash.result().toHex())
                                                                 : QString();
}

/// Writes the catalogue that the program carries; its first problem stops it.
class Writer final {
public:
    explicit Writer(QString root)
        : m_root(std::move(root))
    {
        QFile file(u":/sample-catalogue.json"_s);
        if (file.open(QIODevice::ReadOnly)) {
            m_sample = QJsonDocument::fromJson(file.readAll()).object();
        }
    }

    QString run()
    {
        writeArchives();
        writePackages();
        if (m_problem.isEmpty()) {
            m_problem = writeList(m_root + u"/accounts.json"_s, {m_sample[u"account"_s]});
        }
        writePlugins();
        return m_problem;
    }

private:
    /// Writes every build and keeps, by plug-in, its list elements, which lack only what the package adds.
    void writeArchives()
    {
        for (const QJsonValue plugin : m_sample[u"plugins"_s].toArray()) {
            QJsonArray builds;
            for (const QJsonValue hostVersion : plugin[u"HostVersions"_s].toArray()) {
                if (!m_problem.isEmpty()) {
                    return;
                }
                builds.append(writeBuild(plugin.toObject(), hostVersion.toInt()));
            }
            m_builds.insert(plugin[u"Name"_s].toString(), builds);
        }
    }

    QJsonObject writeBuild(const QJsonObject &plugin, int hostVersion)
    {
        const SampleBuild build{.name = plugin[u"Name"_s].toString(),
            .version = plugin[u"Version"_s].toString(),
            .buildNumber = plugin[u"Build"_s].toInt(),
            .hostVersion = hostVersion,
            .kiloBytes = plugin[u"KiloBytes"_s].toInt()};
        const QString place = u"/%1/%2-%3.zip"_s.arg(hostVersion).arg(slug(build.name), build.version);
        const QString path = m_root + u"/archives"_s + place;
        QDir().mkpath(QFileInfo(path).path());
        m_problem = writeSampleArchive(build, path);
        const bool redirected = plugin[u"Redirected"_s].toArray().contains(hostVersion);
        return {{u"Name"_s, build.name}, {u"Version"_s, build.version}, {u"HostVersion"_s, hostVersion},
            {u"Platform"_s, u"Mac"_s}, {u"Size"_s, QFileInfo(path).size()}, {u"SHA256"_s, checksumOf(path)},
            {u"Link"_s, (redirected ? u"/download"_s : u"/archives"_s) + place}};
    }

    void writePackages()
    {
        QJsonArray list;
        for (const QJsonValue package : m_sample[u"packages"_s].toArray()) {
            if (!m_problem.isEmpty()) {
                return;
            }
            const QString name = slug(package[u"Name"_s].toString());
            QJsonObject element{{u"Platform"_s, u"Mac"_s}, {u"Info"_s, u"/packages/"_s + name}};
            for (const QString &key : {u"Name"_s, u"Prefix"_s, u"Version"_s, u"Published"_s}) {
                element[key] = package[key];
            }
            if (const QString glyph = package[u"Glyph"_s].toString(); !glyph.isEmpty()) {
                element[u"Icon"_s] = u"/icons/%1.png"_s.arg(name);
                m_problem = writeFile(m_root + element[u"Icon"_s].toString(),
                    sampleIcon(package[u"Colour"_s].toString().toLatin1(), glyph));
            }
            list.append(element);
        }
        addOthers(list, u"otherPackages"_s);
        if (m_problem.isEmpty()) {
            m_problem = writeList(m_root + u"/products.json"_s, list);
        }
    }

    void writePlugins()
    {
        QJsonArray list;
        for (const QJsonValue package : m_sample[u"packages"_s].toArray()) {
            for (const QJsonValue plugin : package[u"Plugins"_s].toArray()) {
                for (const QJsonValue build : m_builds[plugin.toString()]) {
                    QJsonObject element = build.toObject();
                    element[u"Prefix"_s] = package[u"Prefix"_s];
                    element[u"Published"_s] = package[u"Published"_s];
                    list.append(element);
                }
            }
        }
        addOthers(list, u"otherPlugins"_s);
        if (m_problem.isEmpty()) {
            m_problem = writeList(m_root + u"/plugins.json"_s, list);
        }
    }

    void addOthers(QJsonArray &list, const QString &key) const
    {
        for (const QJsonValue other : m_sample[key].toArray()) {
            list.append(other);
        }
    }

    QString m_root;
    QJsonObject m_sample;
    QHash<QString, QJsonArray> m_builds;
    QString m_problem;
};

/// Tells that an earlier start was stopped before the catalogue was complete.
QString unfinishedMark(const QString &root)
{
    return root + u"/.unfinished"_s;
}

/// Whether @p root holds nothing but what this program leaves there in any case, or half a catalogue of ours.
bool wantsCatalogue(const QString &root)
{
    QStringList entries = QDir(root).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    entries.removeAll(u"tls"_s);
    entries.removeAll(u"requests.jsonl"_s);
    return entries.isEmpty() || QFileInfo::exists(unfinishedMark(root));
}

} // namespace

QString ensureSampleCatalogue(const QString &root)
{
    if (!QDir().mkpath(root)) {
        return u"cannot make the folder '%1'"_s.arg(root);
    }
    if (!wantsCatalogue(root)) {
        return {};
    }
    const QString mark = unfinishedMark(root);
    QString problem = writeFile(mark, {});
    if (problem.isEmpty()) {
        problem = Writer(root).run();
    }
    if (problem.isEmpty() && !QFile::remove(mark)) {
        problem = u"cannot remove '%1'"_s.arg(mark);
    }
    return problem;
}

} // namespace brevok::demo
