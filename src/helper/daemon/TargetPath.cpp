// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "daemon/TargetPath.h"

#include <QStringList>

#include <algorithm>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype longestPath = 4000;
constexpr qsizetype longestComponent = 255;
/// Leaves room for what is put before the name while a bundle is replaced.
constexpr qsizetype longestBundle = 220;
constexpr auto bundleSuffix = ".InDesignPlugin"_L1;

bool isPlainCharacter(QChar character)
{
    return character.category() != QChar::Other_Control && character.category() != QChar::Other_Format
        && character.category() != QChar::Separator_Line
        && character.category() != QChar::Separator_Paragraph;
}

bool isPlainComponent(const QString &component)
{
    return component != u"."_s && component != u".."_s && component.toUtf8().size() <= longestComponent;
}

bool isBundle(const QStringList &components)
{
    const qsizetype count = components.size();
    const QString &name = components.constLast();
    return count >= 2 && components[count - 2] == u"Tolvane"_s && name.endsWith(bundleSuffix)
        && name.size() > bundleSuffix.size() && !name.startsWith(u'.')
        && name.toUtf8().size() <= longestBundle;
}

bool isWorkspace(const QStringList &components)
{
    return components.size() >= 3
        && components.last(3) == QStringList{u"Presets"_s, u"InDesign Workspaces"_s, u"Tolvane.xml"_s};
}

} // namespace

std::optional<QString> plainPath(const QString &asked)
{
    if (!asked.startsWith(u'/') || asked.size() > longestPath || asked.toUtf8().size() > longestPath
        || !std::all_of(asked.cbegin(), asked.cend(), isPlainCharacter)) {
        return std::nullopt;
    }
    const QStringList components = asked.split(u'/', Qt::SkipEmptyParts);
    if (components.isEmpty() || !std::all_of(components.cbegin(), components.cend(), isPlainComponent)) {
        return std::nullopt;
    }
    return u'/' + components.join(u'/');
}

std::optional<QString> targetPath(const QString &asked)
{
    const std::optional<QString> plain = plainPath(asked);
    if (!plain || asked.endsWith(u'/')) {
        return std::nullopt;
    }
    const QStringList components = plain->split(u'/', Qt::SkipEmptyParts);
    return isBundle(components) || isWorkspace(components) ? plain : std::nullopt;
}

} // namespace brevok
