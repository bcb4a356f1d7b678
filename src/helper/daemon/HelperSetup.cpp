// SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
// SPDX-License-Identifier: MIT

#include "daemon/HelperSetup.h"

#include "foundation/Log.h"
#include "foundation/Paths.h"
#include "platform/linux/files/RootFile.h"

#include <QDBusMessage>
#include <QDBusReply>
#include <QFile>

#include <cstdio>

namespace brevok {

using namespace Qt::StringLiterals;

namespace {

constexpr auto busName = "com.tolvane.brevok.HelperTool"_L1;
constexpr int busTimeoutMs = 5000;

QDBusMessage toBus(const QString &method)
{
    return QDBusMessage::createMethodCall(
        u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s, u"org.freedesktop.DBus"_s, method);
}

} // namespace

HelperSetup::HelperSetup(QString prefix, QDBusConnection bus)
    : m_prefix(withoutTrailingSlashes(std::move(prefix)))
    , m_bus(std::move(bus))
{
}

QString HelperSetup::program() const
{
    return m_prefix + u"/usr/local/libexec/tolvane-brevok-helper"_s;
}

// Places that no package of ours uses, and that come before those that one does.
QList<HelperSetup::File> HelperSetup::files() const
{
    return {
        {m_prefix + u"/usr/share/polkit-1/actions/com.tolvane.brevok.helper.local.policy"_s,
            u"com.tolvane.brevok.helper.policy.in"_s},
        {m_prefix + u"/etc/dbus-1/system.d/com.tolvane.brevok.HelperTool.conf"_s,
            u"com.tolvane.brevok.HelperTool.conf"_s},
        {m_prefix + u"/etc/systemd/system/tolvane-brevok-helper.service"_s,
            u"tolvane-brevok-helper.service.in"_s},
        {m_prefix + u"/usr/local/share/dbus-1/system-services/com.tolvane.brevok.HelperTool.service"_s,
            u"com.tolvane.brevok.HelperTool.service.in"_s},
    };
}

QByteArray HelperSetup::filled(const QString &text) const
{
    QFile file(u":/helper/"_s + text);
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    const QString call = m_prefix.isEmpty()
        ? program()
        : program() + u" --state "_s + m_prefix + u"/var/lib/tolvane-brevok-helper"_s;
    return file.readAll().replace("@HELPER@", call.toUtf8()).replace("@PROGRAM@", program().toUtf8());
}

bool HelperSetup::install(ErrorSlot error) const
{
    if (!rootfile::writeThisProgram(program(), error)) {
        return false;
    }
    const QList<File> all = files();
    for (const File &file : all) {
        if (!rootfile::write(file.path, filled(file.text), error)) {
            return false;
        }
    }
    tellEverybody();
    endRunningHelper();
    return true;
}

// What makes the bus start it goes first.
bool HelperSetup::remove(ErrorSlot error) const
{
    QList<File> all = files();
    bool removed = true;
    while (!all.isEmpty()) {
        removed = rootfile::remove(all.takeLast().path, error) && removed;
    }
    removed = rootfile::remove(program(), error) && removed;
    tellEverybody();
    endRunningHelper();
    return removed;
}

void HelperSetup::endRunningHelper() const
{
    if (!m_bus.isConnected()) {
        return;
    }
    const QDBusReply<QVariantMap> owner =
        m_bus.call(toBus(u"GetConnectionCredentials"_s) << QString(busName), QDBus::Block, busTimeoutMs);
    if (owner.isValid() && owner.value().value(u"UnixUserID"_s, 1U).toUInt() == 0) {
        rootfile::terminate(owner.value().value(u"ProcessID"_s).toLongLong());
    }
}

void HelperSetup::tellEverybody() const
{
    if (!m_bus.isConnected()) {
        return;
    }
    m_bus.call(toBus(u"ReloadConfig"_s), QDBus::Block, busTimeoutMs);
    QDBusMessage reload = QDBusMessage::createMethodCall(u"org.freedesktop.systemd1"_s,
        u"/org/freedesktop/systemd1"_s, u"org.freedesktop.systemd1.Manager"_s, u"Reload"_s);
    reload.setAutoStartService(false);
    m_bus.call(reload, QDBus::Block, busTimeoutMs);
}

void HelperSetup::obeyStandardInput() const
{
    QFile input;
    QFile output;
    if (!input.open(stdin, QIODevice::ReadOnly) || !output.open(stdout, QIODevice::WriteOnly)) {
        return;
    }
    const auto say = [&output](const QByteArray &line) {
        output.write(line + '\n');
        output.flush();
    };
    say("ready");
    while (true) {
        constexpr qint64 longestLine = 100;
        const QByteArray line = input.readLine(longestLine).trimmed();
        if (line != "install" && line != "remove") {
            return;
        }
        std::optional<BrevokError> error;
        const bool done = line == "install" ? install(&error) : remove(&error);
        logError(error);
        say(done ? QByteArrayLiteral("done")
                 : "failed: " + (error ? error->description.toUtf8() : QByteArray()));
    }
}

} // namespace brevok
