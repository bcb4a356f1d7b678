// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "catalogue/PluginList.h"

#include "foundation/Log.h"
#include "foundation/StandardVersionComparator.h"

#include <QJsonDocument>
#include <QSet>
#include <QStringBuilder>
#include <QStringDecoder>

#include <algorithm>
#include <array>
#include <compare>
#include <string_view>
#include <utility>

#include <simdjson.h>

namespace brevok {

using namespace Qt::StringLiterals;
namespace dom = simdjson::dom;

namespace {

enum Field : size_t {
    Name,
    Prefix,
    Version,
    HostVersion,
    Size,
    Link,
    Published,
    Platform,
    Prefixes,
    CommandQueue,
    SavedVersion,
    fieldCount
};
constexpr std::array<QLatin1StringView, fieldCount> fieldKeys{PluginKeys::name, PluginKeys::prefix,
    PluginKeys::version, PluginKeys::hostVersion, PluginKeys::size, PluginKeys::link, PluginKeys::published,
    PluginKeys::platform, PluginKeys::prefixes, PluginKeys::commandQueue, PluginKeys::savedVersion};

constexpr std::string_view viewOf(QLatin1StringView key)
{
    return {key.data(), static_cast<size_t>(key.size())};
}

using Fields = std::array<std::optional<dom::element>, fieldCount>;

// Of a key that stands twice the last value counts, as when Qt reads it.
Fields fieldsOf(dom::object object)
{
    Fields fields;
    for (const dom::key_value_pair entry : object) {
        for (size_t i = 0; i < fieldCount; ++i) {
            if (entry.key == viewOf(fieldKeys[i])) {
                fields[i] = entry.value;
                break;
            }
        }
    }
    return fields;
}

constexpr std::string_view byteOrderMark("\xEF\xBB\xBF");

// Empty when it is no text.
std::string_view textOf(const std::optional<dom::element> &value)
{
    return value && value->is_string() ? std::string_view(*value) : std::string_view();
}

QString stringOf(const std::optional<dom::element> &value)
{
    const std::string_view text = textOf(value);
    const QByteArrayView bytes(text.data(), static_cast<qsizetype>(text.size()));
    // Qt would take a mark of byte order away from the start.
    return text.starts_with(byteOrderMark)
        ? QString(QStringDecoder(QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom)(bytes))
        : QString::fromUtf8(bytes);
}

// As isNumber() of a record's value has it; undefined when it is none.
QJsonValue numberOf(const std::optional<dom::element> &value)
{
    if (value && value->is_bool()) {
        return bool(*value);
    }
    if (value && value->is_int64()) {
        return qint64(int64_t(*value));
    }
    return value && value->is_number() ? QJsonValue(double(*value)) : QJsonValue(QJsonValue::Undefined);
}

QString buildKeyOf(const QString &host, const QString &name, const QString &version)
{
    return host % u':' % name % u'_' % version;
}

// The texts of an array's elements, one after the other. The array is known to be well formed.
class ElementTexts final {
public:
    explicit ElementTexts(std::string_view array)
        : m_array(array)
        , m_at(array.find('['))
    {
    }

    [[nodiscard]] std::string_view next()
    {
        const size_t start = ++m_at;
        for (int depth = 0; depth > 0 || (m_array[m_at] != ',' && m_array[m_at] != ']'); ++m_at) {
            if (const char c = m_array[m_at]; c == '"') {
                skipString();
            } else if (c == '{' || c == '[') {
                ++depth;
            } else if (c == '}' || c == ']') {
                --depth;
            }
        }
        return m_array.substr(start, m_at - start);
    }

private:
    void skipString()
    {
        while (m_array[++m_at] != '"') {
            m_at += m_array[m_at] == '\\' ? 1 : 0;
        }
    }

    std::string_view m_array;
    size_t m_at;
};

// The element as it is kept: word for word, so that numbers and keys stay as they are.
PackedRecord keptRecord(std::string_view element, const Fields &fields)
{
    const bool plain = !fields[Prefixes] && !fields[CommandQueue] && !fields[SavedVersion];
    const auto start = static_cast<qsizetype>(element.find('{'));
    const auto end = static_cast<qsizetype>(element.rfind('}'));
    QByteArray json = QByteArrayView(element.data(), end).sliced(start).toByteArray();
    json += plain ? ",\"Prefixes\":[" + simdjson::minify(*fields[Prefix]) + "]}" : std::string("}");
    json.replace(byteOrderMark.data(), "\\ufeff"); // its own, and the prefix's that was an escape
    if (plain) {
        return PackedRecord::fromJson(json);
    }
    Record record = PackedRecord::fromJson(json);
    record.remove(PluginKeys::commandQueue);
    record.remove(PluginKeys::savedVersion);
    record.insert(PluginKeys::prefixes, QJsonArray{record.value(PluginKeys::prefix)});
    return PackedRecord::fromJson(PackedRecord(record).json());
}

// Nothing when something that must be there is not.
std::optional<ListedBuild> listedBuild(std::string_view element, const Fields &fields, QString &host)
{
    const QJsonValue hostVersion = numberOf(fields[HostVersion]);
    const bool complete = !textOf(fields[Name]).empty() && !numberOf(fields[Size]).isUndefined()
        && !textOf(fields[Prefix]).empty() && !textOf(fields[Link]).empty()
        && !textOf(fields[Version]).empty() && !hostVersion.isUndefined()
        && !textOf(fields[Published]).empty();
    if (!complete) {
        return std::nullopt;
    }
    host = displayText(hostVersion);
    const QString name = stringOf(fields[Name]);
    const QString version = stringOf(fields[Version]);
    return ListedBuild{.prefix = stringOf(fields[Prefix]),
        .definition = {.key = buildKeyOf(host, name, version),
            .name = name,
            .version = version,
            .hostVersion = integerValue(hostVersion),
            .record = keptRecord(element, fields)}};
}

bool isNewer(const QString &version, const QString &than)
{
    return version != than && std::is_gt(StandardVersionComparator::compareVersion(version, than));
}

QList<ListedBuild> selectedBuilds(dom::array elements, ElementTexts texts, bool &allValid)
{
    QList<ListedBuild> selected;
    QHash<QString, qsizetype> positions;
    selected.reserve(static_cast<qsizetype>(elements.size()));
    positions.reserve(static_cast<qsizetype>(elements.size()));
    const auto refuse = [&allValid](const QString &line) {
        logLine(line);
        allValid = false;
    };
    for (const dom::element element : elements) {
        const std::string_view text = texts.next();
        if (!element.is_object()) {
            refuse(u"plugin is not nsdirectory!"_s);
            continue;
        }
        const Fields fields = fieldsOf(element);
        if (textOf(fields[Platform]) != viewOf(PluginKeys::mac)) {
            continue;
        }
        QString host;
        std::optional<ListedBuild> build = listedBuild(text, fields, host);
        if (!build) {
            refuse(u"incomming plugin package do not containe necessary data!"_s);
            continue;
        }
        const QString key = host % build->definition.name % build->prefix;
        const auto known = positions.constFind(key);
        if (known == positions.cend()) {
            positions.insert(key, selected.size());
            selected.append(std::move(*build));
        } else if (!isNewer(selected[*known].definition.version, build->definition.version)) {
            selected[*known] = std::move(*build);
        }
    }
    return selected;
}

} // namespace

QString buildKey(const Record &definition)
{
    return buildKeyOf(displayText(definition.value(PluginKeys::hostVersion)),
        displayText(definition.value(PluginKeys::name)), displayText(definition.value(PluginKeys::version)));
}

std::optional<QByteArray> archiveChecksum(const Record &definition)
{
    constexpr qsizetype size = 32;
    const QJsonValue value = definition.value(PluginKeys::checksum);
    if (value.isUndefined() || value.isNull()) {
        return QByteArray();
    }
    const QByteArray digits = value.toString().toUtf8();
    const QByteArray checksum = QByteArray::fromHex(digits);
    // Whatever is no digit is left out there.
    return checksum.size() == size && digits.size() == 2 * size ? std::optional(checksum) : std::nullopt;
}

std::optional<PluginList> newestBuilds(const QByteArray &json)
{
    dom::parser parser;
    dom::array elements;
    if (parser.parse(json.constData(), static_cast<size_t>(json.size())).get(elements) != simdjson::SUCCESS) {
        return std::nullopt;
    }
    PluginList result;
    QList<ListedBuild> selected = selectedBuilds(
        elements, ElementTexts({json.constData(), static_cast<size_t>(json.size())}), result.allValid);
    QHash<QString, qsizetype> groups;
    for (ListedBuild &build : selected) {
        const auto known = groups.constFind(build.prefix);
        const qsizetype group = known == groups.cend() ? result.prefixes.size() : *known;
        if (known == groups.cend()) {
            groups.insert(build.prefix, group);
            result.prefixes.append({.prefix = build.prefix});
        }
        result.prefixes[group].builds.append(std::move(build));
    }
    for (ListedPrefix &group : result.prefixes) {
        QSet<std::pair<QStringView, qint64>> places;
        for (const ListedBuild &build : std::as_const(group.builds)) {
            places.insert({build.definition.name, build.definition.hostVersion});
        }
        group.onePlaceEach = places.size() == group.builds.size();
    }
    return result;
}

struct StoredBuildReader::Parser {
    dom::parser parser;
};

StoredBuildReader::StoredBuildReader()
    : m_parser(std::make_unique<Parser>())
{
}

StoredBuildReader::~StoredBuildReader() = default;

StoredBuild StoredBuildReader::read(const QString &key, const PackedRecord &record)
{
    const QByteArray json = record.json();
    dom::object object;
    if (m_parser->parser.parse(json.constData(), static_cast<size_t>(json.size())).get(object)
        != simdjson::SUCCESS) {
        return {};
    }
    const Fields fields = fieldsOf(object);
    const QJsonValue host = numberOf(fields[HostVersion]);
    dom::array prefixes;
    const bool listsPrefixes = fields[Prefixes] && fields[Prefixes]->get(prefixes) == simdjson::SUCCESS;
    const bool hasPrefix = listsPrefixes
        && std::any_of(prefixes.begin(), prefixes.end(),
            [&](dom::element prefix) { return textOf(prefix) == textOf(fields[Prefix]); });
    return {.definition = {.key = key,
                .name = stringOf(fields[Name]),
                .version = stringOf(fields[Version]),
                .hostVersion =
                    host.isUndefined() ? leadingInteger(stringOf(fields[HostVersion])) : integerValue(host),
                .record = PackedRecord::fromJson(json)},
        .inOrder = hasPrefix && !fields[CommandQueue] && !fields[SavedVersion]};
}

} // namespace brevok
