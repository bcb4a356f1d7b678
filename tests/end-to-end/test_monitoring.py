"""What a fleet's monitoring reads: the status document as its schema says, and the metrics."""
import json
import pathlib
import re
import shlex
import stat
import subprocess

from brevok_session import SessionTest, run_tests, wait_for

SOURCE = pathlib.Path(__file__).resolve().parents[2]
TYPES = {"object": dict, "array": list, "string": str, "integer": int, "boolean": bool}
KNOWN = {"$schema", "title", "description", "type", "required", "properties", "items", "enum", "minimum", "pattern"}
SAMPLE = re.compile(r'^tolvane_brevok_\w+\{\w+="(?:[^"\\]|\\.)*"(?:,\w+="(?:[^"\\]|\\.)*")*\} -?\d+$')


def faults(schema, value, place="document"):
    """What is wrong with `value`, by as much of JSON Schema as our schema uses. A key that is not in it is one: the
    schema is to name all."""
    assert set(schema) <= KNOWN, set(schema) - KNOWN
    kind = TYPES[schema["type"]]
    if not isinstance(value, kind) or (kind is int and isinstance(value, bool)):
        return [f"{place}: {value!r} is no {schema['type']}"]
    found = []
    if value not in schema.get("enum", [value]):
        found.append(f"{place}: {value!r} is none of {schema['enum']}")
    if kind is int and value < schema.get("minimum", value):
        found.append(f"{place}: {value}")
    if kind is str and not re.search(schema.get("pattern", ""), value):
        found.append(f"{place}: {value!r} is not like {schema['pattern']}")
    if kind is list:
        for index, item in enumerate(value):
            found += faults(schema["items"], item, f"{place}[{index}]")
    if kind is dict:
        found += [f"{place}: no {key}" for key in schema["required"] if key not in value]
        for key, item in value.items():
            if key in schema["properties"]:
                found += faults(schema["properties"][key], item, f"{place}.{key}")
            else:
                found.append(f"{place}: the schema has no {key}")
    return found


class Monitoring(SessionTest):
    def setUp(self):
        super().setUp()
        self.session.environment["USER"] = "ada"
        self.session.publish('Al"pha\\', '0x"A', "1.0", 140)
        archive = self.session.publish("Beta", "0xB", "1.0", 140)
        archive.write_bytes(archive.read_bytes()[:-1])

    def start(self):
        self.session.start_application()
        wait_for(lambda: self.session.status()["targets"], "the host application is found")

    def metrics(self):
        text = self.session.ctl("metrics").stdout
        for line in text.splitlines():
            self.assertTrue(line.startswith(("# HELP ", "# TYPE ")) or SAMPLE.match(line), line)
        return text

    def test_the_status_is_as_its_schema_says_and_the_metrics_tell_it(self):
        schema = json.loads((SOURCE / "docs/status.schema.json").read_text())
        self.session.stop_service()
        self.session.start_application()
        early = self.session.status()
        self.assertEqual(faults(schema, early), [])
        self.assertNotIn("lastCheck", early)
        self.session.stop_application()
        self.session.start_service()
        self.session.start_and_check()
        self.session.ctl("install", "0xB", check=False)
        status = self.session.status()
        self.assertEqual(faults(schema, status), [])
        self.assertIn("lastCheck", status)
        self.assertTrue(status["packages"][1]["failures"])
        self.assertNotEqual(faults(schema, {**status, "updates": -1}), [])
        self.check_metrics()

    def check_metrics(self):
        text = self.metrics()
        self.assertIn('tolvane_brevok_info{user="ada",version="1.0.0",installer="15"} 1\n', text)
        self.assertIn('tolvane_brevok_signed_in{user="ada"} 0\n', text)
        self.assertIn('tolvane_brevok_updates_waiting{user="ada"} 0\n', text)
        self.assertIn('tolvane_brevok_packages_failed{user="ada"} 1\n', text)
        self.assertIn('tolvane_brevok_package{user="ada",name="Al\\"pha\\\\",prefix="0x\\"A",version="1.0",'
                      'status="Not Installed"} 2\n', text)
        checked = int(re.search(r"last_check_timestamp_seconds\{.*\} (\d+)", text)[1])
        self.assertGreater(checked, 1.7e9)

    def test_what_is_not_known_yet_is_not_told_as_known(self):
        session = self.session
        session.start_and_check()

        def statuses(status):
            return [package["statusName"] for package in status["packages"]]
        known = statuses(wait_for(lambda: not session.status().get("calculating") and session.status(), "all is known"))
        self.assertNotIn("Missing Data", known)
        session.stop_application()
        session.start_application(wait=False)
        early = wait_for(lambda: session.ctl("metrics", check=False).stdout, "the application answers")
        self.assertNotIn("Missing Data", early)
        early = session.status()
        self.assertTrue(early.get("calculating") or statuses(early) == known, early)
        wait_for(lambda: statuses(session.status()) == known, "all is known again")

    def test_the_service_writes_them_in_one_step(self):
        session = self.session
        self.start()
        folder = session.folder / "node-exporter"
        folder.mkdir()
        unit = (SOURCE / "packaging/systemd/tolvane-brevok-converge.service.in").read_text()
        words = re.search("^ExecStopPost=-/bin/sh -c '(.*)'$", unit, re.M)[1].replace("$$", "$")
        command = words.replace("@BREVOK_BIN@", shlex.quote(str(session.programs)))
        run = {"shell": True, "check": True}
        subprocess.run(command, env=session.environment, **run)
        self.assertEqual(list(folder.iterdir()), [], "no folder is configured")
        for _ in range(2):
            subprocess.run(command, env={**session.environment, "BREVOK_METRICS": str(folder)}, **run)
            (file,) = folder.iterdir()
            self.assertEqual(file.name, "tolvane-brevok-ada.prom")
            self.assertEqual(stat.S_IMODE(file.stat().st_mode), 0o644)
        before = file.read_text()
        session.stop_application()
        self.assertEqual(session.ctl("metrics", "--file", file, check=False).returncode, 3)
        self.assertEqual(file.read_text(), before)
        self.start()
        refused = session.ctl("metrics", "--file", session.folder / "none/x.prom", check=False)
        self.assertEqual((refused.returncode, "none/x.prom cannot be written" in refused.stderr), (1, True))


if __name__ == "__main__":
    run_tests()
