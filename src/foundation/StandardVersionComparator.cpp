// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "foundation/StandardVersionComparator.h"

#include <QList>

#include <algorithm>

namespace brevok {

namespace {

enum class Kind { Number, Letters, Period, OtherSeparator };

struct Part {
    Kind kind;
    QStringView text;

    [[nodiscard]] bool isSeparator() const { return kind == Kind::Period || kind == Kind::OtherSeparator; }
};

Kind kindOf(QChar c)
{
    if (c == u'.') {
        return Kind::Period;
    }
    if (c.isDigit()) {
        return Kind::Number;
    }
    return c.isSpace() || c.isPunct() ? Kind::OtherSeparator : Kind::Letters;
}

QList<Part> partsOf(const QString &version)
{
    QList<Part> parts;
    const QStringView text =
        QStringView(version).left(version.indexOf(u'-') < 0 ? version.size() : version.indexOf(u'-'));
    for (qsizetype i = 0; i < text.size(); ++i) {
        const Kind kind = kindOf(text[i]);
        const bool continues = !parts.isEmpty() && parts.last().kind == kind && !parts.last().isSeparator();
        if (continues) {
            const QStringView before = parts.last().text;
            parts.last().text = QStringView(before.data(), before.size() + 1);
        } else {
            parts.append({kind, text.sliced(i, 1)});
        }
    }
    return parts;
}

qsizetype leadingNumbersAndPeriods(const QList<Part> &parts)
{
    const auto other = std::find_if(parts.cbegin(), parts.cend(),
        [](const Part &part) { return part.kind != Kind::Number && part.kind != Kind::Period; });
    return other - parts.cbegin();
}

void pad(QList<Part> &shorter, qsizetype count, const QList<Part> &longer, qsizetype wanted)
{
    for (qsizetype i = count; i < wanted; ++i) {
        const bool number = longer[i].kind == Kind::Number;
        shorter.insert(i, {longer[i].kind, number ? QStringView(u"0") : QStringView(u".")});
    }
}

std::strong_ordering compareNumbers(QStringView a, QStringView b)
{
    const auto significant = [](QStringView digits) {
        while (digits.size() > 1 && digits.front() == u'0') {
            digits = digits.sliced(1);
        }
        return digits;
    };
    const QStringView first = significant(a);
    const QStringView second = significant(b);
    if (first.size() != second.size()) {
        return first.size() <=> second.size();
    }
    return first.compare(second) <=> 0;
}

std::strong_ordering compareParts(const Part &a, const Part &b)
{
    if (a.isSeparator() && b.isSeparator()) {
        return std::strong_ordering::equal;
    }
    if (a.kind == b.kind) {
        return a.kind == Kind::Number ? compareNumbers(a.text, b.text) : a.text.compare(b.text) <=> 0;
    }
    if (a.kind == Kind::Letters || b.kind == Kind::Letters) {
        return a.kind == Kind::Letters ? std::strong_ordering::less : std::strong_ordering::greater;
    }
    // A number against a separator: the separator stands where a number belongs.
    return a.kind == Kind::Number ? std::strong_ordering::greater : std::strong_ordering::less;
}

} // namespace

std::strong_ordering StandardVersionComparator::compareVersion(
    const QString &version, const QString &toVersion)
{
    QList<Part> a = partsOf(version);
    QList<Part> b = partsOf(toVersion);
    const qsizetype leadingA = leadingNumbersAndPeriods(a);
    const qsizetype leadingB = leadingNumbersAndPeriods(b);
    pad(a, leadingA, b, leadingB);
    pad(b, leadingB, a, leadingA);

    const qsizetype common = std::min(a.size(), b.size());
    for (qsizetype i = 0; i < common; ++i) {
        if (const auto order = compareParts(a[i], b[i]); order != std::strong_ordering::equal) {
            return order;
        }
    }
    if (a.size() == b.size()) {
        return std::strong_ordering::equal;
    }
    const bool aIsLonger = a.size() > b.size();
    const Part &next = aIsLonger ? a[common] : b[common];
    const bool longerIsNewer = next.kind != Kind::Letters;
    return aIsLonger == longerIsNewer ? std::strong_ordering::greater : std::strong_ordering::less;
}

} // namespace brevok
