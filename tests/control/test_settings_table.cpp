// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

// What people and packages are told of the settings follows the table.

#include "foundation/Settings.h"
#include "platform/PropertyLists.h"
#include "support/InRow.h"

#include <QFile>
#include <QRegularExpression>
#include <QTest>

using namespace brevok;
using namespace Qt::StringLiterals;
using testing::InRow;

class SettingsTableTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void defaultsAreThoseOfTheTable()
    {
        QVariantMap expected;
        for (const Setting &setting : allSettings()) {
            expected.insert(setting.key, setting.valueFrom(setting.byDefault).toJsonValue());
        }
        const std::optional<Record> found = readPropertyList(source(u"resources/Brevok-Defaults.plist"_s));
        QVERIFY(found);
        QCOMPARE(QJsonObject(*found), QJsonObject::fromVariantMap(expected));
    }

    void textsNameEverySetting()
    {
        // %1 is every name, in the table's order
        // %1 is the name of each that is yes or no
        const QList<std::tuple<const char *, QString, QString, QString>> rows{
            // %1 is the name of each that is a number
            {"packaging/completions/brevokctl.bash", u"settings='%1'\n"_s, {},
                u"settings$'\\n'set$'\\n'%1) "_s},
            {"packaging/completions/brevokctl.zsh", u"_values setting %1 ;;"_s, {},
                u"[[ $words[3] == %1 ]]"_s},
            {"packaging/completions/brevokctl.fish", u"-a '%1'\n"_s, u"for setting in[^\n]* %1\\b"_s,
                u"settings set %1' "_s},
            {"packaging/man/brevokctl.1.in", {}, u"\\n\\.BR? %1( ,)?\\n"_s, u".B %1\n(a number from 0)"_s},
            {"packaging/man/tolvane-brevok.1.in", {}, u"\\n\\.BR? %1( ,)?\\n"_s,
                u".B %1\n(a number from 0)"_s},
            {"packaging/policy/policy.conf", {}, u"\n#%1=(yes|no)\n"_s, u"\n#%1=0"_s},
        };
        for (const auto &[path, all, truth, level] : rows) {
            const InRow in(path);
            QFile file(source(QString::fromLatin1(path)));
            QVERIFY(file.open(QIODevice::ReadOnly));
            const QString text = QString::fromUtf8(file.readAll());
            QStringList names;
            for (const Setting &setting : allSettings()) {
                const QString name(setting.name);
                names.append(name);
                const bool told = setting.type == Setting::Type::Level
                    ? text.contains(level.arg(name))
                    : truth.isEmpty() || text.contains(QRegularExpression(truth.arg(name)));
                QVERIFY2(told, qPrintable(name));
            }
            QVERIFY2(all.isEmpty() || text.contains(all.arg(names.join(u' '))), qPrintable(names.join(u' ')));
        }
    }

private:
    [[nodiscard]] static QString source(const QString &path)
    {
        return QStringLiteral(BREVOK_SOURCE_FOLDER) + u'/' + path;
    }
};

QTEST_GUILESS_MAIN(SettingsTableTest)
#include "test_settings_table.moc"
