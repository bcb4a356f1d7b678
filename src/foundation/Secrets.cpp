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
constexpr qsizetype shortest = 4; // a shorter secret is hidden only where it stands alone

struct Secret {
    QString text;
    QList<uint> characters;
    QStringList base64;
    bool likeAWord; ///< it may stand in any sentence
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

void keep(QList<Secret> Kept::*list, const QString &text)
{
    constexpr qsizetype mostKept = 64;
    constexpr qsizetype longestWord = 7;
    if (text.isEmpty()) {
        return;
    }
    const bool letters =
        std::all_of(text.cbegin(), text.cend(), [](QChar character) { return character.isLetter(); });
    Secret secret{text, text.toUcs4(), base64Spellings(text.toUtf8()), letters || text.size() <= longestWord};
    const std::lock_guard lock(kept().mutex);
    QList<Secret> &secrets = kept().*list;
    secrets.removeIf([&text](const Secret &known) { return known.text == text; });
    secrets.append(std::move(secret));
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
        const QList<uint> codes =
            QString::fromUtf8(QByteArray::fromPercentEncoding(text.first(length).toLatin1())).toUcs4();
        if (codes.size() == 1 && codes.front() != QChar::ReplacementCharacter) {
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
    const bool anywhere = secret.characters.size() >= shortest;
    return length > 0 && (anywhere || standsAlone(text, at, length)) ? length : 0;
}

QString withoutKnown(const QString &text, const QList<Secret> &secrets)
{
    QString result;
    qsizetype from = 0;
    for (qsizetype at = 0; at < text.size();) {
        const Beginnings beginnings = beginningsOf(QStringView(text).sliced(at));
        qsizetype length = 0;
        for (const Secret &secret : secrets) {
            length = std::max(length, lengthOfSecret(text, at, secret, beginnings));
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
    keep(&Kept::account, secret);
}

void keepCookieSecrets(const QByteArray &setCookie)
{
    const QList<QByteArray> fields = setCookie.split('\n');
    for (const QByteArray &field : fields) {
        const QByteArray pair = field.left(field.indexOf(';') < 0 ? field.size() : field.indexOf(';'));
        auto value = QString::fromUtf8(pair.sliced(pair.indexOf('=') + 1)).trimmed();
        if (value.size() > 2 && value.startsWith(u'"') && value.endsWith(u'"')) {
            value = value.sliced(1).chopped(1); // it may come back without them
        }
        if (value.size() >= shortest) { // else a mark, such as a language's, and no proof of anything
            keep(&Kept::cookies, value);
        }
    }
}

QString withoutSecrets(const QString &text, Words words)
{
    QList<Secret> secrets;
    {
        const std::lock_guard lock(kept().mutex);
        secrets = kept().account + kept().cookies;
    }
    if (words == Words::OursToo) {
        secrets.removeIf([](const Secret &secret) { return secret.likeAWord; });
    }
    return withoutKnown(text, secrets);
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
