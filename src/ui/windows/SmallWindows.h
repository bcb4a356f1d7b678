// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "ui/windows/BrevokAboutController.h"
#include "ui/windows/BrevokUpdateProgressController.h"
#include "ui/windows/BrevokUpdateResultController.h"

#include <QHash>
#include <QPointer>

namespace brevok {

/// The small windows, one of each class, made when first asked for. Main thread; goes before the application
/// object.
class SmallWindows final {
public:
    /// @p bundle outlives this object.
    explicit SmallWindows(const MainBundle &bundle)
        : m_bundle(bundle)
    {
    }
    ~SmallWindows()
    {
        for (const QPointer<SmallWindow> &window : std::as_const(m_windows)) {
            delete window;
        }
    }
    Q_DISABLE_COPY_MOVE(SmallWindows)

    /// One that is deleted when it closes is made anew after that.
    template <typename Window> [[nodiscard]] Window &window()
    {
        QPointer<SmallWindow> &kept = m_windows[&Window::staticMetaObject];
        if (!kept) {
            kept = new Window(m_bundle);
            QObject::connect(kept, &QDialog::finished, kept, [this] {
                if (QPointer<SmallWindow> &closed = m_windows[&Window::staticMetaObject];
                    closed->testAttribute(Qt::WA_DeleteOnClose)) {
                    closed.clear();
                }
            });
        }
        return *qobject_cast<Window *>(kept);
    }
    [[nodiscard]] BrevokAboutController &aboutController() { return window<BrevokAboutController>(); }
    [[nodiscard]] BrevokUpdateProgressController &updateProgressController()
    {
        return window<BrevokUpdateProgressController>();
    }
    [[nodiscard]] BrevokUpdateResultController &updateResultController()
    {
        return window<BrevokUpdateResultController>();
    }

private:
    const MainBundle &m_bundle;
    QHash<const QMetaObject *, QPointer<SmallWindow>> m_windows;
};

} // namespace brevok
