# The real program, used through the accessibility interface as a screen reader's user would.

import collections
import os
import re

import gi
from Xlib import X, XK, display, protocol
from Xlib.ext import xtest

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib  # noqa: E402

from hosts import end, start, until  # noqa: E402

PROGRAM = os.environ["KELVORA_TOOL"]
CHECKED, ENABLED, SHOWING = 4, 8, 25
_ROOT = ("org.a11y.atspi.Registry", "/org/a11y/atspi/accessible/root")
_ANSWER_MS = 5000

Element = collections.namedtuple("Element", "owner path role name states")


class Tool:
    def __init__(self, folder, environment=()):
        self._log = folder / "tool.log"
        self._display = display.Display()
        # Asking starts the service, which a program that starts first would miss.
        self._bus = _connection(os.environ["DBUS_SESSION_BUS_ADDRESS"])
        self._bus = _connection(self._call(("org.a11y.Bus", "/org/a11y/bus"), "org.a11y.Bus", "GetAddress"))
        own = {"HOME": str(folder), "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1", **dict(environment)}
        # The display's drivers leak, which is no fault of the tool.
        own.update(QT_XCB_GL_INTEGRATION="none", QT_FORCE_STDERR_LOGGING="1", QT_LOGGING_RULES="default.debug=true")
        with open(self._log, "w", encoding="utf-8") as log:
            self.process = start(PROGRAM, env={**os.environ, **own}, cwd=folder, stdout=log, stderr=log)
        self.sees("KelvoraTool - v.*")

    # Closes the window as its frame's button does, and returns the program's status.
    def close(self):
        windows = self._display.screen().root.query_tree().children
        window = next(each for each in windows if (each.get_wm_name() or "").startswith("KelvoraTool - v"))
        atom = self._display.intern_atom
        data = (32, [atom("WM_DELETE_WINDOW"), X.CurrentTime, 0, 0, 0])
        window.send_event(protocol.event.ClientMessage(window=window, client_type=atom("WM_PROTOCOLS"), data=data))
        self._display.flush()
        return self.process.wait(20)

    def end(self):
        self._display.close()
        end(self.process)

    def log(self):
        return self._log.read_text()

    # What is on the screen.

    def _call(self, target, interface, method, arguments=None):
        answer = self._bus.call_sync(*target, interface, method, arguments, None, 0, _ANSWER_MS, None)
        return answer.unpack()[0] if answer.n_children() else None

    def _get(self, target, interface, name):
        arguments = GLib.Variant("(ss)", (f"org.a11y.atspi.{interface}", name))
        return self._call(target, "org.freedesktop.DBus.Properties", "Get", arguments)

    def _below(self, target):
        try:
            for child in self._call(target, "org.a11y.atspi.Accessible", "GetChildren"):
                role = self._call(child, "org.a11y.atspi.Accessible", "GetRoleName")
                low, high = self._call(child, "org.a11y.atspi.Accessible", "GetState")
                yield Element(*child, role, self._get(child, "Accessible", "Name"), low | high << 32)
                yield from self._below(child)
        except GLib.Error:
            pass  # gone while it was looked at

    # All that have this name, role and state and are on the screen.
    def elements(self, name=".*", role=".*", state=SHOWING):
        wanted = 1 << SHOWING | 1 << state
        there = (each for each in self._below(_ROOT) if each.states & wanted == wanted)
        return [each for each in there if re.fullmatch(role, each.role) and re.fullmatch(name, each.name, re.DOTALL)]

    # The first of at least so many such elements, once they are there.
    def sees(self, name, role=".*", state=SHOWING, count=1, seconds=60):
        def enough():
            assert self.process.poll() is None, f"the tool ended with {self.process.returncode}: {self.log()}"
            found = self.elements(name, role, state)
            return found if len(found) >= count else None

        return until(enough, seconds, lambda: f"{count} {role} {name!r} among {[e[2:4] for e in self.elements()]}")[0]

    def value(self, element):
        return self._get(element[:2], "Value", "CurrentValue")

    # What the user does.

    def act(self, element, action):
        interface = "org.a11y.atspi.Action"
        names = [name for name, *_ in self._call(element[:2], interface, "GetActions")]
        self._call(element[:2], interface, "DoAction", GLib.Variant("(i)", (names.index(action),)))

    def press(self, name, role="push button"):
        self.act(self.sees(name, role, ENABLED), "Press")

    def choose_file(self, title, path, button):
        self.sees(title, "dialog|file chooser")
        field = self.sees("File name:", "text")
        self._call(field[:2], "org.a11y.atspi.EditableText", "SetTextContents", GLib.Variant("(s)", (str(path),)))
        self.press(button)

    # Answers a message box, which has to say this.
    def answer(self, title, text, button):
        self.sees(title, ".*alert.*|dialog")
        self.sees(text, "label")
        self.press(button)
        until(lambda: not self.elements(title, ".*alert.*|dialog"), 20, f"{title} closed")

    # Opens a combo box and takes the entry below the current one.
    def select_next(self, box):
        self.act(box, "Press")
        for key in ("Down", "Return"):
            code = self._display.keysym_to_keycode(XK.string_to_keysym(key))
            for kind in (X.KeyPress, X.KeyRelease):
                xtest.fake_input(self._display, kind, code)
        self._display.sync()


def _connection(address):
    flags = Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION
    return Gio.DBusConnection.new_for_address_sync(address, flags, None, None)
