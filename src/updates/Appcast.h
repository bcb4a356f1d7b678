// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "foundation/BrevokError.h"

#include <QByteArray>
#include <QList>
#include <QUrl>

#include <optional>

namespace brevok {

/// One version that the feed offers, as it stands there: nothing is checked yet.
struct AppcastItem {
    QString version{}; ///< what is compared, as CFBundleVersion
    QString displayVersion{}; ///< what users see; may be empty
    QString minimumSystemVersion{}; ///< may be empty
    QString description{}; ///< the notes themselves: HTML or plain text
    QUrl releaseNotesLink{}; ///< where the notes are; goes before `description`
    QString channel{}; ///< empty for the stable one
    QUrl address{}; ///< of the package
    qint64 length = -1; ///< of the package, bytes; -1 when missing
    QByteArray signature{}; ///< of the package, base64

    /// The version for users.
    [[nodiscard]] const QString &shownVersion() const
    {
        return displayVersion.isEmpty() ? version : displayVersion;
    }
};

/// No feed is larger, in bytes.
inline constexpr qsizetype appcastSizeLimit = 1024LL * 1024;

/// The items of @p feed (RSS 2.0 with the update framework's own elements and attributes), in its order.
/// What is not for this operating system, by the name in its enclosure, is left out. A feed that is too
/// large, malformed or has a document type (and so could define entities) is refused whole.
[[nodiscard]] QList<AppcastItem> parseAppcast(const QByteArray &feed, std::optional<BrevokError> *error);

} // namespace brevok
