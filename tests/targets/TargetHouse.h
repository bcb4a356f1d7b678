// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "support/FakePlatform.h"
#include "support/SampleBundles.h"
#include "support/ScratchStateStore.h"
#include "targets/BrevokTargetApps.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

namespace brevok::testing {

using namespace Qt::StringLiterals;

inline QString targetsKey()
{
    return TargetSettings::data;
}

/// Everything a list of targets stands on: real folders, a store and a search led by the test.
struct House {
    QTemporaryDir folder;
    QString applications = QFileInfo(folder.path()).canonicalFilePath();
    ScratchStateStore scratch;
    StateStore &state = scratch.store;
    FakeApplicationSearch search;

    /// Lays out a host application and lets the search find it. @return its target path
    QString install(const QString &name, const QString &version)
    {
        const QString path = applications + u'/' + name + u'/' + name + u".app"_s;
        if (!search.found.contains(path)) {
            search.found.append(path);
        }
        return writeHostApplication(applications, name, version);
    }
    /// Returns when the targets have asked the disk.
    void notify(ApplicationSearch::Notification notification = ApplicationSearch::Notification::DidUpdate)
    {
        await([&] { Q_EMIT search.notification(notification); });
    }
    static void await(const std::function<void()> &cause)
    {
        const QSignalSpy looked(BrevokTargetApps::targetApps(), &BrevokTargetApps::looked);
        cause();
        QTRY_COMPARE(looked.count(), 1);
    }
    void store(const QString &path, const Record &record) { state.commit({{targetsKey(), path, record}}); }
    [[nodiscard]] StateEntries stored() { return state.entries(targetsKey()); }
};

} // namespace brevok::testing
