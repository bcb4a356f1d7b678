// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "control/SettingsDocument.h"
#include "install/InstallFlow.h"
#include "platform/FileState.h"

#include <QDBusConnection>
#include <QDBusContext>
#include <QObject>
#include <QStringList>

namespace brevok {

class BrevokSession;
class BrevokUsageReporter;
class BugReporter;

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
        StateStore &state;
        SettingsAccess &settings;
        std::function<bool()> helperIsUsed;
        BugReporter &bugReporter;
        BrevokUsageReporter &usageReporter;
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
    QStringList Install(const QStringList &prefixes);
    QStringList UpdateAll();
    QStringList Remove(const QStringList &prefixes);
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
    static constexpr auto refusedError = "com.tolvane.brevok.Error.Refused";

    /// Sends an answer to the call that is being served, later and once.
    [[nodiscard]] std::function<void(const QDBusMessage &)> sendLater();
    /// Answers the call that is being served later, with the failures given then.
    [[nodiscard]] std::function<void(const QStringList &)> answerLater();
    /// The same when what the call changed is stored; that it could not be is one failure more.
    [[nodiscard]] std::function<void(const QStringList &)> answerWhenStored();
    /// Answers the call that is being served when what it changed is stored, or says why that failed.
    void confirmWhenStored();
    void confirmWhenStored(const QDBusConnection &bus, const QDBusMessage &call);
    void answerWhenSettled(std::function<void(const QStringList &)> answer, const QStringList &failures);
    void refuse(const QString &reason);
    [[nodiscard]] bool refusedTooEarly();
    [[nodiscard]] bool refusedBeforeAnswer();
    [[nodiscard]] bool refusedUnknown(const QStringList &prefixes);
    void changeTarget(const QString &path, const std::function<void(const QString &known)> &change);
    /// Answers the call that is being served with what @p act returns, a reason to refuse it, when the disk
    /// has been asked about @p path.
    void answerAfterLook(const QString &path,
        const std::function<std::optional<QString>(const std::optional<FolderLook> &look)> &act);
    void runForEach(const QStringList &prefixes, bool remove);
    QStringList sessionAction(const std::function<void()> &start);

    std::optional<Collaborators> m_with;
    int m_unanswered = 0;
};

} // namespace brevok
