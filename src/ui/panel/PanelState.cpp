// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "ui/panel/PanelState.h"

#include "foundation/Texts.h"
#include "foundation/UntrustedText.h"
#include "ui/widgets/TextFitting.h"

#include <QLocale>

namespace brevok {

using namespace Qt::StringLiterals;

AccountTabState accountTabState(const AccountFacts &facts)
{
    const bool idle = !facts.updating;
    return {
        .emailEnabled = idle && !facts.signedIn,
        .controlsEnabled = idle,
        .controlsVisible = idle && !facts.signedIn,
        .spinning = !idle,
        .showPackagesTab = idle && facts.signedIn && facts.selected != PanelTab::Packages,
        // The tab is not switched under the user's eyes.
        .showAccountTab = idle && !facts.signedIn && facts.selected != PanelTab::Account && !facts.panelOpen,
    };
}

CredentialStep returnOnCredentials(bool inEmailField, const QString &email, const QString &password)
{
    if (inEmailField) {
        return email.isEmpty() ? CredentialStep::None : CredentialStep::FocusPassword;
    }
    if (email.isEmpty()) {
        return CredentialStep::FocusEmail;
    }
    return password.isEmpty() ? CredentialStep::None : CredentialStep::SignIn;
}

NoticeKind noticeKind(const NoticeFacts &facts)
{
    if (!facts.signedIn) {
        return NoticeKind::SignedOut;
    }
    if (!facts.networkReachable) {
        return NoticeKind::Offline;
    }
    if (facts.silentSince.isValid()) {
        return NoticeKind::ServiceSilent;
    }
    if (!facts.hasTargets) {
        return NoticeKind::NoTargets;
    }
    if (facts.listed) {
        return NoticeKind::None;
    }
    return facts.loading ? NoticeKind::Loading : NoticeKind::EmptyCatalogue;
}

namespace {

QString momentText(const QDateTime &moment, const QDateTime &now)
{
    const QLocale locale;
    return moment.date() == now.date() ? locale.toString(moment.time(), QLocale::ShortFormat)
                                       : locale.toString(moment, QLocale::ShortFormat);
}

} // namespace

NoticeText noticeText(NoticeKind kind, const QDateTime &silentSince, const QDateTime &now)
{
    switch (kind) {
    case NoticeKind::None:
        break;
    case NoticeKind::SignedOut:
        return {Texts::tr("You are signed out"),
            Texts::tr("Sign in to install your Plug-Ins and keep them up to date."), Texts::tr("Sign In…"),
            u"Account"_s};
    case NoticeKind::Offline:
        return {Texts::tr("No network connection"),
            Texts::tr("Connect to the internet to install and update Plug-Ins."), Texts::tr("Try Again"),
            u"Offline"_s};
    case NoticeKind::ServiceSilent:
        return {Texts::tr("The service is not responding"),
            Texts::tr("No response since %1. Your installed Plug-Ins keep working.")
                .arg(momentText(silentSince, now)),
            Texts::tr("Try Again"), u"Service"_s};
    case NoticeKind::NoTargets:
        return {Texts::tr("InDesign and InCopy not found"),
            Texts::tr("Choose the applications to install Plug-Ins into."), Texts::tr("Choose Applications…"),
            u"Applications"_s};
    case NoticeKind::Loading:
        return {Texts::tr("Loading Plug-Ins…"), Texts::tr("The list is being loaded from the service."), {},
            u"Catalogue"_s};
    case NoticeKind::EmptyCatalogue:
        return {Texts::tr("No Plug-Ins yet"), Texts::tr("No Plug-Ins are available for this account."),
            Texts::tr("Check Again"), u"Catalogue"_s};
    }
    return {};
}

NoticeText storageNotice(const QString &problem)
{
    return {Texts::tr("Tolvane Brevok cannot store its data"),
        Texts::tr("Changes are kept in memory and stored as soon as possible. Reason: %1")
            .arg(breakable(oneLine(problem))),
        Texts::tr("Try Again"), u"Warning"_s};
}

QString panelSubtitle(const QString &email, bool signedIn, int updates)
{
    if (!signedIn) {
        return Texts::tr("Not signed in");
    }
    if (updates <= 0) {
        return email.isEmpty() ? Texts::tr("Signed in") : email;
    }
    const QString waiting = updates == 1 ? Texts::tr("1 update") : Texts::tr("%1 updates").arg(updates);
    return email.isEmpty() ? waiting : u"%1 · %2"_s.arg(email, waiting);
}

} // namespace brevok
