// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "app/StateNotices.h"

#include "alerts/BrevokAlertQueue.h"
#include "foundation/Tasks.h"
#include "foundation/Texts.h"
#include "platform/StateStore.h"

namespace brevok {

StateNotices::StateNotices(const StateStore &state, BrevokAlertQueue &alerts, QObject *parent)
    : QObject(parent)
{
    // Later, so that the store does not wait for the user's answer.
    const auto show = [this, &alerts](const QString &title, const QString &text) {
        onMain(this, [&alerts, title, text] { alerts.modalAlert(title, text, {}, {Texts::tr("OK")}); });
    };
    connect(&state, &StateStore::troubled, this, [show](const QString &reason) {
        show(Texts::tr("Tolvane Brevok cannot store its data"),
            Texts::tr("What changes is kept in memory, and stored as soon as that is possible. Reason: %1")
                .arg(reason));
    });
    connect(&state, &StateStore::damaged, this, [show](const QString &keptAs) {
        show(Texts::tr("The stored data of Tolvane Brevok was damaged"),
            Texts::tr("What could be read is in use. The damaged file was kept as %1.").arg(keptAs));
    });
}

StateNotices::~StateNotices() = default;

} // namespace brevok
