// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QStringList>

#include <variant>

namespace brevok::client {

/// What one call of brevokctl asks for.
struct Command {
    enum class Verb {
        Status,
        SignIn,
        SignOut,
        Check,
        Install,
        Update,
        UpdateAll,
        Remove,
        Targets,
        AddTarget,
        RemoveTarget,
        EnableTarget,
        DisableTarget,
        Settings,
        GetSetting,
        SetSetting,
        Converge,
        Metrics,
        Discard,
        Report,
        ShowReport,
        ShowUsage,
        OpenPanel,
        Quit,
        Help,
        Version,
    };

    Verb verb = Verb::Status;
    QStringList arguments; ///< prefixes, a path, a key and a value, an e-mail address
    QString type; ///< of `targets add`
    QString version; ///< of `targets add`
    QString email; ///< of `report`
    QString note; ///< of `report`
    QString file; ///< of `metrics`
    bool dryRun = false; ///< of `converge`
    bool json = false;
    int timeoutSeconds = 600;
};

/// A call that cannot be understood: one line that says why.
struct UsageError {
    QString message;
    bool json = false; ///< the caller wants a document all the same
};

/// Reads the words behind the program's name.
[[nodiscard]] std::variant<Command, UsageError> parseCommandLine(const QStringList &words);

/// The text of `--help`.
[[nodiscard]] QString helpText();

} // namespace brevok::client
