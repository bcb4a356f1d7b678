// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "ui/statusitem/linux/NotifierTypes.h"

#include <QDBusObjectPath>
#include <QObject>
#include <QPoint>

namespace brevok {

class NotifierWatch;

/// The item as hosts of the StatusNotifierItem protocol see it, on the session bus. It registers whenever a
/// watcher takes its name there, however often that, or the bus itself, goes and comes back. No call waits
/// for the bus.
///
/// Qt's own QSystemTrayIcon decides at its first use, once, whether a watcher runs, and hands on neither the
/// place of a click nor any other: an icon that came before its bar would never show.
class StatusNotifier final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(StatusNotifier)
    Q_PROPERTY(QString Category READ category CONSTANT)
    Q_PROPERTY(QString Id READ id CONSTANT)
    Q_PROPERTY(QString Title READ title CONSTANT)
    Q_PROPERTY(QString Status READ status CONSTANT)
    Q_PROPERTY(int WindowId READ windowId CONSTANT)
    Q_PROPERTY(bool ItemIsMenu READ itemIsMenu CONSTANT)
    Q_PROPERTY(QDBusObjectPath Menu READ menu CONSTANT)
    Q_PROPERTY(QString IconName READ iconName CONSTANT)
    Q_PROPERTY(brevok::NotifierPixmaps IconPixmap READ iconPixmap)
    Q_PROPERTY(brevok::NotifierToolTip ToolTip READ toolTip)

public:
    /// @p watch outlives this object.
    explicit StatusNotifier(NotifierWatch &watch);
    ~StatusNotifier() override;

    /// @p updates is drawn upon the icon; hosts give a square.
    void setFace(qint64 updates, const QString &toolTip);

    [[nodiscard]] QString category() const;
    [[nodiscard]] QString id() const;
    [[nodiscard]] QString title() const;
    [[nodiscard]] QString status() const;
    [[nodiscard]] int windowId() const { return 0; }
    [[nodiscard]] bool itemIsMenu() const { return false; }
    [[nodiscard]] QDBusObjectPath menu() const;
    [[nodiscard]] QString iconName() const { return {}; }
    [[nodiscard]] NotifierPixmaps iconPixmap() const;
    [[nodiscard]] NotifierToolTip toolTip() const;

public Q_SLOTS:
    // What hosts call.
    void Activate(int x, int y);
    void SecondaryActivate(int x, int y);
    void ContextMenu(int x, int y);
    void Scroll(int delta, const QString &orientation);
    /// The compositor's permission to take the focus, given just before Activate.
    void ProvideXdgActivationToken(const QString &token);

Q_SIGNALS:
    /// @p where as the host told it: in the screen's own pixels, (0, 0) where it does not know.
    void activated(QPoint where);
    // Relayed to the bus.
    void NewTitle();
    void NewIcon();
    void NewToolTip();
    void NewStatus(const QString &status);

private:
    void joinBus();

    NotifierWatch &m_watch;
    QString m_name;
    QString m_toolTip;
    qint64 m_updates = 0;
};

} // namespace brevok
