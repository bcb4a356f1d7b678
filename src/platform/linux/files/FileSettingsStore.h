// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/linux/files/SettingsFile.h"
#include "platform/linux/files/StoreWorker.h"
#include "platform/SettingsStore.h"

#include <memory>

namespace brevok {

/// The settings in a SettingsFile, which is read at the start and written by a worker.
class FileSettingsStore final : public SettingsStore {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(FileSettingsStore)

public:
    /// @p retry is how long what could not be stored waits until it is tried again without a change.
    explicit FileSettingsStore(const QString &path, std::chrono::milliseconds retry = std::chrono::minutes(1),
        QObject *parent = nullptr);
    ~FileSettingsStore() override;

    [[nodiscard]] bool contains(const QString &key) const override { return storedValue(key).isValid(); }
    [[nodiscard]] QStringList keys() const override;
    [[nodiscard]] bool finish(int milliseconds) override;
    [[nodiscard]] QString problem() const override { return m_problem; }
    void setAside(const QString &key, const QString &reason) override;

protected:
    [[nodiscard]] QVariant storedValue(const QString &key) const override;
    void store(const QString &key, const QVariant &value) override;
    void erase(const QString &key) override;
    void write(StoreWaiter waiter) override;

private:
    /// What the worker writes in one go, and what became of it.
    struct Batch {
        QVariantMap changes;
        QList<StoreWaiter> waiters;
        QString problem{};
        QVariantMap values{}; ///< of the file afterwards
    };

    void change(const QString &key, const QVariant &value);
    void startBatch();
    void handleBatch(const std::shared_ptr<Batch> &ended);
    void tellOfOthers(const QVariantMap &before);
    void say(const QString &problem);
    /// All values of the user's own.
    [[nodiscard]] QVariantMap chosen() const;

    QString m_path;
    SettingsFile m_file; ///< the worker's while a batch is under way
    QVariantMap m_values; ///< what the file held when it was last read or written
    QVariantMap m_waiting; ///< set since then; an invalid value removes its key
    QList<StoreWaiter> m_waiters;
    std::shared_ptr<Batch> m_batch; ///< under way
    QString m_problem;
    StoreWorker m_worker; ///< goes first
};

} // namespace brevok
