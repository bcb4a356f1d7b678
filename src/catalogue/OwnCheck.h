// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "catalogue/ListRefresh.h"

#include <QStringList>

#include <memory>

namespace brevok {

/// The user's own check for updates: asks for both lists, and knows when there is a result to tell. A check
/// takes the place of the one before. Main thread.
class OwnCheck final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(OwnCheck)

public:
    /// What kept each list from being read; nothing where it came.
    struct End {
        std::optional<BrevokError> plugins{};
        std::optional<BrevokError> packages{};
    };
    using Handler = std::function<void(const End &end)>;
    /// Requests one list.
    using Request = std::function<void(const ListRefresh::CheckHandler &ended)>;

    OwnCheck(Request plugins, Request packages, QObject *parent);
    ~OwnCheck() override;

    /// @p ended tells the end of these very requests, also when another check takes this one's place.
    void begin(const Handler &ended);
    /// An update was found that nobody was told of.
    void add(const QString &name);
    /// Whether both lists came and nobody was told yet what they brought.
    [[nodiscard]] bool hasResult() const { return m_phase == Phase::Answered; }
    /// What was added since the last result, once.
    [[nodiscard]] QStringList takeResult();

Q_SIGNALS:
    /// Both lists came.
    void answered();
    void failed(const BrevokError &error);

private:
    enum class Phase { Idle, Asking, Answered };
    struct Run {
        int open = 2;
        End end{};
    };

    void finish(const std::shared_ptr<Run> &run, const Handler &ended);

    Request m_plugins;
    Request m_packages;
    std::shared_ptr<Run> m_run; ///< the latest
    QStringList m_found;
    Phase m_phase = Phase::Idle;
};

} // namespace brevok
