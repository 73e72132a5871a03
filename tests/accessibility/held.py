"""Real keys that are kept down, that come while the line is held, and in an open list: what the device gets of them."""
import subprocess

from stage import Stage


def keep_down(stage, key, seconds):
    subprocess.run(["xdotool", "keydown", key, "sleep", str(seconds), "keyup", key], check=True)
    stage.pump(0.5)


def hold(stage, command):
    """Returns within a transaction that has no answer yet."""
    stage.device(command)
    stage.requests()
    stage.until("a held line", stage.requests)
    stage.requests()


with Stage() as stage:
    stage.key("alt+c")
    stage.until("the session", lambda: stage.find("Disconnect") and stage.checked("Online"))
    stage.pump(1)

    stage.reach("Gain Adjust (dB):", "text")
    stage.requests()
    keep_down(stage, "Down", 2)
    steps = stage.commands()
    stage.pump(2)
    print("kept down", *steps, flush=True)
    assert len(steps) > 2 and len(set(steps)) == len(steps) and not stage.commands(), "a held key piles up"
    stage.key("ctrl+a", "minus", "4")
    keep_down(stage, "Return", 2)
    entered = stage.commands()
    assert entered == ["G=-4"], entered

    # Keys go by way of the bus, access keys don't: one that they overtake isn't for where they lead.
    hold(stage, "silence 1")
    stage.key("alt+s", "Down", "alt+u", "Up")
    stage.until("the last act", lambda: stage.checked("RF Mute"))
    acts = stage.commands()
    print("in a hold", *acts, flush=True)
    assert [act for act in acts if act != "S=S"] == ["S=O", "S=T", "S=X"], acts
    stage.key("Down", "Up", "Down")
    stage.pump(2)
    again = stage.commands()
    assert again == ["S=T", "S=X", "S=T"], again

    hold(stage, "silence")
    stage.key("Down")
    stage.until("the lost link", lambda: "Lost Connection" in stage.title(), 20)
    stage.device("talk")
    stage.until("the session", lambda: "Connected to" in stage.title(), 20)
    stage.pump(2)
    assert not stage.commands(), "a key for an option that went grey has acted"
    print("lost, back", flush=True)

    stage.key("alt+p", "o")
    stage.until("the options", lambda: "Options" in stage.title())
    for end in "Return", "Escape":
        stage.key("alt+p", "alt+Down", "Down", end)
        stage.pump(1)
        assert "Options" in stage.title(), end + " in a list reaches its form"
    stage.key("Escape")
    stage.until("the console", lambda: len(stage.windows()) == 1)

    hold(stage, "silence")
    tries = []
    stage.until("the third transaction", lambda: tries.extend(stage.requests()) or len(tries) > 6, 30)
    stage.key("alt+c")
    stage.until("the end of the session", lambda: stage.find("Connect"), 10)
    stage.requests()
    stage.pump(6)
    assert not stage.requests(), "Disconnect is not obeyed on a dead link"
