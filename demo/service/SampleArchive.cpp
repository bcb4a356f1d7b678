// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "SampleArchive.h"

#include <QFile>
#include <QRandomGenerator>

#include <cstdlib>
#include <memory>
#include <vector>

#include <archive.h>
#include <archive_entry.h>
#include <plist/plist.h>

namespace brevok::demo {

using namespace Qt::StringLiterals;

namespace {

constexpr time_t entryTime = 1'704'067'200; // the start of 2024: the same bytes every time

struct ReleaseArchive {
    void operator()(archive *writer) const { archive_write_free(writer); }
};
struct ReleaseEntry {
    void operator()(archive_entry *entry) const { archive_entry_free(entry); }
};
struct ReleasePropertyList {
    void operator()(void *list) const { plist_free(list); }
};

QByteArray informationList(const SampleBuild &build)
{
    const std::unique_ptr<void, ReleasePropertyList> list(plist_new_dict());
    const auto set = [&list](const char *key, const QString &value) {
        plist_dict_set_item(list.get(), key, plist_new_string(value.toUtf8().constData()));
    };
    set("CFBundleExecutable", build.name);
    set("CFBundleIdentifier", u"com.tolvane.plug-in."_s + QString(build.name).remove(u' '));
    set("CFBundleName", build.name);
    set("CFBundlePackageType", u"BNDL"_s);
    set("CFBundleVersion", QString::number(build.buildNumber));
    set("CFBundleShortVersionString", u"%1 (build %2)"_s.arg(build.version).arg(build.buildNumber));
    set("CFBundleShortVersionStringTemplate", build.version);
    set("TolvaneHostAppShortVersion", u"%1.%2"_s.arg(build.hostVersion / 10).arg(build.hostVersion % 10));
    char *text = nullptr;
    uint32_t length = 0;
    plist_to_xml(list.get(), &text, &length);
    QByteArray data(text, length);
    std::free(text); // which every version of the library allows, unlike functions of its own
    return data;
}

/// Something that looks like a program to a tool that weighs files: half of it does not compress.
QByteArray executable(const SampleBuild &build)
{
    QRandomGenerator random(static_cast<quint32>(build.hostVersion * 1000 + build.buildNumber));
    std::vector<quint32> noise(static_cast<size_t>(build.kiloBytes) * 1024 / 2 / sizeof(quint32));
    random.fillRange(noise.data(), static_cast<qsizetype>(noise.size()));
    QByteArray data("\xcf\xfa\xed\xfe", 4);
    data.append(build.name.toUtf8()).append('\0');
    data.append(reinterpret_cast<const char *>(noise.data()), build.kiloBytes * qsizetype{1024} / 2);
    data.resize(build.kiloBytes * qsizetype{1024}, '\x90');
    return data;
}

bool addFolder(archive *writer, const QString &path)
{
    const std::unique_ptr<archive_entry, ReleaseEntry> entry(archive_entry_new());
    archive_entry_set_pathname_utf8(entry.get(), path.toUtf8().constData());
    archive_entry_set_filetype(entry.get(), AE_IFDIR);
    archive_entry_set_perm(entry.get(), 0755);
    archive_entry_set_mtime(entry.get(), entryTime, 0);
    return archive_write_header(writer, entry.get()) == ARCHIVE_OK;
}

bool addFile(archive *writer, const QString &path, const QByteArray &data, int mode)
{
    const std::unique_ptr<archive_entry, ReleaseEntry> entry(archive_entry_new());
    archive_entry_set_pathname_utf8(entry.get(), path.toUtf8().constData());
    archive_entry_set_filetype(entry.get(), AE_IFREG);
    archive_entry_set_perm(entry.get(), static_cast<mode_t>(mode));
    archive_entry_set_mtime(entry.get(), entryTime, 0);
    archive_entry_set_size(entry.get(), data.size());
    return archive_write_header(writer, entry.get()) == ARCHIVE_OK
        && archive_write_data(writer, data.constData(), static_cast<size_t>(data.size())) == data.size();
}

} // namespace

QString writeSampleArchive(const SampleBuild &build, const QString &path)
{
    const std::unique_ptr<archive, ReleaseArchive> writer(archive_write_new());
    archive_write_set_format_zip(writer.get());
    const QString bundle = build.name + u".InDesignPlugin/"_s;
    const QString contents = bundle + u"Contents/"_s;
    const bool done =
        archive_write_open_filename(writer.get(), QFile::encodeName(path).constData()) == ARCHIVE_OK
        && addFolder(writer.get(), bundle) && addFolder(writer.get(), contents)
        && addFile(writer.get(), contents + u"Info.plist"_s, informationList(build), 0644)
        && addFolder(writer.get(), contents + u"MacOS/"_s)
        && addFile(writer.get(), contents + u"MacOS/"_s + build.name, executable(build), 0755)
        && addFolder(writer.get(), contents + u"Resources/"_s)
        && addFile(writer.get(), contents + u"Resources/About.txt"_s,
            u"%1 %2\n"_s.arg(build.name, build.version).toUtf8(), 0644)
        && archive_write_close(writer.get()) == ARCHIVE_OK;
    return done ? QString()
                : u"cannot write '%1': %2"_s.arg(path, QString::fromUtf8(archive_error_string(writer.get())));
}

} // namespace brevok::demo
