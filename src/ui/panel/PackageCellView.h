// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QPixmap>
#include <QWidget>

namespace brevok {

/// A package's icon, or a tile with its first letter where there is none.
class IconTile final : public QWidget {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(IconTile)

public:
    explicit IconTile(QWidget *parent = nullptr);
    ~IconTile() override;

    void setIcon(const QPixmap &icon, const QString &name);
    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QPixmap m_icon;
    QString m_letter;
};

/// A thin bar that shows how far a download is.
class ThinProgressBar final : public QWidget {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ThinProgressBar)
    Q_PROPERTY(int permille READ permille)

public:
    explicit ThinProgressBar(QWidget *parent = nullptr);
    ~ThinProgressBar() override;

    /// 0 to 1000.
    void setPermille(int permille);
    [[nodiscard]] int permille() const { return m_permille; }
    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    int m_permille = 0;
};

/// The view of a package's row: its background, and the ring while the row itself has the focus.
class PackageCellView final : public QWidget {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(PackageCellView)

public:
    explicit PackageCellView(QWidget *parent = nullptr);
    ~PackageCellView() override;

    void setPriority(bool priority);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    bool m_priority = false;
};

} // namespace brevok
