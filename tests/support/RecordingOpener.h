// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/UrlOpener.h"

#include <QList>

namespace brevok::testing {

/// Opens nothing and remembers what it was asked to open.
class RecordingOpener final : public UrlOpener {
public:
    QList<QUrl> opened;
    void open(const QUrl &url) override { opened.append(url); }
};

} // namespace brevok::testing
