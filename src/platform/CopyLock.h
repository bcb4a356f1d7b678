// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>
#include <QString>

namespace brevok {

struct StandardFolders;

/// A lock that at most one copy of the program holds. The system drops it when its holder ends, however that
/// ends, and not before: by then everything else that the holder had is free, too. Main thread.
class CopyLock final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(CopyLock)

public:
    enum class State {
        Ours,
        Theirs,
        Unusable, ///< there is no place for it: it says nothing of other copies
    };

    /// Nothing is opened yet; an empty @p path is unusable.
    explicit CopyLock(QString path, QObject *parent = nullptr);
    ~CopyLock() override;

    /// Takes the lock if it is free. A holder that @p givesWay leaves when a copy asks it to, which it learns
    /// from TerminationRequests::handOverRequested(). May be called again, also by another object of the
    /// process.
    [[nodiscard]] State take(bool givesWay);

    /// Waits for the end of the copy that holds the lock. @return false when that is none that gives way;
    /// else holderEnded() follows, however long its work takes
    [[nodiscard]] bool awaitHolder();
    /// The same, and asks that copy to leave.
    [[nodiscard]] bool askHolderToLeave();

Q_SIGNALS:
    void holderEnded();

private:
    [[nodiscard]] qint64 holderOf(qint64 byte) const;
    [[nodiscard]] bool awaitHolder(int signal);
    void tellLater();

    QString m_path;
    int m_file = -1;
};

/// The lock of the copy that works on the files in @p folders.
[[nodiscard]] QString lockOfFiles(const StandardFolders &folders);
/// The same where it lies in the user's runtime folder; empty without one.
[[nodiscard]] QString quickLockOfFiles(const StandardFolders &folders);
/// The lock of the copy in a session that has no message bus; empty where nothing tells one session from
/// another.
[[nodiscard]] QString lockOfSession();

} // namespace brevok
