// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/files/SettingsText.h"

#include "platform/linux/files/FileDescriptor.h"
#include "platform/linux/files/PrivateFile.h"

#include <QDateTime>
#include <QFile>
#include <QRegularExpression>
#include <QSettings>

#include <array>
#include <atomic>
#include <cerrno>

#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

// QSettings reads files only: this one is in memory, where no full disk is in its way.
FileDescriptor memoryFile(const QByteArray &text)
{
    static std::atomic<time_t> reads = 0;
    FileDescriptor file(::memfd_create("settings", MFD_CLOEXEC));
    if (!file || ::write(file.get(), text.constData(), static_cast<size_t>(text.size())) != text.size()) {
        return FileDescriptor(-1);
    }
    // It takes what has the name, size and time of something it knows for the same.
    const timespec time{.tv_sec = ++reads, .tv_nsec = 0};
    const std::array times{time, time};
    ::futimens(file.get(), times.data());
    return file;
}

// QSettings makes an object of any kind and size of a value that begins with "@Variant(", which has many
// spellings. With U+FDD0, a noncharacter, before it, a value is a text or a list of texts.
QByteArray guarded(const QByteArray &text)
{
    QByteArray result;
    for (qsizetype at = 0; at < text.size();) {
        const char c = text[at++];
        result += c;
        if (c == '=' || c == ',') {
            for (; at < text.size() && (text[at] == ' ' || text[at] == '\t'); ++at) {
                result += text[at];
            }
            result += "\uFDD0";
        }
    }
    return result;
}

QString withoutGuard(QString text)
{
    static const QRegularExpression guards(u"(^|[=,][ \t]*)\uFDD0"_s);
    return text.replace(guards, u"\\1"_s);
}

// What QSettings makes of a text of those kinds that it was given to write.
QVariant plainValue(const QString &guardedText)
{
    const QString text = withoutGuard(guardedText);
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

QVariant plainValue(const QVariant &value)
{
    if (value.typeId() != QMetaType::QStringList) {
        return plainValue(value.toString());
    }
    QStringList list;
    const QStringList elements = value.toStringList();
    for (const QString &element : elements) {
        list.append(plainValue(element).toString());
    }
    return list;
}

QString encodedKey(QString key)
{
    return key.replace(u'%', "%25"_L1).replace(u'/', "%2F"_L1).replace(u'\\', "%5C"_L1);
}

QString decodedKey(QString key)
{
    return key.replace("%5C"_L1, "\\"_L1).replace("%2F"_L1, "/"_L1).replace("%25"_L1, "%"_L1);
}

QVariant textForm(const QVariant &value)
{
    return value.typeId() == QMetaType::QDateTime
        ? QVariant(value.toDateTime().toUTC().toString(Qt::ISODateWithMs))
        : value;
}

bool holds(const QByteArray &text, const QVariantMap &values)
{
    QString shortage;
    const std::optional<QVariantMap> found = settingsValues(text, &shortage);
    if (!found) {
        return false;
    }
    for (auto value = values.cbegin(); value != values.cend(); ++value) {
        if (!sameInSettings(found->value(value.key()), *value)) {
            return false;
        }
    }
    return true;
}

} // namespace

bool sameInSettings(const QVariant &found, const QVariant &value)
{
    const QVariant wanted = textForm(value);
    return wanted.typeId() == QMetaType::QStringList ? found.toStringList() == wanted.toStringList()
                                                     : textForm(found).toByteArray() == wanted.toByteArray();
}

bool writeSettings(const QString &path, const QVariantMap &values, QString *reason)
{
    QFile::remove(path);
    {
        QSettings settings(path, QSettings::IniFormat);
        for (auto value = values.cbegin(); value != values.cend(); ++value) {
            settings.setValue(encodedKey(value.key()), textForm(*value));
        }
        settings.sync();
    }
    // It tells neither why it failed nor that a disk filled up while it wrote.
    QFile written(path);
    if (values.isEmpty() && !written.exists() && !written.open(QIODevice::WriteOnly)) {
        *reason = written.errorString();
        return false;
    }
    written.close();
    if (!written.open(QIODevice::ReadWrite)
        || !written.setPermissions(QFile::ReadOwner | QFile::WriteOwner)) {
        *reason = whyNotWritten(path);
        return false;
    }
    if (!holds(written.readAll(), values)) {
        *reason = whyNotWritten(path);
        return false;
    }
    return true;
}

std::optional<QVariantMap> settingsValues(const QByteArray &text, QString *shortage)
{
    if (text.contains('\0')) {
        return std::nullopt;
    }
    const QByteArray byteOrderMark("\xEF\xBB\xBF"); // which some editors begin a file with
    const FileDescriptor file =
        memoryFile(guarded(text.startsWith(byteOrderMark) ? text.sliced(byteOrderMark.size()) : text));
    if (!file) {
        *shortage = qt_error_string(errno);
        return std::nullopt;
    }
    const QSettings settings(u"/proc/self/fd/%1"_s.arg(file.get()), QSettings::IniFormat);
    QVariantMap values;
    QStringList keys = settings.allKeys(); // parses: the status says more only after this
    keys.removeAll(QString()); // which QSettings reads, but nobody can ask it for
    if (settings.status() == QSettings::AccessError) {
        *shortage = u"it cannot be opened"_s;
    }
    if (settings.status() != QSettings::NoError) {
        return std::nullopt;
    }
    for (const QString &key : std::as_const(keys)) {
        values.insert(decodedKey(withoutGuard(key)), plainValue(settings.value(key)));
    }
    return values;
}

} // namespace brevok
