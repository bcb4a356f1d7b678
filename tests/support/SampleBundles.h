// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QDir>
#include <QFile>
#include <QMap>
#include <QString>

namespace brevok::testing {

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
        body += QStringLiteral("<key>%1</key><string>%2</string>\n")
                    .arg(value.key().toHtmlEscaped(), value.value().toHtmlEscaped());
    }
    return QStringLiteral(
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict>\n%1</dict></plist>\n")
        .arg(body)
        .toUtf8();
}

/// A bundle at @p path with an information dictionary of text values.
inline bool writeBundle(const QString &path, const QMap<QString, QString> &information)
{
    return writeFile(path + QStringLiteral("/Contents/Info.plist"), propertyList(information));
}

/// A host application NAME.app in a folder NAME of @p applications, with a Plug-Ins folder beside it.
/// @p version is the CFBundleVersion ("14012" for 14.0), @p signature "InDn" or "InCp".
/// @return the target path: the Plug-Ins folder with a trailing slash
inline QString writeHostApplication(const QString &applications, const QString &name, const QString &version,
    const QString &bundleName = QStringLiteral("Adobe InDesign"),
    const QString &signature = QStringLiteral("InDn"))
{
    const QString folder = applications + u'/' + name;
    writeBundle(folder + u'/' + name + QStringLiteral(".app"),
        {{QStringLiteral("CFBundlePackageType"), QStringLiteral("APPL")},
            {QStringLiteral("CFBundleSignature"), signature}, {QStringLiteral("CFBundleVersion"), version},
            {QStringLiteral("CFBundleName"), bundleName}});
    QDir().mkpath(folder + QStringLiteral("/Plug-Ins"));
    return folder + QStringLiteral("/Plug-Ins/");
}

/// An installed plug-in NAME.InDesignPlugin in the folder Tolvane of a target.
inline QString writeInstalledPlugin(
    const QString &target, const QString &name, const QString &version, const QString &hostVersion)
{
    QString path = target + QStringLiteral("/Tolvane/%1.InDesignPlugin").arg(name);
    writeBundle(path,
        {{QStringLiteral("CFBundleExecutable"), name},
            {QStringLiteral("CFBundleShortVersionString"), version},
            {QStringLiteral("CFBundleShortVersionStringTemplate"), version},
            {QStringLiteral("TolvaneHostAppShortVersion"), hostVersion}});
    return path;
}

} // namespace brevok::testing
