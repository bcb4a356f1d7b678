// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "app/Policy.h"
#include "service/ServiceClient.h"

#include <QProcessEnvironment>
#include <QStringList>

#include <variant>

namespace brevok {

/// How the program was asked to run.
struct Options {
    ServiceConfiguration service;
    QStringList applications; ///< folders searched for host applications; empty for the platform's own
    QVariantMap lockedSettings; ///< what the administrator decides, by keys of the settings store
    bool headless = false;
    bool background = false;
};

/// The program is to print this text and end with success.
struct PrintAndExit {
    QString text;
};

/// An option or value that cannot be used: one line that names it.
struct OptionError {
    QString message;
};

/// What stands in for an option that is not given.
struct OptionDefaults {
    QString serviceUrl;
    QString reachabilityHost;
    QString programVersion;
    QString policyFile = {}; ///< of the administrator; see readPolicy()
};

/// Reads @p words (the program's name first) and, for options that are not given, @p environment. What the
/// administrator's policy decides is taken from there, whatever the user gave.
[[nodiscard]] std::variant<Options, PrintAndExit, OptionError> parseOptions(
    const QStringList &words, const QProcessEnvironment &environment, const OptionDefaults &defaults);

} // namespace brevok
