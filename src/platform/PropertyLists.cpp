// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/PropertyLists.h"

#include "platform/PropertyListGuard.h"
#include "platform/RegularFile.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFileInfo>

#include <cstdlib>
#include <memory>

#include <plist/plist.h>

namespace brevok {

namespace {

constexpr qint64 sizeLimit = 4 * 1024 * 1024;
constexpr int depthLimit = 200;

struct Free {
    void operator()(void *memory) const { std::free(memory); } // NOLINT(*-no-malloc): memory of a C library
};
template <typename T> using Allocated = std::unique_ptr<T, Free>;

QJsonValue converted(plist_t node, int depth);

QJsonValue convertedArray(plist_t node, int depth)
{
    QJsonArray array;
    plist_array_iter place = nullptr;
    plist_array_new_iter(node, &place);
    const Allocated<void> owner(place);
    plist_t item = nullptr;
    for (plist_array_next_item(node, place, &item); item != nullptr;
         plist_array_next_item(node, place, &item)) {
        array.append(converted(item, depth + 1));
    }
    return array;
}

Record convertedDictionary(plist_t node, int depth)
{
    Record record;
    plist_dict_iter place = nullptr;
    plist_dict_new_iter(node, &place);
    const Allocated<void> owner(place);
    for (;;) {
        char *key = nullptr;
        plist_t item = nullptr;
        plist_dict_next_item(node, place, &key, &item);
        const Allocated<char> keyOwner(key);
        if (item == nullptr || key == nullptr) {
            return record;
        }
        record.insert(QString::fromUtf8(key), converted(item, depth + 1));
    }
}

QJsonValue convertedText(plist_t node)
{
    quint64 length = 0;
    static_assert(sizeof(quint64) == sizeof(uint64_t));
    const char *text = plist_get_string_ptr(node, reinterpret_cast<uint64_t *>(&length));
    return text == nullptr ? QString() : QString::fromUtf8(text, static_cast<qsizetype>(length));
}

QJsonValue convertedDate(plist_t node)
{
    int32_t seconds = 0;
    int32_t microseconds = 0;
    plist_get_date_val(node, &seconds, &microseconds);
    const QDateTime epoch(QDate(2001, 1, 1), QTime(0, 0), Qt::UTC);
    return epoch.addSecs(seconds).toString(Qt::ISODate);
}

QJsonValue convertedData(plist_t node)
{
    uint64_t length = 0;
    const char *data = plist_get_data_ptr(node, &length);
    return QString::fromLatin1(QByteArray::fromRawData(data, static_cast<qsizetype>(length)).toBase64());
}

QJsonValue convertedNumber(plist_t node, plist_type type)
{
    uint64_t whole = 0;
    uint8_t truth = 0;
    double real = 0;
    switch (type) {
    case PLIST_BOOLEAN:
        plist_get_bool_val(node, &truth);
        return truth != 0;
    case PLIST_REAL:
        plist_get_real_val(node, &real);
        return real;
    case PLIST_UID:
        plist_get_uid_val(node, &whole);
        break;
    default:
        plist_get_uint_val(node, &whole);
    }
    return static_cast<qint64>(whole); // the library keeps negative numbers as their two's complement
}

QJsonValue converted(plist_t node, int depth)
{
    const plist_type type = plist_get_node_type(node);
    switch (type) {
    case PLIST_STRING:
        return convertedText(node);
    case PLIST_BOOLEAN:
    case PLIST_UINT:
    case PLIST_REAL:
    case PLIST_UID:
        return convertedNumber(node, type);
    case PLIST_ARRAY:
        return depth < depthLimit ? convertedArray(node, depth) : QJsonValue();
    case PLIST_DICT:
        return depth < depthLimit ? QJsonValue(convertedDictionary(node, depth)) : QJsonValue();
    case PLIST_DATE:
        return convertedDate(node);
    case PLIST_DATA:
        return convertedData(node);
    case PLIST_KEY:
    case PLIST_NONE:
        break;
    }
    return {};
}

struct FreeList {
    void operator()(void *node) const { plist_free(node); }
};

QString textOr(const QJsonValue &value, const QString &otherwise)
{
    const QString text = nonEmptyString(value);
    return text.isEmpty() ? otherwise : text;
}

} // namespace

std::optional<Record> readPropertyList(const QString &path)
{
    const std::optional<QByteArray> bytes = readRegularFile(path, sizeLimit);
    if (!bytes || !isHarmlessPropertyList(*bytes)) {
        return std::nullopt;
    }
    plist_t list = nullptr;
    plist_from_memory(bytes->constData(), static_cast<uint32_t>(bytes->size()), &list);
    const std::unique_ptr<void, FreeList> owner(list);
    if (list == nullptr || plist_get_node_type(list) != PLIST_DICT) {
        return std::nullopt;
    }
    return convertedDictionary(list, 0);
}

std::optional<Record> bundleInformation(const QString &bundlePath)
{
    return readPropertyList(bundlePath + QStringLiteral("/Contents/Info.plist"));
}

MainBundle::MainBundle(QString bundlePath, QString resourceFolder)
    : m_bundlePath(std::move(bundlePath))
    , m_resourceFolder(std::move(resourceFolder))
    , m_information(readPropertyList(m_resourceFolder + QStringLiteral("/Info.plist")).value_or(Record()))
{
}

MainBundle MainBundle::ofRunningProgram()
{
    return ofExecutable(QCoreApplication::applicationFilePath());
}

MainBundle MainBundle::ofExecutable(const QString &executable)
{
    const QString folder = QFileInfo(executable).absolutePath() + QStringLiteral("/../share/tolvane-brevok");
    return {executable, QDir::cleanPath(folder)};
}

QString MainBundle::identifier() const
{
    return textOr(
        m_information.value(QStringLiteral("CFBundleIdentifier")), QStringLiteral("com.tolvane.brevok"));
}

QStringList MainBundle::displayNames() const
{
    const QString shortName =
        textOr(m_information.value(QStringLiteral("CFBundleName")), QStringLiteral("Tolvane Brevok"));
    return {shortName, textOr(m_information.value(QStringLiteral("CFBundleDisplayName")), shortName)};
}

QString MainBundle::version() const
{
    return nonEmptyString(m_information.value(QStringLiteral("CFBundleVersion")));
}

QString MainBundle::shortVersion() const
{
    return textOr(m_information.value(QStringLiteral("CFBundleShortVersionString")), version());
}

QString MainBundle::resourcePath(const QString &name, const QString &type) const
{
    const QString path = m_resourceFolder + u'/' + name + u'.' + type;
    return QFileInfo(path).isFile() ? path : QString();
}

} // namespace brevok
