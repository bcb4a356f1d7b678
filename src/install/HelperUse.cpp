// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

// How the installer front reaches and keeps current the privileged helper.

#include "install/BrevokAppInstaller.h"

#include "foundation/Log.h"

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

void logFailure(const QString &line, const std::optional<BrevokError> &error)
{
    logLine(line);
    logLine(u"Error: %1"_s.arg(error ? error->description : u"(null)"_s));
}

} // namespace

bool BrevokAppInstaller::checkUpdateHelper()
{
    logLine(u"start helper"_s);
    const HelperTool::Connection connection = m_with.helper.connection();
    const bool answered = connection.connected && connection.proxy != nullptr;
    if (answered && connection.proxy->version() >= installerInterfaceVersion) {
        logLine(u"up to date version already running"_s);
        return true;
    }
    if (const int status = m_with.helper.createAuthorization(); status != 0) {
        logLine(u"AuthorizationCreate failed! %1\n"_s.arg(status));
        return false;
    }
    if (const int status = m_with.helper.makeExternalForm(); status != 0) {
        logLine(u"AuthorizationMakeExternalForm failed! %1\n"_s.arg(status));
        return false;
    }
    std::optional<BrevokError> error;
    if (answered && !m_with.helper.removeJob(&error)) {
        logFailure(u"Failed to remove installer helper!\n"_s, error);
        return false;
    }
    if (!m_with.helper.bless(&error)) {
        logFailure(u"Failed to install installer helper!\n"_s, error);
        return false;
    }
    logLine(u"updated and restarted"_s);
    return true;
}

std::shared_ptr<InstallerOperations> BrevokAppInstaller::installer()
{
    if (!m_valid) {
        logLine(u"Installer helper invalid!"_s);
    } else if (const HelperTool::Connection connection = m_with.helper.connection(); !connection.connected) {
        logLine(u"Installer helper connection failed!"_s);
    } else if (connection.proxy == nullptr) {
        logLine(u"Installer helper failed to get proxy!"_s);
    } else if (!connection.installs) {
        logLine(u"Installer helper is missing selector 'installPluginFromSource:target:user:error:'!"_s);
    } else {
        return connection.proxy;
    }
    logLine(u"Using Installer Fallback!"_s);
    return {std::shared_ptr<void>(), this};
}

} // namespace brevok
