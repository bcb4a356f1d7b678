// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "platform/UrlOpener.h"

namespace brevok {

/// Hands web addresses to the desktop's own opener.
class XdgUrlOpener final : public UrlOpener {
public:
    void open(const QUrl &url) override;

private:
    void fail(const QUrl &url);
};

} // namespace brevok
