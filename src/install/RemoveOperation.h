// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "install/PackageOperation.h"

namespace brevok {

/// Removes one package's plug-ins from every valid target where no other package needs them.
class RemoveOperation final : public PackageOperation {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(RemoveOperation)

public:
    using PackageOperation::PackageOperation;

    void begin() override;

private:
    struct Candidate {
        QString key;
        QString pluginPath;
    };

    void askWhatMayGo(const QList<Record> &targets);
    void queueRemovals(const QList<Candidate> &candidates, const QList<bool> &answers);
    void removeNext();

    QStringList m_keys; ///< build keys of all candidates
    QStringList m_removals; ///< build keys; one removable from two targets stands there twice
};

} // namespace brevok
