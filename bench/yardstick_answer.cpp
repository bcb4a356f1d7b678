// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

// yardstick_answer STATE: the least that a program does which answers over the session bus with what it has
// stored.

#include <QCoreApplication>
#include <QDBusConnection>
#include <QFile>

#include <memory>

#include <sqlite3.h>

namespace {

QString everyEntry(const QString &path)
{
    sqlite3 *opened = nullptr;
    sqlite3_open_v2(QFile::encodeName(path).constData(), &opened, SQLITE_OPEN_READONLY, nullptr);
    const std::unique_ptr<sqlite3, decltype(&sqlite3_close)> file(opened, &sqlite3_close);
    sqlite3_stmt *prepared = nullptr;
    sqlite3_prepare_v2(opened, "SELECT value FROM state", -1, &prepared, nullptr);
    const std::unique_ptr<sqlite3_stmt, decltype(&sqlite3_finalize)> rows(prepared, &sqlite3_finalize);
    QString text;
    while (sqlite3_step(prepared) == SQLITE_ROW) {
        text += QString::fromUtf8(reinterpret_cast<const char *>(sqlite3_column_text(prepared, 0)),
            sqlite3_column_bytes(prepared, 0));
    }
    return text;
}

} // namespace

class Answers : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.tolvane.brevok.Yardstick")

public:
    explicit Answers(QString text)
        : m_text(std::move(text))
    {
    }

public Q_SLOTS:
    [[nodiscard]] QString Status() const { return m_text; }

private:
    QString m_text;
};

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    Answers answers(everyEntry(QCoreApplication::arguments().value(1)));
    QDBusConnection bus = QDBusConnection::sessionBus();
    bus.registerObject(
        QStringLiteral("/com/tolvane/brevok/Control"), &answers, QDBusConnection::ExportAllSlots);
    bus.registerService(QStringLiteral("com.tolvane.brevok.Yardstick"));
    return QCoreApplication::exec();
}

#include "yardstick_answer.moc"
