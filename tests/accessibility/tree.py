"""The trees of all forms, and the events of one alarm, one lost link and one refused option."""
import collections

from stage import ACTED_ON, Atspi, Stage, actions, do, line_of, role_of, states

TITLE = "Vorel Tarnwell v2.01 : "


def look(stage, form, *expected):
    """Prints the tree of the form in front. Whatever can be acted on has a name, and an option's group has its own."""
    items = list(stage.tree())
    lines = [line_of(item) for item in items]
    print("==", form, *lines, sep="\n", flush=True)
    for item, line in zip(items, lines):
        role = role_of(item)
        if "showing" in states(item) and role in ACTED_ON:
            assert item.get_name().strip(), "no name: " + line
        if role == "radio button":
            assert role_of(item.get_parent()) == "panel" and item.get_parent().get_name(), "no group: " + line
        if item.get_name().startswith("Sample of"):
            assert not actions(item) and not item.get_description(), line
    options = collections.Counter((item.get_parent().get_name(), item.get_name()) for item in items
                                  if role_of(item) == "radio button")
    assert max(options.values(), default=1) == 1, options
    for line in expected:
        assert any(found.startswith(line) for found in lines), line + " is missing"


def expect_said(stage, *texts):
    """Each text once and no other, also not at the passes that follow."""
    stage.until(str(texts), lambda: set(texts) <= set(stage.said()))
    stage.pump(1.5)
    assert stage.said() == {text: 1 for text in texts}, stage.said()
    stage.events.clear()


def expect_known_sources(stage):
    """Each event came from an object of a tree."""
    known = [item for window in range(len(stage.windows())) for item in stage.tree(window)]
    strange = [event[:4] for event in stage.events if event[4] not in known]
    assert stage.events and not strange, strange


def order_in_lockout(stage, name):
    """An order that the device refuses, since remote lockout began and the console hasn't heard of it yet."""
    for _ in range(10):
        option = stage.named(name)
        stage.events.clear()
        stage.commands()
        stage.device("comms rlo")
        do(option, "Press")
        stage.until("the lockout", lambda: "sensitive" not in states(stage.find(name)))
        if "S=S" in stage.commands():
            return
        stage.device("comms rem")
    raise AssertionError("the console was always faster")


def refuses_acts(stage):
    """Nothing comes of an act on what is grey, covered, or behind the form in front."""
    stage.commands()
    for item in (stage.find("Stby", "radio button"), stage.find("Low", "radio button", showing=False),
                 stage.find("Standby", window=0), stage.find("Disconnect", window=0)):
        do(item, "Press")
    address = stage.find("Address", "spin button", showing=False)
    Atspi.Value.set_current_value(address, 9)
    stage.pump(2)
    assert stage.commands() == [] and "Settings: Connected" in stage.title()
    assert Atspi.Value.get_current_value(address) == 1


def amplifier():
    with Stage() as stage:
        look(stage, "amplifier, not connected", "frame 'Vorel Tarnwell v2.01 : No Connection'",
             "spin button 'Connection Address' sensitive showing = 0 of 0 to 31 by 1")
        stage.press("Connect")
        stage.until("both temperatures", lambda: stage.find("RF On", "label") and stage.checked("Online"))
        stage.pump(1.5)
        look(stage, "amplifier", "panel 'User Setting'", "panel 'SSPA Mute State'", "label 'RF On'",
             "radio button 'Online' checked", "spin button 'Gain Adjust (dB)' sensitive showing = 0 of -20 to 0 by 0.2")

        stage.events.clear()
        stage.device("alarm R active")
        expect_said(stage, "Alarm")
        stage.pump(3)  # the sign flashes
        assert not [event for event in stage.events if event[1] == "image"], stage.events
        stage.device("alarms off")
        expect_said(stage, "No alarm")

        lost, back = TITLE + "Lost Connection to 60W C-BAND Retrying...", TITLE + "Connected to 60W C-BAND"
        for loss, end in (("silence", "talk"), ("pull", "plug")):
            stage.device(loss)
            expect_said(stage, lost)
            stage.device(end)
            expect_said(stage, back)

        order_in_lockout(stage, "Standby")
        expect_said(stage, "Operating State: Online")
        assert stage.checked("Online")
        stage.device("comms rem")

        stage.press("View alarms")
        stage.until("the viewer", lambda: stage.find("5V rail") and stage.find("5V rail").get_description())
        stage.pump(1.5)
        look(stage, "alarm viewer", "frame 'SSPA Alarms: Connected", "label '5V rail'", "image 'Sample of Latched'",
             "label 'Temperature, amplifier 1'", "push button '11V rail low'")
        stage.events.clear()
        stage.device("alarm R active")
        stage.until("the alarm", lambda: any("Alarm active" in text for text in stage.said()))
        stage.pump(1.5)
        [(text, times)] = stage.said().items()
        told = [event for event in stage.events if "description" in event[0] and event[1] == "push button"]
        assert times == 1 and text == "Alarm active: " + told[0][2] and len(told) == 1, (text, times, told)
        stage.leave("Close")

        stage.events.clear()
        stage.press("SSPA Settings", "menu item")
        stage.until("the settings", lambda: "Settings" in stage.title())
        stage.pump(1)
        expect_known_sources(stage)
        for page in ("Standard", "Advanced", "Factory"):
            stage.press(page, "page tab")
            stage.until(page, lambda: stage.find(page, "panel"))
            look(stage, "settings, " + page, "panel '%s'" % page,
                 "text 'Sensor Level (V):' focusable%s -- 0 to 15, D: disabled" % (" showing" * (page == "Factory")))
        refuses_acts(stage)

        stage.press("Advanced", "page tab")
        stage.press("Unlock")
        option = stage.named("Max", "radio button")
        stage.events.clear()
        stage.device("comms rlo")
        do(option, "Press")
        expect_said(stage, "SSPA Settings closed: no answer")


def others():
    with Stage("--kind", "controller") as stage:
        stage.press("Connect")
        stage.until("the paths", lambda: stage.find("Path A SSPA Selection", "panel") and stage.checked("Auto"))
        stage.pump(1.5)
        stage.device("priority A")
        stage.until("the priority", lambda: stage.find("Path A SSPA Selection [Priority]", "panel"))
        look(stage, "redundancy controller", "panel 'Path A SSPA Selection [Priority]'",
             "panel 'Path B SSPA Selection'", "panel 'Mode'")

        stage.press("View alarms")
        stage.press("OK")  # Auto mode is told of
        stage.until("the viewer", lambda: stage.find("Clear Alarms"))
        stage.pump(1.5)
        look(stage, "alarm viewer of a controller", "frame 'Redundancy Controller Alarms: Connected")
        stage.leave("Close")
        stage.press("Redundancy Controller Settings", "menu item")
        stage.until("the settings", lambda: stage.title().startswith("Redundancy Controller Settings: Connected"))
        stage.until("the priority", lambda: stage.checked("Path A"))
        look(stage, "settings of a controller", "panel 'Priority'", "radio button 'Path A' checked")
        stage.leave("Close")

        stage.press("Save Snapshot (Redundancy Controller)", "menu item")
        stage.until("the dialog", lambda: stage.title() == "Save Snapshot")
        look(stage, "snapshot", "dialog 'Save Snapshot'", "text 'File Description:'")
        stage.leave("Cancel")
        stage.press("Software Options", "menu item")
        stage.until("the options", lambda: stage.title().startswith("Software Options"))
        look(stage, "software options", "dialog 'Software Options", "panel 'RS232 Flow Control'")
        stage.leave("Cancel")


amplifier()
others()
