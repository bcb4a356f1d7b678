// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/files/ZipExtractor.h"

#include "foundation/Paths.h"
#include "foundation/Texts.h"
#include "platform/linux/files/FileErrors.h"
#include "platform/linux/files/FileTree.h"
#include "platform/linux/files/SafePath.h"
#include "platform/linux/files/StagingFolder.h"
#include "platform/linux/files/ZipReader.h"
#include "platform/linux/files/ZipRules.h"

#include <QFile>

#include <array>
#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>

namespace brevok {

namespace {

/// Judging hops from header to header, unpacking reads on.
constexpr size_t judgingBlock = size_t(4) * 1024;
constexpr size_t unpackingBlock = size_t(128) * 1024;
constexpr mode_t folderMode = 0755;
constexpr mode_t fileMode = 0644;
constexpr mode_t programMode = 0755;
constexpr auto keepGroup = static_cast<gid_t>(-1);

class Extraction final {
public:
    Extraction(int archive, int folder, const ExtractionTerms &terms)
        : m_archive(archive)
        , m_folder(folder)
        , m_terms(terms)
    {
    }
    ~Extraction() = default;
    Q_DISABLE_COPY_MOVE(Extraction)

    [[nodiscard]] bool run();
    [[nodiscard]] const Cause &cause() const { return m_cause; }

private:
    struct Link {
        QByteArray path;
        QByteArray target;
    };

    [[nodiscard]] bool judge(qint64 archiveSize);
    [[nodiscard]] bool unpack(ZipRules &rules);
    [[nodiscard]] bool unpackEntry(ZipReader &reader, const ZipEntry &entry, const QByteArray &path);
    [[nodiscard]] bool unpackFile(ZipReader &reader, const ZipEntry &entry, const QByteArray &path);
    [[nodiscard]] bool makeLinks();
    [[nodiscard]] bool give(int entry) const;
    /// The open folder at @p path, made where it is missing; -1 on failure. Valid until the next call.
    [[nodiscard]] int folderAt(const QByteArray &path);
    bool refuse(const QString &reason);
    bool damaged(const QString &exactly);
    bool unreadable(const ZipReader &reader, const QByteArray &path = {});
    bool failAt(const QByteArray &path);

    int m_archive;
    int m_folder;
    const ExtractionTerms &m_terms;
    StagingFolder *m_staging = nullptr;
    QByteArray m_currentPath;
    FileDescriptor m_current; ///< entries follow one another folder by folder
    QList<Link> m_links; ///< made last, so that nothing is written through them
    Cause m_cause{0};
};

QByteArray folderOf(const QByteArray &path)
{
    return path.left(qMax<qsizetype>(path.lastIndexOf('/'), 0));
}

QByteArray nameOf(const QByteArray &path)
{
    return path.mid(path.lastIndexOf('/') + 1);
}

bool Extraction::run()
{
    struct stat facts { };
    if (::fstat(m_archive, &facts) != 0) {
        return failAt({});
    }
    if (!judge(facts.st_size)) {
        return false;
    }
    StagingFolder staging(m_folder);
    if (!staging) {
        return failAt({});
    }
    m_staging = &staging;
    ZipRules rules(facts.st_size, m_terms.only);
    const bool unpacked = unpack(rules) && makeLinks();
    m_current.close();
    QByteArray where;
    return unpacked
        && (staging.publish({m_terms.only}, StagingFolder::Existing::Replaced, &where,
                m_terms.safeLater ? StagingFolder::Safe::Later : StagingFolder::Safe::Before)
            || failAt(where));
}

bool Extraction::judge(qint64 archiveSize)
{
    const std::unique_ptr<ZipReader> reader = openZipReader(m_archive, judgingBlock);
    ZipRules rules(archiveSize, m_terms.only);
    ZipEntry entry;
    ZipReader::Step step = ZipReader::Step::Got;
    while ((step = reader->next(entry)) == ZipReader::Step::Got) {
        if (rules.judge(entry) == ZipRules::Verdict::Refuse) {
            return refuse(Texts::tr("the archive is refused: %1").arg(rules.refusal()));
        }
    }
    if (step == ZipReader::Step::Failed) {
        return unreadable(*reader);
    }
    return rules.found()
        || refuse(Texts::tr("the archive contains no %1").arg(QFile::decodeName(m_terms.only)));
}

bool Extraction::unpack(ZipRules &rules)
{
    const std::unique_ptr<ZipReader> reader = openZipReader(m_archive, unpackingBlock);
    ZipEntry entry;
    for (;;) {
        switch (reader->next(entry)) {
        case ZipReader::Step::Failed:
            return unreadable(*reader);
        case ZipReader::Step::End:
            return true;
        case ZipReader::Step::Got:
            break;
        }
        // Judged again: somebody may have written to the archive in between.
        switch (rules.judge(entry)) {
        case ZipRules::Verdict::Refuse:
            return refuse(Texts::tr("the archive is refused: %1").arg(rules.refusal()));
        case ZipRules::Verdict::Skip:
            break;
        case ZipRules::Verdict::Take:
            if (!unpackEntry(*reader, entry, rules.path())) {
                return false;
            }
        }
    }
}

bool Extraction::unpackEntry(ZipReader &reader, const ZipEntry &entry, const QByteArray &path)
{
    switch (entry.kind) {
    case ZipEntry::Kind::Folder:
        return folderAt(path) >= 0 || failAt(path);
    case ZipEntry::Kind::Link:
        m_links.append({path, entry.linkTarget});
        return true;
    case ZipEntry::Kind::File:
    case ZipEntry::Kind::Other:
        break;
    }
    return unpackFile(reader, entry, path);
}

bool Extraction::unpackFile(ZipReader &reader, const ZipEntry &entry, const QByteArray &path)
{
    const mode_t mode = entry.executable ? programMode : fileMode;
    const int folder = folderAt(folderOf(path));
    FileDescriptor file;
    if (folder >= 0) {
        file = safepath::openBeneath(folder, nameOf(path), O_WRONLY | O_CREAT | O_EXCL, mode);
    }
    if (!file) {
        return failAt(path);
    }
    qint64 left = entry.size;
    const char *bytes = nullptr;
    size_t size = 0;
    ZipReader::Step step = ZipReader::Step::Got;
    while ((step = reader.data(bytes, size)) == ZipReader::Step::Got) {
        // The caps were kept with the size that the entry claims.
        if (size > static_cast<size_t>(left)) {
            return damaged(
                Texts::tr("an entry is larger than its stated size (%1)").arg(QFile::decodeName(path)));
        }
        if (!safepath::writeAll(file.get(), bytes, size)) {
            return failAt(path);
        }
        left -= static_cast<qint64>(size);
    }
    if (step == ZipReader::Step::Failed || left != 0) {
        return unreadable(reader, path);
    }
    const std::array<timespec, 2> times{
        timespec{0, UTIME_OMIT}, timespec{entry.seconds, static_cast<long>(entry.nanoseconds)}};
    if (entry.hasTime && ::futimens(file.get(), times.data()) != 0) {
        return failAt(path);
    }
    // The disk begins now, so that the flush before the renaming has little left to wait for.
    ::sync_file_range(file.get(), 0, 0, SYNC_FILE_RANGE_WRITE);
    return (give(file.get()) && ::fchmod(file.get(), mode) == 0 && file.close()) || failAt(path);
}

bool Extraction::makeLinks()
{
    for (const Link &link : std::as_const(m_links)) {
        const int folder = folderAt(folderOf(link.path));
        const QByteArray name = nameOf(link.path);
        if (folder < 0 || ::symlinkat(link.target.constData(), folder, name.constData()) != 0
            || (m_terms.owner
                && filetree::addAttributes(folder, name, {.user = *m_terms.owner, .onlyReadable = true})
                    != filetree::Change::Done)) {
            return failAt(link.path);
        }
    }
    return true;
}

bool Extraction::give(int entry) const
{
    return !m_terms.owner || ::fchown(entry, *m_terms.owner, keepGroup) == 0;
}

int Extraction::folderAt(const QByteArray &path)
{
    if (path.isEmpty()) {
        return m_staging->descriptor();
    }
    if (m_current && path == m_currentPath) {
        return m_current.get();
    }
    constexpr int flags = O_RDONLY | O_DIRECTORY;
    FileDescriptor opened = safepath::openBeneath(m_staging->descriptor(), path, flags);
    if (!opened && errno == ENOENT) {
        const int parent = folderAt(folderOf(path));
        if (parent < 0 || ::mkdirat(parent, nameOf(path).constData(), folderMode) != 0) {
            return -1;
        }
        opened = safepath::openBeneath(parent, nameOf(path), flags);
        if (!opened || !give(opened.get()) || ::fchmod(opened.get(), folderMode) != 0) {
            return -1;
        }
    }
    m_current = std::move(opened);
    m_currentPath = path;
    return m_current.get();
}

// What the archive is to blame for.
bool Extraction::refuse(const QString &reason)
{
    m_cause = {EBADMSG, reason, reason};
    return false;
}

bool Extraction::damaged(const QString &exactly)
{
    m_cause = {EILSEQ, Texts::tr("the archive is damaged"), exactly};
    return false;
}

bool Extraction::unreadable(const ZipReader &reader, const QByteArray &path)
{
    const ZipReader::Failure failure = reader.failure();
    damaged(
        path.isEmpty() ? failure.text : QStringLiteral("%1 (%2)").arg(failure.text, QFile::decodeName(path)));
    if (failure.code != EILSEQ) {
        m_cause.code = failure.code;
        m_cause.reason = Texts::tr("the archive cannot be read");
    }
    return false;
}

bool Extraction::failAt(const QByteArray &path)
{
    const int code = errno;
    const QString text = qt_error_string(code);
    m_cause = {
        code, {}, path.isEmpty() ? text : QStringLiteral("%1 (%2)").arg(text, QFile::decodeName(path))};
    return false;
}

} // namespace

std::optional<BrevokError> extractZipArchive(
    const QFile &archive, int folder, const QString &targetName, const ExtractionTerms &terms)
{
    Extraction extraction(archive.handle(), folder, terms);
    if (extraction.run()) {
        return std::nullopt;
    }
    return fileError(Texts::tr("Could not unpack \"%1\" into \"%2\"")
                         .arg(archive.fileName(), deletingLastPathComponent(targetName)),
        archive.fileName(), extraction.cause());
}

} // namespace brevok
