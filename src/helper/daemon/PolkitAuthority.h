// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QDBusConnection>
#include <QHash>
#include <QObject>
#include <QTimer>

#include <functional>

namespace brevok {

/// Asks polkit whether a caller, named by his unique name on the bus, may do something. Never blocks: several
/// questions are open at once. A polkit that is missing, goes, or stops answering amounts to "no" within five
/// seconds; a person is given all the time there is, as long as polkit lives.
class PolkitAuthority final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(PolkitAuthority)

public:
    enum class Verdict {
        Yes,
        No,
        Question, ///< would need a question, which was not to be asked
        Unreachable,
    };
    using Done = std::function<void(Verdict)>;
    enum class Interaction { None, Allowed };

    explicit PolkitAuthority(QDBusConnection bus, QObject *parent = nullptr);
    ~PolkitAuthority() override;

    /// Begins a check; @p details are shown with the question. @p done is called once, later.
    /// @return what cancel() takes
    QString check(const QString &caller, const QString &action, const QMap<QString, QString> &details,
        Interaction interaction, Done done);
    /// Takes back a question; its `done` is not called any more.
    void cancel(const QString &id);

private:
    void settle(const QString &id, Verdict verdict);
    void lookAfterQuestions();

    struct Check {
        Done done;
        bool interactive = false;
    };
    QDBusConnection m_bus;
    QHash<QString, Check> m_checks;
    QTimer m_liveness;
    quint64 m_last = 0;
};

} // namespace brevok
