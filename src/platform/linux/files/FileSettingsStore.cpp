// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/files/FileSettingsStore.h"

#include "foundation/Log.h"
#include "foundation/Record.h"
#include "platform/linux/files/SettingsText.h"

#include <QFileInfo>
#include <QUrl>

#include <tuple>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

QByteArray rawBytes(const QVariant &value)
{
    return value.typeId() == QMetaType::QByteArray ? value.toByteArray() : value.toString().toUtf8();
}

} // namespace

FileSettingsStore::FileSettingsStore(const QString &path, std::chrono::milliseconds retry, QObject *parent)
    : SettingsStore(parent)
    , m_file(path)
    , m_worker(retry, [this] { startBatch(); })
{
    m_path = m_file.path();
    const QString problem = m_file.read();
    m_values = m_file.values();
    if (!problem.isEmpty()) {
        say(problem);
        m_worker.dueLater();
    }
}

FileSettingsStore::~FileSettingsStore()
{
    std::ignore = FileSettingsStore::finish(-1);
}

QStringList FileSettingsStore::keys() const
{
    return chosen().keys();
}

QVariantMap FileSettingsStore::chosen() const
{
    QVariantMap values = m_values;
    if (m_batch) {
        values.insert(m_batch->changes);
    }
    values.insert(m_waiting);
    values.removeIf([](const QVariantMap::iterator &value) { return !value->isValid(); });
    return values;
}

QVariant FileSettingsStore::storedValue(const QString &key) const
{
    if (const auto changed = m_waiting.constFind(key); changed != m_waiting.cend()) {
        return *changed;
    }
    if (m_batch) {
        const QVariantMap &changes = m_batch->changes;
        if (const auto changed = changes.constFind(key); changed != changes.cend()) {
            return *changed;
        }
    }
    return m_values.value(key);
}

void FileSettingsStore::store(const QString &key, const QVariant &value)
{
    if (const QVariant known = storedValue(key);
        value.isValid() && known.isValid() && sameInSettings(known, value)) {
        return; // nothing that would be worth a write to the disk
    }
    change(key, value.typeId() == QMetaType::QString ? wellFormed(value.toString()) : value);
}

void FileSettingsStore::erase(const QString &key)
{
    change(key, {});
}

void FileSettingsStore::change(const QString &key, const QVariant &value)
{
    m_waiting.insert(key, value);
    if (!m_batch) {
        m_worker.dueSoon();
    }
}

void FileSettingsStore::write(StoreWaiter waiter)
{
    if (waiter.isThere()) {
        m_waiters.append(std::move(waiter));
    }
    if (!m_batch) {
        m_worker.dueSoon();
    }
}

void FileSettingsStore::startBatch()
{
    if (m_batch) {
        return; // its end begins the next
    }
    m_worker.rest();
    m_batch = std::make_shared<Batch>(Batch{std::exchange(m_waiting, {}), std::exchange(m_waiters, {})});
    m_worker.run(
        [this, batch = m_batch] {
            batch->problem = m_file.write(batch->changes);
            batch->values = m_file.values();
        },
        [this, batch = m_batch] { handleBatch(batch); });
}

void FileSettingsStore::handleBatch(const std::shared_ptr<Batch> &ended)
{
    if (ended == nullptr || ended != m_batch) {
        return; // finish() was faster
    }
    const QVariantMap before = chosen();
    const Batch batch = std::move(*std::exchange(m_batch, {}));
    m_values = batch.values;
    const bool stored = batch.problem.isEmpty();
    if (!stored) {
        const QVariantMap since = std::exchange(m_waiting, batch.changes);
        m_waiting.insert(since);
        m_worker.dueLater();
    }
    if (!m_waiters.isEmpty() || (stored && !m_waiting.isEmpty())) {
        m_worker.dueSoon();
    }
    say(batch.problem);
    tellOfOthers(before);
    const std::optional<BrevokError> error = stored
        ? std::nullopt
        : std::optional(BrevokError{.domain = u"com.tolvane.brevok.settings"_s,
            .code = 1,
            .description = u"It could not be stored in %1: %2"_s.arg(m_path, batch.problem)});
    for (const StoreWaiter &waiter : batch.waiters) {
        waiter.tell(error);
    }
}

void FileSettingsStore::tellOfOthers(const QVariantMap &before)
{
    const QVariantMap now = chosen();
    QVariantMap both = before;
    both.insert(now);
    const QStringList keys = both.keys();
    for (const QString &key : keys) {
        if (before.contains(key) != now.contains(key) || !sameInSettings(before.value(key), now.value(key))) {
            Q_EMIT changed(key);
        }
    }
}

// One line tells of a full disk, not one for every value that is kept meanwhile.
void FileSettingsStore::say(const QString &problem)
{
    const QString before = std::exchange(m_problem, problem);
    if (before.isEmpty() == problem.isEmpty()) {
        return;
    }
    if (before.isEmpty()) {
        logLine(u"The settings cannot be saved in %1: %2"_s.arg(m_path, problem));
        Q_EMIT troubled(problem);
    } else {
        logLine(u"The settings are saved in %1 again."_s.arg(m_path));
        Q_EMIT mended();
    }
}

bool FileSettingsStore::finish(int milliseconds)
{
    bool done = m_worker.wait(milliseconds);
    if (done) {
        handleBatch(m_batch);
    }
    if (done && (!m_waiting.isEmpty() || !m_waiters.isEmpty())) {
        startBatch();
        done = m_worker.wait(milliseconds);
        if (done) {
            handleBatch(m_batch);
        }
    }
    if (!done) {
        logLine(u"The settings could not be saved in %1: the disk does not answer."_s.arg(m_path));
    }
    return done;
}

void FileSettingsStore::setAside(const QString &key, const QString &reason)
{
    const QVariant value = storedValue(key);
    if (!value.isValid()) {
        return;
    }
    constexpr qsizetype nameLimit = 100;
    const QString name = QString::fromLatin1(QUrl::toPercentEncoding(key)).left(nameLimit);
    m_worker.run([path = m_path, name, bytes = rawBytes(value), key, reason] {
        const QString aside = nameAside(path + u'.' + name, u"unusable"_s);
        std::optional<BrevokError> error;
        makePrivateFolder(QFileInfo(path).absolutePath());
        const bool kept = writePrivateFile(aside, bytes, &error);
        logLine(u"What the settings hold under \"%1\" cannot be used (%2); %3"_s.arg(key, reason,
            kept ? u"it was kept as %1"_s.arg(aside)
                 : u"it could not be kept: %1"_s.arg(error->description)));
    });
    erase(key);
}

} // namespace brevok
