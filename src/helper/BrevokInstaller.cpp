// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "helper/BrevokInstaller.h"

#include "foundation/Log.h"
#include "foundation/Paths.h"
#include "foundation/Texts.h"

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

/// What the owner of an installed item is given: reading and writing.
constexpr quint32 ownerPermissions = 0600;

/// An empty argument is logged as it is, an absent one as a dash.
QString argumentText(const QString &value)
{
    return value.isNull() ? u"-"_s : value;
}

bool refuse(InstallerOperations::ErrorSlot error, const QString &description)
{
    if (error != nullptr) {
        BrevokError refusal;
        refusal.domain = QString::fromLatin1(installerErrorDomain);
        refusal.code = 1;
        refusal.description = description;
        *error = refusal;
    }
    return false;
}

} // namespace

BrevokInstaller::BrevokInstaller(FileOperations &files)
    : m_files(files)
{
}

bool BrevokInstaller::isArchive(const QString &source)
{
    const QString path = withoutTrailingSlashes(source);
    const QString name = path.mid(path.lastIndexOf(u'/') + 1);
    // A leading dot begins a hidden name, no extension.
    return name.size() > 4 && name.endsWith(u".zip", Qt::CaseInsensitive);
}

int BrevokInstaller::version()
{
    return installerInterfaceVersion;
}

InstallResult BrevokInstaller::install(const InstallOrder &order)
{
    InstallResult refused;
    const QString folder = deletingLastPathComponent(order.target);
    if (order.source.isEmpty()) {
        logLine(u"install failed, source path is wrong: %1"_s.arg(argumentText(order.source)));
        refuse(&refused.error, Texts::tr("Incorrect input to installPlugin:"));
    } else if (order.target.isEmpty() || folder.isEmpty()) {
        logLine(u"install failed, target path is wrong: %1"_s.arg(
            argumentText(order.target.isEmpty() ? order.target : folder)));
        refuse(&refused.error, Texts::tr("Incorrect input to installPlugin:"));
    } else if (!m_files.createFolder(folder, &refused.error)) {
        logLine(u"create dir failed %1"_s.arg(folder));
    } else {
        setUID(order.user, ownerPermissions, folder, false);
        // Only bundles can be removed: an existing file of another kind ends the install here and stays.
        if (!m_files.fileExists(order.target) || removeItemAtPath(order.target, &refused.error)) {
            const InstallResult result = place(order.source, order.target, folder);
            setUID(order.user, ownerPermissions, order.target, true);
            return result;
        }
        logLine(u"removeItemAtPath failed"_s);
    }
    refused.failure = refused.error;
    return refused;
}

// Unpacks or copies. The answer is yes whatever comes of it; only a failed copy hands its error back.
InstallResult BrevokInstaller::place(const QString &source, const QString &target, const QString &folder)
{
    InstallResult result{.answer = true};
    if (isArchive(source)) {
        logLine(u"unzip: %1 to: %2"_s.arg(source, folder));
        m_files.extractZip(source, folder, &result.failure);
        logError(result.failure);
        logLine(u"unziped"_s);
        return result;
    }
    logLine(u"copy: %1 to: %2"_s.arg(source, target));
    m_files.copyItem(source, target, &result.failure);
    logError(result.failure);
    logLine(u"copied"_s);
    result.error = result.failure;
    return result;
}

bool BrevokInstaller::removeItemAtPath(const QString &path, ErrorSlot error)
{
    if (!path.endsWith(u".InDesignPlugin")) {
        logLine(u"remove item at path failed, wrong data: %1"_s.arg(argumentText(path)));
        return refuse(error, Texts::tr("Incorrect input to removeItemAtPath:"));
    }
    logLine(u"removeItemAtPath"_s);
    if (m_files.fileExists(path)) {
        if (!m_files.removeItem(path, error)) {
            logLine(u"removeItemAtPath failed"_s);
            return false;
        }
        logLine(u"removedItemAtPath: %1"_s.arg(path));
    }
    return true;
}

bool BrevokInstaller::fileExistsAtPath(const QString &path)
{
    return m_files.fileExists(path);
}

bool BrevokInstaller::fileExistsAtPath(const QString &path, bool *isDirectory)
{
    return m_files.fileExists(path, isDirectory);
}

bool BrevokInstaller::isReadableFileAtPath(const QString &path)
{
    return m_files.isReadable(path);
}

bool BrevokInstaller::isWritableFileAtPath(const QString &path)
{
    return m_files.isWritable(path);
}

bool BrevokInstaller::isExecutableFileAtPath(const QString &path)
{
    return m_files.isExecutable(path);
}

bool BrevokInstaller::isDeletableFileAtPath(const QString &path)
{
    return m_files.isDeletable(path);
}

void BrevokInstaller::setUID(quint32 user, quint32 permissions, const QString &item, bool recursive)
{
    if (item.isEmpty()) {
        logLine(u"setUID:permissions:directory: failed missing directory path"_s);
        return;
    }
    const auto logFailure = [](const QString &path, bool missing) {
        logLine(missing ? u"setUID:permissions:directory: failed missing file attributes"_s
                        : u"Attributes change failed for: %1"_s.arg(path));
    };
    if (recursive) {
        const auto failures = m_files.addPermissionsAndOwnerToTree(item, permissions, user);
        for (const auto &failure : failures) {
            logFailure(failure.path, failure.missing);
        }
        return;
    }
    std::optional<BrevokError> failure;
    if (!m_files.addPermissionsAndOwner(item, permissions, user, &failure)) {
        logFailure(item, true);
    } else if (failure) {
        logFailure(item, false);
    }
}

} // namespace brevok
