// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "foundation/BrevokError.h"

#include <QByteArray>
#include <QString>

#include <memory>
#include <optional>

namespace brevok {

/// What is to be installed where.
struct InstallOrder {
    QString source{}; ///< an archive to unpack, or a file to copy
    QString target{}; ///< where the plug-in or file is to stand
    quint32 user = 0; ///< numeric id of its owner to be
    QByteArray checksum{}; ///< SHA-256 that the source must have, 32 bytes; empty when none is known
};

/// What became of an order.
struct InstallResult {
    bool answer =
        false; ///< of the operation; an archive that cannot be unpacked is answered yes all the same
    std::optional<BrevokError> error{}; ///< handed back beside the answer
    /// Why the new item does not stand whole at its target; nothing when it does.
    std::optional<BrevokError> failure{};
};

/// The installer's operations as they cross the connection to the privileged helper; arguments and results
/// are the same on both sides. Every call is synchronous and may be made on any thread but the main one.
class InstallerOperations {
public:
    using ErrorSlot = std::optional<BrevokError> *;

    InstallerOperations() = default;
    virtual ~InstallerOperations() = default;
    Q_DISABLE_COPY_MOVE(InstallerOperations)

    [[nodiscard]] virtual int version() = 0;
    [[nodiscard]] virtual InstallResult install(const InstallOrder &order) = 0;
    /// The same without what really happened.
    [[nodiscard]] bool installPluginFromSource(
        const QString &source, const QString &target, quint32 user, ErrorSlot error)
    {
        const InstallResult result = install({.source = source, .target = target, .user = user});
        if (result.error && error != nullptr) {
            *error = result.error;
        }
        return result.answer;
    }
    [[nodiscard]] virtual bool removeItemAtPath(const QString &path, ErrorSlot error) = 0;
    [[nodiscard]] virtual bool fileExistsAtPath(const QString &path) = 0;
    [[nodiscard]] virtual bool fileExistsAtPath(const QString &path, bool *isDirectory) = 0;
    [[nodiscard]] virtual bool isReadableFileAtPath(const QString &path) = 0;
    [[nodiscard]] virtual bool isWritableFileAtPath(const QString &path) = 0;
    [[nodiscard]] virtual bool isExecutableFileAtPath(const QString &path) = 0;
    [[nodiscard]] virtual bool isDeletableFileAtPath(const QString &path) = 0;
    virtual void setUID(quint32 user, quint32 permissions, const QString &item, bool recursive) = 0;
};

/// How the program reaches and installs the privileged helper tool. Used from background threads.
class HelperTool {
public:
    /// What a connection to the registered name gives.
    struct Connection {
        bool connected = false; ///< somebody answers under the name
        std::shared_ptr<InstallerOperations> proxy; ///< its root object, null when it offers none
        bool installs = false; ///< whether the proxy can install
    };

    HelperTool() = default;
    virtual ~HelperTool() = default;
    Q_DISABLE_COPY_MOVE(HelperTool)

    /// @p mayAsk: whether the proxy's calls may ask the user for rights.
    [[nodiscard]] virtual Connection connection(bool mayAsk) = 0;

    /// Obtains the right to install a helper, asking the user where needed. @return 0, or the system's status
    [[nodiscard]] virtual int createAuthorization() = 0;
    /// Makes the authorization's external form. @return 0, or the system's status
    [[nodiscard]] virtual int makeExternalForm() = 0;
    /// Removes an older helper. @return false with the reason in @p error
    [[nodiscard]] virtual bool removeJob(std::optional<BrevokError> *error) = 0;
    /// Installs this program's helper and starts it. @return false with the reason in @p error
    [[nodiscard]] virtual bool bless(std::optional<BrevokError> *error) = 0;

    /// Removes what killed runs left that was to be handed to the helper.
    virtual void clearLeftovers() { }
};

} // namespace brevok
