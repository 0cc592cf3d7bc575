"""Each device's FTP service, and the ways in which it can fail."""

import dataclasses
import hashlib
import os
import socket

from pyftpdlib.authorizers import DummyAuthorizer
from pyftpdlib.filesystems import AbstractedFS
from pyftpdlib.handlers import DTPHandler, FTPHandler
from pyftpdlib.servers import FTPServer

USER = PASSWORD = "kwz"

_PIECES_PER_SECOND = 20
_READ_ONLY, _READ_AND_WRITE = "elr", "elradfmw"
# Every fault, what it does, and whether a number of bytes belongs to it.
FAULTS = {
    "refused-login": ("no user and password is right", False),
    "no-service": ("connections are refused", False),
    "mute": ("connections are accepted and nothing is ever said", False),
    "read-only": ("uploads are not permitted", False),
    "full": ("uploads are refused for want of space", False),
    "slow": ("transfers run at so many bytes a second", True),
    "drop": ("the connections are cut after so many bytes of a transfer", True),
}


@dataclasses.dataclass(frozen=True)
class Fault:
    kind: str
    amount: int = 0

    @classmethod
    def parse(cls, text):
        kind, _, amount = text.partition(":")
        if kind not in FAULTS or FAULTS[kind][1] != amount.isdigit() or (amount and int(amount) < 1):
            raise ValueError(f"no FTP fault: {text}")
        return cls(kind, int(amount or 0))


class _HashedFile:
    """A file being uploaded whose checksum is taken on the way, as reading gigabytes again would stop the boat."""

    def __init__(self, file):
        self._file = file
        self._digest = hashlib.sha256()
        self.byte_count = 0

    def write(self, data):
        self._file.write(data)
        self._digest.update(data)
        self.byte_count += len(data)

    def checksum(self):
        return self._digest.hexdigest()

    def __getattr__(self, name):
        return getattr(self._file, name)


class _DeviceDisk(AbstractedFS):
    def open(self, filename, mode):
        file = super().open(filename, mode)
        if mode != "wb":
            return file
        self.last_upload = _HashedFile(file)
        return self.last_upload


class _SlowTransfer(DTPHandler):
    """Pauses after each piece for as long as the piece should have taken.

    The library's throttled handler lets the first seconds' worth through at once, which is all of a small file.
    """

    bytes_per_second = 0

    def __init__(self, sock, cmd_channel):
        self._piece = max(1, self.bytes_per_second // _PIECES_PER_SECOND)
        self.ac_in_buffer_size = self._piece
        super().__init__(sock, cmd_channel)

    def handle_read(self):
        before = self.tot_bytes_received
        super().handle_read()
        self._pause(self.tot_bytes_received - before)

    handle_read_event = handle_read

    def send(self, data):
        sent = super().send(data[: self._piece])
        self._pause(sent)
        return sent

    def _pause(self, count):
        if count and self.connected:
            self.del_channel()
            self.call_later(count / self.bytes_per_second, self._resume)

    def _resume(self):
        self.add_channel(events=self.ioloop.READ if self.receive else self.ioloop.WRITE)


class _DroppedTransfer(DTPHandler):
    drop_after = 0

    def handle_read(self):
        super().handle_read()
        self._drop_when_due()

    handle_read_event = handle_read

    def send(self, data):
        remaining = self.drop_after - self.tot_bytes_sent
        sent = super().send(data[:remaining]) if remaining > 0 else 0
        self._drop_when_due()
        return sent

    def _drop_when_due(self):
        # Later, since the caller goes on using the channel. Closing the session takes the transfer along.
        if self.get_transmitted_bytes() >= self.drop_after:
            self.ioloop.call_later(0, self.cmd_channel.close)


class _Session(FTPHandler):
    abstracted_fs = _DeviceDisk
    auth_failed_timeout = 1
    use_sendfile = False
    banner = "Kelvora instrument"

    # Set in the subclass that each service makes for itself.
    fault = None
    home = None
    report = None
    uploaded = None

    def handle(self):
        if self.fault == "mute":
            self.on_connect()
        else:
            super().handle()

    def ftp_STOR(self, file, mode="w"):
        if self.fault == "full":
            self.report("upload-refused", path=self._path(file), reason="full")
            self.respond("452 Insufficient storage space.")
            return None
        return super().ftp_STOR(file, mode)

    def _path(self, file):
        """What the client calls the file; also once its session is over."""
        return f"/{os.path.relpath(file, self.home)}"

    def on_connect(self):
        self.report("ftp-connect", peer=f"{self.remote_ip}:{self.remote_port}")

    def on_disconnect(self):
        self.report("ftp-disconnect", peer=f"{self.remote_ip}:{self.remote_port}")

    def on_login(self, username):
        self.report("ftp-login", user=username)

    def on_login_failed(self, username, password):
        self.report("ftp-login-refused", user=username)

    def on_file_received(self, file):
        path = self._path(file)
        upload = self.fs.last_upload
        self.report("stored", path=path, bytes=upload.byte_count, sha256=upload.checksum())
        self.uploaded(path)

    def on_incomplete_file_received(self, file):
        self.report("upload-broken", path=self._path(file), bytes=os.path.getsize(file))

    def on_file_sent(self, file):
        self.report("sent", path=self._path(file), bytes=os.path.getsize(file))

    def on_incomplete_file_sent(self, file):
        self.report("download-broken", path=self._path(file))


class Service:
    """The FTP service of one device: its home is what a client sees as /."""

    def __init__(self, loop, device, home, port, log, uploaded):
        self._loop = loop
        self._device = device
        self._port = port
        self._log = log
        self._server = None
        self._session_class = self._make_session_class(home, uploaded)

    def _make_session_class(self, home, uploaded):
        fault = self._device.ftp_fault or Fault("")
        authorizer = DummyAuthorizer()
        if fault.kind != "refused-login":
            permissions = _READ_ONLY if fault.kind == "read-only" else _READ_AND_WRITE
            authorizer.add_user(USER, PASSWORD, str(home), perm=permissions)
        transfer = {
            "slow": type("SlowTransfer", (_SlowTransfer,), {"bytes_per_second": fault.amount}),
            "drop": type("DroppedTransfer", (_DroppedTransfer,), {"drop_after": fault.amount}),
        }.get(fault.kind, DTPHandler)
        attributes = {
            "authorizer": authorizer,
            "dtp_handler": transfer,
            "fault": fault.kind,
            "home": os.path.realpath(home),
            "report": staticmethod(self._report),
            "uploaded": staticmethod(uploaded),
        }
        return type("Session", (_Session,), attributes)

    def _report(self, event, **values):
        self._log(self._device.name, event, **values)

    def start(self):
        """Without the right to a low port the device does without FTP; any other failure is an error."""
        if self._device.ftp_fault == Fault("no-service"):
            return
        try:
            # Made here, since the library would hide why it cannot be bound.
            listening = socket.create_server((self._device.address, self._port))
        except PermissionError as error:
            self._report("ftp-unavailable", address=f"{self._device.address}:{self._port}", reason=error.strerror)
            return
        self._server = FTPServer(listening, self._session_class, ioloop=self._loop)

    def stop(self):
        """Closes the service with every connection to it."""
        if self._server is None:
            return
        for connection in list(self._loop.socket_map.values()):
            if getattr(connection, "server", None) is self._server:
                connection.close()
        self._server.close()
        self._server = None
