"""What the tests of the helper's requests have in common."""
import os
import pathlib
import sys
import unittest

import rig as rigs
from rig import ALLOWED, ASKED, snapshot

DENIED_ERROR = "org.freedesktop.DBus.Error.AccessDenied"
NOT_AUTHORIZED = "com.tolvane.brevok.HelperTool.Error.NotAuthorized"


class RigTest(unittest.TestCase):
    """A rig for each test, with a helper that is told nothing but `options`."""

    helper = built = None  # the program, and where what tests need was built
    options = ()

    def setUp(self):
        self.rig = rigs.Rig(self.helper, *self.options)
        self.addCleanup(self.rig.close)
        self.target = self.rig.application()

    def own(self, path, user=ALLOWED):
        os.chown(path, user, 65534, follow_symlinks=False)
        return path

    def folder(self, path, user=ALLOWED):
        path.mkdir(parents=True)
        return self.own(path, user)

    def asked(self):
        """Somebody whom polkit asks."""
        caller = self.rig.caller(ASKED)
        caller.do("agent")
        return caller

    def content(self, target=None):
        return ((target or self.target) / "Contents" / "Info.plist").read_bytes()

    def assertRefused(self, answer, error=DENIED_ERROR):
        self.assertEqual(answer.get("error"), error, answer)


class HelperCase(RigTest):
    """One helper for all tests of a class, and what none of them may change."""

    @classmethod
    def setUpClass(cls):
        cls.rig = rigs.Rig(cls.helper)
        cls.addClassCleanup(cls.rig.close)
        cls.outside = cls.rig.root / "outside"
        cls.outside.mkdir()
        (cls.outside / "Tolvane" / "A.InDesignPlugin").mkdir(parents=True)
        (cls.outside / "Tolvane" / "A.InDesignPlugin" / "kept").write_text("kept")
        (cls.outside / "secret").write_text("secret")
        (cls.outside / "secret").chmod(0o600)
        (cls.outside / "open").write_text("open")
        cls.allowed = cls.rig.caller()

    def setUp(self):
        self.target = self.rig.application(self.id().rsplit(".", 1)[1])
        self.home = self.rig.home(ALLOWED)
        self.rig.settle()
        self.before = snapshot(self.outside), snapshot(self.rig.root / "Applications")

    def tearDown(self):
        self.rig.end_callers(but=self.allowed)

    def assertNothingChanged(self):
        self.rig.settle()
        self.assertEqual((snapshot(self.outside), snapshot(self.rig.root / "Applications")), self.before)


def run_tests():
    """The main program of a file of tests; its arguments are the helper and the folder of what tests need."""
    rigs.enter()
    RigTest.helper, RigTest.built = sys.argv.pop(1), pathlib.Path(sys.argv.pop(1))
    unittest.main(verbosity=2, warnings="ignore")
