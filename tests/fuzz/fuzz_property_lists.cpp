// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "fuzz/Fuzz.h"
#include "platform/PropertyLists.h"

#include <QJsonDocument>

using namespace brevok;
using namespace Qt::StringLiterals;

void fuzz::check(const QByteArray &input)
{
    const QList<QByteArray> keys{"TolvaneHostAppShortVersion", "CFBundleShortVersionString"};
    const QString path = scratchFolder() + u"/Info.plist"_s;
    put(path, input);
    const std::optional<Record> whole = readPropertyList(path);
    const std::optional<Record> values = readPropertyListValues(path, keys);
    HOLDS(whole.has_value() == values.has_value());
    if (!whole) {
        return;
    }
    for (const QByteArray &key : keys) {
        const auto name = QString::fromLatin1(key);
        HOLDS(whole->value(name) == values->value(name));
    }
    // It can be kept: what is written of it reads the same.
    HOLDS(QJsonDocument::fromJson(QJsonDocument(*whole).toJson()).object() == *whole);
}
