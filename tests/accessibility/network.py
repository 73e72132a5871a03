"""The console over a network: it commands, loses the connection, and has it back by itself."""
import time

from far import Far

with Far(delay=0.1) as stage:
    stage.press("Connect")
    stage.until("the state", lambda: stage.find("RF On", "label") and stage.checked("Online"))
    stage.press("Standby")
    stage.until("Standby", lambda: stage.checked("Standby"))
    stage.wire.cut()
    stage.until("the loss", lambda: "Lost Connection" in stage.title())
    time.sleep(3)
    stage.wire.whole = True
    stage.until("the link", lambda: "Connected" in stage.title())
    stage.press("Online")
    stage.until("Online", lambda: stage.checked("Online"))
    sent = stage.commands()
    assert sent == ["S=S", "S=O"], sent
