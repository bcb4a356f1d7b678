// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/files/SqliteFile.h"

#include "foundation/Log.h"
#include "platform/linux/files/FileDescriptor.h"
#include "platform/linux/files/PrivateFile.h"

#include <QFile>
#include <QFileInfo>
#include <QStringDecoder>

#include <cerrno>
#include <cstdio>

#include <fcntl.h>
#include <sqlite3.h>
#include <sys/stat.h>

namespace brevok {

using namespace Qt::StringLiterals;
using Result = SqliteFile::Result;

namespace {

constexpr qint64 ourVersion = 1;

// What a person deletes is not to be found in the file's free space; sorting needs no temporary file. The
// cache holds a whole catalogue, so that no page of it is read or written twice, and is emptied after each
// use. A new file gets pages that hold several definitions.
constexpr auto preparation = "PRAGMA page_size = 8192; PRAGMA synchronous = EXTRA; "
                             "PRAGMA secure_delete = ON; PRAGMA temp_store = MEMORY; "
                             "PRAGMA cache_size = -16384";
constexpr auto schema = "CREATE TABLE IF NOT EXISTS state (key TEXT NOT NULL, entry TEXT NOT NULL, "
                        "value TEXT NOT NULL, UNIQUE (key, entry)); "
                        "PRAGMA user_version = 1";

// Qt takes a mark of byte order at the start of UTF-8 away, and here it may be part of a name.
QString textFrom(const char *bytes, int length)
{
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom);
    return decoder(QByteArrayView(bytes, length));
}

QString columnText(sqlite3_stmt *statement, int column)
{
    const auto *bytes = reinterpret_cast<const char *>(sqlite3_column_text(statement, column));
    return textFrom(bytes, sqlite3_column_bytes(statement, column));
}

std::optional<PackedRecord> columnRecord(sqlite3_stmt *statement, int column)
{
    const auto *bytes = reinterpret_cast<const char *>(sqlite3_column_text(statement, column));
    const QByteArray json(bytes, sqlite3_column_bytes(statement, column));
    const bool isRecord = json.startsWith('{') && json.endsWith('}');
    return isRecord ? std::optional(PackedRecord::fromJson(json)) : std::nullopt;
}

void bindText(sqlite3_stmt *statement, int index, const QByteArray &text)
{
    sqlite3_bind_text(statement, index, text.constData(), static_cast<int>(text.size()), SQLITE_STATIC);
}

Result shortage(const QString &reason, bool hides)
{
    return {.state = Result::State::Shortage, .reason = reason, .hides = hides};
}

// Makes the file if there is none: SQLite would make it readable for others.
std::optional<Result> prepareFile(const QString &path)
{
    const QByteArray name = QFile::encodeName(path);
    makePrivateFolder(QFileInfo(path).absolutePath());
    const FileDescriptor made(
        ::open(name.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR));
    return made ? std::nullopt : std::optional(shortage(qt_error_string(errno), false));
}

} // namespace

SqliteFile::SqliteFile(QString path)
    : m_path(std::move(path))
{
}

SqliteFile::~SqliteFile()
{
    close();
}

void SqliteFile::close()
{
    sqlite3_close(m_db);
    m_db = nullptr;
}

Result SqliteFile::failure() const
{
    const int code = sqlite3_extended_errcode(m_db);
    QString reason = QString::fromUtf8(sqlite3_errmsg(m_db));
    const int general = code & 0xff;
    if (const int cause = sqlite3_system_errno(m_db);
        cause != 0 && (general == SQLITE_IOERR || general == SQLITE_CANTOPEN)) {
        reason += u": "_s + qt_error_string(cause);
    }
    if (general == SQLITE_CORRUPT || general == SQLITE_NOTADB) {
        return {.state = Result::State::Damaged, .reason = reason, .hides = true};
    }
    return shortage(reason, true);
}

bool SqliteFile::run(const char *sql) const
{
    return sqlite3_exec(m_db, sql, nullptr, nullptr, nullptr) == SQLITE_OK;
}

SqliteFile::Statement SqliteFile::prepare(const char *sql) const
{
    sqlite3_stmt *statement = nullptr;
    sqlite3_prepare_v2(m_db, sql, -1, &statement, nullptr);
    return {statement, &sqlite3_finalize};
}

// -1 when it cannot be read
qint64 SqliteFile::number(const char *sql) const
{
    const Statement statement = prepare(sql);
    return statement && sqlite3_step(statement.get()) == SQLITE_ROW ? sqlite3_column_int64(statement.get(), 0)
                                                                    : -1;
}

bool SqliteFile::wasMoved() const
{
    int moved = 0;
    return sqlite3_file_control(m_db, "main", SQLITE_FCNTL_HAS_MOVED, &moved) == SQLITE_OK && moved != 0;
}

Result SqliteFile::open(bool create, int patienceMs)
{
    if (create && m_db != nullptr && wasMoved()) {
        close();
        m_lost = true;
    }
    if (m_db == nullptr) {
        struct stat facts = {};
        const bool exists = ::stat(QFile::encodeName(m_path).constData(), &facts) == 0;
        if (!exists && errno != ENOENT && errno != ENOTDIR) {
            return shortage(qt_error_string(errno), true);
        }
        if (exists && !S_ISREG(facts.st_mode)) {
            return shortage(u"something that is not a file is in its place"_s, false);
        }
        if (!exists && !create) {
            return {};
        }
        if (!exists) {
            if (const auto problem = prepareFile(m_path)) {
                return *problem;
            }
        } else if (facts.st_size == 0) {
            logLine(u"The state in %1 is empty."_s.arg(m_path));
        } else if ((facts.st_mode & (S_IRWXG | S_IRWXO)) != 0) {
            ::chmod(QFile::encodeName(m_path).constData(), S_IRUSR | S_IWUSR);
        }
        if (Result result = connect(); result.state != Result::State::Done) {
            close();
            return result;
        }
    }
    sqlite3_busy_timeout(m_db, patienceMs);
    return {};
}

Result SqliteFile::connect()
{
    // Nobody asks how much memory it takes, and counting that costs a lock for each piece.
    [[maybe_unused]] static const int uncounted = sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 0);
    const QByteArray name = m_path.toUtf8();
    if (sqlite3_open_v2(name.constData(), &m_db,
            SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE, nullptr)
            != SQLITE_OK
        || !run(preparation)) {
        return failure();
    }
    const qint64 version = number("PRAGMA user_version");
    if (version < 0) {
        return failure();
    }
    if (version > ourVersion) {
        return {.state = Result::State::Newer,
            .reason = u"it was written by a newer version of Tolvane Brevok"_s};
    }
    return {};
}

Result SqliteFile::read(const QString &key, int patienceMs, StateEntries *entries)
{
    Result opened = open(false, patienceMs);
    if (opened.state != Result::State::Done || m_db == nullptr) {
        return opened;
    }
    const qint64 tables = number("SELECT count(*) FROM sqlite_schema WHERE name = 'state'");
    if (tables < 1) {
        return tables < 0 ? failure() : Result();
    }
    const Statement statement = prepare("SELECT entry, value FROM state WHERE key = ?1");
    if (!statement) {
        return failure();
    }
    const QByteArray name = key.toUtf8();
    bindText(statement.get(), 1, name);
    int step = sqlite3_step(statement.get());
    int unusable = 0;
    for (; step == SQLITE_ROW; step = sqlite3_step(statement.get())) {
        if (const std::optional<PackedRecord> record = columnRecord(statement.get(), 1)) {
            entries->insert(columnText(statement.get(), 0), *record);
        } else {
            ++unusable;
        }
    }
    sqlite3_db_release_memory(m_db);
    if (unusable > 0) {
        logLine(u"The state under \"%1\": %2 unusable values left out."_s.arg(key).arg(unusable));
    }
    return step == SQLITE_DONE ? Result() : failure();
}

Result SqliteFile::write(
    const StateChanges &changes, int patienceMs, const std::function<StateChanges()> &further)
{
    if (Result opened = open(true, patienceMs); opened.state != Result::State::Done) {
        return opened;
    }
    if (!changes.isEmpty()) {
        Result result = run("BEGIN IMMEDIATE") ? change(changes) : failure();
        while (further && result.state == Result::State::Done) {
            const StateChanges more = further();
            if (more.isEmpty()) {
                break;
            }
            result = change(more);
        }
        if (result.state == Result::State::Done && !run("COMMIT")) {
            result = failure();
        }
        if (result.state != Result::State::Done) {
            (void)run("ROLLBACK"); // an error that rolled back by itself leaves nothing to do
            result.hides = false;
            return result;
        }
        sqlite3_db_release_memory(m_db);
    }
    return {.lost = std::exchange(m_lost, false)};
}

Result SqliteFile::change(const StateChanges &changes)
{
    if (number("PRAGMA user_version") < ourVersion && !run(schema)) {
        return failure();
    }
    const Statement put = prepare("INSERT INTO state (key, entry, value) VALUES (?1, ?2, ?3) "
                                  "ON CONFLICT (key, entry) DO UPDATE SET value = ?3");
    const Statement removal = prepare("DELETE FROM state WHERE key = ?1 AND entry = ?2");
    if (!put || !removal) {
        return failure();
    }
    QString lastKey;
    QByteArray key;
    for (const StateChange &item : changes) {
        sqlite3_stmt *const statement = item.value ? put.get() : removal.get();
        if (item.key != lastKey) {
            lastKey = item.key;
            key = item.key.toUtf8();
        }
        const QByteArray entry = wellFormed(item.entry).toUtf8();
        const QByteArray value = item.value ? item.value->json() : QByteArray();
        bindText(statement, 1, key);
        bindText(statement, 2, entry);
        if (item.value) {
            bindText(statement, 3, value);
        }
        if (sqlite3_step(statement) != SQLITE_DONE) {
            return failure();
        }
        sqlite3_reset(statement);
    }
    return {};
}

// Row by row, so that a damaged page costs no more than its own rows.
StateChanges SqliteFile::readable() const
{
    constexpr int patience = 10'000; // rows in a row that may be damaged
    StateChanges found;
    const Statement statement =
        prepare("SELECT rowid, key, entry, value FROM state WHERE rowid >= ?1 ORDER BY rowid LIMIT 1");
    int failures = 0;
    for (qint64 row = 1; statement && failures < patience; ++row) {
        sqlite3_bind_int64(statement.get(), 1, row);
        const int step = sqlite3_step(statement.get());
        if (step == SQLITE_DONE) {
            break;
        }
        failures = step == SQLITE_ROW ? 0 : failures + 1;
        if (step == SQLITE_ROW) {
            row = sqlite3_column_int64(statement.get(), 0);
            if (const std::optional<PackedRecord> record = columnRecord(statement.get(), 3)) {
                found.append({columnText(statement.get(), 1), columnText(statement.get(), 2), record});
            }
        }
        sqlite3_reset(statement.get());
    }
    return found;
}

QString SqliteFile::setAside(StateChanges *rescued)
{
    close();
    QString aside = nameAside(m_path, u"damaged"_s);
    const QByteArray name = QFile::encodeName(m_path);
    const QByteArray asideName = QFile::encodeName(aside);
    // This setting opens a file that is shorter than it says of itself.
    if (sqlite3_open_v2(
            m_path.toUtf8().constData(), &m_db, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr)
            == SQLITE_OK
        && run("PRAGMA writable_schema = ON")) {
        *rescued = readable();
    }
    close();
    if (std::rename(name.constData(), asideName.constData()) != 0) {
        return {};
    }
    // The journal of the damaged file must not be taken for that of the next one.
    std::rename((name + "-journal").constData(), (asideName + "-journal").constData());
    return aside;
}

} // namespace brevok
