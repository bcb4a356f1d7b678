// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/files/SettingsText.h"

#include "platform/linux/files/FileDescriptor.h"
#include "platform/linux/files/PrivateFile.h"

#include <QDateTime>
#include <QFile>
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
        memoryFile(text.startsWith(byteOrderMark) ? text.sliced(byteOrderMark.size()) : text);
    if (!file) {
        *shortage = qt_error_string(errno);
        return std::nullopt;
    }
    const QSettings settings(u"/proc/self/fd/%1"_s.arg(file.get()), QSettings::IniFormat);
    QVariantMap values;
    const QStringList keys = settings.allKeys(); // parses: the status says more only after this
    if (settings.status() == QSettings::AccessError) {
        *shortage = u"it cannot be opened"_s;
    }
    if (settings.status() != QSettings::NoError) {
        return std::nullopt;
    }
    for (const QString &key : keys) {
        values.insert(decodedKey(key), settings.value(key));
    }
    return values;
}

} // namespace brevok
