"""The boat at sea: every device at its address, in one event loop."""

import functools
import logging
import pathlib

from pyftpdlib.ioloop import IOLoop

from . import ftp, udp
from .n6 import N6

GROUP = "239.255.75.82"
REQUEST_PORT, HEARTBEAT_PORT, COMMAND_PORT = 4019, 4020, 4021
_REQUEST = b"\x00"
# The longest wait for events; also how soon a request to stop is seen.
_LONGEST_WAIT_SECONDS = 0.2
_SHORTEST_WAIT_SECONDS = 0.001
_LOOPBACK_PREFIX = "127."
# From an update's last byte to the reboot, in which the client says goodbye.
_UNPACKING_SECONDS = 1.0


class Boat:
    """Runs the devices until stop() is called, which a signal handler may do."""

    def __init__(self, devices, options, state_dir, log):
        # The library's own log says the same in more words; its warnings would come from a broken simulator.
        logging.basicConfig(level=logging.WARNING)
        self._loop = IOLoop()
        self._devices = devices
        self._options = options
        self._state_dir = pathlib.Path(state_dir)
        self._log = log
        self._stopping = False
        self._ports = {}
        self._services = {}

    def stop(self):
        self._stopping = True

    def run(self):
        try:
            self._switch_on()
            self._log("boat", "ready", devices=len(self._devices), state=self._state_dir)
            self._announce_all()
            self._loop.call_every(self._options.heartbeat_interval, self._announce_all)
            wait = 0.0
            while not self._stopping:
                # A wait of 0 would be taken for "for ever" by the library's poll.
                wait = min(_LONGEST_WAIT_SECONDS, max(_SHORTEST_WAIT_SECONDS, wait))
                wait = self._loop.loop(timeout=wait, blocking=False)
            self._log("boat", "stopped")
        finally:
            self._loop.close()

    def _switch_on(self):
        for device in self._devices:
            home = self._state_dir / device.name
            for folder in device.folders:
                (home / folder).mkdir(parents=True, exist_ok=True)
            answer = functools.partial(self._answer_one, device)
            self._ports[device.name] = udp.Port(self._loop, device.address, REQUEST_PORT, answer)
            if not self._on_loopback(device):
                self._ports[device.name].multicast_from(device.address)
            if isinstance(device, N6):
                device.start(home, self._log, self._loop.call_later, self._announce)
                obey = functools.partial(self._obey, device)
                udp.Port(self._loop, device.address, COMMAND_PORT, obey)
            if not self._options.no_ftp:
                uploaded = functools.partial(self._uploaded, device)
                service = ftp.Service(self._loop, device, home, self._options.ftp_port, self._log, uploaded)
                service.start()
                self._services[device.name] = service
        members = [device.address for device in self._devices if not self._on_loopback(device)]
        if members:
            udp.Port(self._loop, GROUP, REQUEST_PORT, self._answer_all, members)
        self._schedule_absences()

    def _schedule_absences(self):
        by_name = {device.name: device for device in self._devices}
        for name, start, end in self._options.away:
            self._loop.call_later(start, self._leave, by_name[name])
            if end is not None:
                self._loop.call_later(end, self._return, by_name[name])

    # Heartbeats, asked for and unasked.

    def _answer_all(self, datagram, sender):
        self._answer_from("boat", [device for device in self._devices if device.talks()], datagram, sender)

    def _answer_one(self, device, datagram, sender):
        if device.talks():
            self._answer_from(device.name, [device], datagram, sender)

    def _answer_from(self, who, devices, datagram, sender):
        if datagram != _REQUEST:
            self._log(who, "request-unknown", peer=_text(sender), bytes=datagram[:32].hex() or "-")
            return
        self._log(who, "request", peer=_text(sender), answers=len(devices))
        for device in devices:
            self._ports[device.name].send(device.heartbeat(), sender)

    def _announce_all(self):
        for device in self._devices:
            self._announce(device)

    def _announce(self, device):
        if not device.talks():
            return
        target = (self._options.announce_to or self._usual_target(device), HEARTBEAT_PORT)
        sent = self._ports[device.name].send(device.heartbeat(), target)
        if self._options.log_heartbeats:
            self._log(device.name, "heartbeat" if sent else "heartbeat-lost", to=_text(target))

    def _usual_target(self, device):
        return "127.0.0.1" if self._on_loopback(device) else GROUP

    @staticmethod
    def _on_loopback(device):
        return device.address.startswith(_LOOPBACK_PREFIX)

    # What else the outside does to a device.

    def _obey(self, n6, datagram, _sender):
        if n6.talks():
            n6.obey(datagram)

    def _uploaded(self, device, path):
        if self._options.reboot is not None and path == "/update/image":
            self._loop.call_later(_UNPACKING_SECONDS, self._leave, device)
            self._loop.call_later(_UNPACKING_SECONDS + self._options.reboot, self._return, device)

    def _leave(self, device):
        device.away = True
        self._log(device.name, "left")
        if device.name in self._services:
            self._services[device.name].stop()

    def _return(self, device):
        device.away = False
        self._log(device.name, "returned")
        if device.name in self._services:
            self._services[device.name].start()
        self._announce(device)


def _text(endpoint):
    return f"{endpoint[0]}:{endpoint[1]}"
