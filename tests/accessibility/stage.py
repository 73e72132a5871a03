"""The program on a display and a bus of its own, before a simulated device, seen and moved as assistive tools do."""
import collections, os, subprocess, sys, tempfile, time

import gi
gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

ACTED_ON = {"push button", "radio button", "spin button", "text", "combo box", "page tab", "menu item", "check box"}
TOLD = {"checked", "sensitive", "showing", "focused", "focusable"}


class Stage:
    """Runs simulator and console; gathers what is announced, and every change of a name, description or state."""

    def __init__(self, *simulator):
        self.children, self.events, self.begun = [], [], ""
        self.folder = tempfile.TemporaryDirectory(prefix="tarnwell-")
        environment = dict(os.environ, XDG_CONFIG_HOME=self.folder.name, QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1",
                           LC_ALL="C.UTF-8", ASAN_OPTIONS="detect_leaks=0")
        link = os.path.join(self.folder.name, "tarnwell", "ports", "com1")
        os.makedirs(os.path.dirname(link))
        trace = os.path.join(self.folder.name, "trace")
        # The console's own end of the line is the device's where nothing is between them.
        device = link if type(self).join is Stage.join else os.path.join(self.folder.name, "device")
        self.simulator = self.start(["vorel-sim", "--link", device, "--seed", "0", "--trace", *simulator], environment,
                                    stdin=subprocess.PIPE, stdout=open(trace, "w"), text=True)
        self.trace = open(trace)
        self.until("the simulated device", lambda: os.path.exists(device))
        self.join(device, link)
        self.until("the line", lambda: os.path.exists(link))
        self.listener = Atspi.EventListener.new(self.note)
        for kind in ("object:state-changed", "object:property-change"):
            self.listener.register(kind)
        self.console = self.start(["tarnwell"], environment, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL)
        self.until("the console", self.windows)

    def join(self, device, link):
        """Starts what is between device and console."""

    def __enter__(self):
        return self

    def __exit__(self, *failure):
        for child in reversed(self.children):
            child.terminate()
            child.wait()
        self.folder.cleanup()

    def start(self, command, environment, **streams):
        program = os.path.join(sys.argv[1], command[0])
        program = program if os.path.exists(program) else command[0]
        process = subprocess.Popen([program, *command[1:]], env=environment, **streams)
        self.children.append(process)
        return process

    def device(self, command):
        """Changes the simulated world."""
        self.simulator.stdin.write(command + "\n")
        self.simulator.stdin.flush()

    def requests(self):
        """What the device was sent since the last call of this or of commands()."""
        self.begun += self.trace.read()
        *lines, self.begun = self.begun.split("\n")
        return [line.split(" > ")[1] for line in lines if " > " in line]

    def commands(self):
        """The requests since the last call that ask nothing."""
        return [request for request in self.requests() if "?" not in request]

    def note(self, event):
        try:
            source = event.source
            self.events.append((event.type, role_of(source), source.get_name() or "", event.detail1, source))
        except GLib.Error:
            pass  # gone since

    def pump(self, seconds):
        end = time.monotonic() + seconds
        while time.monotonic() < end:
            if not GLib.MainContext.default().iteration(False):
                time.sleep(0.005)

    def until(self, what, holds, seconds=60):
        """What `holds` returns once it is true; fails when it isn't in time."""
        end = time.monotonic() + seconds
        while time.monotonic() < end:
            self.pump(0.02)
            try:
                found = holds()
            except (GLib.Error, AttributeError, IndexError):
                found = None  # what was looked at has gone meanwhile
            if found:
                return found
        raise AssertionError("never came: %s; windows: %s" % (what, [item.get_name() for item in self.windows()]))

    def said(self):
        """How often each text was announced since the events were cleared."""
        return dict(collections.Counter(name for kind, role, name, on, _ in self.events
                                        if role == "notification" and "showing" in kind and on))

    def windows(self):
        return [window for app in children(Atspi.get_desktop(0)) if app.get_name().startswith("Tarnwell")
                for window in children(app)]

    def title(self):
        return self.windows()[-1].get_name()

    def tree(self, window=-1):
        """Every object of the form in front, or of another, as it is read."""
        todo = [self.windows()[window]]
        while todo:
            item = todo.pop(0)
            yield item
            todo[0:0] = children(item)

    def find(self, name, role=None, showing=True, window=-1):
        for item in self.tree(window):
            if item.get_name() == name and role in (None, role_of(item)):
                if not showing or role_of(item) == "menu item" or "showing" in states(item):
                    return item
        return None

    def named(self, name, role=None):
        """The control of the form in front, when it can be acted on."""
        def ready():
            item = self.find(name, role)
            return item if item and "sensitive" in states(item) else None
        return self.until(name, ready)

    def press(self, name, role=None):
        assert do(self.named(name, role), "Press"), name + " takes no press"

    def key(self, *keys):
        """Real keys, one after another."""
        for key in keys:
            held, _, last = key.rpartition("+")
            # The toolkit asks the bus about each key and delivers it on the answer: a key that follows within it, as no
            # hand types, would overtake the one that is held.
            down = ["keydown", held, "sleep", "0.2"] if held else []
            subprocess.run(["xdotool", *down, "key", last, *(["keyup", held] if held else [])], check=True)
            self.pump(0.3)

    def reach(self, name, role):
        """Tab, until it has the focus."""
        for _ in range(40):
            if "focused" in states(self.named(name, role)):
                return
            self.key("Tab")
        raise AssertionError("Tab doesn't lead to " + name)

    def leave(self, button):
        """Closes the form in front; the console goes on when its pass is over."""
        self.press(button)
        self.until("the console alone", lambda: len(self.windows()) == 1)
        self.pump(1)

    def checked(self, name):
        return "checked" in states(self.find(name, "radio button"))


def children(item):
    found = (item.get_child_at_index(i) for i in range(item.get_child_count()))
    return [child for child in found if child is not None]


def role_of(item):
    """Debian 13's bus has another name for a push button than Debian 12's."""
    name = item.get_role_name()
    return "push button" if name == "button" else name


def states(item):
    return {state.value_nick for state in item.get_state_set().get_states()}


def actions(item):
    return [Atspi.Action.get_action_name(item, i) for i in range(Atspi.Action.get_n_actions(item))] \
        if item.get_action_iface() else []


def do(item, action):
    return action in actions(item) and Atspi.Action.do_action(item, actions(item).index(action))


def line_of(item):
    """One object as text: role, name, states, value, description."""
    value = ""
    if item.get_value_iface():
        value = " = %g of %g to %g by %g" % (Atspi.Value.get_current_value(item), Atspi.Value.get_minimum_value(item),
                                            Atspi.Value.get_maximum_value(item), Atspi.Value.get_minimum_increment(item))
    note = " -- " + item.get_description() if item.get_description() else ""
    return "%s '%s' %s%s%s" % (role_of(item), item.get_name(), " ".join(sorted(states(item) & TOLD)), value, note)
