// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "catalogue/KeptList.h"
#include "foundation/BrevokError.h"
#include "foundation/Tasks.h"

#include <QDateTime>
#include <QJsonArray>
#include <QObject>
#include <QTimer>

#include <functional>

namespace brevok {

class BrevokAlertQueue;
class ServiceClient;
class StateStore;
struct ServiceReply;

/// The refresh cycle of one published list: request, reply, timer. What a reply means is decided here for
/// all lists alike; what a list holds is its owner's concern. Main thread.
class ListRefresh final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ListRefresh)

public:
    /// What differs between the lists.
    struct Wording {
        QString path; ///< on the service
        QString dateKey; ///< in the state store, for the date of the last good list
        QString alertTitle;
        QString failedWithError;
        QString failedWithResponse; ///< followed by code and text
        QString failedWithContent;
    };
    /// Takes a list over, on the main thread, and calls @p taken when that is done.
    using Taking = std::function<void(const Task &taken)>;
    /// What becomes of a list is its owner's concern.
    struct Owner {
        /// Prepares a good list to be taken over, in the background and with values only. Once it is stored,
        /// kept() is @p as.
        std::function<Taking(const QJsonArray &list, const KeptList &as)> read;
        /// The same of the text, where that costs less. Nothing when it has to be decoded to be judged.
        std::function<Taking(const QByteArray &json, const KeptList &as)> readText{};
        /// The list that is kept already, which is not asked for or read again.
        std::function<KeptList()> kept;
        /// This list came once more, maybe under another validator.
        std::function<void(const KeptList &as, const Task &taken)> keep;
    };
    /// Told the end of one check: nothing when it brought a usable list, else what kept it from that.
    using CheckHandler = std::function<void(const std::optional<BrevokError> &error)>;

    ListRefresh(Wording wording, StateStore &state, ServiceClient &service, BrevokAlertQueue &alerts,
        Owner owner, QObject *parent);
    ~ListRefresh() override;

    /// Whether a check may show alerts.
    enum class Voice { Aloud, Quiet };
    /// Requests the list, when the service can be reached at all and what is stored is known. @p ended is
    /// called once, after what the answer to this very request means has been done; at once when nothing can
    /// be sent.
    void check(const CheckHandler &ended = {}, Voice voice = Voice::Aloud);

    /// When the last good list came; invalid while none did.
    [[nodiscard]] QDateTime lastUpdate() const;
    /// Active while another check is scheduled.
    [[nodiscard]] QTimer *timer() { return &m_timer; }

Q_SIGNALS:
    /// The timer says that it is time for the next check.
    void due();
    /// Some check ended, with or without a usable list (or could not be made).
    void finished(bool ok);

private:
    /// What a reply holds.
    struct Content {
        Taking take{}; ///< nothing when it is no list
        QByteArray body{}; ///< nothing when the service said only that it is the list that is kept
        Validator validator{};
        QByteArray kept{}; ///< the mark, when it is the list that is kept
        std::optional<BrevokError> error{};
    };

    /// One check under way.
    struct Check {
        CheckHandler end;
        Voice voice = Voice::Aloud;
    };

    void ask(const KeptList &kept, const Check &check);
    void handle(const ServiceReply &reply, const QByteArray &askedMark, const Check &check);
    void handleTransportError(const ServiceReply &reply, Voice voice);
    void readContent(const QByteArray &body, const Validator &validator, const Check &check);
    void inTurn(const std::function<Content()> &read, const Check &check);
    [[nodiscard]] static Content contentOf(
        const QByteArray &body, const Validator &validator, const QByteArray &keptMark, const Owner &owner);
    void handleContent(const Content &content, const Check &check);
    void noteDate();
    void schedule(int seconds);
    [[nodiscard]] double secondsUntilLastUpdate() const;
    void showAlert(Voice voice);

    Wording m_wording;
    StateStore &m_state;
    ServiceClient &m_service;
    BrevokAlertQueue &m_alerts;
    Owner m_owner;
    SerialQueue m_reading; ///< so that lists are taken over in the order in which they came
    QDateTime m_lastUpdate;
    QTimer m_timer;
};

} // namespace brevok
