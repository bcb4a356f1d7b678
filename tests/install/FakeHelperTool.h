// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "helper/BrevokInstaller.h"

#include <QStringList>

namespace brevok::testing {

/// A running helper: the real operations, unless the test scripts the answers.
class HelperProxy final : public BrevokInstaller {
public:
    HelperProxy(FileOperations &files, int version)
        : BrevokInstaller(files)
        , m_version(version)
    {
    }

    struct Answer {
        bool yes = true;
        std::optional<BrevokError> error;
    };
    std::optional<Answer> scripted; ///< of installs and removals; nothing is done then

    [[nodiscard]] int version() override { return m_version; }
    QByteArray lastChecksum; ///< of an install
    [[nodiscard]] InstallResult install(const InstallOrder &order) override
    {
        lastChecksum = order.checksum;
        if (!scripted || order.target.endsWith(QStringLiteral(".xml"))) {
            return BrevokInstaller::install(order);
        }
        return {.answer = scripted->yes, .error = scripted->error, .failure = scripted->error};
    }
    [[nodiscard]] bool removeItemAtPath(const QString &path, ErrorSlot error) override
    {
        if (!scripted) {
            return BrevokInstaller::removeItemAtPath(path, error);
        }
        *error = scripted->error;
        return scripted->yes;
    }

private:
    int m_version;
};

/// A system where the helper is in the state that the test says.
class FakeHelperTool final : public HelperTool {
public:
    Connection state;
    QStringList calls;
    QString failing; ///< the call that fails
    bool asksForRights = false; ///< some connection was one that may

    [[nodiscard]] Connection connection(bool mayAsk) override
    {
        asksForRights = asksForRights || mayAsk;
        return state;
    }
    [[nodiscard]] int createAuthorization() override { return status(QStringLiteral("authorize")); }
    [[nodiscard]] int makeExternalForm() override { return status(QStringLiteral("externalForm")); }
    [[nodiscard]] bool removeJob(std::optional<BrevokError> *error) override
    {
        return succeeds(QStringLiteral("remove"), error);
    }
    [[nodiscard]] bool bless(std::optional<BrevokError> *error) override
    {
        return succeeds(QStringLiteral("bless"), error);
    }

private:
    int status(const QString &call)
    {
        calls.append(call);
        return call == failing ? -60006 : 0;
    }
    bool succeeds(const QString &call, std::optional<BrevokError> *error)
    {
        if (status(call) == 0) {
            return true;
        }
        *error = BrevokError{.description = QStringLiteral("not today")};
        return false;
    }
};

} // namespace brevok::testing
