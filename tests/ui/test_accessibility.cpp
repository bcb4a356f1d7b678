// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

// What a screen reader finds in every window: the whole tree, in its order.

#include "EveryWindow.h"

#include <QAccessible>
#include <QApplication>
#include <QRegularExpression>

#include <algorithm>
#include <array>

using namespace brevok;
using namespace brevok::testing;
using namespace Qt::StringLiterals;

namespace {

using Interface = QAccessibleInterface;

/// What a user acts on, so that it must say what it is.
constexpr std::array named{QAccessible::Window, QAccessible::Dialog, QAccessible::AlertMessage,
    QAccessible::PushButton, QAccessible::CheckBox, QAccessible::ComboBox, QAccessible::EditableText,
    QAccessible::Table, QAccessible::List, QAccessible::ListItem, QAccessible::PageTab, QAccessible::ToolBar,
    QAccessible::ProgressBar, QAccessible::Animation, QAccessible::StaticText};

struct Expected {
    const char *type; ///< the narrowest comes first
    QAccessible::Role role;
};
constexpr std::array expectedRoles{Expected{"QCheckBox", QAccessible::CheckBox},
    Expected{"QLineEditIconButton", QAccessible::PushButton}, // empties a field
    Expected{"QToolButton", QAccessible::PageTab}, // the preferences' pages
    Expected{"QAbstractButton", QAccessible::PushButton}, Expected{"QLineEdit", QAccessible::EditableText},
    Expected{"QComboBox", QAccessible::ComboBox}, Expected{"QTableView", QAccessible::Table},
    Expected{"QTabBar", QAccessible::PageTabList}, Expected{"QProgressBar", QAccessible::ProgressBar},
    Expected{"brevok::PackageCellView", QAccessible::ListItem}, Expected{"QDialog", QAccessible::Dialog}};

bool lookedAt(const Interface &view)
{
    // A label that says nothing yet is passed over, as a picture is; of what the library makes by itself,
    // only what is the program's to say is looked at.
    const bool empty = view.rect().isEmpty()
        || (view.role() == QAccessible::StaticText && view.text(QAccessible::Name).isEmpty());
    return !view.state().invisible && !empty && view.role() != QAccessible::Graphic
        && view.role() != QAccessible::ScrollBar;
}

/// Whether @p second is read after @p first: below it, or to its right.
bool inOrder(const QRect &first, const QRect &second)
{
    if (first.isEmpty() || second.isEmpty() || first.intersects(second)) {
        return true;
    }
    return second.top() > first.bottom() || second.left() > first.right();
}

class Walk {
public:
    explicit Walk(QWidget &window) { visit(*QAccessible::queryAccessibleInterface(&window)); }

    QStringList faults;

private:
    void visit(Interface &view)
    {
        checkTexts(view);
        if (view.object() != nullptr && view.object()->isWidgetType()) {
            checkWidget(view, *static_cast<QWidget *>(view.object()));
        }
        // The library puts the pages of tabs before their titles.
        const bool isTabs = view.object() != nullptr && view.object()->inherits("QTabWidget");
        Interface *before = nullptr;
        for (int i = 0; i < view.childCount(); ++i) {
            Interface *child = view.child(i);
            if (child == nullptr || !child->isValid() || !lookedAt(*child)
                || child->role() == QAccessible::Window
                || (child->role() == QAccessible::Dialog && view.role() != QAccessible::Application)) {
                continue; // another window
            }
            if (before != nullptr && !inOrder(before->rect(), child->rect()) && !isTabs) {
                faults.append(u"%1 is read before %2"_s.arg(called(*before), called(*child)));
            }
            before = child;
            visit(*child);
        }
    }

    static QString called(const Interface &view)
    {
        const QString type = view.object() != nullptr
            ? QString::fromLatin1(view.object()->metaObject()->className()) + u' '
                + view.object()->objectName()
            : QString();
        return u"%1 '%2' (role %3)"_s.arg(
            type, view.text(QAccessible::Name).left(60), QString::number(view.role(), 16));
    }

    void checkTexts(const Interface &view)
    {
        static const QRegularExpression markup(u"<(/?(qt|p|b|br|html)\\b|p style)|&(lt|gt|amp|nbsp);"_s);
        static const QRegularExpression unseen(u"[\\x{200b}\\x{200c}\\x{2060}\\x{feff}\\x{ad}]"_s);
        if (std::ranges::count(named, view.role()) > 0 && view.text(QAccessible::Name).isEmpty()) {
            faults.append(u"no name: "_s + called(view));
        }
        for (const QAccessible::Text text :
            {QAccessible::Name, QAccessible::Description, QAccessible::Value, QAccessible::Help}) {
            const QString said = view.text(text);
            if (said.contains(markup) || said.contains(unseen)) {
                faults.append(u"not what a person reads: %1 says '%2'"_s.arg(called(view), said.left(80)));
            }
        }
    }

    void checkWidget(const Interface &view, const QWidget &widget)
    {
        const auto *expected = std::ranges::find_if(
            expectedRoles, [&](const Expected &one) { return widget.inherits(one.type); });
        if (expected != expectedRoles.end() && expected->role != view.role()) {
            faults.append(u"another role than %1: %2"_s.arg(expected->role, 0, 16).arg(called(view)));
        }
        const QAccessible::State state = view.state();
        if (state.disabled == widget.isEnabled()) {
            faults.append(u"enabled or not: "_s + called(view));
        }
        if (isClickable(&widget) && widget.isEnabled() && !state.focusable) {
            faults.append(u"not for the keyboard: "_s + called(view));
        }
        if (const auto *button = qobject_cast<const QAbstractButton *>(&widget); button != nullptr
            && button->isChecked() != state.checked && view.role() == QAccessible::CheckBox) {
            faults.append(u"checked or not: "_s + called(view));
        }
    }
};

} // namespace

class AccessibilityTest final : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everyWindowIsTold_data() { addEveryWindow(); }

    void everyWindowIsTold()
    {
        const Scene scene = shownRow();
        const Walk walk(*scene.window);
        QVERIFY2(walk.faults.isEmpty(), qPrintable(walk.faults.join(u'\n')));
    }
};

QTEST_MAIN(AccessibilityTest)
#include "test_accessibility.moc"
