// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "foundation/Record.h"
#include "foundation/Settings.h"
#include "fuzz/Fuzz.h"
#include "platform/linux/files/SettingsText.h"
#include "support/MemorySettingsStore.h"
#include "support/SettingsWitness.h"

#include <QFile>
#include <QRegularExpression>

using namespace brevok;
using namespace Qt::StringLiterals;

namespace {

QString said(const QVariantMap &values, const QString &key)
{
    return wellFormed(values.value(key).toStringList().join(u'\n'));
}

// Earlier versions read with QSettings, which takes a mark of byte order for a part of the first line. Of
// keys that can be spelled in several ways it may take another value, and of what begins with an at sign,
// however that is spelled, it may make an object of 100 GB.
void compareWithWitness(const QByteArray &input, const std::optional<QVariantMap> &values)
{
    static const QRegularExpression isOdd(uR"(@|\\x[0-9a-fA-F]*40|\\[0-7]*100|\x{FEFF}|\x{FFFD}|\x{0})"_s);
    if (QString::fromUtf8(input).contains(isOdd) || input.startsWith("\xEF\xBB\xBF")) {
        return;
    }
    static const QRegularExpression isSpecial(u"[/\\\\%]|[^\\x00-\\x7F]"_s);
    static int files = 0;
    const QString path = fuzz::scratchFolder() + u'/' + QString::number(++files);
    fuzz::put(path, input);
    const std::optional<QVariantMap> witnessed = testing::witnessedValues(path);
    QFile::remove(path);
    HOLDS(witnessed.has_value() == values.has_value());
    for (const QVariantMap &each : {witnessed.value_or(QVariantMap()), values.value_or(QVariantMap())}) {
        for (const QString &key : each.keys()) {
            const bool isPlain = !key.contains(isSpecial);
            HOLDS(!isPlain || (witnessed->contains(key) && values->contains(key)));
            HOLDS(!isPlain || said(*witnessed, key) == said(*values, key));
        }
    }
}

} // namespace

void fuzz::check(const QByteArray &input)
{
    const std::optional<QVariantMap> values = settingsValues(input);
    compareWithWitness(input, values);
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
    QVariantMap changed = *values;
    changed.insert(u"OrlecLogLevel"_s, 1);
    const std::optional<QVariantMap> again = settingsValues(settingsText(changed));
    HOLDS(again && again->keys() == changed.keys());
    for (auto value = changed.cbegin(); value != changed.cend(); ++value) {
        HOLDS(sameInSettings(again->value(value.key()), *value));
    }
}
