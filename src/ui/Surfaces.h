// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>

#include <memory>

namespace brevok {

/// The status item in the system's bar, as the application drives it. Main thread.
class StatusItemSurface {
public:
    StatusItemSurface() = default;
    virtual ~StatusItemSurface() = default;
    Q_DISABLE_COPY_MOVE(StatusItemSurface)

    /// How many packages wait for an update; 0 hides the number.
    virtual void setUpdates(int updates) = 0;
    [[nodiscard]] virtual bool hasActiveIcon() const = 0;
    virtual void setHasActiveIcon(bool active) = 0;
};

/// The panel, as the application drives it. Main thread.
class PanelSurface : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(PanelSurface)

public:
    explicit PanelSurface(QObject *parent = nullptr);
    ~PanelSurface() override;

    [[nodiscard]] virtual bool hasActivePanel() const = 0;
    virtual void setHasActivePanel(bool active) = 0;
    virtual void openPanel() = 0;
    virtual void setKeepOpenPanel(bool keepOpen) = 0;

Q_SIGNALS:
    void hasActivePanelChanged(bool active);
};

/// Windows of the program, made by whoever composes it. Without windows every wish is a log line.
class Surfaces {
public:
    Surfaces() = default;
    virtual ~Surfaces() = default;
    Q_DISABLE_COPY_MOVE(Surfaces)

    [[nodiscard]] virtual std::unique_ptr<StatusItemSurface> makeStatusItem() = 0;
    [[nodiscard]] virtual std::unique_ptr<PanelSurface> makePanel() = 0;
    /// Brings the preferences to the front, at the page of the targets.
    virtual void showTargetsPreferences() = 0;
    virtual void showUpdateProgress() = 0;
    virtual void showUpdateResult(const QString &title, const QString &label) = 0;
};

} // namespace brevok
