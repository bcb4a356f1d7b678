// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/FileState.h"
#include "platform/linux/files/FileDescriptor.h"

#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

#include <atomic>
#include <optional>

namespace brevok {

class Pulse;

/// One queue of the kernel's folder events. The main thread reads it and a scan adds watches to it; the last
/// of both closes it. Adding and forgetting are system calls without state of ours.
class InotifyQueue final {
public:
    InotifyQueue();

    /// Negative when the system gave none; watching is then without effect.
    [[nodiscard]] int descriptor() const { return m_descriptor.get(); }
    /// Watches @p path (following links) for @p events beside those it is watched for already.
    /// @return the watch, or a negative errno
    [[nodiscard]] int watch(const QString &path, quint32 events) const;
    void forget(int watch) const;

    /// Tells a running scan to end early.
    void cancel() { m_cancelled.store(true, std::memory_order_relaxed); }
    [[nodiscard]] bool isCancelled() const { return m_cancelled.load(std::memory_order_relaxed); }

private:
    FileDescriptor m_descriptor;
    std::atomic<bool> m_cancelled = false;
};

/// What of a bundle is of interest to those who search for it.
struct BundleState {
    QString realPath;
    FileState information; ///< its Contents/Info.plist
    FileState plugins; ///< which Plug-Ins folder stands beside it

    [[nodiscard]] bool operator==(const BundleState &) const = default;
};

/// A watch that an item holds.
struct ItemWatch {
    int watch = -1;
    bool folder = false; ///< a searched folder: what appears in it is an item of its own
    QStringList names{}; ///< otherwise, the entries whose events concern the item
};

/// A searched folder, or a bundle that matches.
struct SearchItem {
    std::optional<BundleState> bundle{};
    QList<ItemWatch> watches{};
};

/// Which folder is searched, and for what.
struct SearchScope {
    QString root; ///< absolute, without a trailing slash (but for "/")
    QStringList patterns{};

    /// Whether the bundle name @p fileName ("NAME.app") is one that is searched for.
    [[nodiscard]] bool matches(const QString &fileName) const;
    /// How many folders lie between the root and @p path, counting @p path; 0 for the root.
    [[nodiscard]] qsizetype depth(const QString &path) const;
};

/// How deep below the root folders are searched.
inline constexpr qsizetype deepestSearchedFolder = 6;

/// Whether @p name ends as bundles do.
[[nodiscard]] bool isBundleName(const QString &name);
/// Whether a folder of that name is searched: hidden ones and Plug-Ins folders, where plug-ins come and go,
/// are not.
[[nodiscard]] bool isSearchedFolderName(const QString &name);
[[nodiscard]] QString childPath(const QString &folder, const QString &name);

struct ScanResult {
    SearchScope scope{};
    QString path{};
    QMap<QString, SearchItem> items{}; ///< by path: @p path and everything below, as far as it is searched
    bool watchesUsedUp = false;
};

/// Looks at @p path, which is the root or lies below it, and watches what it finds. Every watch is set before
/// its folder is read, so that nothing falls between. Background thread.
[[nodiscard]] ScanResult scanApplications(
    const InotifyQueue &queue, const SearchScope &scope, const QString &path, Pulse &pulse);

} // namespace brevok
