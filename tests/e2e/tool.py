# The real program, used through the accessibility interface as a screen reader's user would.

import contextlib
import os
import re

import gi
from Xlib import X, XK, display, protocol

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

from hosts import start, until  # noqa: E402

PROGRAM = os.environ["KELVORA_TOOL"]
TIME = r"\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}"
BUTTON = "(push )?button"  # newer desktops leave out "push"
CHECKED, ENABLED, SHOWING = Atspi.StateType.CHECKED, Atspi.StateType.ENABLED, Atspi.StateType.SHOWING


class Tool:
    def __init__(self, folder, environment=()):
        self._log, self._errors = folder / "tool.log", folder / "tool.err"
        # Asking starts the service, which a program that starts first would miss.
        self._desktop = Atspi.get_desktop(0)
        # Nobody listens to what would keep it right.
        self._desktop.set_cache_mask(Atspi.Cache.NONE)
        Atspi.set_timeout(20000, 20000)  # a busy machine takes its time to answer
        own = {"HOME": str(folder), "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1", **dict(environment)}
        # The display's drivers leak, which is no fault of the tool.
        own.update(QT_XCB_GL_INTEGRATION="none", QT_FORCE_STDERR_LOGGING="1")
        with open(self._errors, "w", encoding="utf-8") as errors:
            command = [PROGRAM, "--log", self._log]
            self.process = start(*command, env={**os.environ, **own}, cwd=folder, stdout=errors, stderr=errors)
        self.sees("KelvoraTool - v.*")

    # Closes the window as its frame's button does, and returns the program's status.
    def close(self):
        with contextlib.closing(display.Display()) as here:
            windows = here.screen().root.query_tree().children
            window = next(each for each in windows if (each.get_wm_name() or "").startswith("KelvoraTool - v"))
            data = (32, [here.intern_atom("WM_DELETE_WINDOW"), X.CurrentTime, 0, 0, 0])
            protocols = here.intern_atom("WM_PROTOCOLS")
            window.send_event(protocol.event.ClientMessage(window=window, client_type=protocols, data=data))
        return self.process.wait(20)

    # How often the tool has logged such a message.
    def logged(self, pattern):
        return len(re.findall(rf"(?m)^{TIME} debug: {pattern}", self._log.read_text()))

    # Its messages and those of a sanitizer.
    def errors(self):
        return self._errors.read_text()

    # What is on the screen.

    # All that have this name, role and state and are on the screen.
    def elements(self, name=".*", role=".*", state=SHOWING):
        return list(self._below(self._desktop, f"(?:{role})\n(?s:{name})", state))

    def _below(self, node, sought, state):
        with contextlib.suppress(GLib.Error):  # gone while it is looked at
            for child in filter(None, map(node.get_child_at_index, range(node.get_child_count()))):
                states = child.get_state_set()
                # In what is hidden nothing shows.
                if states.contains(SHOWING):
                    texts = f"{child.get_role_name()}\n{child.get_name()}"
                    if states.contains(state) and re.fullmatch(sought, texts):
                        yield child
                    yield from self._below(child, sought, state)

    # The first of at least so many such elements, once they are there.
    def sees(self, name, role=".*", state=SHOWING, count=1, seconds=60):
        def enough():
            assert self.process.poll() is None, f"the tool ended with {self.process.returncode}: {self.errors()}"
            found = self.elements(name, role, state)
            return found if len(found) >= count else None

        return until(enough, seconds, lambda: f"{count} {role} {name!r}: {[e.get_name() for e in self.elements()]}")[0]

    # What the user does.

    # What pressing it with the mouse does is an element's first action.
    def press(self, name, role=BUTTON):
        self.sees(name, role, ENABLED).do_action(0)

    def choose_file(self, title, path, button):
        self.sees(title, "dialog|file chooser")
        self.sees("File name:", "text").set_text_contents(str(path))
        self.press(button)

    # Answers a message box, which has to say this.
    def answer(self, title, text, button):
        self.sees(title, ".*alert.*|dialog")
        self.sees(text, "label")
        self.press(button)
        until(lambda: not self.elements(title, ".*alert.*|dialog"), 20, f"{title} closed")

    # Opens a combo box and takes the entry below the current one.
    def select_next(self, box):
        box.do_action(0)
        for key in ("Down", "Return"):
            Atspi.generate_keyboard_event(XK.string_to_keysym(key), "", Atspi.KeySynthType.SYM)
