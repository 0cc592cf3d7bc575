"""The N6: holds the settings of the whole boat and obeys the commands on UDP port 4021."""

import dataclasses
import hashlib
import pathlib
import time

from . import heartbeat, settings
from .devices import SYSTEM_VERSION, Device

ARCHIVE = "media/kelvora-server-settings.tar.gz"

_BACKUP, _RESTORE, _FACTORY_RESET = b"\x07", b"\x08", 0x0F
_PORT_MODES = {
    ord("0"): ("port1Mode", (0, 4, 5, 6)),
    ord("1"): ("port2Mode", (0, 1, 2)),
}
_FACTORY_RESET_LENGTH = 17
# The tool sends backup, restore and reset twice against loss; a copy within this time is not a new order.
_REPEAT_SECONDS = 1.0


@dataclasses.dataclass(kw_only=True)
class N6(Device):
    model: int = 1
    settings: dict = dataclasses.field(default_factory=settings.factory_settings)
    archive_delay: float | None = 2.0  # None: it never appears
    archive_padding: int = 0

    folders = ("update", "media")

    def __post_init__(self):
        self._last_order = (b"", 0.0)

    def start(self, home, log, call_later, announce):
        """Gives the N6 what it needs to obey: its disk, the log, a timer and a way to send a heartbeat."""
        self._archive = pathlib.Path(home) / ARCHIVE
        self._log = lambda event, **values: log(self.name, event, **values)
        self._call_later = call_later
        self._announce = lambda: announce(self)

    def heartbeat(self):
        return heartbeat.n6(
            serial=self.serial,
            firmware="3.2",
            model=self.model,
            port1_mode=self.settings["port1Mode"],
            port2_mode=self.settings["port2Mode"],
            volts=12.4,
            system=SYSTEM_VERSION,
            application=self.application,
        )

    def obey(self, datagram):
        """Carries out one command datagram; whatever is none is logged and ignored."""
        if datagram[:1] and datagram[0] in _PORT_MODES and len(datagram) == 2:
            self._set_port_mode(*_PORT_MODES[datagram[0]], datagram[1])
        elif datagram in (_BACKUP, _RESTORE) or datagram[:1] == bytes((_FACTORY_RESET,)):
            self._obey_once(datagram)
        else:
            self._log("command-unknown", bytes=datagram[:32].hex() or "-")

    def _set_port_mode(self, setting, codes, code):
        if code not in codes:
            self._log("port-mode-refused", setting=setting, code=code)
            return
        self.settings[setting] = code
        self._log("port-mode", setting=setting, code=code)
        self._announce()

    def _obey_once(self, order):
        previous, when = self._last_order
        now = time.monotonic()
        self._last_order = (order, now)
        if order == previous and now - when < _REPEAT_SECONDS:
            self._log("command-repeated", code=f"0x{order[0]:02x}")
        elif order == _BACKUP:
            self._back_up()
        elif order == _RESTORE:
            self._restore()
        else:
            self._reset(order)

    def _back_up(self):
        self._archive.unlink(missing_ok=True)
        self._log("backup", delay="never" if self.archive_delay is None else self.archive_delay)
        if self.archive_delay is not None:
            self._call_later(self.archive_delay, self._write_archive)

    def _write_archive(self):
        settings.write_archive(self.settings, self._archive, self.archive_padding)
        content = self._archive.read_bytes()
        self._log("archive-ready", path="/" + ARCHIVE, bytes=len(content), sha256=hashlib.sha256(content).hexdigest())

    def _restore(self):
        try:
            self.settings = settings.read_archive(self._archive)
        except ValueError as error:
            self._log("restore-failed", reason=error)
            return
        content = self._archive.read_bytes()
        self._log("restore", bytes=len(content), sha256=hashlib.sha256(content).hexdigest())
        self._announce()

    def _reset(self, order):
        named = order[1:].rstrip(b"\0").decode("latin-1")
        if len(order) < _FACTORY_RESET_LENGTH or named != self.serial:
            self._log("factory-reset-refused", serial=named)
            return
        self.settings = settings.factory_settings()
        self._log("factory-reset", serial=named)
        self._announce()
