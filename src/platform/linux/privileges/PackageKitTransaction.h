// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/SoftwareInstaller.h"

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QVariantMap>

QT_BEGIN_NAMESPACE
class QDBusMessage;
QT_END_NAMESPACE

namespace brevok {

/// One package on its way through PackageKit. Deletes itself at the end. Main thread.
///
/// Everything goes to the unique name of the daemon that made the transaction: what another owner of the
/// well-known name says later is not about it.
class PackageKitTransaction final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(PackageKitTransaction)

public:
    PackageKitTransaction(
        SoftwareInstaller::ProgressHandler progress, SoftwareInstaller::DoneHandler done, QObject *context);
    ~PackageKitTransaction() override;

    void install(const QString &path);

private Q_SLOTS:
    void errorCode(uint code, const QString &details);
    void finished(uint exit, uint runtime);
    void destroyedByDaemon();
    void propertiesChanged(
        const QString &interface, const QVariantMap &changed, const QStringList &invalidated);

private:
    void created(const QDBusMessage &reply, const QString &path);
    void begin(const QDBusMessage &owner, const QString &path);
    void listen();
    [[nodiscard]] QDBusMessage call(const QString &method) const;
    void settle(const std::optional<BrevokError> &error);

    QString m_connectionName;
    QDBusConnection m_bus;
    QDBusServiceWatcher m_watcher;
    QString m_daemon; ///< unique name
    QString m_transaction; ///< object path
    QString m_details; ///< of the last error that the daemon told of
    SoftwareInstaller::ProgressHandler m_progress;
    SoftwareInstaller::DoneHandler m_done;
};

} // namespace brevok
