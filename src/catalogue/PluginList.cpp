// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "catalogue/PluginList.h"

#include "catalogue/ElementTexts.h"
#include "foundation/Log.h"
#include "foundation/StandardVersionComparator.h"

#include <QJsonDocument>
#include <QSet>
#include <QStringBuilder>
#include <QStringDecoder>

#include <algorithm>
#include <array>
#include <compare>
#include <memory_resource>
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
    Host,
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

// The builds of one plug-in stand together in a list, and share the texts that they have in common.
class SharedText final {
public:
    [[nodiscard]] const QString &of(const std::optional<dom::element> &value)
    {
        if (const std::string_view text = textOf(value); text != m_text) {
            m_text = text;
            m_string = stringOf(value);
            m_json = jsonString(m_string);
        }
        return m_string;
    }
    [[nodiscard]] const QByteArray &json() const { return m_json; } ///< the last one

private:
    std::string_view m_text;
    QString m_string;
    QByteArray m_json;
};

struct HostVersion {
    QString text;
    std::string utf8;
};

// The element as it is kept: word for word, so that numbers and keys stay as they are.
PackedRecord keptRecord(std::string_view element, const Fields &fields, const QByteArray &prefix)
{
    const bool plain = !fields[Prefixes] && !fields[CommandQueue] && !fields[SavedVersion];
    const size_t start = element.find('{');
    const std::string_view entries = element.substr(start, element.rfind('}') - start);
    const QByteArray rest = plain ? ",\"Prefixes\":[" + prefix + "]}" : QByteArray("}");
    QByteArray json;
    json.reserve(static_cast<qsizetype>(entries.size()) + rest.size());
    json.append(entries.data(), static_cast<qsizetype>(entries.size())).append(rest);
    if (entries.find(byteOrderMark) != std::string_view::npos) {
        json.replace(byteOrderMark.data(), "\\ufeff");
    }
    if (plain) {
        return PackedRecord::fromJson(json);
    }
    Record record = PackedRecord::fromJson(json);
    record.remove(PluginKeys::commandQueue);
    record.remove(PluginKeys::savedVersion);
    record.insert(PluginKeys::prefixes, QJsonArray{record.value(PluginKeys::prefix)});
    return PackedRecord::fromJson(PackedRecord(record).json());
}

bool isComplete(const Fields &fields)
{
    return !textOf(fields[Name]).empty() && !numberOf(fields[Size]).isUndefined()
        && !textOf(fields[Prefix]).empty() && !textOf(fields[Link]).empty()
        && !textOf(fields[Version]).empty() && !numberOf(fields[Host]).isUndefined()
        && !textOf(fields[Published]).empty();
}

bool isNewer(const QString &version, const QString &than)
{
    return version != than && std::is_gt(StandardVersionComparator::compareVersion(version, than));
}

// Selects of each plug-in, host version and prefix the newest build.
class Selection final {
public:
    Selection(dom::array elements, std::string_view array)
        : m_texts(array)
    {
        m_builds.reserve(static_cast<qsizetype>(elements.size()));
        m_positions.reserve(static_cast<qsizetype>(elements.size()));
        for (const dom::element element : elements) {
            add(element, m_texts.next());
        }
    }

    [[nodiscard]] QList<ListedBuild> &builds() { return m_builds; }
    [[nodiscard]] bool allValid() const { return m_allValid; }

private:
    void add(dom::element element, std::string_view text)
    {
        if (!element.is_object()) {
            refuse(u"plugin is not nsdirectory!"_s);
            return;
        }
        const Fields fields = fieldsOf(element);
        if (textOf(fields[Platform]) != viewOf(PluginKeys::mac)) {
            return;
        }
        if (!isComplete(fields)) {
            refuse(u"incomming plugin package do not containe necessary data!"_s);
            return;
        }
        const HostVersion &host = hostVersionOf(numberOf(fields[Host]));
        const QByteArrayView key = keyOf({host.utf8, textOf(fields[Name]), textOf(fields[Prefix])});
        const auto known = m_positions.constFind(key);
        if (known == m_positions.cend()) {
            m_positions.insert(key, m_builds.size());
            m_builds.append(buildOf(text, fields, host.text));
        } else if (!isNewer(m_builds[*known].definition->version, m_version.of(fields[Version]))) {
            m_builds[*known] = buildOf(text, fields, host.text);
        }
    }

    void refuse(const QString &line)
    {
        logLine(line);
        m_allValid = false;
    }

    // Thousands of builds are for a handful of them.
    const HostVersion &hostVersionOf(const QJsonValue &number)
    {
        HostVersion &host = m_hosts[number];
        if (host.utf8.empty()) {
            host.text = displayText(number);
            host.utf8 = host.text.toStdString();
        }
        return host;
    }

    // One text of them all, which lives as long as this.
    QByteArrayView keyOf(const std::array<std::string_view, 3> &parts)
    {
        const size_t size = parts[0].size() + parts[1].size() + parts[2].size();
        auto *const text = static_cast<char *>(m_keys.allocate(size, 1));
        char *end = text;
        for (const std::string_view part : parts) {
            end = std::copy(part.begin(), part.end(), end);
        }
        return {text, end};
    }

    ListedBuild buildOf(std::string_view text, const Fields &fields, const QString &host)
    {
        const QString &name = m_name.of(fields[Name]);
        const QString &version = m_version.of(fields[Version]);
        const QString &prefix = m_prefix.of(fields[Prefix]);
        return {.prefix = prefix,
            .definition =
                std::make_shared<PluginDefinition>(PluginDefinition{.key = buildKeyOf(host, name, version),
                    .name = name,
                    .version = version,
                    .hostVersion = integerValue(numberOf(fields[Host])),
                    .record = keptRecord(text, fields, m_prefix.json())})};
    }

    ElementTexts m_texts;
    QList<ListedBuild> m_builds;
    std::pmr::monotonic_buffer_resource m_keys;
    QHash<QByteArrayView, qsizetype> m_positions;
    QHash<QJsonValue, HostVersion> m_hosts;
    SharedText m_name;
    SharedText m_version;
    SharedText m_prefix;
    bool m_allValid = true;
};

bool haveOnePlaceEach(const QList<ListedBuild> &builds)
{
    // Most lists go from host to host.
    const auto isNotForLater = [](const ListedBuild &a, const ListedBuild &b) {
        return a.definition->hostVersion >= b.definition->hostVersion;
    };
    if (std::adjacent_find(builds.cbegin(), builds.cend(), isNotForLater) == builds.cend()) {
        return true;
    }
    QSet<std::pair<QStringView, qint64>> places;
    for (const ListedBuild &build : builds) {
        places.insert({build.definition->name, build.definition->hostVersion});
    }
    return places.size() == builds.size();
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
    Selection selection(elements, {json.constData(), static_cast<size_t>(json.size())});
    PluginList result{.allValid = selection.allValid()};
    QHash<QString, qsizetype> groups;
    for (ListedBuild &build : selection.builds()) {
        const auto known = groups.constFind(build.prefix);
        const qsizetype group = known == groups.cend() ? result.prefixes.size() : *known;
        if (known == groups.cend()) {
            groups.insert(build.prefix, group);
            result.prefixes.append({.prefix = build.prefix});
        }
        result.prefixes[group].builds.append(std::move(build));
    }
    for (ListedPrefix &group : result.prefixes) {
        group.onePlaceEach = haveOnePlaceEach(group.builds);
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
    const QJsonValue host = numberOf(fields[Host]);
    dom::array prefixes;
    const bool listsPrefixes = fields[Prefixes] && fields[Prefixes]->get(prefixes) == simdjson::SUCCESS;
    const bool hasPrefix = listsPrefixes
        && std::any_of(prefixes.begin(), prefixes.end(),
            [&](dom::element prefix) { return textOf(prefix) == textOf(fields[Prefix]); });
    return {
        .definition = {.key = key,
            .name = stringOf(fields[Name]),
            .version = stringOf(fields[Version]),
            .hostVersion = host.isUndefined() ? leadingInteger(stringOf(fields[Host])) : integerValue(host),
            .record = PackedRecord::fromJson(json)},
        .inOrder = hasPrefix && !fields[CommandQueue] && !fields[SavedVersion]};
}

} // namespace brevok
