"""A panel for status items, on the session bus: what a desktop's tray is to the application, without a picture. It runs
its bus connection on a thread of its own; its methods block."""

import asyncio
import threading

from dbus_next import BusType, Variant
from dbus_next.aio import MessageBus
from dbus_next.constants import PropertyAccess
from dbus_next.message import Message
from dbus_next.service import ServiceInterface, dbus_property, method, signal

WATCHER = "org.kde.StatusNotifierWatcher"
ITEM = "org.kde.StatusNotifierItem"
MENU = "com.canonical.dbusmenu"
PATIENCE = 10


class Watcher(ServiceInterface):
    def __init__(self):
        super().__init__(WATCHER)
        self.items = []

    @method()
    def RegisterStatusNotifierItem(self, service: "s"):
        self.items.append(service)
        self.StatusNotifierItemRegistered(service)

    @method()
    def RegisterStatusNotifierHost(self, service: "s"):
        pass

    @dbus_property(access=PropertyAccess.READ)
    def RegisteredStatusNotifierItems(self) -> "as":
        return self.items

    @dbus_property(access=PropertyAccess.READ)
    def IsStatusNotifierHostRegistered(self) -> "b":
        return True

    @dbus_property(access=PropertyAccess.READ)
    def ProtocolVersion(self) -> "i":
        return 0

    @signal()
    def StatusNotifierItemRegistered(self, service) -> "s":
        return service


class StatusNotifierHost:
    def __init__(self):
        self.loop = asyncio.new_event_loop()
        threading.Thread(target=self.loop.run_forever, daemon=True).start()
        self.watcher = Watcher()
        self._wait(self._connect())

    def _wait(self, work):
        return asyncio.run_coroutine_threadsafe(work, self.loop).result(PATIENCE)

    async def _connect(self):
        self.bus = await MessageBus(bus_type=BusType.SESSION).connect()
        self.bus.export("/StatusNotifierWatcher", self.watcher)
        await self.bus.request_name(WATCHER)

    async def _call(self, path, interface, member, signature="", body=()):
        reply = await self.bus.call(
            Message(
                destination=self.watcher.items[-1],
                path=path,
                interface=interface,
                member=member,
                signature=signature,
                body=list(body),
            )
        )
        assert reply.error_name is None, (reply.error_name, reply.body)
        return reply.body

    def has_item(self):
        return bool(self.watcher.items)

    def answers(self):
        """Whether the item that came last is still there."""
        try:
            return self.property("Id") is not None
        except AssertionError:
            return False

    def property(self, name):
        body = self._call("/StatusNotifierItem", "org.freedesktop.DBus.Properties", "Get", "ss", (ITEM, name))
        return self._wait(body)[0].value

    def entries(self):
        """The visible entries as (id, label, labels of its submenu)."""
        layout = self._wait(self._call(self.property("Menu"), MENU, "GetLayout", "iias", (0, -1, [])))[1]
        return [
            (number, properties["label"].value, [child.value[1]["label"].value for child in children])
            for number, properties, children in (child.value for child in layout[2])
            if "label" in properties and properties.get("visible", Variant("b", True)).value
        ]

    def labels(self):
        return [label for _, label, _ in self.entries()]

    def click(self, label):
        number = next(number for number, text, _ in self.entries() if text == label)
        body = (number, "clicked", Variant("s", ""), 0)
        self._wait(self._call(self.property("Menu"), MENU, "Event", "isvu", body))
