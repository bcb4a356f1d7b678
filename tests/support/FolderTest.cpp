// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "support/FolderTest.h"

#include "foundation/Tasks.h"

#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

namespace brevok::testing {

FolderTest::FolderTest() = default;

FolderTest::~FolderTest() = default;

QString FolderTest::path(const QString &name) const
{
    return name.isEmpty() ? m_folder->path() : m_folder->filePath(name);
}

void FolderTest::init()
{
    QTest::failOnWarning(QRegularExpression(QStringLiteral(".*")));
    m_folder = std::make_unique<QTemporaryDir>();
}

void FolderTest::moveToMemory()
{
    const QString memory = QStringLiteral("/dev/shm");
    m_folder = std::make_unique<QTemporaryDir>(
        (QFileInfo(memory).isWritable() ? memory : QDir::tempPath()) + QStringLiteral("/brevok-test-XXXXXX"));
}

void FolderTest::cleanup()
{
    constexpr int patience = 10000;
    QVERIFY(finishBackgroundWork(patience));
    m_folder.reset();
}

} // namespace brevok::testing
