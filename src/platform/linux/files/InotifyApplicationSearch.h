// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/ApplicationSearch.h"
#include "platform/linux/files/InotifyApplicationSearchScan.h"

#include <QHash>
#include <QList>
#include <QMap>
#include <QSet>
#include <QTimer>

#include <memory>

class QSocketNotifier;
struct inotify_event;

namespace brevok {

class MountWatch;

/// A search for applications in given folders: every `NAME.app` folder in them, or below them down to six
/// levels, whose NAME matches. A link to such a folder counts as well, under its own path; other links are
/// not followed, hidden folders and Plug-Ins folders not entered. A folder that is missing or unreadable is
/// searched as soon as that changes.
///
/// An application counts as changed when its information dictionary changed, when a Plug-Ins folder came or
/// went beside it, or when a folder goes that it was in before. A mounted or unmounted volume makes all
/// folders worth another look; a folder whose disk does not answer is left out until it does. Without watches
/// (the system's limit is reached) the search goes on for what is watched, and one log line says so.
class InotifyApplicationSearch final : public ApplicationSearch {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(InotifyApplicationSearch)

public:
    explicit InotifyApplicationSearch(const QStringList &folders, QObject *parent = nullptr);
    ~InotifyApplicationSearch() override;

    void start(const QStringList &namePatterns) override;
    void stop() override;
    [[nodiscard]] QStringList results() const override { return m_results; }
    [[nodiscard]] QStringList folders() const override;

private:
    /// A watch's way back to the item that holds it.
    struct Holder {
        qsizetype root = 0;
        QString path{};
        bool folder = false;
        QStringList names{};
    };
    using Items = QMap<QString, SearchItem>; ///< by path

    void readEvents();
    void handleEvent(const inotify_event &event, const QString &name);
    void handleFolderEntry(const Holder &holder, const QString &name, bool isFolder);
    void markChanged(qsizetype root, const QString &path);
    void markEverything();
    void noticeVolumes();
    void settle();
    void scanChanges();
    void take(const QList<ScanResult> &results);
    [[nodiscard]] Items removeItems(qsizetype root, const QString &path, QSet<int> &touched);
    void insertItems(qsizetype root, const ScanResult &result);
    void forgetUnheld(const QSet<int> &watches);
    void listResults();
    void logOnce(const QString &line);

    QList<SearchScope> m_scopes;
    QList<Items> m_items; ///< one map a scope
    QList<QSet<QString>> m_changed; ///< paths to be looked at again, one set a scope
    QHash<int, QList<Holder>> m_holders; ///< by watch
    std::shared_ptr<InotifyQueue> m_queue; ///< null before start() and after stop()
    std::unique_ptr<QSocketNotifier>
        m_notifier; ///< silent while a scan runs, whose watches are not known yet
    std::unique_ptr<MountWatch> m_mounts;
    QTimer m_settling;
    QStringList m_results;
    bool m_scanning = false;
    bool m_volumesChanged = false;
    bool m_gathered = false;
    bool m_complained = false;
};

} // namespace brevok
