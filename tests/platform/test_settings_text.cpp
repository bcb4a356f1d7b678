// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/linux/files/SettingsText.h"
#include "support/Folders.h"
#include "support/FolderTest.h"
#include "support/InRow.h"
#include "support/SampleBundles.h"
#include "support/SettingsWitness.h"

#include <QRandomGenerator>
#include <QTest>

#include <algorithm>

using namespace brevok;
using namespace Qt::StringLiterals;
using namespace brevok::testing;

namespace {

QString randomText(QRandomGenerator &random)
{
    static const QString characters = u"aF7xU%;,= \t\n\r\0\x01\x7f\"'\\/[]@()ä\xA0\u20AC\xD83D\xDE00"_s;
    QString text;
    for (quint32 length = random.bounded(9U); length > 0; --length) {
        text += characters[random.bounded(static_cast<int>(characters.size()))];
    }
    return QString::fromUtf8(text.toUtf8()); // without half characters
}

// Of every kind, and with every character that means something in a settings file.
QVariantMap randomValues()
{
    QRandomGenerator random(20261122);
    QVariantMap values{{u"truth"_s, true}, {u"number"_s, -7}, {u"fraction"_s, 0.1},
        {u"none"_s, QStringList()}, {u"General"_s, u"@Variant(\0"_s}};
    for (int i = 0; i < 4000; ++i) {
        const QString key = randomText(random) + QString::number(i);
        switch (i % 3) {
        case 0:
            values.insert(key, randomText(random));
            break;
        case 1:
            values.insert(key, randomText(random).toUtf8());
            break;
        default:
            values.insert(key, QStringList{randomText(random), randomText(random), randomText(random)});
        }
    }
    return values;
}

// What people may make of a settings file.
const QByteArrayList edited{
    "",
    "\n\n; nothing\n",
    "a=7",
    "=2\na=7",
    "a",
    "[General",
    "[General]\na=1\nOrlecSess",
    "[General]\r\na = 7 \r\nb=1\r\n",
    "a=1\n\ra=2\rb=3",
    "; one\n;two\n  ; three\n  a=1\n; four\n\n\t[Other]\n b=1",
    "a=1 ; said\nb=2;said=no\n;c=3",
    "# a=1",
    "# no",
    "[general]\na=1\n[GENERAL]\nb=2\n[%general]\nc=3\n[%General]\nd=4",
    "[ spaced name ]\ne=5\n[x] y=1\ng=1",
    "[a/b\\c%20d]\ne/f\\g=1\n[a]\nx=1\n[b]\nx=1\n[a]\nx=2\ny=3",
    "a=1\na=2\nb \v=3",
    "[a;]\nb=1",
    "[=]\nb=1",
    "%41%42=1\n%U20AC=2\n%U20=3\n%4=4\n%=5\n%zz=6\n%u20ac=7\n%00=8\na%2=9\n%+1=1\n%U+123=2",
    "\xC3\xA4 b=1",
    "\"a=b\"=c",
    "a=\\x41\\x4g\\x20ac\\x120ac\\xg\\x",
    "a=\\101\\8\\0101\\777\\400000\\1",
    R"(a=\a\b\f\n\r\t\v\"\?\'\\\z\,\;\=)",
    "a=x \\",
    "a=x \\x",
    "a=x \\x20",
    "a=x \\ ",
    "a=1\\\n2\nb=1\\\r\n2\nc=1\\\n\r2\nd=1 \\\n 2\ne\\\nf=1",
    "a=1\\",
    "a=1\\\n",
    "a=1\\\r",
    "a= x \t\nb=\" x \"\nc=\" x \" \nd= \"x\" y \ne=x \"y\" \nf=\"\"\ng=\nh= \t",
    "a=\"one\ntwo\nb=2",
    "a=\"x;y\" ; z\nb=\"1=2\"\nc==\nd=1=2",
    "a=x,y\nb=x, y , z \nc=,\nd=\"x,y\", z\nf=x\\,y\ng=\"\", \"\"\nh=@@x, @y, @\n",
    "a=x,",
    "a=@ByteArray(\\0\\xff\\xe4)\nb=@ByteArray()\nc=\"@ByteArray(x;y)\"\nd=@ByteArray(",
    "a=@String(\\0)\nb=@String\nc=@Invalid()\nd=@Invalid() x\ne=@@Rect(1)\nf=@",
    "a=\xff\nb=\xC3\xA4,\xF0\x9F\x98\x80",
};

// For the report of a difference.
QString shown(const std::optional<QVariantMap> &values)
{
    QString text;
    QDebug(&text) << (values ? *values : QVariantMap{{u"broken"_s, {}}});
    return text;
}

} // namespace

/// The settings file against QSettings, which wrote it in earlier versions.
class SettingsTextTest : public FolderTest {
    Q_OBJECT

private Q_SLOTS:
    void whatPeopleEditIsReadAlike()
    {
        int files = 0;
        for (const QByteArray &text : edited) {
            const InRow in(text.constData());
            const QString file = path(QString::number(++files));
            QVERIFY(writeFile(file, text));
            QCOMPARE(shown(settingsValues(text)), shown(witnessedValues(file)));
        }
    }

    void bothWriteTheSame()
    {
        const QVariantMap values = randomValues();
        const QString file = path(u"settings"_s);
        {
            QSettings settings(file, QSettings::IniFormat);
            for (auto value = values.cbegin(); value != values.cend(); ++value) {
                settings.setValue(keyInFile(value.key()), *value);
            }
        }
        QByteArrayList lines = settingsText(values).split('\n');
        QByteArrayList expected = contentsOf(file).split('\n');
        std::sort(lines.begin(), lines.end());
        std::sort(expected.begin(), expected.end());
        QCOMPARE(lines, expected);
        const std::optional<QVariantMap> read = settingsValues(contentsOf(file));
        QVERIFY(read);
        QCOMPARE(read->keys(), values.keys());
        for (auto value = values.cbegin(); value != values.cend(); ++value) {
            QVERIFY2(sameInSettings(read->value(value.key()), *value), qPrintable(value.key()));
        }
    }
};

QTEST_GUILESS_MAIN(SettingsTextTest)
#include "test_settings_text.moc"
