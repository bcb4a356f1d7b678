// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "daemon/RequestDesk.h"

#include <QDBusContext>

namespace brevok {

/// The helper's object on the bus; the adaptor made from the interface's description calls the slots. Every
/// call but Version() is answered later.
class HelperService final : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(HelperService)

public:
    HelperService(QDBusConnection bus, const QString &stateFolder, QObject *parent = nullptr);
    ~HelperService() override;

    /// Puts the object on the bus and takes the helper's name. @return false when the name is taken
    [[nodiscard]] bool publish();
    /// Gives the name back: whoever calls now starts another helper.
    void withdraw();
    /// Makes good what an earlier helper left. Before the first call.
    void repair() { m_desk.repair(); }
    [[nodiscard]] bool isIdle() const { return m_desk.isIdle(); }

    // The interface; each name and order of arguments is the description's.
    int Version();
    bool InstallPluginFromSource(const QString &source, const QString &target, uint user,
        QString &errorDomain, int &errorCode, QString &errorDescription);
    bool Install(const QString &source, const QString &target, uint user, const QByteArray &checksum,
        QString &errorDomain, int &errorCode, QString &errorDescription, QString &failureDomain,
        int &failureCode, QString &failureDescription);
    bool RemoveItemAtPath(
        const QString &path, QString &errorDomain, int &errorCode, QString &errorDescription);
    bool FileExistsAtPath(const QString &path);
    bool FileExistsAtPathIsDirectory(const QString &path, bool &isDirectory);
    bool IsReadableFileAtPath(const QString &path);
    bool IsWritableFileAtPath(const QString &path);
    bool IsExecutableFileAtPath(const QString &path);
    bool IsDeletableFileAtPath(const QString &path);
    void SetUID(uint user, uint permissions, const QString &item, bool recursive);

Q_SIGNALS:
    /// A call came in, or the last open one was answered.
    void active();

private:
    struct Arguments {
        HelperRequest::Operation operation;
        QString target;
        QString source{};
        quint32 user = 0;
        quint32 permissions = 0;
        bool recursive = false;
        QByteArray checksum{};
    };
    bool take(const Arguments &arguments);

    QDBusConnection m_bus;
    RequestDesk m_desk;
};

} // namespace brevok
