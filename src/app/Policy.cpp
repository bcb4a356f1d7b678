// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "app/Policy.h"

#include "foundation/Settings.h"
#include "foundation/UntrustedText.h"
#include "platform/RegularFile.h"

#include <QDir>
#include <QSet>
#include <QStringDecoder>

#include <filesystem>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 sizeLimit = 1024LL * 1024;

// Takes the lines of files, in order, into a policy. QSettings would do for the format, but tells no lines
// and passes over what it does not understand.
class Reader {
public:
    void begin(const QString &file)
    {
        m_file = file;
        m_group.clear();
    }

    /// @return what is wrong with the line
    std::optional<QString> take(int number, QStringView line)
    {
        const QString place = u"%1, line %2"_s.arg(m_file).arg(number);
        if (line.isEmpty() || line.startsWith(u'#') || line.startsWith(u';')) {
            return std::nullopt;
        }
        if (line.startsWith(u'[')) {
            m_group = line.toString();
            const bool known =
                QStringList{u"[Service]"_s, u"[Applications]"_s, u"[Settings]"_s, packages}.contains(m_group);
            return known ? std::nullopt : std::optional(u"%1: there is no group '%2'"_s.arg(place, m_group));
        }
        const qsizetype sign = line.indexOf(u'=');
        if (sign < 0) {
            return u"%1: '%2' is neither [GROUP] nor KEY=VALUE"_s.arg(place, line);
        }
        const QString key = line.first(sign).trimmed().toString();
        const QString value = line.sliced(sign + 1).trimmed().toString();
        const QString source = u"%1: %2"_s.arg(place, key);
        if (value.isEmpty() && m_group != packages) { // where a list may be empty
            return u"%1: the value is missing"_s.arg(source);
        }
        return takeValue(key, {value, source});
    }

    [[nodiscard]] const Policy &policy() const { return m_policy; }

private:
    std::optional<QString> takeValue(const QString &key, const Policy::Entry &entry)
    {
        if (m_group == u"[Settings]") {
            return takeSetting(key, entry);
        }
        const QString name = m_group + key;
        if (name == u"[Packages]Required") {
            takePrefixes(entry, m_policy.packages.required);
            return std::nullopt;
        }
        if (name == u"[Packages]Forbidden") {
            takePrefixes(entry, m_policy.packages.forbidden);
            return std::nullopt;
        }
        if (m_taken.contains(name)) {
            return u"%1: is given twice"_s.arg(entry.source);
        }
        m_taken.insert(name);
        if (name == u"[Service]URL") {
            m_policy.serviceUrl = entry;
        } else if (name == u"[Service]CA") {
            m_policy.serviceAuthorities = entry;
            return notAbsolute(entry.value, entry);
        } else if (name == u"[Service]ReachabilityHost") {
            m_policy.reachabilityHost = entry;
        } else if (name == u"[Applications]Folders") {
            return takeFolders(entry);
        } else {
            return m_group.isEmpty() ? u"%1: is in no group"_s.arg(entry.source)
                                     : u"%1: there is no such key in %2"_s.arg(entry.source, m_group);
        }
        return std::nullopt;
    }

    std::optional<QString> takeFolders(const Policy::Entry &entry)
    {
        const QStringList folders = entry.value.split(u':', Qt::SkipEmptyParts);
        for (const QString &folder : folders) {
            if (auto wrong = notAbsolute(folder, entry)) {
                return wrong;
            }
            m_policy.applications.append(QDir::cleanPath(folder));
        }
        return folders.isEmpty() ? std::optional(u"%1: names no folder"_s.arg(entry.source)) : std::nullopt;
    }

    static void takePrefixes(const Policy::Entry &entry, QStringList &prefixes)
    {
        const QStringList words = entry.value.split(u':', Qt::SkipEmptyParts);
        for (const QString &word : words) {
            if (!word.trimmed().isEmpty()) {
                prefixes.append(word.trimmed());
            }
        }
    }

    std::optional<QString> takeSetting(const QString &key, const Policy::Entry &entry)
    {
        const Setting *const setting = findSetting(key);
        if (setting == nullptr) {
            return u"%1: There is no setting '%2'."_s.arg(entry.source, key);
        }
        const auto meant = settingFromText(*setting, key, entry.value);
        if (const auto *wrong = std::get_if<QString>(&meant)) {
            return u"%1: %2"_s.arg(entry.source, *wrong);
        }
        if (m_policy.lockedSettings.contains(setting->key)) {
            return u"%1: is given twice"_s.arg(entry.source);
        }
        m_policy.lockedSettings.insert(setting->key, std::get<QVariant>(meant));
        return std::nullopt;
    }

    static std::optional<QString> notAbsolute(const QString &path, const Policy::Entry &entry)
    {
        return path.startsWith(u'/')
            ? std::nullopt
            : std::optional(u"%1: '%2' is not an absolute path"_s.arg(entry.source, path));
    }

    const QString packages = u"[Packages]"_s;
    QString m_file;
    QString m_group;
    QSet<QString> m_taken;
    Policy m_policy;
};

// @return what is wrong with the file
std::optional<QString> readFile(const QString &file, Reader &reader)
{
    const std::optional<QByteArray> bytes = readRegularFile(file, sizeLimit);
    if (!bytes) {
        return u"%1: cannot be read"_s.arg(file);
    }
    QStringDecoder decode(QStringDecoder::Utf8);
    const QString text = decode(*bytes);
    if (decode.hasError()) {
        return u"%1: is not text in UTF-8"_s.arg(file);
    }
    reader.begin(file);
    int number = 0;
    for (const QStringView line : QStringView(text).split(u'\n')) {
        if (auto wrong = reader.take(++number, line.trimmed())) {
            return wrong;
        }
    }
    return std::nullopt;
}

// Only what is certainly absent counts as no policy: a folder that may not be looked into does not.
bool isAbsent(const QString &path)
{
    std::error_code error;
    return std::filesystem::status(path.toStdString(), error).type() == std::filesystem::file_type::not_found;
}

} // namespace

std::variant<Policy, QString> readPolicy(const QString &file)
{
    QStringList files;
    if (!isAbsent(file)) {
        files.append(file);
    }
    if (const QString folder = file + u".d"_s; !isAbsent(folder)) {
        const QDir more(folder, u"*.conf"_s, QDir::Name, QDir::Files | QDir::Hidden | QDir::System);
        if (!more.isReadable()) {
            return u"%1: cannot be read"_s.arg(folder);
        }
        const QStringList names = more.entryList();
        for (const QString &name : names) {
            files.append(more.filePath(name));
        }
    }
    Reader reader;
    for (const QString &each : std::as_const(files)) {
        if (auto wrong = readFile(each, reader)) {
            return oneLine(*wrong);
        }
    }
    Policy policy = reader.policy();
    if (const auto decided = policy.lockedSettings.constFind(SettingKeys::autoUpdate);
        decided != policy.lockedSettings.cend()) {
        policy.packages.autoUpdate = decided->toBool();
    }
    return policy;
}

Converger::Wishes readWishes(const QString &policyFile)
{
    const auto policy = readPolicy(policyFile);
    const auto *wrong = std::get_if<QString>(&policy);
    return wrong != nullptr ? Converger::Wishes(*wrong) : std::get<Policy>(policy).packages;
}

} // namespace brevok
