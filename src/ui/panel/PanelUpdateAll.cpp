// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/panel/PanelUpdateAll.h"

#include "foundation/Texts.h"
#include "install/UpdateRun.h"
#include "ui/widgets/PanelButtons.h"
#include "ui/widgets/PanelStyle.h"
#include "ui/widgets/TextFitting.h"

namespace brevok {

PanelUpdateAll::PanelUpdateAll(PanelButton &button, UpdateRun &run, QObject *parent)
    : QObject(parent)
    , m_button(button)
    , m_run(run)
{
    m_button.setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    connect(&m_button, &QPushButton::clicked, this, &PanelUpdateAll::clicked);
    connect(&m_run, &UpdateRun::changed, this, [this] {
        update();
        Q_EMIT progressChanged();
    });
    updateFonts();
}

PanelUpdateAll::~PanelUpdateAll() = default;

void PanelUpdateAll::setWaiting(int waiting)
{
    m_waiting = waiting;
    update();
}

void PanelUpdateAll::clicked()
{
    if (m_run.isRunning()) {
        m_run.stop();
    } else {
        m_run.start();
    }
}

void PanelUpdateAll::updateFonts()
{
    m_button.setFont(PanelStyle::font(13));
    update();
}

void PanelUpdateAll::update()
{
    const bool running = m_run.isRunning();
    m_button.setText(running ? Texts::tr("Stop") : Texts::tr("Update All"));
    setPlainToolTip(m_button, running ? Texts::tr("Stop after the current Plug-In") : QString());
    m_button.setEnabled(!m_run.isStopping());
    m_button.setVisible(running || m_waiting >= 2);
}

QString PanelUpdateAll::progressText() const
{
    if (!m_run.isRunning()) {
        return {};
    }
    return m_run.isStopping() ? Texts::tr("Stopping after the current Plug-In…")
                              : Texts::tr("Updating %1 of %2…").arg(m_run.current()).arg(m_run.total());
}

} // namespace brevok
