// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "foundation/Record.h"

#include <QJsonDocument>

namespace brevok::testing {

/// A value as earlier versions kept it in the settings.
inline QByteArray archived(const QJsonValue &value)
{
    const QJsonDocument document =
        value.isArray() ? QJsonDocument(value.toArray()) : QJsonDocument(value.toObject());
    return qCompress(document.toJson(QJsonDocument::Compact), 1).toBase64();
}

} // namespace brevok::testing
