// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "CatalogueFixture.h"
#include "support/Table.h"

#include <QRegularExpression>
#include <QTest>

using namespace brevok;
using namespace brevok::testing;
using namespace Qt::StringLiterals;
using Fixture = CatalogueFixture;

class ListedElementsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void whatAnElementSaysStays_data();
    void whatAnElementSaysStays();
};

using WhatAnElementSaysStays = Table<QByteArray, QString, QByteArray>;
void ListedElementsTest::whatAnElementSaysStays_data()
{
    const WhatAnElementSaysStays add;
    const auto row = [&add](const char *tag, const QByteArray &said, const QString &name,
                         const QByteArray &kept = {}) {
        add(tag, said, name, kept.isEmpty() ? said : kept);
    };
    row("numbers", R"("Name":"A","x":[1.0,1e2,-0.5E-3,12345678901234567890,9007199254740993])", u"A"_s);
    row("brackets in texts", R"("x":["]}","\\\"},{"],"Name":"A]},{[\\")", u"A]},{[\\"_s);
    row("on lines of their own", "\n\t\"Name\" :\r\n\"A\" , \"x\" : { } ", u"A"_s);
    row("a key twice", R"("Name":7,"x":1,"Name":"A","x":2)", u"A"_s);
    row("escapes", R"("Name":"\u0041\t\/\ud83d\ude00","N\u0061me":"\u00c4\t")", u"\u00c4\t"_s, "\"Name\"");
    row("mark of byte order", R"("Name":"\ufeffA\ufeff")", u"\ufeffA\ufeff"_s);
    row("the mark itself", "\"Name\":\"\xEF\xBB\xBF\x41\"", u"\ufeffA"_s, R"("Name":"\ufeffA")");
    row("half a character", R"("Name":"A\ud83d","\udc00":1)", u"A\uFFFD"_s, "\"\xEF\xBF\xBD\":1");
    row("local state", R"("SavedVersion":"1","Prefixes":["X"],"CommandQueue":[["a"]],"Name":"A")", u"A"_s,
        "}");
}

// Whatever stands around it.
void ListedElementsTest::whatAnElementSaysStays()
{
    const auto [said, name, kept] = WhatAnElementSaysStays::current();
    Fixture f;
    const QString prefix = QChar(0xfeff) + u"P"_s;
    const QByteArray list =
        R"( ["]",[{"a":"]"}],{"Platform":"Win"} , {"Platform":"Mac","Size":true,"Link":"l",)"
        R"("Published":"p","Prefix":"\ufeffP","Version":"1","HostVersion":140,)"
        + said + "},null]";
    Record first;
    for (int start = 0; start < 2; ++start) {
        BrevokPlugins plugins(f.state, f.service, f.alerts);
        plugins.start();
        f.service.answerList({.status = 200, .body = list});
        QVERIFY(f.flushed());
        const DefinitionPtr definition = plugins.definition(u"140:%1_1"_s.arg(name));
        QVERIFY(definition);
        QCOMPARE(plugins.pluginIndex().value(prefix), QList{definition});
        const Record record = definition->record;
        QCOMPARE(record.value(PluginKeys::name).toString(), name);
        QCOMPARE(record.value(PluginKeys::prefixes).toArray(), QJsonArray{prefix});
        QVERIFY(!record.contains(PluginKeys::savedVersion) && !plugins.hasUnfinishedActions());
        QVERIFY2(definition->record.json().contains(kept), definition->record.json().constData());
        QCOMPARE(record, start == 0 ? record : first);
        first = record;
    }
}

QTEST_GUILESS_MAIN(ListedElementsTest)
#include "test_listed_elements.moc"
