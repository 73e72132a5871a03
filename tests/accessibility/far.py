"""The console far from its device: socat at both ends of a connection that is late each way and can be cut."""
import os, queue, socket, threading, time

from stage import Stage


class Wire:
    """Passes connections on to a port of this machine, late; can be cut."""

    def __init__(self, target, delay):
        self.target, self.delay, self.whole, self.open = target, delay, True, []
        self.listener = socket.create_server(("127.0.0.1", 0))
        self.port = self.listener.getsockname()[1]
        threading.Thread(target=self.accept, daemon=True).start()

    def accept(self):
        while True:
            near = self.listener.accept()[0]
            if not self.whole:
                near.close()
                continue
            far = socket.create_connection(("127.0.0.1", self.target))
            self.open += [near, far]
            for ends in (near, far), (far, near):
                threading.Thread(target=self.carry, args=ends, daemon=True).start()

    def carry(self, source, sink):
        late = queue.SimpleQueue()
        threading.Thread(target=self.deliver, args=(late, sink), daemon=True).start()
        try:
            while data := source.recv(4096):
                late.put((time.monotonic() + self.delay, data))
        except OSError:
            pass  # cut
        late.put((0, b""))

    def deliver(self, late, sink):
        try:
            while (item := late.get())[1]:
                time.sleep(max(item[0] - time.monotonic(), 0))
                sink.sendall(item[1])
        except OSError:
            pass  # what is under way is lost with the connection
        self.end(sink)

    def cut(self):
        self.whole = False
        for end in self.open:
            self.end(end)
        self.open.clear()

    def end(self, connection):
        """Both sides learn of it; closing alone would tell nobody while a thread reads."""
        try:
            connection.shutdown(socket.SHUT_RDWR)
        except OSError:
            pass  # it has ended by itself


class Far(Stage):
    def __init__(self, delay):
        self.delay = delay
        super().__init__()

    def device_end(self, link):
        return os.path.join(self.folder.name, "device")

    def join(self, device, link):
        with socket.create_server(("127.0.0.1", 0)) as free:
            port = free.getsockname()[1]
        self.start(["socat", "TCP-LISTEN:%d,bind=127.0.0.1,reuseaddr,fork" % port, "FILE:%s,rawer" % device], None)
        self.wire = Wire(port, self.delay)
        ends = "PTY,link=%s,rawer,wait-slave,pty-interval=0.05 TCP:127.0.0.1:%d" % (link, self.wire.port)
        desk = "while :; do socat %s; sleep 0.2; done" % ends
        self.start(["setsid", "bash", "-c", "trap 'kill 0' TERM; (%s) & wait" % desk], None)
