"""A service that answers wrongly, through the real program: it says so, keeps its catalogue and its size."""
import gzip
import socketserver
import ssl
import threading

from brevok_session import SessionTest, run_tests, wait_for, with_children

OK = b"HTTP/1.1 200 OK\r\nContent-Type: application/json\r\n"
LIST = b'[{"Name": "Other", "Prefix": "0xO", "Version": "9.9"}]'
MOST_MORE = 160 * 1024  # KiB; two lists at once may unpack to 32 MiB each, and grow by copying


def endless(first, piece):
    yield first
    while True:
        yield piece


def whole(head, body, length=None):
    yield head + b"Content-Length: %d\r\n\r\n" % (len(body) if length is None else length) + body


FAULTS = {
    "heads without end": lambda: endless(OK, b"X-Field: some value\r\n" * 1000),
    "a line without end": lambda: endless(OK + b"X-Line: ", b"x" * 65536),
    "chunks of any size": lambda: whole(OK + b"Transfer-Encoding: chunked\r\n", b"7fffffffffffffff\r\n" + LIST),
    "a body cut short": lambda: whole(OK, LIST, len(LIST) + 1),
    "gzip cut short": lambda: whole(OK + b"Content-Encoding: gzip\r\n", gzip.compress(LIST)[:-1]),
    "gzip that unpacks to anything": lambda: endless(OK + b"Content-Encoding: gzip\r\n\r\n",
                                                     gzip.compress(bytes(1000000))),
    "no gzip": lambda: whole(OK + b"Content-Encoding: gzip\r\n", LIST),
    "no list": lambda: whole(OK, b"<html>"),
    "half a list": lambda: whole(OK, LIST[:-1]),
    "refused": lambda: whole(b"HTTP/1.1 401 No\r\nWWW-Authenticate: NTLM\r\n", b"no"),
    "moved to no address": lambda: whole(b"HTTP/1.1 302 Moved\r\nLocation: http://[::1\r\n", b""),
    "nothing": lambda: iter(()),
}


class BadService(socketserver.ThreadingTCPServer):
    """Gives every request the answer `answer`."""
    allow_reuse_address = True
    daemon_threads = True
    answer = staticmethod(lambda: iter(()))

    def __init__(self, port, tls):
        super().__init__(("127.0.0.1", port), Handler)
        self.context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        self.context.load_cert_chain(tls / "cert.pem", tls / "key.pem")
        threading.Thread(target=self.serve_forever, daemon=True).start()

    def handle_error(self, request, client_address):
        """The program hangs up when it has seen enough."""


class Handler(socketserver.BaseRequestHandler):
    def handle(self):
        with self.server.context.wrap_socket(self.request, server_side=True) as connection:
            connection.settimeout(60)
            while b"\r\n\r\n" not in connection.recv(65536):
                pass
            for piece in self.server.answer():
                connection.sendall(piece)


class Faults(SessionTest):
    def test_the_old_catalogue_is_kept(self):
        session = self.session
        session.publish("Alpha", "0xA", "1.0", 140)
        session.start_and_check()
        before = session.status()["packages"]
        session.stop_service()
        service = self.enterContext(BadService(session.port(), session.folder / "tls"))
        self.addCleanup(service.shutdown)
        idle = session.memory("VmRSS")
        sanitized = b"libasan" in (session.programs / "tolvane-brevok").read_bytes()  # which takes as much for itself
        for name, answer in FAULTS.items():
            with self.subTest(name):
                service.answer = answer
                for process in with_children(session.application.pid):
                    (process / "clear_refs").write_text("5")  # forgets the peak
                result = session.ctl("check", check=False)
                self.assertEqual(result.returncode, 1)
                self.assertTrue(result.stderr.startswith("brevokctl: "), result.stderr)
                self.assertEqual(session.status()["packages"], before)
                if not sanitized:
                    self.assertLess(session.memory("VmHWM") - idle, MOST_MORE)
        session.stop_application()
        session.start_application()
        wait_for(lambda: session.status()["packages"] == before, "the packages are what they were")


if __name__ == "__main__":
    run_tests()
