// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/StoreWaiter.h"

#include <QByteArray>
#include <QDateTime>
#include <QSet>
#include <QStringList>
#include <QVariant>

namespace brevok {

/// What the user chooses: values by key, over registered defaults. Main thread only.
///
/// A change is visible to value() at once and is written by a worker, in order, soon after; changes that
/// another program made meanwhile are merged by key. What cannot be written now (a full disk, a lock, a
/// missing right) counts all the same, and is tried again with the next change and from time to time.
/// Values are bool, int, double, QByteArray, QString, QStringList and QDateTime. Keys may hold any character.
class SettingsStore : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(SettingsStore)

public:
    explicit SettingsStore(QObject *parent = nullptr);
    ~SettingsStore() override;

    /// Values for keys that the user has not set. Nothing is written.
    void registerDefaults(const QVariantMap &defaults);

    /// Values that the administrator decides: they stand over the user's own, which are kept as they are, and
    /// setValue() and remove() of their keys change nothing.
    void lock(const QVariantMap &values);
    [[nodiscard]] bool isLocked(const QString &key) const { return m_locked.contains(key); }

    /// The locked value, else the user's, else the registered default, else an invalid variant.
    [[nodiscard]] QVariant value(const QString &key) const;
    /// Whether the user's own value exists, whatever the defaults say.
    [[nodiscard]] virtual bool contains(const QString &key) const = 0;
    /// Of all values of the user's own.
    [[nodiscard]] virtual QStringList keys() const = 0;

    /// A text that is no word for yes or no counts as not set.
    [[nodiscard]] bool boolValue(const QString &key) const;
    [[nodiscard]] int integerValue(const QString &key) const;
    [[nodiscard]] double floatValue(const QString &key) const;
    /// An absent value and one of another type read as empty.
    [[nodiscard]] QByteArray dataValue(const QString &key) const;
    [[nodiscard]] QStringList stringListValue(const QString &key) const;
    /// An absent value and one that is no date read as the distant past.
    [[nodiscard]] QDateTime dateValue(const QString &key) const;

    void setValue(const QString &key, const QVariant &value);
    void remove(const QString &key);

    /// Writes what changed so far, so that it survives a power cut, and takes in what other programs wrote.
    /// @p done hears what became of that on a later turn of the event loop, while @p context lives.
    void synchronize(QObject *context, StoreDone done);
    /// Stores what waits, before the program ends: see StateStore::finish().
    [[nodiscard]] virtual bool finish(int milliseconds) = 0;
    /// Why the settings cannot be stored (or read) now; empty in good weather.
    [[nodiscard]] virtual QString problem() const = 0;

    /// Called by the owner of @p key when what is stored there cannot be used. The stored bytes are kept
    /// beside the store under a name that says so, the key is removed, and one log line says what happened
    /// and where it went.
    virtual void setAside(const QString &key, const QString &reason) = 0;

    /// The date that absent dates read as.
    static QDateTime distantPast();

Q_SIGNALS:
    /// After every setValue() and remove() of that key, whether or not the value differs, and when the value
    /// of another program was taken in.
    void changed(const QString &key);
    /// Nothing can be stored (or read) for the given reason; said once until mended().
    void troubled(const QString &reason);
    void mended();

protected:
    [[nodiscard]] virtual QVariant storedValue(const QString &key) const = 0;
    virtual void store(const QString &key, const QVariant &value) = 0;
    virtual void erase(const QString &key) = 0;
    virtual void write(StoreWaiter waiter) = 0;

private:
    QVariantMap m_defaults;
    QVariantMap m_locked;
    mutable QSet<QString> m_unusable; ///< keys whose value was said to be no truth
};

} // namespace brevok
