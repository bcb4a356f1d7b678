// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/StandardFolders.h"
#include "reporting/BugReport.h"

#include <QObject>
#include <QPointer>

#include <functional>
#include <memory>

namespace brevok {

class BrevokPackages;
class BrevokPlugins;
class BrevokTargetApps;
class Connectivity;
class MainBundle;
class NetworkFactory;
struct ReportSnapshot;

/// Builds and sends the user's bug reports. Nothing of a report is kept. Main thread; handlers are called
/// there, later than the call unless said otherwise, and not at all when their context is gone by then.
class BugReporter final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(BugReporter)

public:
    /// All outlive the reporter; null for what does not exist.
    struct Collaborators {
        NetworkFactory &network;
        Connectivity &connectivity;
        BrevokPackages *packages;
        const BrevokPlugins *plugins;
        const BrevokTargetApps *targets;
        std::function<QString()> sessionId; ///< empty when signed out
        const MainBundle &bundle;
        StandardFolders folders;
    };
    /// How far a report is on its way.
    enum class Stage { Checking, Gathering, Sending };

    /// Who sends a report, and how it is told.
    struct Sender {
        QString email;
        QString note;
        QPointer<QObject> context;
        std::function<void(Stage)> stage; ///< may be empty; each stage once, in order, the first at once
        std::function<void(const ReportOutcome &)> done; ///< once; at once when the form cannot be sent
    };

    explicit BugReporter(Collaborators collaborators, QObject *parent = nullptr);
    ~BugReporter() override;

    /// Writes a diagnosis of the connection to the log, checks what was typed, and, once the diagnosis is
    /// complete and if the service answers, gathers the report and sends it.
    void report(Sender sender);

    /// The body that a report with these texts would have now; nothing is sent.
    void reportBody(const QString &email, const QString &note, QObject *context,
        std::function<void(const QByteArray &)> done);

private:
    using Run = std::shared_ptr<const Sender>;

    void logConnectivity(std::function<void()> then);
    void checkService(const Run &run);
    void send(const Run &run, const QByteArray &body);
    void waitForStatuses(std::function<void()> then);
    [[nodiscard]] ReportSnapshot snapshot() const;
    [[nodiscard]] QList<ReportItem> formItems(const QString &note) const;

    Collaborators m_with;
    QList<std::function<void()>> m_waiting; ///< for the diagnosis that is being written
};

} // namespace brevok
