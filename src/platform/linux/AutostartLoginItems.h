// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/LoginItems.h"

#include <QString>

namespace brevok {

/// The session's autostart folder; the program's item is one desktop entry in it.
class AutostartLoginItems final : public LoginItems {
public:
    /// @p file is the desktop entry, @p displayName what session tools show for it.
    AutostartLoginItems(QString file, QString displayName);

    /// An entry that the user switched off in a session tool counts as absent.
    [[nodiscard]] bool contains(const QUrl &application) const override;
    QString insert(const QUrl &application) override;
    QString remove(const QUrl &application) override;

private:
    QString m_file;
    QString m_displayName;
};

} // namespace brevok
