"""Alarms are heard: as the desktop's sound, as the console's own, again from a server that was started anew. One that
hangs holds nobody."""
import array, contextlib, os, shutil, signal, subprocess, sys, tempfile

from stage import Stage

if not shutil.which("pulseaudio"):
    print("skipped: the package pulseaudio isn't there")
    sys.exit(77)

folder = tempfile.TemporaryDirectory(prefix="tarnwell-")
socket = os.path.join(folder.name, "native")
os.environ.update(PULSE_SERVER="unix:" + socket, PULSE_RUNTIME_PATH=folder.name)


class Heard(Stage):
    """With a sound server of its own, which has no card."""

    def join(self, device, link):
        os.symlink(device, link)
        self.serve()

    def serve(self):
        self.server = self.start(["pulseaudio", "-n", "--daemonize=no", "--exit-idle-time=-1", "--use-pid-file=no",
                                  "-L", "module-native-protocol-unix auth-anonymous=1 socket=" + socket,
                                  "-L", "module-null-sink"], None)
        self.until("the sound server", lambda: subprocess.run(["pactl", "info"], capture_output=True).returncode == 0)
        played = os.path.join(folder.name, "played")
        self.start(["parec", "--device=null.monitor", "--format=s16le", "--channels=1", "--latency-msec=50"], None,
                   stdout=open(played, "wb"))
        self.played = open(played, "rb")
        self.until("the recording", lambda: self.played.read())

    def heard(self):
        """What was played since the last call was no silence."""
        played = self.played.read()
        return max(map(abs, array.array("h", played[:len(played) // 2 * 2])), default=0) > 1000

    def choose_on(self, told):
        self.press("Software Options", "menu item")
        self.press("General", "page tab")
        self.pump(1)
        assert not self.heard(), "nobody chose anything"
        self.until(told, lambda: self.find("On", "radio button").get_description() == told)
        self.press("On", "radio button")
        self.until("the sound", self.heard)
        self.leave("Cancel")
        self.heard()  # its end

    @contextlib.contextmanager
    def hanging_server(self):
        self.server.send_signal(signal.SIGSTOP)
        yield self.pump(2)
        self.server.send_signal(signal.SIGCONT)


os.environ["XDG_DATA_DIRS"] = os.environ["XDG_CACHE_HOME"] = folder.name  # no theme
with Heard() as stage:
    stage.choose_on("Heard as the console's own alarm sound")
del os.environ["XDG_DATA_DIRS"]
os.environ["XDG_CACHE_HOME"] = tempfile.mkdtemp(dir=folder.name)  # where it was noted that there is none

with Heard() as stage:
    stage.choose_on("Heard as the warning sound of the desktop")
    stage.press("Connect")
    stage.until("Online", lambda: stage.checked("Online"))
    stage.pump(1)
    assert not stage.heard(), "no alarm"
    stage.device("alarm P active")
    stage.until("the alarm", stage.heard)
    with stage.hanging_server():
        stage.press("Standby")
        stage.until("Standby", lambda: stage.checked("Standby"))
    stage.server.terminate()
    stage.server.wait()
    stage.pump(2)
    stage.serve()
    stage.until("the alarm again", stage.heard)
    with stage.hanging_server():
        stage.console.terminate()
        assert stage.console.wait(60) == 0
