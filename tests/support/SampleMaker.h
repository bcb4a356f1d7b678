// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "support/SampleBundles.h"

#include <QByteArray>
#include <QFile>
#include <QHash>
#include <QProcess>
#include <QTemporaryDir>

#include <sodium.h>

namespace brevok::testing {

using namespace Qt::StringLiterals;

/// Who signs.
struct SampleMaker {
    QByteArray publicKey = QByteArray(crypto_sign_PUBLICKEYBYTES, '\0');
    QByteArray secretKey = QByteArray(crypto_sign_SECRETKEYBYTES, '\0');

    SampleMaker()
    {
        if (sodium_init() < 0
            || crypto_sign_keypair(
                   reinterpret_cast<uchar *>(publicKey.data()), reinterpret_cast<uchar *>(secretKey.data()))
                != 0) {
            qFatal("libsodium does not work");
        }
    }

    [[nodiscard]] QByteArray sign(const QByteArray &data) const
    {
        QByteArray signature(crypto_sign_BYTES, '\0');
        crypto_sign_detached(reinterpret_cast<uchar *>(signature.data()), nullptr,
            reinterpret_cast<const uchar *>(data.constData()), static_cast<unsigned long long>(data.size()),
            reinterpret_cast<const uchar *>(secretKey.constData()));
        return signature.toBase64();
    }
};

/// A package of the application with some hundred kilobytes in it, which is what is signed.
inline QByteArray samplePackage(
    const QByteArray &version = "101-1", const QByteArray &name = "tolvane-brevok")
{
    static QHash<QByteArray, QByteArray> made; // two of the same content have other dates
    QByteArray &known = made[name + '_' + version];
    if (!known.isEmpty()) {
        return known;
    }
    const QTemporaryDir scratch;
    const QString root = scratch.filePath(u"root"_s);
    QByteArray content;
    for (quint32 seed = 3; content.size() < 300000; seed = seed * 1664525 + 1013904223) {
        content += QByteArray::number(seed >> 4, 36);
    }
    const QByteArray control = "Package: " + name + "\nVersion: " + version
        + "\nArchitecture: all\nMaintainer: Nobody <nobody@example.com>\nDescription: sample\n";
    QFile package(scratch.filePath(u"sample.deb"_s));
    if (!writeFile(root + u"/DEBIAN/control"_s, control) || !writeFile(root + u"/usr/share/sample"_s, content)
        || QProcess::execute(
               u"dpkg-deb"_s, {u"-Znone"_s, u"--root-owner-group"_s, u"--build"_s, root, package.fileName()})
            != 0
        || !package.open(QIODevice::ReadOnly)) {
        qFatal("dpkg-deb does not work");
    }
    return known = package.readAll();
}

} // namespace brevok::testing
