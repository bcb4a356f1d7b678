// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/files/ZipReader.h"

#include "foundation/Texts.h"

#include <QtEndian>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <vector>

#include <archive.h>
#include <archive_entry.h>
#include <clocale>
#include <sys/stat.h>
#include <unistd.h>

namespace brevok {

namespace {

/// The parser holds the whole index in memory: a hostile one must not fill it.
constexpr qint64 maximumIndexBytes = qint64(32) * 1024 * 1024;

/// libarchive converts names to the character set of the thread's locale; names are UTF-8 here, wherever the
/// program was started.
class Utf8Names final {
public:
    Utf8Names()
        : m_locale(::newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr))
        , m_previous(m_locale == nullptr ? nullptr : ::uselocale(m_locale))
    {
    }
    ~Utf8Names()
    {
        if (m_locale != nullptr) {
            ::uselocale(m_previous);
            ::freelocale(m_locale);
        }
    }
    Q_DISABLE_COPY_MOVE(Utf8Names)

private:
    locale_t m_locale;
    locale_t m_previous;
};

struct Source {
    int file = -1;
    qint64 size = 0;
    qint64 position = 0;
    qint64 indexBudget = maximumIndexBytes; ///< what may still be read before the first entry
    bool readingIndex = true;
    std::vector<char> block;
};

la_ssize_t readBlock(archive *reader, void *client, const void **bytes)
{
    Source &source = *static_cast<Source *>(client);
    ssize_t got = -1;
    do {
        got = ::pread(source.file, source.block.data(), source.block.size(), source.position);
    } while (got < 0 && errno == EINTR);
    if (got < 0) {
        archive_set_error(reader, errno, "%s", qt_error_string(errno).toUtf8().constData());
        return ARCHIVE_FATAL;
    }
    if (source.readingIndex) {
        source.indexBudget -= got;
        if (source.indexBudget < 0) {
            archive_set_error(reader, EFBIG, "the index is too large");
            return ARCHIVE_FATAL;
        }
    }
    source.position += got;
    *bytes = source.block.data();
    return got;
}

la_int64_t skipBytes(archive * /*reader*/, void *client, la_int64_t request)
{
    Source &source = *static_cast<Source *>(client);
    const qint64 skipped = std::clamp<qint64>(request, 0, std::max<qint64>(source.size - source.position, 0));
    source.position += skipped;
    return skipped;
}

la_int64_t seekTo(archive * /*reader*/, void *client, la_int64_t offset, int whence)
{
    Source &source = *static_cast<Source *>(client);
    const qint64 from = whence == SEEK_SET ? 0 : whence == SEEK_CUR ? source.position : source.size;
    if (offset < -from || offset > source.size - from) {
        return ARCHIVE_FATAL;
    }
    source.position = from + offset;
    return source.position;
}

struct FreeReader {
    void operator()(archive *reader) const { archive_read_free(reader); }
};

ZipEntry::Kind kindOf(archive_entry *entry)
{
    if (archive_entry_hardlink(entry) != nullptr) {
        return ZipEntry::Kind::Other;
    }
    switch (archive_entry_filetype(entry)) {
    case AE_IFREG:
        return ZipEntry::Kind::File;
    case AE_IFDIR:
        return ZipEntry::Kind::Folder;
    case AE_IFLNK:
        return ZipEntry::Kind::Link;
    default:
        return ZipEntry::Kind::Other;
    }
}

void describe(archive_entry *from, ZipEntry &entry)
{
    constexpr mode_t setIdBits = 06000;
    entry.name = QByteArray(archive_entry_pathname(from));
    entry.kind = kindOf(from);
    entry.size = archive_entry_size_is_set(from) != 0 ? archive_entry_size(from) : 0;
    entry.executable = (archive_entry_perm(from) & S_IXUSR) != 0;
    entry.setId = (archive_entry_perm(from) & setIdBits) != 0;
    entry.encrypted = archive_entry_is_encrypted(from) != 0;
    entry.linkTarget =
        entry.kind == ZipEntry::Kind::Link ? QByteArray(archive_entry_symlink(from)) : QByteArray();
    entry.hasTime = archive_entry_mtime_is_set(from) != 0;
    entry.seconds = archive_entry_mtime(from);
    entry.nanoseconds = archive_entry_mtime_nsec(from);
}

quint16 number(const QByteArray &bytes, qsizetype at)
{
    return qFromLittleEndian<quint16>(bytes.constData() + at);
}

QString composed(const QByteArray &text)
{
    return QString::fromUtf8(text).normalized(QString::NormalizationForm_C);
}

/// The name among the further facts of an entry's header, for archivers that have another one in its place.
QByteArray furtherName(const QByteArray &facts)
{
    constexpr quint16 unicodePath = 0x7075;
    constexpr qsizetype head = 4; // its kind and size
    constexpr qsizetype before = 5; // a version and a checksum
    for (qsizetype at = 0; at + head <= facts.size(); at += head + number(facts, at + 2)) {
        if (number(facts, at) == unicodePath) {
            return facts.mid(at + head + before, number(facts, at + 2) - before);
        }
    }
    return {};
}

/// libarchive composes names and links that are marked as UTF-8. As they were given they stand before the
/// entry's bytes, which begin at @p end; what there is no other form of the same is left alone.
void useStoredNames(int file, qint64 end, ZipEntry &entry)
{
    constexpr qint64 longest = qint64(16) * 1024;
    constexpr qsizetype head = 30;
    const auto isPlain = [](const QByteArray &text) {
        return std::all_of(
            text.cbegin(), text.cend(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
    };
    if (end < head || (isPlain(entry.name) && isPlain(entry.linkTarget))) {
        return;
    }
    QByteArray bytes(std::min(end, longest), '\0');
    if (::pread(file, bytes.data(), static_cast<size_t>(bytes.size()), end - bytes.size()) != bytes.size()) {
        return;
    }
    const auto use = [](QByteArray &text, const QByteArray &stored) {
        const bool same = composed(stored) == composed(text);
        text = same ? stored : text;
        return same;
    };
    for (qsizetype at = bytes.lastIndexOf("PK\3\4", bytes.size() - head); at >= 0;
         at = at == 0 ? -1 : bytes.lastIndexOf("PK\3\4", at - 1)) {
        const qsizetype nameSize = number(bytes, at + 26);
        const QByteArray facts = bytes.mid(at + head + nameSize, number(bytes, at + 28));
        if (use(entry.name, bytes.mid(at + head, nameSize)) || use(entry.name, furtherName(facts))) {
            use(entry.linkTarget, bytes.mid(at + head + nameSize + facts.size()));
            return;
        }
    }
}

class LibarchiveReader final : public ZipReader {
public:
    LibarchiveReader(int archive, size_t blockSize);

    [[nodiscard]] Step next(ZipEntry &entry) override;
    [[nodiscard]] Step data(const char *&bytes, size_t &size) override;
    [[nodiscard]] Failure failure() const override;

private:
    Utf8Names m_names;
    Source m_source;
    std::unique_ptr<archive, FreeReader> m_reader{archive_read_new()};
    bool m_opened = false;
};

LibarchiveReader::LibarchiveReader(int archive, size_t blockSize)
{
    struct stat facts { };
    m_source.file = archive;
    m_source.size = ::fstat(archive, &facts) == 0 ? facts.st_size : 0;
    m_source.block.resize(blockSize);
    auto *reader = m_reader.get();
    // By its index only: what an archive without one holds is a guess.
    m_opened = reader != nullptr && archive_read_support_format_zip_seekable(reader) == ARCHIVE_OK
        && archive_read_set_read_callback(reader, readBlock) == ARCHIVE_OK
        && archive_read_set_skip_callback(reader, skipBytes) == ARCHIVE_OK
        && archive_read_set_seek_callback(reader, seekTo) == ARCHIVE_OK
        && archive_read_set_callback_data(reader, &m_source) == ARCHIVE_OK
        && archive_read_open1(reader) == ARCHIVE_OK;
}

ZipReader::Step LibarchiveReader::next(ZipEntry &entry)
{
    if (!m_opened) {
        return Step::Failed;
    }
    archive_entry *found = nullptr;
    const int result = archive_read_next_header(m_reader.get(), &found);
    m_source.readingIndex = false;
    if (result == ARCHIVE_EOF) {
        return Step::End;
    }
    if (result != ARCHIVE_OK) {
        return Step::Failed;
    }
    describe(found, entry);
    useStoredNames(m_source.file, archive_filter_bytes(m_reader.get(), 0), entry);
    return Step::Got;
}

ZipReader::Step LibarchiveReader::data(const char *&bytes, size_t &size)
{
    const void *block = nullptr;
    la_int64_t offset = 0;
    const int result = archive_read_data_block(m_reader.get(), &block, &size, &offset);
    bytes = static_cast<const char *>(block);
    return result == ARCHIVE_OK ? Step::Got : result == ARCHIVE_EOF ? Step::End : Step::Failed;
}

ZipReader::Failure LibarchiveReader::failure() const
{
    const char *text = m_reader ? archive_error_string(m_reader.get()) : nullptr;
    const int code = m_reader ? archive_errno(m_reader.get()) : ENOMEM;
    return {text == nullptr ? Texts::tr("it is not a zip archive") : QString::fromUtf8(text),
        code == EIO || code == ENOMEM ? code : EILSEQ};
}

} // namespace

std::unique_ptr<ZipReader> openZipReader(int archive, size_t blockSize)
{
    return std::make_unique<LibarchiveReader>(archive, blockSize);
}

} // namespace brevok
