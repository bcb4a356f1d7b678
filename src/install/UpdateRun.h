// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "install/InstallOutcome.h"

#include <QObject>

#include <functional>

namespace brevok {

class BrevokPackages;
class InstallFlow;

/// Updates every package that an update waits for, one after the other, so that it can be stopped between
/// two. What failed is told in one alert, at the end. Main thread.
class UpdateRun final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(UpdateRun)

public:
    using Completion = std::function<void(const InstallOutcome &sum)>;

    UpdateRun(InstallFlow &flow, BrevokPackages &packages, QObject *parent = nullptr);
    ~UpdateRun() override;

    /// Begins with what waits now. A run that is under way is joined, and goes on where it was to stop.
    /// @p done tells the end: with the last package or, after stop(), with the current one; before this
    /// returns when nothing waits.
    void start(const Completion &done = {});
    /// Leaves out the packages after the current one.
    void stop();

    [[nodiscard]] bool isRunning() const { return m_total > 0; }
    [[nodiscard]] bool isStopping() const { return isRunning() && m_stopped; }
    /// How many packages this run began with, and which of them is the current one, from 1.
    [[nodiscard]] qsizetype total() const { return m_total; }
    [[nodiscard]] qsizetype current() const { return m_current; }

Q_SIGNALS:
    void changed();
    void packageBegins(const QString &prefix);
    void packageEnded(const QString &prefix);

private:
    void next();
    void end();

    InstallFlow &m_flow;
    BrevokPackages &m_packages;
    QStringList m_prefixes; ///< after the current one
    qsizetype m_total = 0;
    qsizetype m_current = 0;
    bool m_stopped = false;
    InstallOutcome m_sum;
    QList<Completion> m_done; ///< of all who started or joined it
};

} // namespace brevok
