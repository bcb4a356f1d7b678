// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/widgets/AccessibleRole.h"

#include <QAccessibleWidget>
#include <QWidget>

namespace brevok {

namespace {

constexpr auto roleProperty = "accessibleRole";
constexpr auto valueProperty = "permille";
constexpr auto animatingProperty = "animating";

class AccessibleView final : public QAccessibleWidget, public QAccessibleValueInterface {
public:
    using QAccessibleWidget::QAccessibleWidget;

    [[nodiscard]] QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        if (const QVariant animating = widget()->property(animatingProperty);
            animating.isValid() && !animating.toBool()) {
            state.invisible = true;
        }
        return state;
    }

    // A tool tip is none: it repeats what a name says, with mark-up.
    [[nodiscard]] QString text(QAccessible::Text kind) const override
    {
        return kind == QAccessible::Description ? widget()->accessibleDescription()
                                                : QAccessibleWidget::text(kind);
    }

    void *interface_cast(QAccessible::InterfaceType type) override
    {
        if (type == QAccessible::ValueInterface && widget()->property(valueProperty).isValid()) {
            return static_cast<QAccessibleValueInterface *>(this);
        }
        return QAccessibleWidget::interface_cast(type);
    }

    [[nodiscard]] QVariant currentValue() const override { return widget()->property(valueProperty); }
    void setCurrentValue(const QVariant &) override { }
    [[nodiscard]] QVariant maximumValue() const override { return 1000; }
    [[nodiscard]] QVariant minimumValue() const override { return 0; }
    [[nodiscard]] QVariant minimumStepSize() const override { return 1; }
};

QAccessibleInterface *makeView(const QString &className, QObject *object)
{
    if (className != QLatin1StringView("QWidget") || !object->isWidgetType()) {
        return nullptr;
    }
    const QVariant role = object->property(roleProperty);
    return role.isValid()
        ? new AccessibleView(static_cast<QWidget *>(object), static_cast<QAccessible::Role>(role.toInt()))
        : nullptr;
}

} // namespace

void setAccessibleRole(QWidget &view, QAccessible::Role role)
{
    QAccessible::installFactory(makeView); // once, however often it is asked for
    view.setProperty(roleProperty, static_cast<int>(role));
}

} // namespace brevok
