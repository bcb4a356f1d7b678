// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/desktop/OutlineStyle.h"

#include "ui/widgets/PanelStyle.h"

#include <QApplication>
#include <QPainter>
#include <QStyleOption>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

const QString ownStyle = u"fusion"_s;

// The style draws outlines as the window's colour, darkened by this.
constexpr int darkening = 140;
constexpr int focusDarkening = 125; // of the accent, around what has the focus

} // namespace

OutlineStyle::OutlineStyle()
    : QProxyStyle(ownStyle)
{
}

OutlineStyle::~OutlineStyle() = default;

void OutlineStyle::polish(QPalette &palette)
{
    QProxyStyle::polish(palette);
    for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive}) {
        QPalette ofGroup = palette;
        ofGroup.setCurrentColorGroup(group);
        palette.setColor(group, QPalette::Highlight, PanelStyle::accent(ofGroup));
    }
}

const QPalette &OutlineStyle::outlined(const QPalette &palette) const
{
    if (m_own.contains(palette.cacheKey())) {
        return palette;
    }
    constexpr qsizetype many = 64; // a change of colours leaves those that nobody asks for any more
    if (m_outlined.size() > many) {
        m_outlined.clear();
        m_own.clear();
    }
    const auto known = m_outlined.constFind(palette.cacheKey());
    if (known != m_outlined.cend()) {
        return *known;
    }
    QPalette made = palette;
    for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
        QPalette ofGroup = palette;
        ofGroup.setCurrentColorGroup(group);
        made.setColor(group, QPalette::Window, PanelStyle::outline(ofGroup).lighter(darkening));
        const QColor accent = PanelStyle::standingOut(palette.color(group, QPalette::Highlight), ofGroup)
                                  .lighter(focusDarkening);
        made.setColor(group, QPalette::Highlight, accent);
#if QT_VERSION >= QT_VERSION_CHECK(6, 6, 0)
        made.setColor(group, QPalette::Accent, accent);
#endif
    }
    m_own.insert(made.cacheKey());
    return *m_outlined.insert(palette.cacheKey(), made);
}

void OutlineStyle::drawPrimitive(
    PrimitiveElement element, const QStyleOption *option, QPainter *painter, const QWidget *widget) const
{
    const auto draw = [&](auto outlinedOption) {
        const QPalette::ColorGroup group = outlinedOption.palette.currentColorGroup();
        outlinedOption.palette = outlined(outlinedOption.palette);
        outlinedOption.palette.setCurrentColorGroup(group);
        QProxyStyle::drawPrimitive(element, &outlinedOption, painter, widget);
    };
    switch (element) {
    case PE_IndicatorCheckBox:
    case PE_PanelButtonCommand:
        if (const auto *button = qstyleoption_cast<const QStyleOptionButton *>(option)) {
            draw(*button);
            return;
        }
        break;
    case PE_Frame:
    case PE_FrameLineEdit:
        if (const auto *frame = qstyleoption_cast<const QStyleOptionFrame *>(option)) {
            draw(*frame);
            return;
        }
        break;
    case PE_PanelButtonTool:
        draw(*option);
        return;
    case PE_PanelMenu:
        QProxyStyle::drawPrimitive(element, option, painter, widget);
        painter->save();
        painter->setPen(PanelStyle::outline(option->palette));
        painter->drawRect(option->rect.adjusted(0, 0, -1, -1));
        painter->restore();
        return;
    default:
        break;
    }
    QProxyStyle::drawPrimitive(element, option, painter, widget);
}

void OutlineStyle::drawComplexControl(
    ComplexControl control, const QStyleOptionComplex *option, QPainter *painter, const QWidget *widget) const
{
    const auto *comboBox = qstyleoption_cast<const QStyleOptionComboBox *>(option);
    if (control != CC_ComboBox || comboBox == nullptr) {
        QProxyStyle::drawComplexControl(control, option, painter, widget);
        return;
    }
    QStyleOptionComboBox outlinedOption = *comboBox;
    const QPalette::ColorGroup group = outlinedOption.palette.currentColorGroup();
    outlinedOption.palette = outlined(outlinedOption.palette);
    outlinedOption.palette.setCurrentColorGroup(group);
    QProxyStyle::drawComplexControl(control, &outlinedOption, painter, widget);
}

void useOutlineStyle()
{
    if (QApplication::style()->name() == ownStyle) {
        QApplication::setStyle(new OutlineStyle);
    }
}

} // namespace brevok
