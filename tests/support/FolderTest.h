// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>

#include <memory>

class QTemporaryDir;

namespace brevok::testing {

/// A test each of whose functions has a scratch folder, and fails at a warning that it does not expect.
class FolderTest : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(FolderTest)

public:
    FolderTest();
    ~FolderTest() override;

protected:
    /// Of @p name in the folder; without one, of the folder.
    [[nodiscard]] QString path(const QString &name = {}) const;

    /// Makes the folder anew, in memory, where flushes cost nothing.
    void moveToMemory();

protected Q_SLOTS:
    void init();
    void cleanup();

private:
    std::unique_ptr<QTemporaryDir> m_folder;
};

} // namespace brevok::testing
