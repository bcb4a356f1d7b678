// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "foundation/Settings.h"
#include "fuzz/Fuzz.h"
#include "platform/linux/files/SettingsText.h"
#include "support/Folders.h"
#include "support/MemorySettingsStore.h"

using namespace brevok;
using namespace Qt::StringLiterals;

void fuzz::check(const QByteArray &input)
{
    hearsWarnings = false; // of values in a form that only Qt's own programs write
    QString reason;
    const std::optional<QVariantMap> values = settingsValues(input, &reason);
    HOLDS(reason.isEmpty());
    if (!values) {
        return;
    }
    testing::MemorySettingsStore store;
    store.values = *values;
    for (const Setting &setting : allSettings()) {
        const QString key(setting.key);
        const std::optional<bool> truth = truthOf(values->value(key).toString());
        HOLDS(!truth || setting.type != Setting::Type::Truth || store.boolValue(key) == *truth);
        HOLDS(values->contains(key) || !store.boolValue(key));
    }
    // One odd value must not keep the others from being stored.
    const QString path = scratchFolder() + u"/brevok.conf"_s;
    QVariantMap changed = *values;
    changed.insert(u"OrlecLogLevel"_s, 1);
    HOLDS(writeSettings(path, changed, &reason));
    const std::optional<QVariantMap> again = settingsValues(testing::contentsOf(path), &reason);
    HOLDS(again && again->keys() == changed.keys());
    for (auto value = changed.cbegin(); value != changed.cend(); ++value) {
        HOLDS(sameInSettings(again->value(value.key()), *value));
    }
}
