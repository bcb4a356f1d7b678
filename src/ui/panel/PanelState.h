// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QDateTime>
#include <QString>

namespace brevok {

/// A page of the panel's tab view.
enum class PanelTab { Account, Packages };

/// What the account tab's controls follow from.
struct AccountFacts {
    bool updating = false; ///< a request of the session is in flight
    bool signedIn = false;
    PanelTab selected = PanelTab::Account;
    bool panelOpen = false;
};

/// How the account tab's controls are.
struct AccountTabState {
    bool emailEnabled = false;
    bool controlsEnabled = false; ///< password field, sign-in and create buttons
    bool controlsVisible = false; ///< the same and the password label
    bool spinning = false;
    bool showPackagesTab = false;
    bool showAccountTab = false; ///< and the password is cleared

    bool operator==(const AccountTabState &) const = default;
};
[[nodiscard]] AccountTabState accountTabState(const AccountFacts &facts);

/// What Return does in a credential field.
enum class CredentialStep { None, FocusEmail, FocusPassword, SignIn };
[[nodiscard]] CredentialStep returnOnCredentials(
    bool inEmailField, const QString &email, const QString &password);

/// What keeps the list of packages from being of use, gravest first.
enum class NoticeKind { None, SignedOut, Offline, ServiceSilent, NoTargets, Loading, EmptyCatalogue };

struct NoticeFacts {
    bool signedIn = false;
    bool networkReachable = true;
    QDateTime silentSince{}; ///< since when the service has failed to answer; invalid while it answers
    bool checkFailed = false; ///< the user's own, which is told elsewhere in the panel, with the cause
    bool hasTargets = true;
    bool listed = false; ///< there are packages
    bool loading = false; ///< no check of the list has ended yet
};
[[nodiscard]] NoticeKind noticeKind(const NoticeFacts &facts);

/// A notice as the user reads it, localised.
struct NoticeText {
    QString title;
    QString text;
    QString button; ///< empty for none
    QString image; ///< name of the image
};
/// @p now tells whether a moment needs its date. All empty for NoticeKind::None.
[[nodiscard]] NoticeText noticeText(
    NoticeKind kind, const QDateTime &silentSince = {}, const QDateTime &now = {});

/// Says that nothing can be stored, for the given reason.
[[nodiscard]] NoticeText storageNotice(const QString &problem);

/// Says that the user's own check failed, for the given reason.
[[nodiscard]] NoticeText checkNotice(const QString &cause);

/// The line below the program's name: who is signed in, and what waits.
[[nodiscard]] QString panelSubtitle(const QString &email, bool signedIn, int updates);

} // namespace brevok
