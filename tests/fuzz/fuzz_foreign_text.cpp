// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "foundation/Log.h"
#include "foundation/Secrets.h"
#include "foundation/UntrustedText.h"
#include "fuzz/Fuzz.h"
#include "support/Spellings.h"

#include <algorithm>

using namespace brevok;
using namespace Qt::StringLiterals;

namespace {

const QString mark = u"(not logged)"_s;

bool isClean(const QString &text, bool severalLines)
{
    return std::all_of(text.cbegin(), text.cend(), [&](QChar c) {
        const bool breaks = c == u'\n' || c == u'\t';
        return (breaks && severalLines)
            || (c.category() != QChar::Other_Control && c != QChar::LineSeparator
                && c != QChar::ParagraphSeparator && c != u'\u061C' && c != u'\u200E' && c != u'\u200F'
                && (c < u'\u202A' || c > u'\u202E') && (c < u'\u2066' || c > u'\u206F'));
    });
}

void checkLimits(const QString &text, qsizetype most)
{
    const QString one = oneLine(text, most);
    const QString several = severalLines(text, most);
    HOLDS(one.size() <= most && several.size() <= most);
    HOLDS(one.isValidUtf16() && several.isValidUtf16());
    HOLDS(isClean(one, false) && isClean(several, true) && isHarmless(one));
    HOLDS(oneLine(one, most) == one && severalLines(several, most) == several);
    HOLDS(!isHarmless(text) || text.size() > most || one == text);
    HOLDS(!isCookieValue(text) || isHarmless(text));
    HOLDS(isClean(messageForLog(text), true) && messageForLog(text).size() <= 20'000);
}

} // namespace

// A secret, what stands before it and what behind it, in one line each, and a text.
void fuzz::check(const QByteArray &input)
{
    const QList<QByteArray> all = parts(input, 4);
    const auto text = QString::fromUtf8(all[3]);
    checkLimits(text, 2 + all[3].size() % 300);
    checkLimits(text, 1000);
    const auto secret = QString::fromUtf8(all[0].trimmed());
    if (secret.size() < 4) {
        return;
    }
    keepSecret(secret);
    const auto spelled = testing::spellingsOf(secret, all[1].trimmed(), all[2].trimmed());
    const QString &spelling = spelled[all[1].size() % spelled.size()].second; // one at a time: this is slow
    const QStringList left = withoutSecrets(text + spelling + QString::fromUtf8(all[2])).split(mark);
    HOLDS(left.size() > 1);
    HOLDS(std::none_of(left.cbegin(), left.cend(),
        [&](const QString &piece) { return piece.contains(secret) || piece.contains(spelling); }));
    HOLDS(isClean(excerpt(all[3]), false));
    const QStringList shown = excerpt(all[3]).split(mark);
    HOLDS(std::none_of(
        shown.cbegin(), shown.cend(), [&](const QString &piece) { return piece.contains(secret); }));
}
