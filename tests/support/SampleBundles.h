// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QDir>
#include <QFile>
#include <QMap>
#include <QString>

namespace brevok::testing {

using namespace Qt::StringLiterals;

/// Writes @p data to @p path, making the folders above it. @return whether all of it was written
inline bool writeFile(const QString &path, const QByteArray &data)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(data) == data.size();
}

/// An XML property list of text values.
inline QByteArray propertyList(const QMap<QString, QString> &values)
{
    QString body;
    for (auto value = values.cbegin(); value != values.cend(); ++value) {
        body += u"<key>%1</key><string>%2</string>\n"_s.arg(
            value.key().toHtmlEscaped(), value.value().toHtmlEscaped());
    }
    return QStringLiteral(
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict>\n%1</dict></plist>\n")
        .arg(body)
        .toUtf8();
}

/// A bundle at @p path with an information dictionary of text values.
inline bool writeBundle(const QString &path, const QMap<QString, QString> &information)
{
    return writeFile(path + u"/Contents/Info.plist"_s, propertyList(information));
}

/// A host application NAME.app in a folder NAME of @p applications, with a Plug-Ins folder beside it.
/// @p version is the CFBundleVersion ("14012" for 14.0), @p signature "InDn" or "InCp".
/// @return the target path: the Plug-Ins folder with a trailing slash
inline QString writeHostApplication(const QString &applications, const QString &name, const QString &version,
    const QString &bundleName = u"Adobe InDesign"_s, const QString &signature = u"InDn"_s)
{
    const QString folder = applications + u'/' + name;
    writeBundle(folder + u'/' + name + u".app"_s,
        {{u"CFBundlePackageType"_s, u"APPL"_s}, {u"CFBundleSignature"_s, signature},
            {u"CFBundleVersion"_s, version}, {u"CFBundleName"_s, bundleName}});
    QDir().mkpath(folder + u"/Plug-Ins"_s);
    return folder + u"/Plug-Ins/"_s;
}

/// An installed plug-in NAME.InDesignPlugin in the folder Tolvane of a target.
inline QString writeInstalledPlugin(
    const QString &target, const QString &name, const QString &version, const QString &hostVersion)
{
    QString path = target + u"/Tolvane/%1.InDesignPlugin"_s.arg(name);
    writeBundle(path,
        {{u"CFBundleExecutable"_s, name}, {u"CFBundleShortVersionString"_s, version},
            {u"CFBundleShortVersionStringTemplate"_s, version},
            {u"TolvaneHostAppShortVersion"_s, hostVersion}});
    return path;
}

} // namespace brevok::testing
