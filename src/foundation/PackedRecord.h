// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "foundation/Record.h"

#include <QByteArray>

#include <concepts>
#include <initializer_list>
#include <utility>

namespace brevok {

/// @p text as a string in JSON, in quotes.
[[nodiscard]] QByteArray jsonString(const QString &text);

/// A record that stays the JSON text it came as until somebody changes it: of thousands most are only kept,
/// and stored as they came. Reading one builds the record each time.
class PackedRecord final {
public:
    PackedRecord() = default;
    PackedRecord(Record record)
        : m_record(std::move(record))
    {
    }
    PackedRecord(std::initializer_list<std::pair<QString, QJsonValue>> entries)
        : m_record(entries)
    {
    }
    /// @p json is an object; what is none reads as an empty record.
    [[nodiscard]] static PackedRecord fromJson(QByteArray json);

    /// Whether it is still the text it came as.
    [[nodiscard]] bool isPacked() const { return !m_json.isEmpty(); }
    [[nodiscard]] QByteArray json() const;
    [[nodiscard]] Record record() const;
    operator Record() const { return record(); }
    operator Record() { return record(); }
    operator QJsonValue() const { return record(); }
    /// For changes.
    [[nodiscard]] Record &unpacked();
    template <std::same_as<Record> Changed> operator Changed &() { return unpacked(); }

    [[nodiscard]] QJsonValue value(const auto &key) const { return record().value(key); }
    [[nodiscard]] bool contains(const auto &key) const { return record().contains(key); }
    void insert(const auto &key, const QJsonValue &value) { unpacked().insert(key, value); }
    void remove(const auto &key) { unpacked().remove(key); }

    friend bool operator==(const PackedRecord &a, const PackedRecord &b)
    {
        return (a.isPacked() && a.m_json == b.m_json) || a.record() == b.record();
    }
    friend bool operator==(const PackedRecord &a, const Record &b) { return a.record() == b; }

private:
    QByteArray m_json; ///< empty when the record stands beside it
    Record m_record;
};

} // namespace brevok
