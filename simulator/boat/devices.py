"""What every device knows about itself. The N6, which also obeys commands, has a module of its own."""

import dataclasses

from . import heartbeat

SYSTEM_VERSION = "5.10.110-kelvora"
DISPLAY_TYPES = {"screen": heartbeat.SCREEN, "screen2": heartbeat.SCREEN2, "eink": heartbeat.EINK}


@dataclasses.dataclass(kw_only=True)
class Device:
    """A device with its place in the network. The subclass says how it announces itself."""

    name: str
    address: str
    serial: str
    application: str = "2.1.0"
    # What goes wrong with it: says nothing over UDP; is switched off; an ftp.Fault.
    silent: bool = False
    away: bool = False
    ftp_fault: object = None

    folders = ("update",)

    def heartbeat(self):
        raise NotImplementedError

    def talks(self):
        return not self.away and not self.silent


@dataclasses.dataclass(kw_only=True)
class Display(Device):
    kind: int
    lux: float
    volts: float
    ls: bool = False
    server: bool = False

    def heartbeat(self):
        is_eink = self.kind == heartbeat.EINK
        return heartbeat.display(
            self.kind,
            serial=self.serial,
            firmware="" if is_eink else "1.4",
            lux=self.lux,
            volts=0.0 if is_eink else self.volts,
            ls=self.ls,
            server=self.server,
            system=SYSTEM_VERSION,
            application=self.application,
        )


class Gyro(Device):
    def heartbeat(self):
        return heartbeat.gyro(
            serial=self.serial, status=1, volts=12.1, system=SYSTEM_VERSION, application=self.application
        )


class FirstGeneration(Device):
    def heartbeat(self):
        return heartbeat.first_generation(serial=self.serial)
