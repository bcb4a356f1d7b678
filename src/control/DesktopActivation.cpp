// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "control/DesktopActivation.h"

#include "ActivationAdaptor.h"

#include <utility>

namespace brevok {

using namespace Qt::StringLiterals;

DesktopActivation::DesktopActivation(QObject *parent)
    : QObject(parent)
{
    new ActivationAdaptor(this); // owned by this object, as adaptors are
}

DesktopActivation::~DesktopActivation() = default;

void DesktopActivation::publish(QDBusConnection bus)
{
    bus.registerObject(u"/com/tolvane/brevok"_s, this);
}

void DesktopActivation::setHandler(std::function<void(const QString &action)> carryOut)
{
    m_carryOut = std::move(carryOut);
    if (const auto waiting = std::exchange(m_waiting, {})) {
        m_carryOut(*waiting);
    }
}

void DesktopActivation::carryOut(const QString &action)
{
    if (m_carryOut) {
        m_carryOut(action);
    } else {
        m_waiting = action;
    }
}

void DesktopActivation::Activate(const QVariantMap &)
{
    carryOut({});
}

void DesktopActivation::Open(const QStringList &, const QVariantMap &)
{
    carryOut({});
}

void DesktopActivation::ActivateAction(const QString &name, const QVariantList &, const QVariantMap &)
{
    if (!name.isEmpty()) {
        carryOut(name);
    }
}

} // namespace brevok
