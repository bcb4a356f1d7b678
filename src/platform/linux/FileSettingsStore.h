// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/linux/PrivateFile.h"
#include "platform/SettingsStore.h"

#include <QSet>
#include <QTimer>

namespace brevok {

/// The settings in one text file that people can read and edit (see settingsText()).
///
/// The file is replaced whole, under a lock, so that readers never see half of one; what other programs wrote
/// meanwhile is merged by key. Changes that nobody synchronizes are written on the next turn of the event
/// loop. What cannot be read is renamed to "FILE.unreadable-DATE-TIME" and the values known so far are kept.
class FileSettingsStore final : public SettingsStore {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(FileSettingsStore)

public:
    explicit FileSettingsStore(const QString &path, QObject *parent = nullptr);
    ~FileSettingsStore() override;

    [[nodiscard]] bool contains(const QString &key) const override;
    [[nodiscard]] QStringList keys() const override;
    bool synchronize() override;
    [[nodiscard]] QString problem() const override { return m_problem; }
    void setAside(const QString &key, const QString &reason) override;

protected:
    [[nodiscard]] QVariant storedValue(const QString &key) const override;
    void store(const QString &key, const QVariant &value) override;
    void erase(const QString &key) override;

private:
    [[nodiscard]] bool hasChanges() const { return !m_changed.isEmpty() || !m_erased.isEmpty(); }
    bool refresh();
    void keepValues();
    bool moveAside(const QString &reason);
    bool write();
    bool failed(const QString &reason);

    QString m_path;
    QVariantMap m_saved; // what the file held when it was last read or written
    QVariantMap m_changed; // set since then
    QSet<QString> m_erased; // removed since then
    FileStamp m_stamp;
    QTimer m_writing; // on the next turn of the event loop
    QString m_problem;
};

} // namespace brevok
