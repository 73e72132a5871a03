"""What delay the console bears: transactions a second, and tries that failed, over a network that is late each way."""
import os, sys, time

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "../tests/accessibility"))
from far import Far  # noqa: E402

SECONDS = 20


def measure(delay):
    with Far(delay) as stage:
        stage.press("Connect")
        try:
            stage.until("the link", lambda: "Connected to" in stage.title())
        except AssertionError:
            return "doesn't connect | "
        stage.pump(2)
        stage.requests()
        stage.pump(SECONDS)
        asked = stage.requests()
        again = sum(one == other for one, other in zip(asked, asked[1:]))
        return "%.1f | %d of %d" % ((len(asked) - again) / SECONDS, again, len(asked))


print("| Delay each way | Transactions a second | Requests sent again |\n|---|---|---|", flush=True)
for delay in (0, 0.02, 0.05, 0.1, 0.25, 0.5, 0.9, 0.98, 1.02, 1.1):
    print("| %3.0f ms | %s |" % (delay * 1000, measure(delay)), flush=True)
