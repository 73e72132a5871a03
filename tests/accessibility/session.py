"""From the start to a changed setting, a cleared alarm and a saved snapshot, by keys alone or by assistive actions alone,
as a transcript. Whether it worked is read from the tree, the device and the file."""
import os, subprocess, sys

from stage import Atspi, Stage, do, role_of, states


class Keys:
    """Acts by keys, looks at the focus."""
    arrivals = ["S=O"]  # by keys the way to an option leads over the selected one

    def __init__(self, stage):
        self.stage = stage

    def press(self, key):
        print("key     ", key, flush=True)
        self.stage.key(key)

    def type(self, text):
        print("types   ", text, flush=True)
        subprocess.run(["xdotool", "type", "--delay", "30", text], check=True)

    def button(self, name, key):
        self.stage.named(name, "push button")
        self.press(key)

    def menu(self, name, menu, key):
        self.press(menu)
        self.stage.until(name, lambda: "showing" in states(self.stage.find(name, "menu item")))
        self.press(key)

    def option(self, name, group, key):
        self.press(group)
        self.stage.until(group, lambda: any("focused" in states(item) for item in self.stage.tree()
                                            if role_of(item) == "radio button"))
        self.press(key)

    def field(self, name, text):
        self.stage.reach(name, "text")
        self.press("ctrl+a")
        self.type(text)
        self.press("Return")

    def file(self, path):
        self.press("ctrl+a")
        self.type(path)
        self.press("Return")


class Tools:
    """Acts through the actions and values of the tree; no key, no pointer."""
    arrivals = []

    def __init__(self, stage):
        self.stage = stage

    def act(self, name, role):
        print("presses ", role, name, flush=True)
        self.stage.press(name, role)

    def button(self, name, _):
        self.act(name, "push button")

    def menu(self, name, *_):
        self.act(name, "menu item")

    def option(self, name, *_):
        self.act(name, "radio button")

    def field(self, name, text):
        print("sets    ", name, text, flush=True)
        field = self.stage.named(name, "text")
        Atspi.EditableText.set_text_contents(field, text)
        self.stage.until(text, lambda: Atspi.Text.get_text(field, 0, -1) == text)
        do(field, "Press")

    def file(self, path):
        print("sets     File name", path, flush=True)
        Atspi.EditableText.set_text_contents(self.stage.named("File name:", "text"), path)
        self.act("Save", "push button")


def session(hand_of):
    with Stage() as stage:
        hand = hand_of(stage)
        heard = lambda: print("hears   ", stage.title(), flush=True)
        sent = []

        def device_has(request):
            sent.extend(stage.commands())
            return request in sent

        heard()
        hand.button("Connect", "alt+c")
        stage.until("the state", lambda: stage.find("RF On", "label") and stage.checked("Online"))
        heard()
        hand.option("Standby", "alt+s", "Down")
        stage.until("Standby", lambda: stage.checked("Standby") and device_has("S=S"))

        hand.menu("SSPA Settings", "alt+p", "s")
        stage.until("the settings", lambda: "Settings: Connected" in stage.title())
        heard()
        hand.field("Minimum (dBm):", "10.0")
        stage.until("the limit", lambda: device_has("T1= 10"))
        hand.button("Close", "alt+c")
        stage.until("the console", lambda: stage.find("Disconnect") and len(stage.windows()) == 1)
        stage.pump(1)

        stage.events.clear()
        stage.device("alarm R latched")
        stage.until("the alarm", lambda: "Alarm latched" in stage.said())
        print("hears    Alarm latched", flush=True)
        hand.button("View alarms", "alt+v")
        stage.until("the viewer", lambda: "Alarms: Connected" in stage.title() and stage.find("Clear Alarms"))
        heard()
        hand.button("Clear Alarms", "alt+a")
        stage.until("cleared", lambda: device_has("ZA") and any("Alarm gone" in text for text in stage.said()))
        print("hears   ", *[text for text in stage.said() if "gone" in text], flush=True)
        hand.button("Close", "alt+c")
        stage.until("the console", lambda: stage.find("Disconnect") and len(stage.windows()) == 1)
        stage.pump(1)

        path = os.path.join(stage.folder.name, "evening")
        hand.menu("Save Snapshot (SSPA)", "alt+f", "s")
        stage.until("the description", lambda: stage.title() == "Save Snapshot")
        hand.field("File Description:", "evening")
        stage.until("the file dialog", lambda: stage.title() == "Save As")
        hand.file(path)
        verify = [os.path.join(sys.argv[1], "vorel-snapshot"), "verify", path]
        stage.until("a whole snapshot", lambda: subprocess.run(verify, capture_output=True).returncode == 0)
        print("file     whole", flush=True)
        print("device  ", *sent, flush=True)
        assert sent == [*hand.arrivals, "S=S", "T1= 10", "ZA"], sent


session({"keyboard": Keys, "assistive": Tools}[sys.argv[2]])
