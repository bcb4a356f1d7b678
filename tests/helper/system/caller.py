#!/usr/bin/python3
"""An unprivileged program on the system bus, driven by lines of JSON on standard input.

Each command has an "id"; its answer is a line with the same id, given when it is known, so that several calls can be
open at once. Questions that polkit has for the user come as lines with an "event".
"""
import json
import os
import sys

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib  # noqa: E402

HELPER = "com.tolvane.brevok.HelperTool"
AGENT = Gio.DBusNodeInfo.new_for_xml("""<node><interface name='org.freedesktop.PolicyKit1.AuthenticationAgent'>
<method name='BeginAuthentication'><arg type='s' direction='in'/><arg type='s' direction='in'/>
<arg type='s' direction='in'/><arg type='a{ss}' direction='in'/><arg type='s' direction='in'/>
<arg type='a(sa{sv})' direction='in'/></method>
<method name='CancelAuthentication'><arg type='s' direction='in'/></method></interface></node>""")


def say(**line):
    sys.stdout.write(json.dumps(line) + "\n")
    sys.stdout.flush()


class Caller:
    def __init__(self):
        self.connections = []
        self.questions = {}
        self.connect()

    def connect(self):
        flags = Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION
        connection = Gio.DBusConnection.new_for_address_sync(os.environ["DBUS_SYSTEM_BUS_ADDRESS"], flags, None, None)
        connection.set_exit_on_close(False)
        self.connections.append(connection)
        return len(self.connections) - 1

    def call(self, command, answer):
        message = Gio.DBusMessage.new_method_call(command.get("to", HELPER), command.get("path", "/" + HELPER.replace(
            ".", "/")), command.get("interface", HELPER), command["method"])
        signature, arguments = command.get("signature", ""), command.get("arguments", [])
        if signature:
            message.set_body(GLib.Variant("(" + signature + ")", tuple(arguments)))
        if command.get("mayAsk", True):
            message.set_flags(Gio.DBusMessageFlags.ALLOW_INTERACTIVE_AUTHORIZATION)

        def done(connection, result):
            try:
                reply = connection.send_message_with_reply_finish(result)
                reply.to_gerror()
                body = reply.get_body()
                answer(result=list(body.unpack()) if body else [])
            except GLib.Error as error:
                name = Gio.DBusError.get_remote_error(error) or error.domain
                answer(error=name, message=error.message)

        self.connections[command.get("connection", 0)].send_message_with_reply(
            message, Gio.DBusSendMessageFlags.NONE, command.get("timeout", 60000), None, done)

    def agent(self, answer):
        """Becomes the one whom polkit asks for this process; questions stay open until the test answers them."""
        def called(connection, sender, path, interface, method, arguments, invocation):
            if method == "BeginAuthentication":
                action, text, _, details, cookie, _ = arguments.unpack()
                self.questions[cookie] = invocation
                say(event="question", action=action, text=text, details=details, cookie=cookie)
            else:
                (cookie,) = arguments.unpack()
                say(event="cancelled", cookie=cookie)
                if cookie in self.questions:
                    self.questions.pop(cookie).return_dbus_error("org.freedesktop.PolicyKit1.Error.Cancelled", "no")
                invocation.return_value(None)

        connection = self.connections[0]
        connection.register_object("/agent", AGENT.interfaces[0], called, None, None)
        with open("/proc/self/stat", encoding="ascii") as stat:
            start = int(stat.read().rsplit(")", 1)[1].split()[19])
        subject = ("unix-process", {"pid": GLib.Variant("u", os.getpid()), "start-time": GLib.Variant("t", start),
                                    "uid": GLib.Variant("i", os.getuid())})
        connection.call_sync("org.freedesktop.PolicyKit1", "/org/freedesktop/PolicyKit1/Authority",
                             "org.freedesktop.PolicyKit1.Authority", "RegisterAuthenticationAgent",
                             GLib.Variant("((sa{sv})ss)", (subject, "C", "/agent")), None, 0, 5000, None)
        answer(result=[])

    def obey(self, command):
        def answer(**line):
            say(id=command["id"], **line)
        try:
            if command["do"] == "call":
                self.call(command, answer)
            elif command["do"] == "agent":
                self.agent(answer)
            elif command["do"] == "answered":  # the user has given, or failed to give, a password
                self.questions.pop(command["cookie"]).return_value(None)
                answer(result=[])
            elif command["do"] == "connect":
                answer(result=[self.connect()])
            elif command["do"] == "disconnect":
                self.connections[command["connection"]].close_sync(None)
                answer(result=[])
        except GLib.Error as error:
            answer(error=Gio.DBusError.get_remote_error(error) or error.domain, message=error.message)


def main():
    caller, loop = Caller(), GLib.MainLoop()
    say(event="ready")

    unread = bytearray()

    def read(source, condition):
        some = os.read(source, 65536)
        if not some:
            loop.quit()
            return False
        unread.extend(some)
        while b"\n" in unread:
            line, _, rest = unread.partition(b"\n")
            unread[:] = rest
            caller.obey(json.loads(line))
        return True

    GLib.io_add_watch(sys.stdin.fileno(), GLib.PRIORITY_DEFAULT, GLib.IOCondition.IN | GLib.IOCondition.HUP, read)
    loop.run()


main()
