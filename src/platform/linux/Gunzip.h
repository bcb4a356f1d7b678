// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArrayView>

#include <functional>
#include <memory>

namespace brevok {

/// Decompresses gzip data (one member or several) piece by piece, with no more memory than a piece takes.
/// Tells whether it was whole, which the transfer library does not.
class Gunzip final {
public:
    /// Gets what came out; false stops.
    using Sink = std::function<bool(QByteArrayView)>;

    explicit Gunzip(Sink sink);
    ~Gunzip();
    Q_DISABLE_COPY_MOVE(Gunzip)

    /// @return false when the data is no gzip or the sink wants no more
    [[nodiscard]] bool add(QByteArrayView data);
    /// Whether the data so far ends where a member ends.
    [[nodiscard]] bool isWhole() const;
    [[nodiscard]] bool isBroken() const;

private:
    struct State;
    std::unique_ptr<State> m_state;
};

} // namespace brevok
