// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>

namespace brevok::testing {

/// One item of a feed; what is empty is left out.
struct SampleItem {
    QByteArray version{};
    QByteArray url = "https://localhost/brevok.deb";
    QByteArray length = "1000";
    QByteArray signature = QByteArray(64, 's').toBase64();
    QByteArray minimum{};
    QByteArray more{}; ///< further elements
    QByteArray system = "linux";

    [[nodiscard]] QByteArray xml() const
    {
        const auto attribute = [](const QByteArray &name, const QByteArray &value) {
            return value.isEmpty() ? QByteArray() : ' ' + name + "=\"" + value + '"';
        };
        return "<item><title>Version " + version + "</title>" + more
            + (minimum.isEmpty()
                    ? QByteArray()
                    : "<sparkle:minimumSystemVersion>" + minimum + "</sparkle:minimumSystemVersion>")
            + "<enclosure type=\"application/octet-stream\"" + attribute("url", url)
            + attribute("length", length) + attribute("sparkle:version", version)
            + attribute("sparkle:edSignature", signature) + attribute("sparkle:os", system) + "/></item>";
    }
};

inline QByteArray sampleFeed(const QByteArray &items, const QByteArray &prolog = {})
{
    return "<?xml version=\"1.0\" encoding=\"utf-8\"?>" + prolog
        + "<rss version=\"2.0\" xmlns:sparkle=\"http://www.andymatuschak.org/xml-namespaces/sparkle\">"
          "<channel><title>Updates</title>"
        + items + "</channel></rss>";
}

} // namespace brevok::testing
