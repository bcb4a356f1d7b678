// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "foundation/StandardVersionComparator.h"
#include "fuzz/Fuzz.h"

#include <QRegularExpression>

#include <compare>

using namespace brevok;
using namespace Qt::StringLiterals;

namespace {

std::strong_ordering compared(const QString &a, const QString &b)
{
    return StandardVersionComparator::compareVersion(a, b);
}

// Numbers with single periods between them at the start: padding makes circles of others, such as "0", "" and
// ".".
bool isDotted(const QString &version)
{
    static const QRegularExpression dotted(u"^[0-9]++(?:[.][0-9]++)*+(?![.])"_s);
    return dotted.match(version).hasMatch();
}

} // namespace

// Three versions, a line each.
void fuzz::check(const QByteArray &input)
{
    const QList<QByteArray> lines = (input + "\n\n").split('\n');
    const auto a = QString::fromUtf8(lines[0]);
    const auto b = QString::fromUtf8(lines[1]);
    const auto c = QString::fromUtf8(lines[2]);
    HOLDS(std::is_eq(compared(a, a)));
    HOLDS(compared(a, b) == (0 <=> compared(b, a)));
    if (isDotted(a) && isDotted(b) && isDotted(c) && std::is_lteq(compared(a, b))
        && std::is_lteq(compared(b, c))) {
        HOLDS(std::is_lteq(compared(a, c)));
        HOLDS(std::is_eq(compared(a, c)) == (std::is_eq(compared(a, b)) && std::is_eq(compared(b, c))));
    }
    // A hyphen and what follows say nothing; a pre-release is older, a further number newer.
    HOLDS(std::is_eq(compared(a, a + u'-' + b)));
    if (!a.contains(u'-') && !a.isEmpty() && a.back().isDigit()) {
        HOLDS(std::is_gt(compared(a, a + u"b2"_s)));
        HOLDS(std::is_gt(compared(a + u".1"_s, a)));
        HOLDS(std::is_gt(compared(a + u'1', a)));
    }
}
