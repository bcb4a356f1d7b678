// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "InstallRig.h"

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
    QString target = addTarget(QStringLiteral("InDesign 2019"), QStringLiteral("140"));
};

} // namespace brevok::testing
