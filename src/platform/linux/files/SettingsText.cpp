// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/files/SettingsText.h"

#include "foundation/Record.h"

#include <QDateTime>
#include <QString>
#include <QStringList>

#include <algorithm>
#include <utility>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

// What stands for a character after a backslash, and the character; the last two need no backslash.
constexpr QStringView escapeNames = u"abfnrtv\"\\?'";
constexpr QStringView escapedCharacters = u"\a\b\f\n\r\t\v\"\\?'";
constexpr qsizetype escapesWritten = 9;

bool isBlank(QChar c)
{
    return c == u' ' || c == u'\t';
}

bool isLineEnd(QChar c)
{
    return c == u'\n' || c == u'\r';
}

// CR LF, or the other way around.
bool isLineEnd(QStringView pair)
{
    return pair.size() == 2 && isLineEnd(pair[0]) && isLineEnd(pair[1]) && pair[0] != pair[1];
}

bool isDigit(QChar c, int base)
{
    return (c >= u'0' && c <= (base == 8 ? u'7' : u'9'))
        || (base == 16 && ((c >= u'a' && c <= u'f') || (c >= u'A' && c <= u'F')));
}

struct Line {
    QStringView text;
    qsizetype sign = -1; ///< where its equals sign is, if any
};

// The next line that says something. It goes on within quotes and after a backslash.
Line nextLine(QStringView text, qsizetype &at)
{
    for (bool inComment = false; at < text.size(); ++at) {
        inComment = !isLineEnd(text[at]) && (inComment || text[at] == u';');
        if (!inComment && !isBlank(text[at]) && !isLineEnd(text[at])) {
            break;
        }
    }
    const QStringView rest = text.sliced(at);
    Line line;
    qsizetype length = 0;
    for (bool inQuotes = false; length < rest.size(); ++length) {
        const QChar c = rest[length];
        if (!inQuotes && (c == u';' || isLineEnd(c))) {
            break;
        }
        if (c == u'\\') {
            length += isLineEnd(rest.mid(length + 1, 2)) ? 2 : 1;
        } else if (c == u'"') {
            inQuotes = !inQuotes;
        } else if (c == u'=' && !inQuotes && line.sign < 0) {
            line.sign = length;
        }
    }
    line.text = rest.first(std::min(length, rest.size()));
    at += line.text.size();
    return line;
}

// The name of a group or a key.
QString readName(QStringView text)
{
    QString name;
    for (qsizetype at = 0; at < text.size(); ++at) {
        QChar c = text[at] == u'\\' ? u'/' : text[at];
        if (c == u'%') {
            const bool isLong = text.mid(at + 1, 1) == u"U";
            const QStringView digits = isLong ? text.mid(at + 2, 4) : text.mid(at + 1, 2);
            bool isNumber = false;
            const ushort number = digits.toUShort(&isNumber, 16);
            if (isNumber && digits.size() == (isLong ? 4 : 2)) {
                c = QChar(number);
                at += isLong ? 5 : 2;
            }
        }
        name += c;
    }
    return name;
}

// What the keys of a group begin with; nothing when @p line does not end its name.
std::optional<QString> readGroup(QStringView line)
{
    const qsizetype end = line.indexOf(u']');
    if (end < 0) {
        return std::nullopt;
    }
    const QStringView name = line.sliced(1, end - 1).trimmed();
    if (name.compare("general"_L1, Qt::CaseInsensitive) == 0) {
        return QString();
    }
    const bool isNamedGeneral = name.compare("%general"_L1, Qt::CaseInsensitive) == 0;
    return (isNamedGeneral ? name.sliced(1).toString() : readName(name)) + u'/';
}

// Puts what an escape stands for behind @p element, @p at behind its backslash; unknown ones stand for
// nothing.
void readEscape(QStringView text, qsizetype &at, QString &element)
{
    const QChar c = at < text.size() ? text[at++] : u'\n';
    if (const qsizetype name = escapeNames.indexOf(c); name >= 0) {
        element += escapedCharacters[name];
    } else if (c == u'x' || isDigit(c, 8)) {
        const int base = c == u'x' ? 16 : 8;
        const qsizetype start = base == 16 ? at : --at;
        ushort number = 0;
        for (; at < text.size() && isDigit(text[at], base); ++at) {
            const int letters = text[at] > u'9' ? 9 : 0; // "a", whose last four bits are one, is ten
            number = static_cast<ushort>(number * base + (text[at].unicode() & 0xF) + letters);
        }
        if (at > start) {
            element += QChar(number);
        }
    } else if (isLineEnd(text.mid(at - 1, 2))) {
        ++at;
    }
}

// What is said by a text that may stand for another kind of value.
QVariant plainValue(const QString &text)
{
    const auto inside = [&text](QLatin1StringView kind) -> std::optional<QString> {
        const bool is = text.startsWith(kind) && text.endsWith(u')');
        return is ? std::optional(text.sliced(kind.size()).chopped(1)) : std::nullopt;
    };
    if (const auto bytes = inside("@ByteArray("_L1)) {
        return bytes->toLatin1();
    }
    if (const auto characters = inside("@String("_L1)) {
        return *characters;
    }
    return text == "@Invalid()"_L1 ? QVariant() : QVariant(text.startsWith("@@"_L1) ? text.sliced(1) : text);
}

QVariant readValue(QStringView text)
{
    QVariantList elements;
    QString element;
    qsizetype escaped = 0; // of the element, up to its last escape
    bool inQuotes = false;
    bool hadQuotes = false;
    bool skipsBlanks = true;
    const auto endElement = [&] {
        while (!hadQuotes && element.size() > escaped && isBlank(element.back())) {
            element.chop(1);
        }
        elements.append(plainValue(wellFormed(std::exchange(element, {}))));
        hadQuotes = false;
        escaped = 0;
    };
    for (qsizetype at = 0; at < text.size();) {
        const QChar c = text[at++];
        if (skipsBlanks && isBlank(c)) {
            continue;
        }
        const bool isComma = c == u',' && !inQuotes;
        skipsBlanks = isComma || (c == u'"' && inQuotes);
        if (c == u'\\') {
            readEscape(text, at, element);
            escaped = element.size();
        } else if (c == u'"') {
            inQuotes = !inQuotes;
            hadQuotes = true;
        } else if (isComma) {
            endElement();
        } else {
            element += c;
        }
    }
    endElement();
    return elements.size() == 1 ? elements.constFirst() : QVariant(elements).toStringList();
}

// A name in which QSettings found a slash would be in a group for it, so the file has "%2F" for one, and the
// percent sign of that is escaped in turn.
QString withGroups(QString key)
{
    return key.replace("%5C"_L1, "\\"_L1).replace("%2F"_L1, "/"_L1).replace("%25"_L1, "%"_L1);
}

QString escapedKey(const QString &key)
{
    QString result;
    for (const QChar c : key) {
        const ushort code = c.unicode();
        const QString number = QString::number(code, 16).toUpper();
        if (code < 0x80 && (c.isLetterOrNumber() || c == u'_' || c == u'-' || c == u'.')) {
            result += c;
        } else if (c == u'%' || c == u'/' || c == u'\\') {
            result += "%25"_L1 + number;
        } else {
            result += code <= 0xFF ? u'%' + number.rightJustified(2, u'0')
                                   : "%U"_L1 + number.rightJustified(4, u'0');
        }
    }
    return result;
}

QString escapedText(const QString &text)
{
    const bool inAscii = text.startsWith("@ByteArray("_L1); // whose characters are bytes
    QString result;
    bool afterNumber = false; // which a digit would lengthen
    for (const QChar c : text) {
        const ushort code = c.unicode();
        const qsizetype name = escapedCharacters.first(escapesWritten).indexOf(c);
        const bool asNumber =
            name < 0 && (code <= 0x1F || (inAscii && code >= 0x7F) || (afterNumber && isDigit(c, 16)));
        if (asNumber) {
            constexpr auto digits = u"0123456789abcdef";
            result += code == 0 ? "\\"_L1 : "\\x"_L1;
            if (code > 0xF) {
                result += digits[code >> 4U];
            }
            result += digits[code & 0xFU];
        } else if (name >= 0) {
            result += u'\\';
            result += escapeNames[name];
        } else {
            result += c;
        }
        afterNumber = asNumber;
    }
    const bool needsQuotes = result.startsWith(u' ') || result.endsWith(u' ')
        || std::any_of(
            text.cbegin(), text.cend(), [](QChar c) { return c == u';' || c == u',' || c == u'='; });
    return needsQuotes ? u'"' + result + u'"' : result;
}

QVariant textForm(const QVariant &value)
{
    return value.typeId() == QMetaType::QDateTime
        ? QVariant(value.toDateTime().toUTC().toString(Qt::ISODateWithMs))
        : value;
}

QString escapedValue(const QVariant &value)
{
    if (!value.isValid()) {
        return u"@Invalid()"_s;
    }
    if (value.typeId() == QMetaType::QByteArray) {
        return escapedText("@ByteArray("_L1 + QString::fromLatin1(value.toByteArray()) + u')');
    }
    if (value.typeId() == QMetaType::QStringList) {
        QStringList elements;
        const QStringList texts = value.toStringList();
        for (const QString &element : texts) {
            elements.append(escapedValue(element));
        }
        return elements.isEmpty() ? u"@Invalid()"_s : elements.join(", "_L1);
    }
    const QString text = textForm(value).toString();
    if (text.contains(u'\0')) {
        return escapedText("@String("_L1 + text + u')');
    }
    return escapedText(text.startsWith(u'@') ? u'@' + text : text);
}

} // namespace

QByteArray settingsText(const QVariantMap &values)
{
    QString text = u"[General]\n"_s;
    for (auto value = values.cbegin(); value != values.cend(); ++value) {
        text += escapedKey(value.key()) + u'=' + escapedValue(*value) + u'\n';
    }
    return text.toUtf8();
}

std::optional<QVariantMap> settingsValues(const QByteArray &bytes)
{
    if (bytes.contains('\0')) {
        return std::nullopt;
    }
    const QString text = QString::fromUtf8(bytes); // without a mark of byte order, which some editors write
    QVariantMap values;
    QString group;
    for (qsizetype at = 0; at < text.size();) {
        const Line line = nextLine(text, at);
        if (line.text.startsWith(u'[')) {
            const std::optional<QString> named = readGroup(line.text);
            if (!named) {
                return std::nullopt;
            }
            group = *named;
        } else if (line.sign >= 0) {
            const QString name = group + readName(line.text.first(line.sign).trimmed());
            if (!name.isEmpty()) {
                values.insert(withGroups(name), readValue(line.text.sliced(line.sign + 1)));
            }
        } else if (!line.text.isEmpty()) {
            return std::nullopt;
        }
    }
    return values;
}

bool sameInSettings(const QVariant &found, const QVariant &value)
{
    const QVariant wanted = textForm(value);
    return wanted.typeId() == QMetaType::QStringList ? found.toStringList() == wanted.toStringList()
                                                     : textForm(found).toByteArray() == wanted.toByteArray();
}

} // namespace brevok
