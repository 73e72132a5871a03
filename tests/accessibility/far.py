"""The console far from its device: socat at both ends of a connection that is late each way and can be cut."""
import asyncio, socket, threading

from stage import Stage


class Wire:
    """Passes connections on to a port of this machine, late; can be cut."""

    def __init__(self, target, delay):
        self.target, self.delay, self.whole, self.ends = target, delay, True, []
        self.loop = asyncio.new_event_loop()
        server = self.loop.run_until_complete(asyncio.start_server(self.accept, "127.0.0.1", 0))
        self.port = server.sockets[0].getsockname()[1]
        threading.Thread(target=self.loop.run_forever, daemon=True).start()

    async def accept(self, near, to_near):
        if not self.whole:
            return to_near.close()
        far, to_far = await asyncio.open_connection("127.0.0.1", self.target)
        self.ends += [to_near, to_far]
        await asyncio.gather(self.carry(near, to_far), self.carry(far, to_near))

    async def carry(self, source, sink):
        try:
            while data := await source.read(4096):
                self.loop.call_later(self.delay, sink.write, data)
        except OSError:
            pass  # cut
        self.loop.call_later(self.delay, sink.close)

    def cut(self):
        """What is under way is lost with the connection."""
        self.whole = False
        for end in self.ends:
            self.loop.call_soon_threadsafe(end.transport.abort)
        self.ends.clear()


class Far(Stage):
    def __init__(self, delay):
        self.delay = delay
        super().__init__()

    def join(self, device, link):
        with socket.create_server(("127.0.0.1", 0)) as free:
            port = free.getsockname()[1]
        self.start(["socat", "TCP-LISTEN:%d,bind=127.0.0.1,reuseaddr,fork" % port, "FILE:%s,rawer" % device], None)
        self.wire = Wire(port, self.delay)
        ends = "PTY,link=%s,rawer,wait-slave,pty-interval=0.05 TCP:127.0.0.1:%d" % (link, self.wire.port)
        desk = "while :; do socat %s; sleep 0.2; done" % ends
        self.start(["setsid", "bash", "-c", "trap 'kill 0' TERM; (%s) & wait" % desk], None)
