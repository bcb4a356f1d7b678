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

bool BrevokInstaller::installPluginFromSource(
    const QString &source, const QString &target, quint32 user, ErrorSlot error)
{
    if (source.isEmpty()) {
        logLine(u"install failed, source path is wrong: %1"_s.arg(argumentText(source)));
        return refuse(error, Texts::tr("Incorrect input to installPlugin:"));
    }
    const QString folder = deletingLastPathComponent(target);
    if (target.isEmpty() || folder.isEmpty()) {
        logLine(u"install failed, target path is wrong: %1"_s.arg(
            argumentText(target.isEmpty() ? target : folder)));
        return refuse(error, Texts::tr("Incorrect input to installPlugin:"));
    }
    if (!m_files.createFolder(folder, error)) {
        logLine(u"create dir failed %1"_s.arg(folder));
        return false;
    }
    setUID(user, ownerPermissions, folder, false);
    // Only bundles can be removed: an existing file of another kind ends the install here and stays.
    if (m_files.fileExists(target) && !removeItemAtPath(target, error)) {
        logLine(u"removeItemAtPath failed"_s);
        return false;
    }
    place(source, target, folder, error);
    setUID(user, ownerPermissions, target, true);
    return true;
}

/// Unpacks or copies. Failures are logged and change no answer; that of a copy is handed to the caller too.
void BrevokInstaller::place(
    const QString &source, const QString &target, const QString &folder, ErrorSlot error)
{
    std::optional<BrevokError> failure;
    if (isArchive(source)) {
        logLine(u"unzip: %1 to: %2"_s.arg(source, folder));
        m_files.extractZip(source, folder, &failure);
        logError(failure);
        logLine(u"unziped"_s);
        return;
    }
    logLine(u"copy: %1 to: %2"_s.arg(source, target));
    m_files.copyItem(source, target, &failure);
    logError(failure);
    logLine(u"copied"_s);
    if (failure && error != nullptr) {
        *error = failure;
    }
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
