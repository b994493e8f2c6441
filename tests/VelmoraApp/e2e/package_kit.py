"""PackageKit and a desktop's notifications, on the session bus. Whatever program is asked for, a package holds it, and
there is an update of it. It runs its bus connection on a thread of its own."""

import asyncio
import threading

from dbus_next import BusType
from dbus_next.aio import MessageBus
from dbus_next.service import ServiceInterface, method, signal

PATIENCE = 10
INSTALLED, UPDATE = 1, 5
SUCCESS = 1


class Transaction(ServiceInterface):
    def __init__(self, calls):
        super().__init__("org.freedesktop.PackageKit.Transaction")
        self.calls = calls

    def _end(self, call, package=None):
        self.calls.append(call)
        if package:
            self.Package(*package)
        self.Finished()

    @method()
    def SetHints(self, hints: "as"):
        self.calls.append(" ".join(hints))

    @method()
    def SearchFiles(self, filters: "t", values: "as"):
        self._end("SearchFiles", (INSTALLED, "velmora;0.1.0-1;amd64;installed"))

    @method()
    def RefreshCache(self, force: "b"):
        self._end("RefreshCache")

    @method()
    def GetUpdates(self, filters: "t"):
        self._end("GetUpdates", (UPDATE, "velmora;0.2.0-1;amd64;debian"))

    @signal()
    def Package(self, info, package) -> "uss":
        return [info, package, "a summary"]

    @signal()
    def Finished(self) -> "uu":
        return [SUCCESS, 1]


class PackageKit(ServiceInterface):
    def __init__(self, bus):
        super().__init__("org.freedesktop.PackageKit")
        self.bus = bus
        self.calls = []
        self.transactions = 0

    @method()
    def CreateTransaction(self) -> "o":
        self.transactions += 1
        path = f"/{self.transactions}_abcd"
        self.bus.export(path, Transaction(self.calls))
        return path

    @method()
    def GetTimeSinceAction(self, role: "u") -> "u":
        return 60


class Notifications(ServiceInterface):
    def __init__(self):
        super().__init__("org.freedesktop.Notifications")
        self.shown = []

    @method()
    def Notify(
        self, name: "s", replaces: "u", icon: "s", title: "s", text: "s", actions: "as", hints: "a{sv}", timeout: "i"
    ) -> "u":
        self.shown.append((title, text))
        return len(self.shown)

    @method()
    def GetCapabilities(self) -> "as":
        return ["body"]


class UpdatableSystem:
    def __init__(self):
        self.loop = asyncio.new_event_loop()
        threading.Thread(target=self.loop.run_forever, daemon=True).start()
        asyncio.run_coroutine_threadsafe(self._connect(), self.loop).result(PATIENCE)

    async def _connect(self):
        self.bus = await MessageBus(bus_type=BusType.SESSION).connect()
        self.package_kit = PackageKit(self.bus)
        self.notifications = Notifications()
        self.bus.export("/org/freedesktop/PackageKit", self.package_kit)
        self.bus.export("/org/freedesktop/Notifications", self.notifications)
        await self.bus.request_name("org.freedesktop.PackageKit")
        await self.bus.request_name("org.freedesktop.Notifications")
