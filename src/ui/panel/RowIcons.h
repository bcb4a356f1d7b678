// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QCache>
#include <QImage>
#include <QObject>
#include <QPixmap>
#include <QSet>

namespace brevok {

class BrevokPackages;

/// The picture in @p data, fitted into a square of @p pixels; null when it is none, is too large to be an
/// icon, or is a drawing with more in it than plain shapes (which could take hours to paint). Any thread.
[[nodiscard]] QImage decodedIcon(const QByteArray &data, int pixels);

/// The icons of the rows as pictures: decoded once, when a row first needs one, large ones in the background.
/// Main thread.
class RowIcons final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(RowIcons)

public:
    explicit RowIcons(const BrevokPackages &packages, QObject *parent = nullptr);
    ~RowIcons() override;

    /// The icon of the package called @p name; null while there is none, or none yet.
    [[nodiscard]] QPixmap icon(const QString &name);
    /// Everything is decoded anew when it is next needed.
    void forget();

Q_SIGNALS:
    /// The icon of a package that had none yet is there.
    void iconReady(const QString &name);

private:
    struct Decoded {
        QByteArray data; ///< what it was made of
        QPixmap pixmap;
    };

    void decodeLater(const QString &name, const QByteArray &data);

    const BrevokPackages &m_packages;
    QCache<QString, Decoded> m_decoded; ///< the latest ones; the others are quickly made again
    QSet<QString> m_underWay;
};

} // namespace brevok
