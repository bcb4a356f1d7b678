// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "fuzz/Fuzz.h"
#include "platform/linux/files/FileDescriptor.h"
#include "platform/linux/files/ZipExtractor.h"
#include "support/Folders.h"
#include "support/ZipWriter.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <fcntl.h>

using namespace brevok;
using namespace Qt::StringLiterals;
namespace fs = std::filesystem;

namespace {

const QByteArray bundle = "A.InDesignPlugin";

// A line "MODE NAME [TEXT]" each; a mode that begins with "d" is deflated. What is no line is left out.
QList<testing::ZipMember> members(const QByteArray &recipe)
{
    QList<testing::ZipMember> found;
    const QList<QByteArray> lines = recipe.split('\n');
    for (const QByteArray &line : lines) {
        const QList<QByteArray> words = (line + "  ").split(' ');
        const bool deflated = words[0].startsWith('d');
        bool isNumber = false;
        const quint32 mode = words[0].mid(deflated ? 1 : 0).toUInt(&isNumber, 8);
        if (isNumber) {
            found.append({words[1], words[2], mode, deflated});
        }
    }
    return found;
}

bool climbs(const QByteArray &stored)
{
    QByteArray name(stored.constData()); // which a NUL ends
    name.replace('\\', '/'); // as some archivers write it
    return name.isEmpty() || name.startsWith('/') || name.split('/').contains("..");
}

// What stands in the folder is harmless wherever it is put.
void checkEntry(
    const fs::directory_entry &entry, const fs::path &root, const QList<testing::ZipMember> &listed)
{
    const auto mode = static_cast<unsigned>(entry.symlink_status().permissions());
    if (entry.is_symlink()) {
        const fs::path link = fs::read_symlink(entry.path());
        const fs::path leads = (entry.path().parent_path() / link).lexically_normal(); // to something or not
        HOLDS(link.is_relative() && leads.string().starts_with((root / bundle.toStdString()).string() + "/"));
        return;
    }
    HOLDS(entry.is_regular_file() || entry.is_directory());
    HOLDS(mode == 0755 || (mode == 0644 && entry.is_regular_file()));
    if (entry.is_regular_file()) {
        std::ifstream file(entry.path(), std::ios::binary); // Qt knows no names but of Unicode
        const std::string contents(std::istreambuf_iterator<char>(file), {});
        HOLDS(entry.hard_link_count() == 1);
        HOLDS(listed.isEmpty() || std::any_of(listed.cbegin(), listed.cend(), [&](const auto &member) {
            return member.data.toStdString() == contents;
        }));
    }
}

} // namespace

// An archive, or the recipe of one: what is changed in it is then not found out by its checksums.
void fuzz::check(const QByteArray &input)
{
    const QList<testing::ZipMember> listed =
        input.startsWith("PK") ? QList<testing::ZipMember>() : members(input);
    const QByteArray archive = input.startsWith("PK") ? input : testing::zipArchive(listed);
    const QString scratch = scratchFolder();
    const QString target = scratch + u"/target"_s;
    fs::remove_all(target.toStdString());
    HOLDS(QDir().mkpath(target));
    put(scratch + u"/beside"_s, "beside");
    put(scratch + u"/archive.zip"_s, archive);
    QFile file(scratch + u"/archive.zip"_s);
    HOLDS(file.open(QIODevice::ReadOnly));
    const FileDescriptor folder(::open(QFile::encodeName(target).constData(), O_RDONLY | O_DIRECTORY));
    const std::optional<BrevokError> error = extractZipArchive(
        file, folder.get(), target + u"/A.InDesignPlugin"_s, {.only = bundle, .safeLater = true});
    HOLDS(!error || !error->description.isEmpty());
    HOLDS(testing::entries(target) == (error ? QStringList() : QStringList{QString::fromLatin1(bundle)}));
    HOLDS(testing::entries(scratch) == (QStringList{u"archive.zip"_s, u"beside"_s, u"target"_s}));
    HOLDS(testing::contentsOf(scratch + u"/beside"_s) == "beside");
    HOLDS(error || std::none_of(listed.cbegin(), listed.cend(), [](const auto &member) {
        return climbs(member.name);
    }));
    std::uintmax_t total = 0;
    for (const fs::directory_entry &entry : fs::recursive_directory_iterator(target.toStdString())) {
        checkEntry(entry, target.toStdString(), listed);
        total += !entry.is_symlink() && entry.is_regular_file() ? entry.file_size() : 0;
    }
    HOLDS(total <= 64U * 1024 * 1024 || total / 200 <= static_cast<quint64>(archive.size()));
}
