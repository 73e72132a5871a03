"""A session through the recorder, told by its commands, and played again to a console that commands nothing."""
import json, os, re, subprocess, sys, tempfile

from stage import Stage

folder = tempfile.TemporaryDirectory(prefix="tarnwell-")
recording = os.path.join(folder.name, "line.rec")


class Recorded(Stage):
    def join(self, device, link):
        self.recorder = self.start(["vorel-line", "record", device, "--link", link, "-o", recording], None)


class Replayed(Recorded):
    def join(self, device, link):
        self.start(["vorel-line", "replay", recording, "--link", link], None)


def told(*command):
    line = subprocess.run([os.path.join(sys.argv[1], "vorel-line"), *command, recording], capture_output=True, text=True)
    assert line.returncode == 0, line
    return line.stdout


with Recorded() as stage:
    stage.press("Connect")
    stage.until("Online", lambda: stage.checked("Online"))
    for option in ("Standby", "Online"):
        stage.press(option)
        stage.until(option, lambda: stage.checked(option))
        stage.pump(2)  # long enough to be seen when it is played
    stage.recorder.terminate()
    assert stage.recorder.wait() == 0

commands = [json.loads(line)["request"] for line in told("events", "--json").splitlines() if '"type":"command"' in line]
assert commands == ["S=S", "S=O"], commands
assert "{@S=SC}  ! standby" in told("show") and "7b 40 53 3d 53 43 7d" in told("show", "--raw")
assert re.search(r"^S= +2 +2 +2 ", told("stats"), re.M), told("stats")

with Replayed() as stage:
    stage.press("Connect")
    for option in ("Online", "Standby", "Online"):
        stage.until(option, lambda: stage.checked(option))
