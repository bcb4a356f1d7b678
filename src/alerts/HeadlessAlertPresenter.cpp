// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "alerts/AlertPresenter.h"
#include "foundation/Log.h"

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

void logNotShown(const AlertContent &alert)
{
    logLine(u"Alert not shown: %1"_s.arg(alert.messageText.value_or(u"-"_s)));
}

} // namespace

int HeadlessAlertPresenter::runModal(const AlertContent &alert)
{
    logNotShown(alert);
    return alertNotShown;
}

AlertPresenter::Ending HeadlessAlertPresenter::beginModal(const AlertContent &alert, Completion completion)
{
    completion(runModal(alert));
    return [](int) {
    };
}

AlertPresenter::SheetInterface HeadlessAlertPresenter::sheetInterface() const
{
    return SheetInterface::WithHandler;
}

void HeadlessAlertPresenter::beginSheet(const AlertContent &alert, QObject *, Completion completion)
{
    logNotShown(alert);
    if (completion) {
        completion(alertNotShown);
    }
}

bool HeadlessAlertPresenter::windowEndsSheets(QObject *) const
{
    return false;
}

void HeadlessAlertPresenter::windowEndSheet(QObject *) { }

void HeadlessAlertPresenter::applicationEndSheet(QObject *) { }

} // namespace brevok
