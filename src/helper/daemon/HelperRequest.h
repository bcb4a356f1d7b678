// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "foundation/BrevokError.h"

#include <QByteArray>
#include <QString>

#include <memory>
#include <optional>

namespace brevok {

/// One call of the helper as it was made: nothing of it changes after it was read from the bus, so what is
/// authorized is what is done.
struct HelperRequest {
    enum class Operation {
        Install,
        Remove,
        SetAttributes,
        Exists,
        ExistsIsDirectory,
        IsReadable,
        IsWritable,
        IsExecutable,
        IsDeletable,
    };

    const Operation operation = Operation::Exists;
    const QString caller{}; ///< unique name on the bus
    const QString target{};
    const QString source{};
    const quint32 user = 0;
    const quint32 permissions = 0;
    const bool recursive = false;
    const QByteArray checksum{}; ///< SHA-256 that the source must have; empty when none is known
    const bool mayAsk = false; ///< the caller allows a question to its user

    [[nodiscard]] bool changesFiles() const { return operation <= Operation::SetAttributes; }
    [[nodiscard]] bool namesUser() const
    {
        return operation == Operation::Install || operation == Operation::SetAttributes;
    }
    /// As the interface calls it.
    [[nodiscard]] QString name() const;
    /// The action that polkit is asked about.
    [[nodiscard]] QString action() const;
};
using HelperRequestPtr = std::shared_ptr<const HelperRequest>;

/// What is wrong with a request of the user @p caller, whoever agrees to it; empty when nothing is.
[[nodiscard]] QString objectionTo(const HelperRequest &request, quint32 caller);

/// What a request came to.
struct HelperAnswer {
    enum class Refusal {
        None,
        Forbidden, ///< by what it asks for; nobody can allow it
        NotAuthorized,
        NeedsQuestion, ///< authorized only after a question that the caller did not allow
        TooMuch, ///< too many requests or questions are open
    };

    Refusal refusal = Refusal::None;
    QString reason{}; ///< of a refusal, for the log alone
    bool yes = false;
    bool isDirectory = false;
    std::optional<BrevokError> error{};
    std::optional<BrevokError> failure{}; ///< why what was to be installed does not stand whole
};

} // namespace brevok
