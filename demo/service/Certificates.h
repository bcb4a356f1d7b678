// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

namespace brevok::demo {

/// Where a TLS server's identity stands, as PEM files.
struct CertificateFiles {
    QString authority; ///< what a client has to trust
    QString certificate; ///< for localhost, 127.0.0.1 and ::1, signed by the authority
    QString key; ///< the certificate's private key, mode 0600

    [[nodiscard]] static CertificateFiles in(const QString &folder);
};

/// Makes an authority and a certificate in @p folder unless usable ones are there: complete, fitting each
/// other and valid for another day. The authority's own key is thrown away, so that nobody can sign anything
/// else with it. @return what went wrong; empty when the files are there
[[nodiscard]] QString ensureCertificates(const QString &folder);

} // namespace brevok::demo
