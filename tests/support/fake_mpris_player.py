#!/usr/bin/python3
"""A small MPRIS player on the session bus, for tests.

    fake_mpris_player.py NAME [--identity TEXT] [--json STATE]

owns org.mpris.MediaPlayer2.NAME and serves /org/mpris/MediaPlayer2. STATE is a JSON object of
Player properties to start with (see `set` below). It prints "ready" once its name is on the
bus, and "called METHOD" for each transport method called. Lines on stdin drive it:

    set {"PlaybackStatus": "Paused", "Metadata": {...}}   change properties, announce them
    seeked MICROSECONDS                                   move the position, emit Seeked
    hang SECONDS                                          the next method call blocks that long
    quit

Metadata values map from JSON: a string is s, a list of strings as, an integer x, a float d, a
boolean b; {"sig": "o", "value": ...} gives any other signature.
"""
import json
import sys
import time

import dbus
import dbus.service
from dbus.mainloop.glib import DBusGMainLoop
from gi.repository import GLib

PATH = "/org/mpris/MediaPlayer2"
ROOT = "org.mpris.MediaPlayer2"
PLAYER = "org.mpris.MediaPlayer2.Player"
PROPS = "org.freedesktop.DBus.Properties"


def typed(value):
    if isinstance(value, dict) and "sig" in value:
        sig = value["sig"]
        v = value["value"]
        return {
            "o": dbus.ObjectPath, "s": dbus.String, "x": dbus.Int64, "i": dbus.Int32,
            "u": dbus.UInt32, "d": dbus.Double, "b": dbus.Boolean, "y": dbus.Byte,
        }.get(sig, lambda x: dbus.Array(x, signature=sig[1:]) if sig.startswith("a") else x)(v)
    if isinstance(value, bool):
        return dbus.Boolean(value)
    if isinstance(value, int):
        return dbus.Int64(value)
    if isinstance(value, float):
        return dbus.Double(value)
    if isinstance(value, list):
        if all(isinstance(v, str) for v in value):
            return dbus.Array(value, signature="s")
        return dbus.Array([typed(v) for v in value], signature="v")
    if isinstance(value, dict):
        return dbus.Dictionary({k: typed(v) for k, v in value.items()}, signature="sv")
    return dbus.String(value)


def player_value(name, value):
    if name == "Metadata":
        return dbus.Dictionary({k: typed(v) for k, v in value.items()}, signature="sv")
    return typed(value)


class Player(dbus.service.Object):
    def __init__(self, bus, identity, state):
        super().__init__(bus, PATH)
        self.hang = 0
        self.position_us = int(state.pop("Position", 0))
        self.position_at = time.monotonic()
        self.root = {"Identity": dbus.String(identity), "DesktopEntry": dbus.String(identity.lower()),
                     "CanQuit": dbus.Boolean(False), "CanRaise": dbus.Boolean(False),
                     "HasTrackList": dbus.Boolean(False)}
        self.player = {
            "PlaybackStatus": dbus.String("Stopped"), "Rate": dbus.Double(1.0),
            "Metadata": dbus.Dictionary({}, signature="sv"), "Volume": dbus.Double(1.0),
            "CanGoNext": dbus.Boolean(True), "CanGoPrevious": dbus.Boolean(True),
            "CanPlay": dbus.Boolean(True), "CanPause": dbus.Boolean(True),
            "CanSeek": dbus.Boolean(True), "CanControl": dbus.Boolean(True),
        }
        for k, v in state.items():
            self.player[k] = player_value(k, v)

    def position(self):
        if self.player["PlaybackStatus"] == "Playing":
            return int(self.position_us + (time.monotonic() - self.position_at) * 1e6)
        return self.position_us

    def change(self, values):
        if "PlaybackStatus" in values:
            self.position_us = self.position()
            self.position_at = time.monotonic()
        if "Metadata" in values:
            self.position_us = 0
            self.position_at = time.monotonic()
        for k, v in values.items():
            self.player[k] = player_value(k, v)
        self.PropertiesChanged(PLAYER, {k: self.player[k] for k in values}, [])

    def called(self, method):
        print("called " + method, flush=True)
        if self.hang:
            seconds, self.hang = self.hang, 0
            time.sleep(seconds)

    @dbus.service.method(PROPS, in_signature="ss", out_signature="v")
    def Get(self, interface, name):
        return self.GetAll(interface)[name]

    @dbus.service.method(PROPS, in_signature="s", out_signature="a{sv}")
    def GetAll(self, interface):
        if interface == ROOT:
            return self.root
        if interface == PLAYER:
            return dict(self.player, Position=dbus.Int64(self.position()))
        return {}

    @dbus.service.method(PROPS, in_signature="ssv")
    def Set(self, interface, name, value):
        pass

    @dbus.service.signal(PROPS, signature="sa{sv}as")
    def PropertiesChanged(self, interface, changed, invalidated):
        pass

    @dbus.service.signal(PLAYER, signature="x")
    def Seeked(self, position):
        pass

    @dbus.service.method(PLAYER)
    def PlayPause(self):
        self.called("PlayPause")
        playing = self.player["PlaybackStatus"] == "Playing"
        self.change({"PlaybackStatus": "Paused" if playing else "Playing"})

    @dbus.service.method(PLAYER)
    def Next(self):
        self.called("Next")

    @dbus.service.method(PLAYER)
    def Previous(self):
        self.called("Previous")


def main():
    name = sys.argv[1]
    identity = name.capitalize()
    state = {}
    args = sys.argv[2:]
    while args:
        flag, value, args = args[0], args[1], args[2:]
        if flag == "--identity":
            identity = value
        elif flag == "--json":
            state = json.loads(value)
    DBusGMainLoop(set_as_default=True)
    bus = dbus.SessionBus()
    player = Player(bus, identity, state)
    owned = dbus.service.BusName("org.mpris.MediaPlayer2." + name, bus)
    loop = GLib.MainLoop()

    def command(source, condition):
        line = sys.stdin.readline()
        if not line or line.strip() == "quit":
            loop.quit()
            return False
        verb, _, rest = line.strip().partition(" ")
        if verb == "set":
            player.change(json.loads(rest))
        elif verb == "seeked":
            player.position_us = int(rest)
            player.position_at = time.monotonic()
            player.Seeked(dbus.Int64(int(rest)))
        elif verb == "hang":
            player.hang = float(rest)
        print("done " + verb, flush=True)
        return True

    GLib.io_add_watch(sys.stdin, GLib.IO_IN | GLib.IO_HUP, command)
    print("ready", flush=True)
    loop.run()
    del owned


if __name__ == "__main__":
    main()
