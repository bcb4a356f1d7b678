"""One number is one story: what people and the world do, as plain data.

A step is a list: a word, what it is about, and for what a person asks for perhaps what goes wrong meanwhile. Every part
of a story is a story, too: a step that has no meaning where it stands is passed over.
"""
import random

# Package, prefix, plug-in; the last two belong together in one package, and Beta to two.
LISTED = (("Alpha", "0xA", "Alpha"), ("Beta", "0xB", "Beta"), ("Pair", "KM#xP", "Beta"), ("Pair", "KM#xP", "Gamma"),
          ("Tools", "KM#xR57", "Tolvane"), ("Alpha", "0xA", "Tolvane"))
PREFIXES = ("0xA", "0xB", "KM#xP", "KM#xR57")
VERSIONS = ("1.0", "1.1b2", "1.1", "1.9", "1.10", "2.0")
BUILD_HOSTS = (70, 75, 140, 160, 161, 163, 170)
# Folder, what the application is called there, and the versions that it may have.
HOSTS = {
    "Adobe InDesign CC 2019": ("InDesign", (14012, 14105)),
    "Adobe InDesign 2021": ("InDesign", (16012, 16210, 16400)),
    "Adobe InDesign CS5": ("InDesign", (7036, 7536)),
    "Adobe InCopy 2022": ("InCopy", (17001,)),
    "Adobe InCopy CC 2019": ("InCopy", (14012,)),  # which no search finds
    "Adobe InDesign": ("InDesign", (14012,)),  # nor this
}
SETTINGS = {"autoUpdate": ("yes", "no"), "showNotifications": ("yes", "no"), "logLevel": ("0", "1", "2")}
SILENT_PLACES = ("plugins", "products", "archives", "account")
FAULTS = ("cut", "page", "short", "long", "damaged", "other", "refused", "error", "hung-up")
DISKS = ("targets", "data", "settings", "temporary")


class Teller:
    """Knows roughly what is where, so that most steps mean something."""

    def __init__(self, seed):
        self.random = random.Random(seed)
        self.road = self.pick(("own", "own", "helper"))
        self.steps = []
        self.hosts, self.moved, self.mounted, self.busy = {}, set(), set(), set()
        self.listed, self.wanted = [], []
        self.runs = self.signed_in = self.troubled = False

    def pick(self, choices):
        return self.random.choice(sorted(choices, key=str) if isinstance(choices, (set, dict)) else choices)

    def weighed(self, *choices):
        """One of (weight, what tells it)."""
        self.random.choices([tell for _, tell in choices], [weight for weight, _ in choices])[0]()

    def chance(self, share):
        return self.random.random() < share

    def tell(self, *step):
        self.steps.append(list(step))

    # what the world does

    def build_host(self):
        """Mostly one that a host takes."""
        if not self.hosts or self.chance(0.1):
            return self.pick(BUILD_HOSTS)
        version = self.hosts[self.pick(self.hosts)] // 100
        return self.pick([host for host in BUILD_HOSTS if host // 10 == version // 10])

    def publish(self):
        row = self.pick(LISTED), self.build_host()
        self.listed.append(row)
        self.tell("publish", *row[0], self.pick(VERSIONS), row[1], self.chance(0.5))

    def publish_again(self):
        if self.listed:
            row, host = self.pick(self.listed)
            self.tell("publish", *row, self.pick(VERSIONS), host, self.chance(0.5))

    def withdraw(self):
        if self.listed:
            row, host = self.listed.pop(self.random.randrange(len(self.listed)))
            self.tell("withdraw", *row[1:], host)

    def host(self):
        name = self.pick(HOSTS)
        self.hosts[name] = self.pick(HOSTS[name][1])
        self.tell("host", name, self.hosts[name])

    def with_host(self, word, *more):
        if self.hosts:
            self.tell(word, self.pick(self.hosts), *[one() for one in more])

    def vanish(self):
        if self.hosts:
            name = self.pick(self.hosts)
            self.hosts.pop(name)
            self.tell("vanish", name)

    def move(self):
        name = self.pick(self.moved or self.hosts or HOSTS)
        self.moved ^= {name}
        self.tell("move", name)

    def mount(self):
        name = self.pick(self.mounted if self.mounted and self.chance(0.6) else HOSTS)
        self.tell("unmount" if name in self.mounted else "mount", name)
        if name not in self.mounted:
            self.hosts[name] = HOSTS[name][1][0]
        self.mounted ^= {name}

    def run(self):
        name = self.pick(self.busy or self.hosts or HOSTS)
        self.tell("rest" if name in self.busy else "run", name)
        self.busy ^= {name}

    def world(self):
        self.weighed(
            (3, self.publish), (4, self.publish_again), (1, self.withdraw), (2, self.host), (1, self.vanish),
            (1, self.move), (2, self.mount), (2, self.run),
            (2, lambda: self.with_host("place", lambda: self.pick(LISTED)[2], lambda: self.pick(VERSIONS),
                                       self.build_host)),
            (1, lambda: self.tell("expire")),
            (1, lambda: self.tell("clock", self.pick((-70000, -3600, 0, 90, 3700, 86400 * 9, 86400 * 400)))),
            (1, lambda: self.tell("bus")),
            (1, lambda: self.tell("policy", self.random.sample(PREFIXES, 2), self.random.sample(PREFIXES, 1))),
        )

    def trouble(self):
        if self.troubled:
            self.tell("well")
            self.tell("room")
        elif self.chance(0.6):
            self.tell("service", self.pick(SILENT_PLACES), self.pick(FAULTS))
        else:
            self.tell("full", self.pick(DISKS))
        self.troubled = not self.troubled

    # what people do

    def meanwhile(self):
        """What goes wrong during a call, if anything does."""
        if self.chance(0.5):
            return {}
        if self.chance(0.25):
            how = {"silent": self.pick(SILENT_PLACES), "then": self.pick(("kill", "quit", "give up", "bus", "well"))}
            self.runs = self.runs and how["then"] not in ("kill", "quit")
            return how
        return self.strike(*self.pick(((self.worker(), "targets", 120),) * 3
                                      + (("application", "data", 60), ("network", "data", 8))))

    def worker(self):
        return "helper" if self.road == "helper" else "application"

    def strike(self, program, disk, longest):
        what = self.pick(("kill", "kill", "full"))
        self.troubled = self.troubled or what == "full"
        number = int(longest ** self.random.random())  # what is short has to be struck, too
        return {"strike": [program, disk, number, what]}

    def start(self):
        self.runs = True
        self.tell("start")

    def leave(self, word):
        self.runs = False
        self.tell(word)

    def install(self, prefix):
        self.wanted.append(prefix)
        self.tell("install", prefix, self.meanwhile())

    def regret(self, prefix):
        self.tell("install", prefix, {})
        self.tell("remove", prefix, self.strike(self.worker(), "targets", 30))
        self.start()

    def converge(self):
        if self.chance(0.5):
            self.tell("signin", True, {})
        self.tell("converge", self.meanwhile())

    def person(self):
        if not self.runs or self.chance(0.1):  # it may have been struck
            self.start()
        prefix = self.pick([row[0][1] for row in self.listed] or PREFIXES)
        key = self.pick(SETTINGS)
        self.weighed(
            (1, lambda: self.leave("quit")), (1, lambda: self.leave("kill")),
            (2, lambda: self.tell("signin", self.chance(0.8), self.meanwhile())),
            (1, lambda: self.tell("signout", self.meanwhile())),
            (4, lambda: self.tell("check", self.meanwhile())),
            (7, lambda: self.install(prefix)),
            (3, lambda: self.tell("update", self.meanwhile())),
            (4, lambda: self.tell("remove", self.pick(self.wanted or PREFIXES), self.meanwhile())),
            (4, lambda: self.regret(prefix)),
            (3, self.converge),
            (2, lambda: self.tell("discard")),
            (2, lambda: self.tell("set", key, self.pick(SETTINGS[key]))),
            (2, lambda: self.tell("target", self.pick(("add", "remove", "enable", "disable")),
                                  self.pick(self.hosts or HOSTS))),
        )


def story_of(seed):
    """Begins with something to do, as otherwise little happens."""
    teller = Teller(seed)
    for _ in range(teller.random.randint(1, 4)):
        teller.host()
    for _ in range(teller.random.randint(4, 8)):
        teller.publish()
    for _ in range(teller.random.randint(12, 32)):
        teller.weighed((35, teller.world), (10, teller.trouble), (55, teller.person))
    return {"seed": seed, "road": teller.road, "steps": teller.steps}


def read_aloud(step):
    """A step as a person reads it."""
    words = [str(word) for word in step if not isinstance(word, dict)]
    meanwhile = next((word for word in step if isinstance(word, dict)), {})
    if "strike" in meanwhile:
        program, disk, number, what = meanwhile["strike"]
        words.append(f"- where change {number} of the {program} to the {disk} " +
                     ("is its last" if what == "kill" else "finds the disk full"))
    if "silent" in meanwhile:
        words.append(f"- while the service is silent about {meanwhile['silent']}, then: {meanwhile['then']}")
    return " ".join(words)
