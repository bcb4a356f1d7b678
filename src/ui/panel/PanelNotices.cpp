// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/panel/PanelNotices.h"

#include "platform/StorageWatch.h"
#include "ui/panel/PanelState.h"
#include "ui/panel/ServiceWatch.h"
#include "ui_BrevokPanel.h"

namespace brevok {

PanelNotices::PanelNotices(Ui::BrevokPanel &ui, StorageWatch &storage, ServiceWatch &service, QObject *parent)
    : QObject(parent)
    , m_ui(ui)
    , m_storage(storage)
    , m_service(service)
{
    connect(&storage, &StorageWatch::changed, this, &PanelNotices::update);
    connect(&service, &ServiceWatch::changed, this, &PanelNotices::update);
    connect(ui.storageView, &NoticeView::buttonClicked, this, [&storage] { storage.tryAgain(); });
    connect(ui.checkView, &NoticeView::buttonClicked, this, &PanelNotices::checkWanted);
    update();
}

PanelNotices::~PanelNotices() = default;

void PanelNotices::update()
{
    const QString problem = m_storage.problem();
    m_ui.storageView->setNotice(problem.isEmpty() ? NoticeText() : storageNotice(problem));
    const QString cause = m_service.checkFailure();
    m_ui.checkView->setNotice(cause.isEmpty() ? NoticeText() : checkNotice(cause));
}

} // namespace brevok
