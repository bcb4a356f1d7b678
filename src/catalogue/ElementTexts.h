// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <cstring>
#include <string_view>

namespace brevok {

/// The texts of the elements of a JSON array, one after the other, as they stand there. The array is known to
/// be well formed.
class ElementTexts final {
public:
    explicit ElementTexts(std::string_view array)
        : m_at(array.data() + array.find('['))
        , m_end(array.data() + array.size())
    {
    }

    /// The next one; as many as there are elements.
    [[nodiscard]] std::string_view next()
    {
        const char *const start = m_at + 1;
        const char *at = start;
        for (int depth = 0; depth > 0 || (*at != ',' && *at != ']'); ++at) {
            switch (*at) {
            case '"':
                at = endOfString(at);
                break;
            case '{':
            case '[':
                ++depth;
                break;
            case '}':
            case ']':
                --depth;
                break;
            default:
                break;
            }
        }
        m_at = at;
        return {start, at};
    }

private:
    // A quote after an odd number of backslashes is part of the string.
    [[nodiscard]] const char *endOfString(const char *quote) const
    {
        const char *escapes = nullptr;
        do {
            quote = static_cast<const char *>(
                std::memchr(quote + 1, '"', static_cast<size_t>(m_end - quote - 1)));
            for (escapes = quote; escapes[-1] == '\\'; --escapes) { }
        } while ((quote - escapes) % 2 == 1);
        return quote;
    }

    const char *m_at;
    const char *m_end;
};

} // namespace brevok
