// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>

/// An item that is to go is first given another name in its folder, in one step, and then deleted. So its own
/// name never leads to half of it, whenever the work is cut short. Every failure leaves its reason in errno.
namespace brevok::replaceditem {

/// Takes the item @p name of @p folder out of the way; what an earlier run left under that other name goes.
[[nodiscard]] bool setAside(int folder, const QByteArray &name);
/// Deletes what was set aside; nothing there is a success.
[[nodiscard]] bool discard(int folder, const QByteArray &name);

enum class Repair { NothingToDo, Cleaned, Restored };
/// Ends what a process left that was killed while it replaced (@p restore) or removed the item @p name of
/// @p folder: an item that was set aside and has no successor comes back, everything else left goes.
[[nodiscard]] Repair repair(int folder, const QByteArray &name, bool restore);

} // namespace brevok::replaceditem
