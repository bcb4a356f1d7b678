// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/PropertyListGuard.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <vector>

namespace brevok {

namespace {

// As many containers may nest in the worst case; the library needs less than 200 bytes of stack for each.
constexpr int containerLimit = 10000;
constexpr int depthLimit = 200;
constexpr qint64 unfoldedLimit = 64LL * 1024 * 1024;
constexpr qint64 nodeSize = 128;

bool startsWith(QByteArrayView bytes, const char *tag, size_t length)
{
    return bytes.size() >= static_cast<qsizetype>(length) && std::memcmp(bytes.data(), tag, length) == 0;
}

// Counting all openings needs no parser that could be led astray by comments or character data.
bool hasFewContainers(QByteArrayView xml)
{
    int containers = 0;
    while (const void *found = std::memchr(xml.data(), '<', static_cast<size_t>(xml.size()))) {
        xml = xml.sliced(static_cast<const char *>(found) - xml.data() + 1);
        if (startsWith(xml, "dict", 4) || startsWith(xml, "array", 5)) {
            if (++containers > containerLimit) {
                return false;
            }
        }
    }
    return true;
}

// Follows the references of a binary property list and adds up what they unfold to.
class BinaryListSize {
public:
    explicit BinaryListSize(QByteArrayView bytes)
        : m_bytes(bytes)
    {
    }

    bool isHarmless()
    {
        constexpr qsizetype trailerSize = 32;
        if (m_bytes.size() < trailerSize + 8) {
            return true; // too short to name an object
        }
        const qsizetype trailer = m_bytes.size() - trailerSize;
        m_offsetSize = number(trailer + 6, 1).value_or(0);
        m_referenceSize = number(trailer + 7, 1).value_or(0);
        const auto count = number(trailer + 8, 8);
        const auto root = number(trailer + 16, 8);
        const auto table = number(trailer + 24, 8);
        if (!count || !root || !table || m_offsetSize < 1 || m_offsetSize > 8 || m_referenceSize < 1
            || m_referenceSize > 8 || *table > trailer || *count > (trailer - *table) / m_offsetSize) {
            return false;
        }
        m_table = *table;
        m_unfolded.assign(static_cast<size_t>(*count), 0);
        return unfolded(*root, 0).has_value();
    }

private:
    // A big-endian number; nothing when it lies outside or does not fit.
    [[nodiscard]] std::optional<qint64> number(qint64 place, qint64 size) const
    {
        if (place < 0 || size > 8 || place > m_bytes.size() - size) {
            return std::nullopt;
        }
        quint64 value = 0;
        for (qint64 i = 0; i < size; ++i) {
            value = value << 8U | static_cast<quint8>(m_bytes[place + i]);
        }
        return value >> 63U ? std::nullopt : std::optional(static_cast<qint64>(value));
    }

    // The length in an object's head; moves @p place behind it.
    std::optional<qint64> length(qint64 *place) const
    {
        const auto head = number((*place)++, 1);
        if (!head) {
            return std::nullopt;
        }
        if ((*head & 0xf) != 0xf) {
            return *head & 0xf;
        }
        const auto kind = number((*place)++, 1);
        if (!kind || *kind >> 4 != 1 || (*kind & 0xf) > 3) {
            return std::nullopt;
        }
        const qint64 size = qint64(1) << (*kind & 0xf);
        const auto value = number(*place, size);
        *place += size;
        return value;
    }

    // The bytes that the object and all below it take when unfolded; nothing when they are too many, too deep
    // or lie outside.
    std::optional<qint64> unfolded(qint64 object, int depth)
    {
        if (object < 0 || object >= static_cast<qint64>(m_unfolded.size()) || depth > depthLimit) {
            return std::nullopt;
        }
        qint64 &known = m_unfolded[static_cast<size_t>(object)];
        if (known != 0) {
            return known;
        }
        const auto place = number(m_table + object * m_offsetSize, m_offsetSize);
        const auto head = place ? number(*place, 1) : std::nullopt;
        if (!head) {
            return std::nullopt;
        }
        const qint64 kind = *head >> 4;
        const bool leaf = kind < 0xa;
        const auto size = leaf ? leafSize(kind, *place) : containerSize(kind, *place, depth);
        if (size) {
            known = *size;
        }
        return size;
    }

    [[nodiscard]] std::optional<qint64> leafSize(qint64 kind, qint64 place) const
    {
        if (kind < 4 || kind > 6) {
            return nodeSize;
        }
        const auto payload = length(&place);
        return payload && *payload <= m_bytes.size() ? std::optional(nodeSize + *payload * 3) : std::nullopt;
    }

    std::optional<qint64> containerSize(qint64 kind, qint64 place, int depth)
    {
        auto count = length(&place);
        if (!count || *count > m_bytes.size()) {
            return std::nullopt;
        }
        constexpr qint64 dictionary = 0xd;
        const qint64 references = kind == dictionary ? *count * 2 : *count;
        qint64 sum = nodeSize;
        for (qint64 i = 0; i < references; ++i) {
            const auto child = number(place + i * m_referenceSize, m_referenceSize);
            const bool isKey = kind == dictionary && i < *count;
            const auto size = child ? unfolded(*child, depth + 1) : std::nullopt;
            if (!size || (isKey && !isUsableKey(*child)) || (sum += *size) > unfoldedLimit) {
                return std::nullopt;
            }
        }
        return sum;
    }

    // A text without NUL: the library ends the program over any other.
    [[nodiscard]] bool isUsableKey(qint64 object) const
    {
        constexpr qint64 latin = 0x5;
        constexpr qint64 utf16 = 0x6;
        qint64 place = number(m_table + object * m_offsetSize, m_offsetSize).value_or(-1);
        const qint64 kind = number(place, 1).value_or(0) >> 4;
        const qint64 unit = kind == utf16 ? 2 : 1;
        const qint64 units = length(&place).value_or(-1);
        if ((kind != latin && kind != utf16) || units < 0 || units > (m_bytes.size() - place) / unit) {
            return false;
        }
        for (qint64 i = 0; i < units; ++i) {
            if (number(place + i * unit, unit) == 0) {
                return false;
            }
        }
        return true;
    }

    QByteArrayView m_bytes;
    qint64 m_offsetSize = 0;
    qint64 m_referenceSize = 0;
    qint64 m_table = 0;
    std::vector<qint64> m_unfolded; // by object, 0 while not known
};

} // namespace

bool isHarmlessPropertyList(QByteArrayView bytes)
{
    return startsWith(bytes, "bplist", 6) ? BinaryListSize(bytes).isHarmless() : hasFewContainers(bytes);
}

} // namespace brevok
