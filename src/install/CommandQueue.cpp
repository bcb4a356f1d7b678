// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "install/CommandQueue.h"

#include "catalogue/BrevokPlugins.h"

#include <algorithm>

namespace brevok {

namespace {

constexpr QLatin1StringView installStart("installStart");
constexpr QLatin1StringView removeStart("removeStart");

} // namespace

QJsonArray installCommand(const QString &pluginPath, const QString &archivePath)
{
    return {QString(installStart), pluginPath, archivePath};
}

QJsonArray removalCommand(const QString &pluginPath)
{
    return {QString(removeStart), pluginPath};
}

bool isInstallCommand(const QJsonArray &command)
{
    return command.size() == 3 && command.first().toString() == installStart;
}

bool isRemovalCommand(const QJsonArray &command)
{
    return command.size() == 2 && command.first().toString() == removeStart;
}

QJsonArray commandQueue(const Record &definition)
{
    return definition.value(PluginKeys::commandQueue).toArray();
}

bool hasCommandQueue(const Record &definition)
{
    return definition.value(PluginKeys::commandQueue).isArray();
}

void appendCommand(Record &definition, const QJsonArray &command)
{
    QJsonArray queue = commandQueue(definition);
    queue.append(command);
    definition.insert(PluginKeys::commandQueue, queue);
}

void removeCommand(Record &definition, const QJsonArray &command)
{
    QJsonArray queue = commandQueue(definition);
    const auto found = std::find(queue.begin(), queue.end(), QJsonValue(command));
    if (found != queue.end()) {
        queue.erase(found);
        definition.insert(PluginKeys::commandQueue, queue);
    }
}

} // namespace brevok
