// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>
#include <QUrl>

namespace brevok {

struct ServiceConfiguration;

/// Where updates of the application come from, and who signs them.
struct UpdateSource {
    QUrl feed; ///< the appcast, https
    QByteArray publicKey; ///< ed25519, 32 bytes; empty when this build cannot verify updates
    QString channel{}; ///< whose versions are offered too, such as "beta"; may be empty

    [[nodiscard]] bool canUpdate() const { return !publicKey.isEmpty(); }
};

/// What the build says (BREVOK_UPDATE_FEED_URL, BREVOK_UPDATE_PUBLIC_KEY, BREVOK_UPDATE_CHANNEL). A build
/// that names no feed takes "/appcast.xml" of the service.
[[nodiscard]] UpdateSource updateSourceOfBuild(const ServiceConfiguration &service);

/// The version that the system gives itself ("12"); empty when it gives none.
[[nodiscard]] QString systemVersion();

} // namespace brevok
