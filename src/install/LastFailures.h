// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "install/InstallOutcome.h"

#include <QHash>
#include <QMap>
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

    [[nodiscard]] InstallOutcome of(const QString &prefix) const;
    /// By prefix; only where something failed.
    [[nodiscard]] QHash<QString, InstallOutcome> all() const;

    /// An operation on the packages with the prefix was asked for.
    void forget(const QString &prefix);
    /// An operation on the package @p name, of maybe several with the prefix, ended.
    void note(const QString &prefix, const QString &name, const InstallOutcome &outcome);

Q_SIGNALS:
    /// of() or all() answers something else now.
    void changed();

private:
    void forgetAll();

    QHash<QString, QMap<QString, InstallOutcome>> m_failures; ///< by prefix and name; failures alone
};

} // namespace brevok
