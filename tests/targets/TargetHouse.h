// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "support/FakePlatform.h"
#include "support/MemorySettingsStore.h"
#include "support/SampleBundles.h"
#include "targets/BrevokTargetApps.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

namespace brevok::testing {

using namespace Qt::StringLiterals;

inline QString targetsKey()
{
    return QLatin1StringView(TargetSettings::data);
}

/// Everything a list of targets stands on: real folders, a store in memory and a search led by the test.
struct House {
    QTemporaryDir folder;
    QString applications = QFileInfo(folder.path()).canonicalFilePath();
    MemorySettingsStore settings;
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
    void store(const QJsonValue &list) { settings.values.insert(targetsKey(), archived(list)); }
    [[nodiscard]] Record stored() const
    {
        return unarchived(settings.values.value(targetsKey()).toByteArray()).toObject();
    }
};

} // namespace brevok::testing
