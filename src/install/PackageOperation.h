// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "foundation/Tasks.h"
#include "install/CommandWork.h"
#include "install/InstallFlow.h"

namespace brevok {

/// One install or removal of one package, from its start to its end. Main thread.
class PackageOperation : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(PackageOperation)

public:
    PackageOperation(InstallFlow &flow, InstallFlow::Collaborators &with, Record package, QString prefix,
        const Manner &manner);
    ~PackageOperation() override;

    [[nodiscard]] const QString &prefix() const { return m_prefix; }
    [[nodiscard]] QString packageName() const { return m_package.value(PackageKeys::name).toString(); }
    [[nodiscard]] const Manner &manner() const { return m_manner; }
    [[nodiscard]] const InstallOutcome &outcome() const { return m_outcome; }
    /// Starts the work, which emits finished() at its end.
    virtual void begin() = 0;

Q_SIGNALS:
    void finished();

protected:
    [[nodiscard]] QList<Record> definitions() const { return m_with.plugins.snapshotOf(m_prefix); }
    [[nodiscard]] DefinitionPtr definition(const QString &key) const
    {
        return m_with.plugins.definition(key);
    }
    /// An entry for what concerns no single target.
    void addFailure(const QString &plugin, const QString &reason);
    /// Ends the operation with what would become of @p tasks.
    void foresee(const QList<CommandTask> &tasks);
    /// Shows the failure alert, later, so that the work does not wait for the user's answer. Where nobody is
    /// there, or where it is told together with others, only the log is written now.
    void reportLater(const QList<BrevokError> &errors, const QString &plugin);

    InstallFlow &m_flow;
    InstallFlow::Collaborators &m_with;
    Record m_package;
    QString m_prefix;
    Manner m_manner;
    InstallOutcome m_outcome;
};

} // namespace brevok
