// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "install/HelperAccess.h"

#include "foundation/Log.h"
#include "foundation/Paths.h"

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

void logFailure(const QString &line, const std::optional<BrevokError> &error)
{
    logLine(line);
    logLine(u"Error: %1"_s.arg(error ? error->description : u"(null)"_s));
}

} // namespace

HelperAccess::HelperAccess(HelperTool &tool, FileOperations &files)
    : m_tool(&tool)
    , m_files(&files)
    , m_own(std::make_shared<BrevokInstaller>(files))
{
}

HelperAccess HelperAccess::unattended() const
{
    HelperAccess access = *this;
    access.m_mayAsk = false;
    return access;
}

bool HelperAccess::checkUpdateHelper() const
{
    logLine(u"start helper"_s);
    const HelperTool::Connection connection = m_tool->connection(m_mayAsk);
    const bool answered = connection.connected && connection.proxy != nullptr;
    if (answered && connection.proxy->version() >= installerInterfaceVersion) {
        logLine(u"up to date version already running"_s);
        return true;
    }
    if (!m_mayAsk) {
        logLine(u"Nobody is there to be asked for the rights to install a helper."_s);
        return false;
    }
    if (const int status = m_tool->createAuthorization(); status != 0) {
        logLine(u"AuthorizationCreate failed! %1\n"_s.arg(status));
        return false;
    }
    if (const int status = m_tool->makeExternalForm(); status != 0) {
        logLine(u"AuthorizationMakeExternalForm failed! %1\n"_s.arg(status));
        return false;
    }
    std::optional<BrevokError> error;
    if (answered && !m_tool->removeJob(&error)) {
        logFailure(u"Failed to remove installer helper!\n"_s, error);
        return false;
    }
    if (!m_tool->bless(&error)) {
        logFailure(u"Failed to install installer helper!\n"_s, error);
        return false;
    }
    logLine(u"updated and restarted"_s);
    return true;
}

std::shared_ptr<InstallerOperations> HelperAccess::installer(bool valid) const
{
    if (!valid) {
        logLine(u"Installer helper invalid!"_s);
    } else if (const HelperTool::Connection connection = m_tool->connection(m_mayAsk);
               !connection.connected) {
        logLine(u"Installer helper connection failed!"_s);
    } else if (connection.proxy == nullptr) {
        logLine(u"Installer helper failed to get proxy!"_s);
    } else if (!connection.installs) {
        logLine(u"Installer helper is missing selector 'installPluginFromSource:target:user:error:'!"_s);
    } else {
        return connection.proxy;
    }
    logLine(u"Using Installer Fallback!"_s);
    return m_own;
}

bool HelperAccess::isNeededFor(const QString &path) const
{
    QString folder = deletingLastPathComponent(path);
    while (folder.size() > 1 && !m_files->fileExists(folder)) {
        folder = deletingLastPathComponent(folder);
    }
    if (!m_files->isWritable(folder) || !m_files->isExecutable(folder)) {
        return true;
    }
    // What is there has to be emptied too, which the owner of the folder above may not be allowed to.
    return m_files->fileExists(path) && (!m_files->isDeletable(path) || !m_files->isWritable(path));
}

} // namespace brevok
