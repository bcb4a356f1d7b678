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

void DesktopActivation::setHandler(std::function<void()> open)
{
    m_open = std::move(open);
    if (std::exchange(m_waiting, false)) {
        m_open();
    }
}

void DesktopActivation::Activate(const QVariantMap &)
{
    m_waiting = !m_open;
    if (m_open) {
        m_open();
    }
}

void DesktopActivation::Open(const QStringList &, const QVariantMap &platformData)
{
    Activate(platformData);
}

void DesktopActivation::ActivateAction(const QString &, const QVariantList &, const QVariantMap &) { }

} // namespace brevok
