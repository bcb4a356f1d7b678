// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>

/// An item that is to go is first given another name in its folder, in one step, and then deleted. So its own
/// name never leads to half of it, whenever the work is cut short; and the other name tells whether it was to
/// come back. Every failure leaves its reason in errno.
namespace brevok::replaceditem {

enum class Removed { No, InPart, Whole };
/// Removes the item @p name of @p folder for good. What resists deletion stays out of sight.
[[nodiscard]] Removed remove(int folder, const QByteArray &name);

/// Takes the item @p name of @p folder out of the way until its successor stands; what an earlier run left
/// under that other name goes.
[[nodiscard]] bool setAside(int folder, const QByteArray &name);
/// Gives what was set aside its name again, which nothing may bear.
[[nodiscard]] bool bringBack(int folder, const QByteArray &name);
/// Deletes what was set aside; nothing there is a success.
[[nodiscard]] bool discard(int folder, const QByteArray &name);

/// What was being done to an item when it was cut short.
struct Interrupted {
    bool removal = false; ///< it was to go for good
    bool fresh = false; ///< there was none before
    bool rebooted = false; ///< the system was started anew since, so that what was not on the disk is lost
};
enum class Repair { NothingToDo, Cleaned, Restored };
/// Ends what a process left that was killed while it worked on the item @p name of @p folder. An item that
/// was set aside comes back where it has no successor, or only one that may have lost some of its bytes; a
/// new one of which the same may be said goes; everything else left goes too.
[[nodiscard]] Repair repair(int folder, const QByteArray &name, const Interrupted &what);
/// The same for every item of @p folder that was being installed or removed. @return whether there was any
bool repairAll(int folder);

} // namespace brevok::replaceditem
