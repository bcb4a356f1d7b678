// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "helper/BrevokInstaller.h"

#include "foundation/Log.h"
#include "foundation/Paths.h"
#include "foundation/Texts.h"

#include <QFile>

#include <cerrno>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

/// What the owner of an installed item is given: reading and writing.
constexpr quint32 ownerPermissions = 0600;
constexpr auto bundleSuffix = ".InDesignPlugin"_L1;

/// An empty argument is logged as it is, an absent one as a dash.
QString argumentText(const QString &value)
{
    return value.isNull() ? u"-"_s : value;
}

/// What must be there already: no folder of the application's own is ever made.
QString folderAbove(const QString &folder, const QString &target)
{
    if (target.endsWith(bundleSuffix)) {
        return deletingLastPathComponent(folder);
    }
    return folder.endsWith(u"/Presets/InDesign Workspaces")
        ? deletingLastPathComponent(deletingLastPathComponent(folder))
        : u"/"_s;
}

InstallResult failed(const std::optional<BrevokError> &error)
{
    InstallResult result{.answer = false, .error = error};
    if (error) {
        result.failure = causeOf(*error);
    }
    return result;
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

BrevokError causeOf(const BrevokError &error)
{
    return error.detailedErrors.isEmpty() ? error : error.detailedErrors.constFirst();
}

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
    std::optional<BrevokError> error;
    const QString folder = deletingLastPathComponent(order.target);
    if (order.source.isEmpty()) {
        logLine(u"install failed, source path is wrong: %1"_s.arg(argumentText(order.source)));
        refuse(&error, Texts::tr("Incorrect input to installPlugin:"));
        return failed(error);
    }
    if (order.target.isEmpty() || folder.isEmpty()) {
        logLine(u"install failed, target path is wrong: %1"_s.arg(
            argumentText(order.target.isEmpty() ? order.target : folder)));
        refuse(&error, Texts::tr("Incorrect input to installPlugin:"));
        return failed(error);
    }
    // Open from here to the end, so that what was checked is what is unpacked.
    const Source source = open(order);
    if (!order.checksum.isEmpty() && !source.file) {
        logLine(u"install failed, source is not what it should be: %1"_s.arg(order.source));
        return failed(source.error);
    }
    if (!m_files.prepareFolder(folder, folderAbove(folder, order.target), &error)) {
        logLine(u"create dir failed %1"_s.arg(folder));
        return failed(error);
    }
    setUID(order.user, ownerPermissions, folder, false);
    // Only bundles can be removed: an existing file of another kind ends the install here and stays.
    if (m_files.fileExists(order.target) && !takeAway(order.target, &FileOperations::setAside, &error)) {
        logLine(u"removeItemAtPath failed"_s);
        return failed(error);
    }
    InstallResult result = place(source, order.target, folder);
    setUID(order.user, ownerPermissions, order.target, true);
    // What was put in place has gone with the application, or to where it was taken.
    if (!result.failure && !m_files.fileExists(order.target)) {
        result.failure = BrevokError{.domain = QString::fromLatin1(fileErrorDomain),
            .code = ENOENT,
            .description = Texts::tr("the folder no longer exists")};
    }
    if (!result.failure) {
        m_files.discard(order.target);
    } else if (m_files.bringBack(order.target)) {
        logLine(u"brought back: %1"_s.arg(order.target));
    }
    return result;
}

BrevokInstaller::Source BrevokInstaller::open(const InstallOrder &order)
{
    Source source{order.source};
    if (isArchive(order.source) || !order.checksum.isEmpty()) {
        source.file = m_files.openVerified(order.source, order.checksum, &source.error);
    }
    return source;
}

// Unpacks or copies. The answer is yes whatever comes of it; only a failed copy hands its error back.
InstallResult BrevokInstaller::place(const Source &source, const QString &target, const QString &folder)
{
    InstallResult result{.answer = true};
    std::optional<BrevokError> error = source.error;
    if (isArchive(source.path)) {
        logLine(u"unzip: %1 to: %2"_s.arg(source.path, folder));
        if (source.file) {
            m_files.extractZip(*source.file, target, &error);
        }
        logError(error);
        logLine(u"unziped"_s);
    } else {
        logLine(u"copy: %1 to: %2"_s.arg(source.path, target));
        m_files.copyItem(source.path, target, &error);
        logError(error);
        logLine(u"copied"_s);
        result.error = error;
    }
    if (error) {
        result.failure = causeOf(*error);
    }
    return result;
}

bool BrevokInstaller::removeItemAtPath(const QString &path, ErrorSlot error)
{
    return takeAway(path, &FileOperations::removeItem, error);
}

bool BrevokInstaller::takeAway(const QString &path, Removal removal, ErrorSlot error)
{
    if (!path.endsWith(bundleSuffix)) {
        logLine(u"remove item at path failed, wrong data: %1"_s.arg(argumentText(path)));
        return refuse(error, Texts::tr("Incorrect input to removeItemAtPath:"));
    }
    logLine(u"removeItemAtPath"_s);
    if (m_files.fileExists(path)) {
        if (!(m_files.*removal)(path, error)) {
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
