#!/usr/bin/python3
"""scripted_feed.py NAME...: a feed server apart from the program's code.

Owns com.qdxvelorin.Dde.NAME for each NAME, serves topic TS1, answers ITEMS,
never answers SILENT, and prints "ready". Tests play its side through
com.qdxvelorin.DdeTest: Push (advise data), End, Acks ("1"/"0" per answer), Calls.
"""
import sys
import dbus, dbus.mainloop.glib, dbus.service
from gi.repository import GLib

ERROR = "com.qdxvelorin.Dde.Error."
ITEMS = {"ROWS": b"01/04/2010\t1.5\r\n01/05/2010;1.75\n\x00\xe9,"}


class Feed(dbus.service.Object):
    def __init__(self, bus):
        super().__init__(bus, "/com/qdxvelorin/DdeServer")
        self.bus, self.next, self.clients = bus, 1, {}
        self.acks, self.calls = [], []

    @dbus.service.method("com.qdxvelorin.DdeServer1", "ss", "u", sender_keyword="sender")
    def Connect(self, service, topic, sender):
        self.calls.append("connect %s/%s" % (service, topic))
        if topic != "TS1":
            raise dbus.exceptions.DBusException("not served", name=ERROR + "NoTopic")
        self.next += 1
        self.clients[self.next] = sender
        return self.next

    @dbus.service.method("com.qdxvelorin.DdeServer1", "us", "ay",
                         async_callbacks=("answer", "fail"))
    def Request(self, conversation, item, answer, fail):
        if item in ITEMS:
            answer(dbus.ByteArray(ITEMS[item]))
        elif item != "SILENT":
            fail(dbus.exceptions.DBusException("no item", name=ERROR + "NoItem"))

    @dbus.service.method("com.qdxvelorin.DdeServer1", "us", "b")
    def AdviseStart(self, conversation, item):
        return item != "REFUSED"

    @dbus.service.method("com.qdxvelorin.DdeServer1", "u", "")
    def Disconnect(self, conversation):
        self.calls.append("disconnect %d" % conversation)

    def client(self, conversation, method, signature, args, reply):
        self.bus.call_async(self.clients[conversation], "/com/qdxvelorin/DdeClient",
                            "com.qdxvelorin.DdeClient1", method, signature, args,
                            reply, lambda error: self.acks.append(False))

    @dbus.service.method("com.qdxvelorin.DdeTest", "uay", "", byte_arrays=True)
    def Push(self, conversation, data):
        self.client(conversation, "Advise", "usay", (conversation, "ITEM", data),
                    lambda ack: self.acks.append(bool(ack)))

    @dbus.service.method("com.qdxvelorin.DdeTest", "u", "")
    def End(self, conversation):
        self.client(conversation, "Terminate", "u", (conversation,), lambda: None)

    @dbus.service.method("com.qdxvelorin.DdeTest", "", "s")
    def Acks(self):
        return "".join("1" if ack else "0" for ack in self.acks)

    @dbus.service.method("com.qdxvelorin.DdeTest", "", "as")
    def Calls(self):
        return dbus.Array(self.calls, signature="s")


dbus.mainloop.glib.DBusGMainLoop(set_as_default=True)
session = dbus.SessionBus()
feed = Feed(session)
for name in sys.argv[1:]:
    session.request_name("com.qdxvelorin.Dde." + name, dbus.bus.NAME_FLAG_DO_NOT_QUEUE)
print("ready", flush=True)
GLib.MainLoop().run()
