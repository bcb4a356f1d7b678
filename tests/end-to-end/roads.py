"""The two roads by which the programs change targets: the application itself, or the privileged helper for it."""
import os
import pathlib
import sys

from brevok_session import Session, install, start_bus

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "helper" / "system"))
import rig as rigs  # noqa: E402


class OwnRoad:
    """The application changes the targets itself."""

    def __init__(self, test, programs, session=Session):
        self.session = test.enterContext(session(programs))
        self.temporary = self.session.folder / "temporary"
        self.temporary.mkdir()
        self.session.environment["TMPDIR"] = str(self.temporary)

    def belongs_to_root(self, folder):
        """Which is nothing here."""

    def start_helper(self):
        """There is none."""

    def leftovers(self):
        return list(self.temporary.iterdir())


class HelperRoad(OwnRoad):
    """Targets of root's, and an application of somebody else's."""

    def __init__(self, test, programs, session=Session):  # pylint: disable=super-init-not-called
        self.rig = rigs.Rig(programs / "tolvane-brevok-helper")
        test.addCleanup(self.rig.close)
        programs = install(programs, self.rig.root / "build")  # the build's own folder may be closed to other users
        folder = self.rig.root / "session"
        folder.mkdir()
        user = {"user": rigs.ALLOWED, "group": 65534, "extra_groups": []}
        self.session = test.enterContext(session(programs, folder, **user))
        own = {"TMPDIR": "temporary", "XDG_RUNTIME_DIR": "runtime"}
        for name in own.values():
            (folder / name).mkdir(mode=0o700)
        for name in (*own.values(), "config", "data", "state", "home"):
            os.chown(folder / name, rigs.ALLOWED, 65534)
        self.temporary = folder / "temporary"
        self.bus, bus = start_bus(test, f"unix:path={folder}/runtime/bus", **user)
        self.session.environment.update({name: str(folder / place) for name, place in own.items()},
                                        DBUS_SESSION_BUS_ADDRESS=bus, DBUS_SYSTEM_BUS_ADDRESS=self.rig.address)
        self.caller = self.rig.caller()

    def belongs_to_root(self, folder):
        for path in (folder, *folder.rglob("*")):
            os.chown(path, 0, 0)

    def start_helper(self):
        self.caller.call("Version")
        self.rig.settle()

    def leftovers(self):
        return super().leftovers() + list(self.rig.state.iterdir())
