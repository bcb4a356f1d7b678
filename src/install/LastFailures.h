// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "install/InstallOutcome.h"

#include <QHash>
#include <QObject>

namespace brevok {

class BrevokPackages;

/// What failed in the last operation on each package, for whoever shows packages: until the next operation on
/// the package, or until the catalogue is read anew. Main thread.
class LastFailures final : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(LastFailures)

public:
    explicit LastFailures(BrevokPackages &packages, QObject *parent = nullptr);
    ~LastFailures() override;

    [[nodiscard]] InstallOutcome of(const QString &prefix) const { return m_failures.value(prefix); }
    /// By prefix; only of packages that something failed for.
    [[nodiscard]] const QHash<QString, InstallOutcome> &all() const { return m_failures; }

    /// An operation on the package was asked for.
    void forget(const QString &prefix);
    /// An operation on the package ended.
    void note(const QString &prefix, const InstallOutcome &outcome);

Q_SIGNALS:
    /// Another of().
    void changed();

private:
    void forgetAll();

    QHash<QString, InstallOutcome> m_failures;
};

} // namespace brevok
