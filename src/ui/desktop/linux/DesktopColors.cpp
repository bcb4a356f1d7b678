// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/desktop/linux/DesktopColors.h"

#include "ui/widgets/PanelStyle.h"

#include <QApplication>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

using namespace Qt::StringLiterals;

namespace brevok {

namespace {

constexpr uint prefersDark = 1;
constexpr float darkest = 0.11F;
constexpr float lightest = 0.95F;

const QString service = u"org.freedesktop.portal.Desktop"_s;
const QString path = u"/org/freedesktop/portal/desktop"_s;
const QString interface = u"org.freedesktop.portal.Settings"_s;
const QString space = u"org.freedesktop.appearance"_s;
const QString key = u"color-scheme"_s;

QColor turned(const QColor &color)
{
    const float lightness = darkest + (1 - color.lightnessF()) * (lightest - darkest);
    return QColor::fromHslF(color.hslHueF(), color.hslSaturationF(), lightness, color.alphaF());
}

// Portals wrap the value once more than needed.
uint schemeIn(const QVariant &value)
{
    QVariant inner = value;
    while (inner.metaType() == QMetaType::fromType<QDBusVariant>()) {
        inner = inner.value<QDBusVariant>().variant();
    }
    return inner.toUInt();
}

} // namespace

QPalette darkened(const QPalette &light)
{
    QPalette dark(turned(light.color(QPalette::Button)), turned(light.color(QPalette::Window)));
    for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
        for (const QPalette::ColorRole role :
            {QPalette::Window, QPalette::WindowText, QPalette::Base, QPalette::AlternateBase, QPalette::Text,
                QPalette::PlaceholderText, QPalette::Button, QPalette::ButtonText, QPalette::ToolTipBase,
                QPalette::ToolTipText, QPalette::Link, QPalette::LinkVisited}) {
            dark.setColor(group, role, turned(light.color(group, role)));
        }
        for (const QPalette::ColorRole role : {QPalette::Highlight, QPalette::HighlightedText}) {
            dark.setColor(group, role, light.color(group, role));
        }
    }
    return dark;
}

DesktopColors::DesktopColors(const QDBusConnection &bus)
    : m_bus(bus)
{
    qRegisterMetaType<QDBusVariant>(); // else the slot is not found, unless some other call came before
    use(bus);
}

DesktopColors::~DesktopColors() = default;

void DesktopColors::use(const QDBusConnection &bus)
{
    m_bus = bus;
    // Of any sender: to know the service's owner, Qt would wait for the bus.
    m_bus.connect(
        {}, path, interface, u"SettingChanged"_s, this, SLOT(settingChanged(QString, QString, QDBusVariant)));
    QDBusMessage question = QDBusMessage::createMethodCall(service, path, interface, u"Read"_s);
    question << space << key;
    auto *watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(question), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        watcher->deleteLater();
        const QDBusPendingReply<QDBusVariant> reply = *watcher;
        if (!reply.isError()) {
            apply(schemeIn(reply.value().variant()));
        }
    });
}

void DesktopColors::settingChanged(const QString &ofSpace, const QString &ofKey, const QDBusVariant &value)
{
    if (ofSpace == space && ofKey == key) {
        apply(schemeIn(value.variant()));
    }
}

void DesktopColors::apply(uint scheme)
{
    const QPalette present = QApplication::palette();
    if (scheme == prefersDark && !PanelStyle::isDark(present)) {
        m_darkened = true;
        QApplication::setPalette(darkened(present));
    } else if (scheme != prefersDark && m_darkened) {
        m_darkened = false;
        QApplication::setPalette(QPalette());
    }
}

} // namespace brevok
