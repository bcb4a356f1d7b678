"""The web service of a story: it gives what is published, and can be told to go wrong.

A fault lasts until it is taken back, so that a story does not depend on how often the program asks.
"""
import hashlib
import http.cookies
import http.server
import io
import json
import plistlib
import ssl
import threading
import zipfile

ACCOUNT, PASSWORD = "ada@example.com", "engine-7f3c-of-difference"


def contents(name, version, host):
    """The files of a bundle by name. Who reads them knows whether the bundle is whole."""
    block = f"{name} {version} {host} ".encode() * 700
    information = plistlib.dumps({
        "CFBundleExecutable": name, "CFBundleShortVersionString": f"{version} (build 7)",
        "TolvaneHostAppShortVersion": f"{host // 10}.{host % 10}"})
    return {"Contents/Info.plist": information,
            **{f"Contents/Resources/{number}": block + b"%d" % number for number in range(6)}}


NOTE = b"as published"


def archive(name, version, host):
    out = io.BytesIO()
    with zipfile.ZipFile(out, "w", zipfile.ZIP_DEFLATED, compresslevel=1) as made:
        made.comment = NOTE
        for file, content in contents(name, version, host).items():
            made.writestr(zipfile.ZipInfo(f"{name}.InDesignPlugin/{file}", (2026, 1, 1, 0, 0, 0)), content)
    return out.getvalue()


def damaged(body):
    """An archive whose content no longer has its checksum, or half a list of rubbish."""
    at, rubbish = len(body) // 2, b"\xff\xff"  # which is in no text
    if body.startswith(b"PK"):
        with zipfile.ZipFile(io.BytesIO(body)) as made:
            last = made.infolist()[-1]
            at = last.header_offset + 30 + len(last.filename) + last.compress_size // 2
            rubbish = bytes(255 - byte for byte in body[at:at + 2])
    return body[:at] + rubbish + body[at + 2:]


def other(body):
    """Whole, and as long, but not what is listed."""
    return body[:-len(NOTE)] + NOTE[::-1] if body.startswith(b"PK") else b"{" + b" " * (len(body) - 2) + b"}"


# In place of an answer, and what is changed in one.
OTHER_ANSWERS = {"refused": (401, b'{"ErrorCode": 3}'), "error": (500, b"broken"),
                 "page": (200, b"<html><body>Please log in to this network</body></html>", "text/html")}
CHANGED = {"cut": lambda body: body[:len(body) // 2], "short": lambda body: body[:-1], "long": lambda body: body + b"x",
           "damaged": damaged, "other": other}


class Service(http.server.ThreadingHTTPServer):
    daemon_threads = True
    request_queue_size = 64

    def __init__(self, tls, seed):
        super().__init__(("127.0.0.1", 0), Handler)
        context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        context.load_cert_chain(tls / "cert.pem", tls / "key.pem")
        self.context = context
        self.address = f"https://localhost:{self.server_address[1]}"
        self.seed, self.sessions, self.session_ids = seed, set(), []
        self.builds, self.products = [], []  # as they are listed
        self.archives = {}  # what was ever there, by path
        self.faults = {}  # by place
        self.given = []  # the lists that left whole: ("plugins" or "products", the list)
        self.asked = {"plugins": 0, "products": 0}  # how often, whatever came of it
        self.held = 0  # requests that wait because the service is silent
        self.changed = threading.Condition()
        self.thread = threading.Thread(target=self.serve_forever, args=(0.02,), daemon=True)
        self.thread.start()

    def close(self):
        self.mend()
        self.shutdown()
        self.server_close()

    def handle_error(self, request, client_address):
        """The program hangs up, or is gone."""

    # what is published

    def publish(self, package, prefix, name, version, host, hashed):
        path = f"/archives/{host}/{name}-{version}.zip"
        data = self.archives.setdefault(path, archive(name, version, host))
        build = {"Name": name, "Prefix": prefix, "Version": version, "HostVersion": host, "Size": len(data),
                 "Link": self.address + path, "Published": "2026-01-01", "Platform": "Mac"}
        if hashed:
            build["SHA256"] = hashlib.sha256(data).hexdigest()
        product = {"Name": package, "Prefix": prefix, "Version": version, "Published": "2026-01-01",
                   "Platform": "Mac"}
        with self.changed:
            self.builds = [one for one in self.builds if (one["Name"], one["Prefix"], one["HostVersion"]) != (
                name, prefix, host)] + [build]
            self.products = [one for one in self.products if one["Name"] != package] + [product]

    def withdraw(self, prefix, name, host):
        with self.changed:
            self.builds = [one for one in self.builds if (one["Name"], one["Prefix"], one["HostVersion"]) != (
                name, prefix, host)]

    # what goes wrong

    def spoil(self, place, fault):
        """Nothing goes wrong there when there is no fault."""
        with self.changed:
            self.faults.pop(place, None)
            self.faults |= {place: fault} if fault else {}
            self.changed.notify_all()

    def mend(self):
        with self.changed:
            self.faults = {}
            self.changed.notify_all()

    def expire(self):
        with self.changed:
            self.sessions.clear()

    def is_asked(self):
        with self.changed:
            return self.held > 0

    def fault_of(self, place):
        """What goes wrong there; a silent service says nothing until that is over."""
        with self.changed:
            if self.faults.get(place) == "silent":
                self.held += 1
                self.changed.wait_for(lambda: self.faults.get(place) != "silent", 300)
                self.held -= 1
            return self.faults.get(place)

    def new_session(self):
        with self.changed:
            session = hashlib.sha256(f"{self.seed} {len(self.session_ids)}".encode()).hexdigest()[:32]
            self.session_ids.append(session)
            self.sessions.add(session)
            return session


class Handler(http.server.BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"
    timeout = 60

    def setup(self):
        self.request = self.server.context.wrap_socket(self.request, server_side=True)
        super().setup()

    def log_message(self, *_):
        """Nobody reads it."""

    def session(self):
        sent = http.cookies.SimpleCookie(self.headers.get("Cookie", "")).get("SessionId")
        return sent and sent.value

    def do_GET(self):
        service = self.server
        if self.path == "/api/plugin/list":
            self.give_list("plugins", lambda: service.builds)
        elif self.path == "/api/product/list":
            self.give_list("products", lambda: service.products)
        elif self.path in service.archives:
            self.give("archives", service.archives[self.path], "application/zip")
        else:
            self.answer(404, b"nothing here")

    def do_POST(self):
        service = self.server
        sent = self.rfile.read(int(self.headers.get("Content-Length", "0")))
        if self.path == "/api/machine/signin":
            asked = json.loads(sent)
            right = (asked.get("email"), asked.get("password")) == (ACCOUNT, PASSWORD)
            answer = {"ErrorCode": 0, "SessionId": service.new_session()} if right else {"ErrorCode": 2}
        elif self.path == "/api/machine/signout":
            with service.changed:
                known = self.session() in service.sessions
                service.sessions.discard(self.session())
            answer = {"ErrorCode": 0 if known else 3}
        else:
            answer = {"ErrorCode": 0}
        self.give("account", json.dumps(answer).encode(), "application/json")

    def give_list(self, place, current):
        service = self.server
        session = self.session()
        with service.changed:
            service.asked[place] += 1
        if session is not None and session not in service.sessions:
            self.answer(*OTHER_ANSWERS["refused"])
            return
        fault = service.fault_of(place)
        with service.changed:
            listed = json.loads(json.dumps(current()))
        self.give(place, json.dumps(listed).encode(), "application/json", fault)
        if fault is None:
            with service.changed:
                service.given.append((place, listed))

    def give(self, place, body, kind, fault=""):
        fault = self.server.fault_of(place) if fault == "" else fault
        if fault in ("hung-up", "cut"):
            self.close_connection = True
        if fault in OTHER_ANSWERS:
            self.answer(*OTHER_ANSWERS[fault])
        elif fault != "hung-up":
            sent = CHANGED.get(fault, bytes)(body)
            self.answer(200, sent, kind, len(body if fault == "cut" else sent))

    def answer(self, status, body, kind="application/json", length=None):
        self.send_response(status)
        self.send_header("Content-Type", kind)
        self.send_header("Content-Length", str(len(body) if length is None else length))
        self.end_headers()
        self.wfile.write(body)
