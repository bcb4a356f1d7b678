// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "catalogue/CatalogueSettings.h"

#include "platform/SettingsStore.h"

#include <QVariant>

namespace brevok {

using namespace Qt::StringLiterals;

Record storedDictionary(SettingsStore &settings, const QString &key)
{
    const QVariant stored = settings.value(key);
    if (!stored.isValid()) {
        return {};
    }
    const QJsonValue value = unarchived(settings.dataValue(key));
    if (!value.isObject()) {
        settings.setAside(key, u"it is not an archived dictionary"_s);
        return {};
    }
    return value.toObject();
}

} // namespace brevok
