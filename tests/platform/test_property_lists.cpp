// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "platform/PropertyLists.h"
#include "support/FolderTest.h"
#include "support/SampleBundles.h"
#include "support/Table.h"

#include <QtEndian>
#include <QTest>

#include <cstdlib>

#include <plist/plist.h>
#include <sys/stat.h>

using namespace brevok;
using namespace brevok::testing;
using namespace Qt::StringLiterals;

namespace {

QByteArray xml(const QByteArray &body)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">" + body + "</plist>\n";
}

QByteArray binary(const QByteArray &xmlList)
{
    plist_t list = nullptr;
    plist_from_xml(xmlList.constData(), static_cast<uint32_t>(xmlList.size()), &list);
    char *bytes = nullptr;
    uint32_t length = 0;
    plist_to_bin(list, &bytes, &length);
    QByteArray result(bytes, length);
    std::free(bytes);
    plist_free(list);
    return result;
}

QByteArray bigEndian(quint64 value, int size)
{
    const quint64 swapped = qToBigEndian(value);
    return QByteArray(reinterpret_cast<const char *>(&swapped), sizeof swapped).right(size);
}

// A binary list of objects given as their bytes; object numbers and offsets take four bytes.
QByteArray binaryOf(const QByteArrayList &objects)
{
    QByteArray bytes = "bplist00";
    QByteArray offsets;
    for (const QByteArray &object : objects) {
        offsets += bigEndian(static_cast<quint64>(bytes.size()), 4);
        bytes += object;
    }
    const auto table = static_cast<quint64>(bytes.size());
    return bytes + offsets + QByteArray(6, '\0') + "\x04\x04"
        + bigEndian(static_cast<quint64>(objects.size()), 8) + bigEndian(0, 8) + bigEndian(table, 8);
}

// A dictionary whose one value is the first of @p levels arrays, each holding the next @p width times.
QByteArray nestedArrays(int levels, int width)
{
    QByteArrayList objects = {"\xd1" + bigEndian(1, 4) + bigEndian(2, 4), "\x51k"};
    for (int level = 0; level < levels; ++level) {
        objects.append(char(0xa0 + width) + bigEndian(static_cast<quint64>(level) + 3, 4).repeated(width));
    }
    return binaryOf(objects << "\x51v"_ba);
}

} // namespace

class PropertyListsTest : public FolderTest {
    Q_OBJECT

private Q_SLOTS:
    void everyTypeIsRead()
    {
        const QByteArray text =
            xml("<dict><key>Tëxt</key><string>Grüße &amp; <![CDATA[<dict>]]> 😀</string>"
                "<key>empty</key><string></string><key>yes</key><true/><key>no</key><false/>"
                "<key>int</key><integer>14012</integer><key>minus</key><integer>-5</integer>"
                "<key>long</key><integer>9007199254740993</integer><key>real</key><real>1.5</real>"
                "<key>date</key><date>2019-11-05T06:07:08Z</date><key>data</key><data>AP8K</data>"
                "<key>list</key><array><string>a</string><dict><key>b</key><array/></dict></array>"
                "</dict>");
        const QString file = path(u"types.plist"_s);
        const Record expected = {{u"Tëxt"_s, u"Grüße & <dict> 😀"_s}, {u"empty"_s, u""_s}, {u"yes"_s, true},
            {u"no"_s, false}, {u"int"_s, 14012}, {u"minus"_s, -5}, {u"long"_s, qint64(9007199254740993)},
            {u"real"_s, 1.5}, {u"date"_s, u"2019-11-05T06:07:08Z"_s}, {u"data"_s, u"AP8K"_s},
            {u"list"_s, QJsonArray{u"a"_s, QJsonObject{{u"b"_s, QJsonArray()}}}}};
        for (const QByteArray &list : {text, binary(text)}) {
            QVERIFY(writeFile(file, list));
            QCOMPARE(readPropertyList(file), std::optional(expected));
        }
    }

    void whatIsNoDictionaryReadsAsAbsent_data()
    {
        const Table<QByteArray> row;
        constexpr int many = 300'000;
        const QByteArray dictionary = xml("<dict><key>a</key><string>b</string></dict>");
        row("empty", QByteArray());
        row("text", "CFBundleVersion = 1"_ba);
        row("magic only", "bplist00"_ba);
        row("list", xml("<array><string>a</string></array>"));
        row("cut short", dictionary.first(dictionary.size() / 2));
        row("binary cut short", binary(dictionary).chopped(9));
        row("utf-16", "\xff\xfe<\0p\0l\0i\0s\0t\0>\0"_ba);
        row("too large", xml("<dict><key>a</key><string>" + QByteArray(4 << 20, 'x') + "</string></dict>"));
        row("deep xml",
            xml("<dict><key>a</key>" + QByteArray("<array>").repeated(many)
                + QByteArray("</array>").repeated(many) + "</dict>"));
        row("deep xml past comments",
            xml("<dict><key>a</key>" + QByteArray("<!--</array>--><array>").repeated(many / 4) + "</dict>"));
        row("deep binary", nestedArrays(many, 1));
        row("unfolds without end", nestedArrays(30, 14));
        row("holds itself", binaryOf({"\xd1" + bigEndian(1, 4) + bigEndian(0, 4), "\x51k"_ba}));
        row("objects outside", binaryOf({"\xd1" + bigEndian(1, 4) + bigEndian(77, 4), "\x51k"_ba}));
        for (const char kind : {'\x53', '\x61', '\x13', '\x43'}) {
            const QByteArray key = kind + "a\0b"_ba;
            row("key with a NUL, of kind " + QByteArray::number(kind, 16),
                binaryOf({"\xd1" + bigEndian(1, 4) + bigEndian(2, 4), kind == '\x61' ? "\x61\0\0"_ba : key,
                    "\x51v"_ba}));
        }
        row("endless text",
            binaryOf({"\xd1" + bigEndian(1, 4) + bigEndian(2, 4), "\x51k"_ba,
                "\x5f\x13\x7f" + QByteArray(7, '\xff')}));
    }

    void whatIsNoDictionaryReadsAsAbsent()
    {
        const auto [contents] = columns<QByteArray>();
        const QString file = path(u"broken.plist"_s);
        QVERIFY(writeFile(file, contents));
        QCOMPARE(readPropertyList(file), std::optional<Record>());
    }

    void otherThanFilesReadAsAbsent()
    {
        const QString fifo = path(u"fifo"_s);
        QCOMPARE(::mkfifo(QFile::encodeName(fifo).constData(), 0600), 0);
        for (const QString &place : {fifo, path(), path(u"absent"_s), u"/dev/zero"_s}) {
            QVERIFY2(!readPropertyList(place), qPrintable(place));
        }
    }

    void theProgramKnowsItself()
    {
        const QString executable = path(u"bin/tolvane-brevok"_s);
        const MainBundle bare = MainBundle::ofExecutable(executable);
        QCOMPARE(bare.bundlePath(), executable);
        QCOMPARE(bare.identifier(), u"com.tolvane.brevok"_s);
        QCOMPARE(bare.displayNames(), QStringList(2, u"Tolvane Brevok"_s));
        QCOMPARE(bare.version(), QString());
        QCOMPARE(bare.resourcePath(u"Info"_s, u"plist"_s), QString());

        const QString information = path(u"share/tolvane-brevok/Info.plist"_s);
        QVERIFY(writeFile(information,
            propertyList({{u"CFBundleIdentifier"_s, u"com.example.other"_s}, {u"CFBundleName"_s, u"TB"_s},
                {u"CFBundleDisplayName"_s, u"Other"_s}, {u"CFBundleVersion"_s, u"100"_s}})));
        const MainBundle named = MainBundle::ofExecutable(executable);
        QCOMPARE(named.identifier(), u"com.example.other"_s);
        QCOMPARE(named.displayNames(), (QStringList{u"TB"_s, u"Other"_s}));
        QCOMPARE(named.version(), u"100"_s);
        QCOMPARE(named.shortVersion(), u"100"_s);
        QCOMPARE(named.resourcePath(u"Info"_s, u"plist"_s), information);
        QCOMPARE(named.resourcePath(u"Tolvane"_s, u"xml"_s), QString());
    }
};

QTEST_GUILESS_MAIN(PropertyListsTest)

#include "test_property_lists.moc"
