// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>
#include <QTimer>

#include <functional>
#include <optional>

namespace brevok {

class BrevokPlugins;
class BrevokTargetApps;
class NetworkFactory;
struct ServiceReply;
struct UsageSnapshot;

/// Tells the service once a day which plug-ins are installed where. Lives as long as the process. Main
/// thread.
class BrevokUsageReporter final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(BrevokUsageReporter)

public:
    /// All outlive the reporter's last turn of the run loop.
    struct Collaborators {
        NetworkFactory &network;
        const BrevokTargetApps &targets;
        const BrevokPlugins &plugins;
        std::function<QString()> sessionId; ///< empty when signed out
        QString appVersion;
    };
    /// Nothing when there is no report to send.
    using BodyHandler = std::function<void(const std::optional<QByteArray> &body)>;

    /// The first report follows in a minute. Made before what it reports about is there.
    explicit BrevokUsageReporter(QObject *parent = nullptr);
    ~BrevokUsageReporter() override;

    /// Called once.
    void setCollaborators(Collaborators collaborators);

    /// Gathers a report in the background and sends it. Without target applications nothing is sent.
    void usageReport();
    /// The body that a report would have now; nothing is sent. @p done is called once, later, unless @p
    /// context is gone by then.
    void reportBody(QObject *context, BodyHandler done);

    /// Calls usageReport().
    [[nodiscard]] const QTimer *reportTimer() const { return &m_reportTimer; }

Q_SIGNALS:
    /// A report's exchange with the service ended, well or not.
    void finished();

private:
    [[nodiscard]] std::optional<UsageSnapshot> snapshot() const;
    void gather(UsageSnapshot snapshot, QObject *context, std::function<void(const QByteArray &)> done);
    void send(const QByteArray &body);
    void handle(const ServiceReply &reply);

    std::optional<Collaborators> m_with;
    QTimer m_reportTimer;
};

} // namespace brevok
