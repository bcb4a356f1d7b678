// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "control/ControlCall.h"
#include "install/InstallFlow.h"

#include <QDBusContext>
#include <QObject>

namespace brevok {

class BrevokSession;
class BrevokUsageReporter;
class BugReporter;
class Converger;
class PackageCalls;
class SettingsAccess;
class StorageWatch;
class TargetCalls;
class UpdateRun;

/// The application's side of the session-bus interface com.tolvane.brevok.Control1. Main thread. It only
/// translates: every call is an operation of another room, every answer is put together from what those rooms
/// hold.
class ControlService final : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ControlService)

public:
    struct Collaborators {
        BrevokSession &session;
        BrevokPlugins &plugins;
        BrevokPackages &packages;
        BrevokTargetApps &targets;
        InstallFlow &flow;
        UpdateRun &updates;
        StateStore &state;
        SettingsAccess &settings;
        const StorageWatch &storage;
        std::function<bool()> helperIsUsed;
        BugReporter &bugReporter;
        BrevokUsageReporter &usageReporter;
        Converger &converger;
    };

    explicit ControlService(QObject *parent = nullptr);
    ~ControlService() override;

    /// Registers the object on @p bus.
    void publish(QDBusConnection bus);

    /// Called once. Calls that arrive before, but Quit, are refused.
    void setCollaborators(Collaborators collaborators);

    /// Whether a call waits for its answer.
    [[nodiscard]] bool isBusy() const { return m_unanswered > 0; }

    // The methods of the interface; com.tolvane.brevok.Control1.xml says what each does.
    QString Status();
    QStringList SignIn(const QString &email, const QString &password);
    QStringList SignOut();
    QStringList Check();
    QStringList Install(const QStringList &prefixes, QString &outcome);
    QStringList UpdateAll(QString &outcome);
    QStringList Remove(const QStringList &prefixes, QString &outcome);
    QStringList Converge(bool foreseen, QString &document);
    void Discard();
    QString Targets();
    void AddTarget(const QString &path, const QString &type, const QString &version);
    void RemoveTarget(const QString &path);
    void SetTargetEnabled(const QString &path, bool enabled);
    QString Settings();
    QString Setting(const QString &key);
    void SetSetting(const QString &key, const QString &value);
    QStringList Report(const QString &email, const QString &note);
    QString ReportBody(const QString &email, const QString &note);
    QString UsageBody();
    void OpenPanel();
    void Quit();

Q_SIGNALS:
    void Progress(const QString &prefix, const QString &plugin, qint64 done, qint64 expected);
    void openPanelRequested();
    void quitRequested();
    /// The last call that waited was answered.
    void becameIdle();

private:
    /// The call that is being served; from here on whoever has it answers it.
    [[nodiscard]] ControlCall currentCall();
    void refuse(const QString &reason);
    [[nodiscard]] bool refusedTooEarly();
    QStringList sessionAction(const std::function<void()> &start);

    std::optional<Collaborators> m_with;
    PackageCalls *m_packages = nullptr;
    TargetCalls *m_targets = nullptr;
    int m_unanswered = 0;
};

} // namespace brevok
