#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 Tolvane Brevok contributors
# SPDX-License-Identifier: MIT
"""The bundled web service as a process over a scratch folder, and clients that trust its authority alone."""
import contextlib
import hashlib
import http.client
import json
import pathlib
import re
import ssl
import stat
import subprocess
import sys
import tempfile
import types
import unittest
import urllib.parse

PROGRAM = pathlib.Path(sys.argv.pop(1)).resolve() / "brevok-demo-service"
PASSWORD = "analytical-engine"


class Service:
    """Runs from start() to stop(), and may be started again."""

    def __init__(self, folder):
        self.root, self.tls, self.process = folder / "root", folder / "tls", None
        self.errors = tempfile.TemporaryFile()

    def start(self):
        self.process = subprocess.Popen([PROGRAM, "--root", self.root, "--tls", self.tls], stdout=subprocess.PIPE,
                                        stderr=self.errors, text=True)
        self.first_line = self.process.stdout.readline()
        facts = json.loads(self.first_line)
        self.url = facts["url"]
        self.trust = ssl.create_default_context(cafile=facts["ca"])

    def stop(self):
        self.process.terminate()
        self.process.stdout.close()
        return self.process.wait()

    def said(self):
        self.errors.seek(0)
        return self.errors.read().decode()

    def ask(self, method, target, body=None, **headers):
        """@target is a path or a whole address, and sent as it is."""
        host = "127.0.0.1" if "//127.0.0.1" in target else "localhost"
        port = urllib.parse.urlsplit(self.url).port
        connection = http.client.HTTPSConnection(host, port, timeout=60, context=self.trust)
        path = re.sub("^https://[^/]*", "", target) or "/"
        connection.request(method, path, body, {name.replace("_", "-"): value for name, value in headers.items()})
        with contextlib.closing(connection):
            reply = connection.getresponse()
            content = reply.read()
        if reply.status == 302:
            return self.ask(method, reply.headers["Location"])
        answer = types.SimpleNamespace(status=reply.status, body=content, tag=reply.headers["ETag"], json=None)
        with contextlib.suppress(ValueError):
            answer.json = json.loads(content)
        return answer


class DemoServiceTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.service = Service(self.folder)
        self.addCleanup(self.service.errors.close)

    def start(self):
        self.service.start()
        self.addCleanup(self.service.stop)
        return self.service

    def assert_refused(self, words, status, text):
        """It ends with one line on standard error."""
        ended = subprocess.run([PROGRAM, *words], cwd=self.folder, capture_output=True, text=True, timeout=60,
                               check=False)
        self.assertEqual((ended.returncode, ended.stdout, ended.stderr.count("\n")), (status, "", 1), ended.stderr)
        self.assertIn(text, ended.stderr)

    def test_unusable_options_touch_nothing(self):
        (self.folder / "file").write_text("kept")
        for words, named in ((["--root", "data", "--colour"], "colour"), (["--port", "0"], "--root"),
                             (["--root", ""], "--root"), (["--root", "file"], "'file'"),
                             (["--root", "data", "--port", "x1"], "'x1'"),
                             (["--root", "data", "--port=65536"], "'65536'"), (["--root", "data", "--tls"], "tls"),
                             (["--root", "data", "more"], "'more'")):
            with self.subTest(words):
                self.assert_refused(words, 2, named)
                self.assertEqual([path.name for path in self.folder.iterdir()], ["file"])

    def test_faults_at_start(self):
        (self.folder / "file").write_text("kept")
        impossible = str(self.folder / "file" / "folder")
        self.assert_refused(["--root", impossible], 1, impossible)
        self.assert_refused(["--root", "root", "--tls", impossible], 1, impossible)

    def test_certificates_are_kept_while_usable(self):
        service = self.start()
        self.assertRegex(service.first_line, r'^{"url": "https://localhost:\d+", "ca": "/.+/tls/ca\.pem"}\n$')
        self.assertEqual((service.tls / "key.pem").stat().st_mode & (stat.S_IRGRP | stat.S_IROTH), 0)
        self.assertEqual(service.ask("GET", service.url.replace("localhost", "127.0.0.1")).status, 200)
        authority = service.tls / "ca.pem"
        first = authority.read_bytes()
        for broken in False, True:
            if broken:
                (service.tls / "cert.pem").write_text("no certificate")
            self.assertEqual(service.stop(), 0)
            self.start()
            self.assertEqual(authority.read_bytes() != first, broken)
            self.assertEqual(service.ask("GET", "/").status, 200)

    def test_accounts(self):
        service = self.start()
        for email, word, code in (("Ada@Example.com", PASSWORD, 0), ("ada@example.com", "x", 2),
                                  ("ada@example.com", "", 2), ("bob@example.com", PASSWORD, 2)):
            with self.subTest(email=email, word=word):
                account = json.dumps({"email": email, "password": word})
                answer = service.ask("POST", "/api/machine/signin", account).json
                self.assertEqual((answer["ErrorCode"], bool(answer.get("SessionId"))), (code, code == 0))
                cookie = f"SessionId={answer.get('SessionId', '')}"
                for wanted in (0 if code == 0 else 3, 3):
                    signed_out = service.ask("POST", "/api/machine/signout", Cookie=cookie)
                    self.assertEqual(signed_out.json["ErrorCode"], wanted)
                log = (service.root / "requests.jsonl").read_text()
                self.assertNotIn(PASSWORD, log)
                self.assertNotIn(answer.get("SessionId") or "no session", log)
        self.assertEqual(service.ask("POST", "/api/machine/signin", f"password={PASSWORD}").json["ErrorCode"], 1)

    def test_catalogue_is_whole(self):
        service = self.start()
        products = service.ask("GET", "/api/product/list").json
        for product in products:
            for page in filter(None, (product.get("Icon"), product.get("Info"))):
                self.assertEqual(service.ask("GET", page).status, 200)
        offered = [build for build in service.ask("GET", "/api/plugin/list").json if build["Platform"] == "Mac"]
        self.assertEqual({build["Prefix"] for build in offered}, {product["Prefix"] for product in products})
        for build in offered:
            body = service.ask("GET", build["Link"]).body
            self.assertEqual((len(body), hashlib.sha256(body).hexdigest()), (build["Size"], build["SHA256"]))

    def test_lists_are_read_again(self):
        service = self.start()
        file = service.root / "plugins.json"
        file.write_text('[{"Link":"/a.zip"},{"Link":"https://example.com/b.zip"},7]')
        self.assertEqual(service.ask("GET", "/api/plugin/list").json,
                         [{"Link": f"{service.url}/a.zip"}, {"Link": "https://example.com/b.zip"}, 7])
        file.write_text('{"not":"a list"}')
        self.assertEqual(service.ask("GET", "/api/plugin/list").body, b'{"not":"a list"}')
        self.assertEqual(service.said(), "")
        file.write_text('[{"Name":')
        self.assertEqual(service.ask("GET", "/api/plugin/list").status, 500)
        file.unlink()
        missing = service.ask("GET", "/api/plugin/list")
        self.assertEqual((missing.status, missing.json["ErrorCode"]), (500, 99))
        self.assertEqual(service.said().count("plugins.json"), 2)
        service.stop()
        service.start()
        self.assertFalse(file.exists(), "a catalogue that somebody has edited is made again")

    def test_what_a_client_has_is_not_sent_again(self):
        service = self.start()
        icon = service.ask("GET", "/api/product/list").json[0]["Icon"]
        for target, file in (("/api/plugin/list", "plugins.json"), ("/api/product/list", "products.json"),
                             (icon, urllib.parse.urlsplit(icon).path.lstrip("/"))):
            with self.subTest(target):
                first = service.ask("GET", target)
                self.assertTrue(first.tag and first.body)
                again = service.ask("GET", target, If_None_Match=f'"other", W/{first.tag}')
                self.assertEqual((again.status, again.body, again.tag), (304, b"", first.tag))
                self.assertEqual(service.ask("GET", target, If_None_Match='"other"').body, first.body)
                (service.root / file).write_text('["another"]')
                changed = service.ask("GET", target, If_None_Match=first.tag)
                self.assertEqual((changed.status, changed.tag != first.tag), (200, True))

    def test_only_files_of_the_catalogue_are_served(self):
        service = self.start()
        (service.root / "archives/link.zip").symlink_to(service.root / "accounts.json")
        for target in ("/archives/../accounts.json", "/icons/%2e%2e%2faccounts.json", "/archives//etc/hostname",
                       "/archives/link.zip", "/archives/140", "/accounts.json", "/icons/none.png",
                       "/download/../accounts.json"):
            with self.subTest(target):
                answer = service.ask("GET", target)
                self.assertEqual((answer.status, PASSWORD.encode() in answer.body), (404, False))

    def test_packages_of_the_feed_of_updates_lie_on_the_service(self):
        service = self.start()
        self.assertEqual(service.ask("GET", "/appcast.xml").status, 404)
        (service.root / "appcast.xml").write_text('<enclosure url="/archives/new.deb"/>')
        self.assertEqual(service.ask("GET", "/appcast.xml").body.decode(),
                         f'<enclosure url="{service.url}/archives/new.deb"/>')

    def test_requests_are_recorded(self):
        service = self.start()
        report = '{"Installed":[{"Password":"x"}]}'
        cookie = "theme=dark; SessionId=0123456789abcdefghij"
        self.assertEqual(service.ask("POST", "/api/stats/plugins", report, Cookie=cookie).json["ErrorCode"], 0)
        self.assertEqual(service.ask("POST", "/api/machine/report?a=b", "password is secret").json["ErrorCode"], 0)
        first, second = map(json.loads, (service.root / "requests.jsonl").read_text().splitlines())
        self.assertEqual((first["method"], first["path"], first["session"], first["headers"]["cookie"], first["body"]),
                         ("POST", "/api/stats/plugins", "unknown", "theme=dark; SessionId=0123…ghij",
                          {"Installed": [{"Password": "…"}]}))
        self.assertEqual((second["path"], second["bodyLength"], "body" in second),
                         ("/api/machine/report?a=b", 18, False))


if __name__ == "__main__":
    unittest.main(verbosity=2)
