// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>

namespace Ui {
class BrevokPanel;
}

namespace brevok {

class ServiceWatch;
class StorageWatch;

/// What the panel tells above both of its tabs, since it keeps from neither: that nothing can be stored, and
/// that the user's own check failed. Main thread.
class PanelNotices final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(PanelNotices)

public:
    PanelNotices(Ui::BrevokPanel &ui, StorageWatch &storage, ServiceWatch &service, QObject *parent);
    ~PanelNotices() override;

Q_SIGNALS:
    void checkWanted();

private:
    void update();

    Ui::BrevokPanel &m_ui;
    StorageWatch &m_storage;
    ServiceWatch &m_service;
};

} // namespace brevok
