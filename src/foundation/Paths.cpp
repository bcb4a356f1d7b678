// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "foundation/Paths.h"

#include "foundation/UntrustedText.h"

#include <QList>

#include <algorithm>

namespace brevok {

using namespace Qt::StringLiterals;

QString withoutTrailingSlashes(QString path)
{
    while (path.size() > 1 && path.endsWith(u'/')) {
        path.chop(1);
    }
    return path;
}

QString deletingLastPathComponent(const QString &path)
{
    const QString whole = withoutTrailingSlashes(path);
    const qsizetype slash = whole.lastIndexOf(u'/');
    return slash < 0 ? u""_s : withoutTrailingSlashes(whole.first(slash + 1));
}

bool isPlainFileName(const QString &name)
{
    return !name.isEmpty() && name != "."_L1 && name != ".."_L1 && !name.contains(u'/') && isHarmless(name);
}

bool isPrintable(const QString &text)
{
    const QList<uint> characters = text.toUcs4();
    return text.isValidUtf16() && std::all_of(characters.cbegin(), characters.cend(), [](uint character) {
        return QChar::isPrint(character);
    });
}

} // namespace brevok
