// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "InstallRig.h"

#include <QTest>

namespace brevok::testing {

/// How often an operation ended, and with what the last time.
struct Ended {
    int times = 0;
    InstallOutcome outcome;
    [[nodiscard]] InstallFlow::Completion here()
    {
        return [this](const InstallOutcome &its) {
            ++times;
            outcome = its;
        };
    }
};

/// Answers the download that comes next. @return whether it came, and no other
inline bool answerNext(InstallRig &rig, const QByteArray &body)
{
    const bool asked = QTest::qWaitFor([&rig] { return rig.service.downloads.size() == 1; });
    if (asked) {
        rig.answerDownload(body);
    }
    return asked;
}

inline QString pluginIn(const QString &target, const QString &name)
{
    return target + QStringLiteral("/Tolvane/%1.InDesignPlugin").arg(name);
}

inline qsizetype pending(const Record &definition)
{
    return definition.value(PluginKeys::commandQueue).toArray().size();
}

inline QString saved(const Record &definition)
{
    return definition.value(PluginKeys::savedVersion).toString();
}

// A rig with one package of one build, and one target.
struct OnePackage : InstallRig {
    explicit OnePackage(const QJsonObject &more = {})
    {
        QJsonObject plug = build(QStringLiteral("P"), QStringLiteral("Plug"), 140);
        for (auto value = more.begin(); value != more.end(); ++value) {
            plug.insert(value.key(), value.value());
        }
        plugins.updateWithArray({plug});
        addPackage(QStringLiteral("Pack"), QStringLiteral("P"));
    }
    /// Says of the build what an earlier run left.
    void left(QLatin1StringView key, const QJsonValue &value)
    {
        const QString build = QStringLiteral("140:Plug_2.0");
        plugins.change({build}, [&] { plugins.definition(build)->record.insert(key, value); });
    }
    /// Whether an install of the package asks for its archive, gets @p body, and ends.
    [[nodiscard]] bool install(Ended &ended, const Manner &manner = {},
        const QByteArray &body = archiveOf(QStringLiteral("Plug"), 140))
    {
        const int before = ended.times;
        flow.installWithPrefix(QStringLiteral("P"), manner, ended.here());
        return answerNext(*this, body) && QTest::qWaitFor([&] { return ended.times > before; });
    }
    QString target = addTarget(QStringLiteral("InDesign 2019"), QStringLiteral("140"));
    QString archive = folder.filePath(QStringLiteral("data/140/Plug.zip"));
};

} // namespace brevok::testing
