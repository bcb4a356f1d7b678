// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "foundation/Secrets.h"

#include "foundation/UntrustedText.h"

#include <QHash>
#include <QList>
#include <QRegularExpression>
#include <QStringList>
#include <QUrl>

#include <algorithm>
#include <array>
#include <mutex>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

const QString hidden = u"(not logged)"_s;
constexpr qsizetype shortest = 4; // what is shorter may stand in any word

/// Where a secret is hidden.
enum class Place {
    Anywhere,
    Alone, ///< not within a longer word
    AsValue, ///< where it is all that a field, a cookie or a query holds
};

struct Secret {
    QString text;
    QList<uint> characters;
    QStringList base64;
    Place inTheirs = Place::Anywhere;
    Place inOurs = Place::Anywhere;

    [[nodiscard]] Place placeIn(Words words) const { return words == Words::Theirs ? inTheirs : inOurs; }
};

struct Kept {
    std::mutex mutex;
    QList<Secret> account; ///< the newest last, like `cookies`
    QList<Secret> cookies; ///< on their own, so that a service with many does not push the others out
};

// Never destroyed: other threads log to the end.
Kept &kept()
{
    static auto &all = *new Kept;
    return all;
}

// Every way in which base64 can hold @p bytes, alone or within something longer, longest first. At its ends a
// letter depends on what stands beside it there; those are left out.
QStringList base64Spellings(const QByteArray &bytes)
{
    constexpr qsizetype fewest = 4;
    constexpr std::array<qsizetype, 3> lettersBefore{0, 2, 3};
    QStringList spellings;
    for (const auto alphabet : {QByteArray::Base64Encoding, QByteArray::Base64UrlEncoding}) {
        for (qsizetype before = 0; before < 3; ++before) {
            const QByteArray within = QByteArray(before, '\0') + bytes;
            const auto letters =
                QString::fromLatin1(within.toBase64(alphabet | QByteArray::OmitTrailingEquals));
            if (before == 0) {
                spellings.append(letters);
            }
            const QString whole = letters.sliced(lettersBefore.at(static_cast<size_t>(before)))
                                      .chopped(within.size() % 3 == 0 ? 0 : 1);
            if (whole.size() >= fewest) {
                spellings.append(whole);
            }
        }
    }
    spellings.removeDuplicates();
    std::stable_sort(spellings.begin(), spellings.end(),
        [](const QString &a, const QString &b) { return a.size() > b.size(); });
    return spellings;
}

// Such as our own sentences are made of.
bool isLikeAWord(const QString &text)
{
    constexpr qsizetype longest = 15;
    static const QRegularExpression word(uR"(^(?:[\p{L}'-]+|[\p{N}\p{P}]+)$)"_s);
    return text.size() < shortest || (text.size() <= longest && word.match(text).hasMatch());
}

void keep(QList<Secret> Kept::*list, const QString &text, Place whenShort)
{
    constexpr qsizetype mostKept = 64;
    if (text.isEmpty()) {
        return;
    }
    const std::lock_guard lock(kept().mutex);
    QList<Secret> &secrets = kept().*list;
    const auto known = std::find_if(
        secrets.begin(), secrets.end(), [&text](const Secret &secret) { return secret.text == text; });
    if (known != secrets.end()) {
        std::rotate(known, known + 1, secrets.end());
        return;
    }
    const Place inTheirs = text.size() < shortest ? whenShort : Place::Anywhere;
    secrets.append({text, text.toUcs4(), base64Spellings(text.toUtf8()), inTheirs,
        isLikeAWord(text) ? Place::AsValue : inTheirs});
    if (secrets.size() > mostKept) {
        secrets.removeFirst();
    }
}

/// What a text begins with, where it does not stand for itself.
struct Character {
    uint code = 0;
    qsizetype length = 0; ///< of its spelling; 0 when there is none
};

Character percentDecoded(QStringView text)
{
    constexpr qsizetype longest = 12; // of four bytes
    if (text.startsWith(u'+')) {
        return {u' ', 1};
    }
    if (!text.startsWith(u'%')) {
        return {};
    }
    for (qsizetype length = 3; length <= std::min(longest, text.size()); length += 3) {
        const QByteArray bytes = QByteArray::fromPercentEncoding(text.first(length).toLatin1());
        const QList<uint> codes = QString::fromUtf8(bytes).toUcs4();
        if (codes.size() == 1 && (codes.front() != QChar::ReplacementCharacter || bytes == "\xEF\xBF\xBD")) {
            return {codes.front(), length};
        }
    }
    return {};
}

Character jsonDecoded(QStringView text)
{
    static const QHash<QChar, char> shortForms{
        {u'n', '\n'}, {u'r', '\r'}, {u't', '\t'}, {u'b', '\b'}, {u'f', '\f'}};
    constexpr qsizetype length = 6; // of \uXXXX
    if (!text.startsWith(u'\\') || text.size() < 2) {
        return {};
    }
    const QChar second = text[1];
    if (second != u'u') {
        return {static_cast<uchar>(shortForms.value(second, second.toLatin1())), 2};
    }
    bool isNumber = false;
    const uint unit = text.size() >= length ? text.sliced(2, 4).toUInt(&isNumber, 16) : 0;
    if (!isNumber) {
        return {};
    }
    if (QChar::isHighSurrogate(unit) && text.size() >= 2 * length && text.sliced(length).startsWith(u"\\u")) {
        const uint low = text.sliced(length + 2, 4).toUInt(&isNumber, 16);
        return {QChar::surrogateToUcs4(static_cast<char16_t>(unit), static_cast<char16_t>(low)), 2 * length};
    }
    return {unit, length};
}

Character htmlDecoded(QStringView text)
{
    static const QHash<QString, char> names{
        {u"amp"_s, '&'}, {u"lt"_s, '<'}, {u"gt"_s, '>'}, {u"quot"_s, '"'}, {u"apos"_s, '\''}};
    constexpr qsizetype longest = 12;
    if (!text.startsWith(u'&')) {
        return {};
    }
    const qsizetype end = text.first(std::min(text.size(), longest)).indexOf(u';');
    if (end < 2) {
        return {};
    }
    const QStringView name = text.sliced(1, end - 1);
    if (!name.startsWith(u'#')) {
        return {static_cast<uchar>(names.value(name.toString().toLower(), '\0')), end + 1};
    }
    const bool isHex = name.size() > 1 && name[1].toLower() == u'x';
    return {isHex ? name.sliced(2).toUInt(nullptr, 16) : name.sliced(1).toUInt(), end + 1};
}

using Decoder = Character (*)(QStringView text);

Character asItIs(QStringView text)
{
    const bool pair = text.size() > 1 && text[0].isHighSurrogate() && text[1].isLowSurrogate();
    return {pair ? QChar::surrogateToUcs4(text[0], text[1]) : text[0].unicode(), pair ? 2 : 1};
}

// How much of @p text, from its beginning, spells @p secret; 0 when it does not.
qsizetype spelled(QStringView text, const QList<uint> &secret, Decoder decoder)
{
    qsizetype at = 0;
    for (const uint wanted : secret) {
        if (at >= text.size()) {
            return 0;
        }
        const QStringView rest = text.sliced(at);
        const Character escaped = decoder != nullptr ? decoder(rest) : Character{};
        const Character plain = asItIs(rest);
        if (escaped.length > 0 && escaped.code == wanted) {
            at += escaped.length;
        } else if (plain.code == wanted) {
            at += plain.length;
        } else {
            return 0;
        }
    }
    return at;
}

constexpr std::array<Decoder, 4> decoders{nullptr, &jsonDecoded, &htmlDecoded, &percentDecoded};

bool standsAlone(QStringView text, qsizetype at, qsizetype length)
{
    static const QRegularExpression letterAtEnd(
        uR"re((?<!%[0-9A-Fa-f])(?<!\\u[0-9A-Fa-f]{3})(?<!\\)[\p{L}\p{N}]$)re"_s);
    constexpr qsizetype longestEscape = 6;
    const qsizetype from = std::max(qsizetype{0}, at - longestEscape);
    const QStringView after = text.sliced(at + length);
    return (after.isEmpty() || !after.front().isLetterOrNumber())
        && !letterAtEnd.match(text.sliced(from, at - from).toString()).hasMatch();
}

bool standsAsValue(QStringView text, qsizetype at, qsizetype length)
{
    static const QRegularExpression begin(
        uR"re((?:(?:[=:]|%3[AD]|&#0*(?:58|61);|\\u003[AD])(?:\s|%20)*|["']|%2[27])re"
        uR"re(|&(?:quot|apos|#0*3[49]|#x2[27]);|\\u002[27])$)re"_s,
        QRegularExpression::CaseInsensitiveOption);
    constexpr qsizetype longestMark = 12;
    constexpr QStringView marksOfTheEnd = u"\r\n\"'&;,})]<\\%";
    const QStringView before = text.first(at).last(std::min(at, longestMark));
    const QStringView after = text.sliced(at + length);
    const bool ends = after.isEmpty() || marksOfTheEnd.contains(after.front())
        || (before.endsWith(u'=') && after.front().isSpace());
    return ends && begin.match(before.toString()).hasMatch();
}

bool standsIn(Place place, QStringView text, qsizetype at, qsizetype length)
{
    return place == Place::Anywhere
        || (place == Place::Alone ? standsAlone(text, at, length) : standsAsValue(text, at, length));
}

// What a text begins with in each spelling: decoded once, not for every secret.
using Beginnings = std::array<uint, decoders.size()>;

Beginnings beginningsOf(QStringView text)
{
    Beginnings codes{};
    std::transform(decoders.cbegin(), decoders.cend(), codes.begin(), [text](Decoder decoder) {
        const Character escaped = decoder != nullptr ? decoder(text) : Character{};
        return escaped.length > 0 ? escaped.code : asItIs(text).code;
    });
    return codes;
}

qsizetype lengthOfSecret(QStringView text, qsizetype at, const Secret &secret, const Beginnings &beginnings)
{
    const QStringView rest = text.sliced(at);
    const uint first = secret.characters.front();
    qsizetype length = 0;
    for (size_t i = 0; i < decoders.size(); ++i) {
        if (first == beginnings.at(i) || first == beginnings.front()) {
            length = std::max(length, spelled(rest, secret.characters, decoders.at(i)));
        }
    }
    if (length == 0) {
        const auto found = std::find_if(secret.base64.cbegin(), secret.base64.cend(),
            [rest](const QString &spelling) { return rest.startsWith(spelling); });
        length = found == secret.base64.cend() ? 0 : found->size();
    }
    return length;
}

bool isBase64Letter(QChar c)
{
    return c.unicode() < 0x80 && (c.isLetterOrNumber() || QStringView(u"+/-_").contains(c));
}

// Of something longer in base64, a short secret leaves no letters of its own: what the letters say is looked
// through. @return how many they are
qsizetype lengthOfBase64With(const QList<Secret> &shortOnes, QStringView text, qsizetype at, Words words)
{
    if (shortOnes.isEmpty() || !isBase64Letter(text[at]) || (at > 0 && isBase64Letter(text[at - 1]))) {
        return 0;
    }
    const QStringView rest = text.sliced(at);
    const qsizetype length = std::find_if_not(rest.cbegin(), rest.cend(), isBase64Letter) - rest.cbegin();
    QByteArray letters = rest.first(length).toLatin1();
    letters.replace('-', '+').replace('_', '/');
    const QString said = QString::fromUtf8(QByteArray::fromBase64(letters));
    const bool tells = std::any_of(shortOnes.cbegin(), shortOnes.cend(), [&](const Secret &secret) {
        const qsizetype found = said.lastIndexOf(secret.text);
        return found >= 0 && standsIn(secret.placeIn(words), said, found, secret.text.size());
    });
    return tells ? length : 0;
}

QString withoutKnown(const QString &text, const QList<Secret> &secrets, Words words)
{
    QList<Secret> shortOnes = secrets;
    shortOnes.removeIf([](const Secret &secret) { return secret.text.size() >= shortest; });
    QString result;
    qsizetype from = 0;
    for (qsizetype at = 0; at < text.size();) {
        const Beginnings beginnings = beginningsOf(QStringView(text).sliced(at));
        qsizetype length = lengthOfBase64With(shortOnes, text, at, words);
        for (const Secret &secret : secrets) {
            const qsizetype found = lengthOfSecret(text, at, secret, beginnings);
            if (found > length && standsIn(secret.placeIn(words), text, at, found)) {
                length = found;
            }
        }
        if (length > 0) {
            result += QStringView(text).sliced(from, at - from);
            result += hidden;
            from = at + length;
        }
        at += std::max(qsizetype{1}, length);
    }
    result += QStringView(text).sliced(from);
    return result;
}

} // namespace

void keepSecret(const QString &secret)
{
    keep(&Kept::account, secret, Place::Alone);
}

void keepCookieSecret(const QByteArray &value)
{
    auto text = QString::fromUtf8(value).trimmed();
    if (text.size() > 2 && text.startsWith(u'"') && text.endsWith(u'"')) {
        text = text.sliced(1).chopped(1); // it may come back without them
    }
    keep(&Kept::cookies, text, Place::AsValue); // such as a language's: a word of any sentence
}

QString withoutSecrets(const QString &text, Words words)
{
    QList<Secret> secrets;
    {
        const std::lock_guard lock(kept().mutex);
        secrets = kept().account + kept().cookies;
    }
    return withoutKnown(text, secrets, words);
}

QString withoutSecretFields(const QString &text)
{
    static const QRegularExpression fields(
        uR"re(((?:SessionId|password)(?:"|\\+"|&quot;|&#0*34;|%22)?\s*(?:[:=]|%3[AD])\s*))re"
        uR"re((\(not logged\)|"(?:[^"\\]|\\.)*"?|(\\+"|&quot;|&#0*34;|%22).*?(?:\3|$)|[^\s,;}"]+))re"_s,
        QRegularExpression::CaseInsensitiveOption | QRegularExpression::DotMatchesEverythingOption);
    return withoutSecrets(text).replace(fields, u"\\1"_s + hidden);
}

QString excerpt(const QByteArray &reply)
{
    constexpr qsizetype shown = 256;
    constexpr qsizetype read = qsizetype{16} * 1024; // a secret that begins in what is shown ends in it
    const QString text = withoutSecretFields(QString::fromUtf8(reply.left(read)));
    const bool cutsPair = text.size() > shown && text[shown].isLowSurrogate();
    return oneLine(text.left(cutsPair ? shown - 1 : shown));
}

} // namespace brevok
