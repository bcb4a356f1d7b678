// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/preferences/PageTabs.h"

#include <QAccessibleWidget>
#include <QToolBar>
#include <QToolButton>

namespace brevok {

namespace {

constexpr auto tabProperty = "pageTab";

class AccessibleTab final : public QAccessibleWidget {
public:
    explicit AccessibleTab(QToolButton *button)
        : QAccessibleWidget(button, QAccessible::PageTab)
        , m_button(button)
    {
    }

    [[nodiscard]] QString text(QAccessible::Text kind) const override
    {
        return kind == QAccessible::Name ? m_button->text() : QAccessibleWidget::text(kind);
    }

    [[nodiscard]] QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.selectable = true;
        state.selected = m_button->isChecked();
        return state;
    }

    [[nodiscard]] QStringList actionNames() const override
    {
        return {pressAction(), QAccessibleWidget::actionNames().value(0)};
    }

    void doAction(const QString &name) override
    {
        if (name == pressAction()) {
            m_button->click();
        } else {
            QAccessibleWidget::doAction(name);
        }
    }

private:
    QToolButton *m_button; ///< outlives its interface
};

QAccessibleInterface *makeTab(const QString & /*className*/, QObject *object)
{
    if (!object->property(tabProperty).toBool()) {
        return nullptr;
    }
    if (auto *button = qobject_cast<QToolButton *>(object)) {
        return new AccessibleTab(button);
    }
    return new QAccessibleWidget(static_cast<QWidget *>(object), QAccessible::PageTabList);
}

} // namespace

void announceAsTabs(QToolBar &toolbar)
{
    QAccessible::installFactory(makeTab); // once, however often it is asked for
    toolbar.setProperty(tabProperty, true);
    const QList<QAction *> actions = toolbar.actions();
    for (QAction *action : actions) {
        QWidget *button = toolbar.widgetForAction(action);
        button->setProperty(tabProperty, true);
        QObject::connect(action, &QAction::toggled, button, [button] {
            QAccessible::State changed;
            changed.selected = true;
            QAccessibleStateChangeEvent event(button, changed);
            QAccessible::updateAccessibility(&event);
        });
    }
}

} // namespace brevok
