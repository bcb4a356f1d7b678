// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/PropertyLists.h"

#include "platform/PropertyListGuard.h"
#include "platform/RegularFile.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>

#include <cmath>
#include <cstdlib>
#include <memory>

#include <plist/plist.h>

namespace brevok {

namespace {

constexpr qint64 sizeLimit = 4LL * 1024 * 1024;
constexpr int depthLimit = 200;

struct Free {
    void operator()(void *memory) const { std::free(memory); } // memory of a C library
};
template <typename T> using Allocated = std::unique_ptr<T, Free>;

// Writes the library's tree as JSON text: Qt's parser makes a record of it more than twice as fast as one can
// be filled member by member, and status runs read thousands of lists.
class JsonText {
public:
    explicit JsonText(qsizetype likelyLength) { m_text.reserve(likelyLength); }

    [[nodiscard]] const QByteArray &text() const { return m_text; }

    void appendMembers(plist_t dictionary, const QList<QByteArray> &keys)
    {
        m_text += '{';
        bool first = true;
        for (const QByteArray &key : keys) {
            if (plist_t item = plist_dict_get_item(dictionary, key.constData()); item != nullptr) {
                separate(std::exchange(first, false));
                appendText(key);
                m_text += ':';
                append(item, 1);
            }
        }
        m_text += '}';
    }

    void append(plist_t node, int depth)
    {
        const plist_type type = plist_get_node_type(node);
        if (type == PLIST_DICT && depth < depthLimit) {
            appendDictionary(node, depth);
        } else if (type == PLIST_ARRAY && depth < depthLimit) {
            appendArray(node, depth);
        } else if (type == PLIST_STRING) {
            uint64_t length = 0;
            const char *text = plist_get_string_ptr(node, &length);
            appendText({text, static_cast<qsizetype>(length)});
        } else {
            appendScalar(node, type);
        }
    }

private:
    void appendDictionary(plist_t node, int depth)
    {
        plist_dict_iter place = nullptr;
        plist_dict_new_iter(node, &place);
        const Allocated<void> owner(place);
        m_text += '{';
        for (bool first = true;; first = false) {
            char *key = nullptr;
            plist_t item = nullptr;
            plist_dict_next_item(node, place, &key, &item);
            const Allocated<char> keyOwner(key);
            if (item == nullptr || key == nullptr) {
                break;
            }
            separate(first);
            appendText(key);
            m_text += ':';
            append(item, depth + 1);
        }
        m_text += '}';
    }

    void appendArray(plist_t node, int depth)
    {
        plist_array_iter place = nullptr;
        plist_array_new_iter(node, &place);
        const Allocated<void> owner(place);
        m_text += '[';
        plist_t item = nullptr;
        plist_array_next_item(node, place, &item);
        for (bool first = true; item != nullptr; first = false) {
            separate(first);
            append(item, depth + 1);
            plist_array_next_item(node, place, &item);
        }
        m_text += ']';
    }

    void appendScalar(plist_t node, plist_type type)
    {
        uint64_t whole = 0;
        switch (type) {
        case PLIST_BOOLEAN:
            m_text += plist_bool_val_is_true(node) != 0 ? "true" : "false";
            return;
        case PLIST_REAL:
            appendReal(node);
            return;
        case PLIST_DATE:
            appendDate(node);
            return;
        case PLIST_DATA:
            appendData(node);
            return;
        case PLIST_UINT:
            plist_get_uint_val(node, &whole);
            break;
        case PLIST_UID:
            plist_get_uid_val(node, &whole);
            break;
        default:
            m_text += "null";
            return;
        }
        // The library keeps negative numbers as their two's complement.
        m_text += QByteArray::number(static_cast<qint64>(whole));
    }

    void appendReal(plist_t node)
    {
        double real = 0;
        plist_get_real_val(node, &real);
        m_text += std::isfinite(real) ? QByteArray::number(real, 'g', 17) : QByteArray("null");
    }

    void appendDate(plist_t node)
    {
        int32_t seconds = 0;
        int32_t microseconds = 0;
        plist_get_date_val(node, &seconds, &microseconds);
        constexpr qint64 epoch = 978307200; // 2001-01-01, where dates of property lists count from
        appendText(QDateTime::fromSecsSinceEpoch(epoch + seconds).toUTC().toString(Qt::ISODate).toLatin1());
    }

    void appendData(plist_t node)
    {
        uint64_t length = 0;
        const char *data = plist_get_data_ptr(node, &length);
        appendText(QByteArray::fromRawData(data, static_cast<qsizetype>(length)).toBase64());
    }

    void appendText(QByteArrayView text)
    {
        m_text += '"';
        const char *plain = text.begin();
        for (const char *c = text.begin(); c != text.end(); ++c) {
            if (const auto code = static_cast<quint8>(*c); code < 0x20 || code == '"' || code == '\\') {
                constexpr auto digits = "0123456789abcdef";
                m_text.append(plain, c - plain).append(code < 0x10 ? "\\u000" : "\\u00");
                if (code >= 0x10) {
                    m_text += digits[code >> 4U];
                }
                m_text += digits[code & 0xfU];
                plain = c + 1;
            }
        }
        m_text.append(plain, text.end() - plain).append('"');
    }

    void separate(bool first)
    {
        if (!first) {
            m_text += ',';
        }
    }

    QByteArray m_text;
};

struct FreeList {
    void operator()(void *node) const { plist_free(node); }
};

// Whether all texts of a list in XML are Unicode, which a character given as a number need not be.
bool isPlainUnicode(QByteArrayView xml)
{
    return QUtf8StringView(xml.data(), xml.size()).isValidUtf8() && !xml.contains("&#");
}

QString textOr(const QJsonValue &value, const QString &otherwise)
{
    const QString text = nonEmptyString(value);
    return text.isEmpty() ? otherwise : text;
}

} // namespace

std::optional<Record> readPropertyList(const QString &path, FileState *state)
{
    return readPropertyListValues(path, {}, state);
}

std::optional<Record> readPropertyListValues(
    const QString &path, const QList<QByteArray> &keys, FileState *state)
{
    const std::optional<QByteArray> bytes = readRegularFile(path, sizeLimit, state);
    if (!bytes || !isHarmlessPropertyList(*bytes)) {
        return std::nullopt;
    }
    plist_t list = nullptr;
    // The two forms of a bundle's list; reading whatever the library knows would take in more with each
    // version of it.
    const auto size = static_cast<uint32_t>(bytes->size());
    const bool binary = plist_is_binary(bytes->constData(), size) != 0;
    (binary ? &plist_from_bin : &plist_from_xml)(bytes->constData(), size, &list);
    const std::unique_ptr<void, FreeList> owner(list);
    if (list == nullptr || plist_get_node_type(list) != PLIST_DICT) {
        return std::nullopt;
    }
    JsonText json(bytes->size());
    if (!keys.isEmpty() && !binary && isPlainUnicode(*bytes)) {
        json.appendMembers(list, keys);
        return QJsonDocument::fromJson(json.text()).object();
    }
    json.append(list, 0);
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(json.text(), &error);
    // Texts that are no Unicode show here.
    return error.error == QJsonParseError::NoError ? std::optional(document.object()) : std::nullopt;
}

QString informationPath(const QString &bundlePath)
{
    return bundlePath + QStringLiteral("/Contents/Info.plist");
}

std::optional<Record> bundleInformation(const QString &bundlePath)
{
    return readPropertyList(informationPath(bundlePath));
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
    const QString file = type.isEmpty() ? name : name + u'.' + type;
    const QString path = m_resourceFolder + u'/' + file;
    return QFileInfo(path).isFile() ? path : QString();
}

} // namespace brevok
