// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QDateTime>
#include <QObject>
#include <QTimer>

#include <chrono>

namespace brevok {

class SettingsStore;
class StateStore;

/// Says when a check is due that nobody asked for: once a day, while the user allows it. The day of the last
/// check outlives the program. Main thread.
class AutomaticChecks final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(AutomaticChecks)

public:
    struct Times {
        std::chrono::milliseconds first = std::chrono::minutes(1); ///< from the start to the first look
        std::chrono::milliseconds look = std::chrono::hours(1); ///< a machine that slept is not late for long
        std::chrono::milliseconds period = std::chrono::hours(24);
    };

    AutomaticChecks(SettingsStore &settings, StateStore &state, Times times, QObject *parent = nullptr);

    [[nodiscard]] bool allowed() const;
    void setAllowed(bool allowed);

    /// A check was answered: the next one is due a period from now.
    void checked();

    /// Whether a check is due at @p now when the last one was at @p last. A last check that lies in the
    /// future tells of a clock that was wrong: it is due.
    [[nodiscard]] static bool isDue(
        const QDateTime &last, const QDateTime &now, std::chrono::milliseconds period);

    /// Where the date of the last check is kept.
    static constexpr QLatin1StringView lastCheckKey{"SULastCheckTime"};

Q_SIGNALS:
    void due();

private:
    void follow();
    void look();
    void keepLast();

    SettingsStore &m_settings;
    StateStore &m_state;
    QDateTime m_last;
    Times m_times;
    QTimer m_timer;
};

} // namespace brevok
