// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "foundation/Record.h"

#include <QList>
#include <QString>

namespace brevok {

/// A valid element of the published list with the values that merging needs, read once.
struct ListedBuild {
    /// How many keys a valid element has at the least.
    static constexpr qsizetype requiredKeys = 8;

    Record record;
    QString prefix;
    QString name;
    QString version;
    QString host; ///< "HostVersion" as text
    qint64 hostVersion = 0;

    /// What makes a build one build.
    [[nodiscard]] QString key() const;
};

/// The newest build per plug-in, host version and prefix, in the order in which the list names them first.
/// What is no usable element is left out, with the log line that belongs to it.
[[nodiscard]] QList<ListedBuild> newestBuilds(QJsonArray list);

} // namespace brevok
