"""UDP sockets in the event loop that also drives the FTP services."""

import errno
import socket

_LARGEST_DATAGRAM = 65536


class Port:
    """A bound socket that hands each datagram with its sender (address, port) to a function.

    With a group it also receives what is sent to that group through the interfaces of the members' addresses.
    """

    def __init__(self, loop, address, port, received, members=()):
        self._received = received
        self._loop = loop
        self._socket = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
        self._socket.setblocking(False)
        if members:
            # Other programs on this machine may listen to the group as well.
            self._socket.setsockopt(socket.SOL_SOCKET, socket.SO_REUSEADDR, 1)
        self._socket.bind((address, port))
        for member in members:
            self._join(address, member)
        self._fileno = self._socket.fileno()
        loop.register(self._fileno, self, loop.READ)

    def _join(self, group, member):
        try:
            membership = socket.inet_aton(group) + socket.inet_aton(member)
            self._socket.setsockopt(socket.IPPROTO_IP, socket.IP_ADD_MEMBERSHIP, membership)
        except OSError as error:
            # Several addresses of one interface need a single membership.
            if error.errno != errno.EADDRINUSE:
                raise

    def multicast_from(self, address):
        self._socket.setsockopt(socket.IPPROTO_IP, socket.IP_MULTICAST_IF, socket.inet_aton(address))

    def send(self, datagram, target):
        """Sends if the network lets it: a lost datagram is part of the protocol."""
        try:
            self._socket.sendto(datagram, target)
        except OSError:
            return False
        return True

    # What the event loop expects of its members.

    def readable(self):
        return True

    def writable(self):
        return False

    def handle_read_event(self):
        # One datagram a turn; the loop comes back while there are more.
        try:
            datagram, sender = self._socket.recvfrom(_LARGEST_DATAGRAM)
        except OSError:
            return  # an ICMP error about something sent earlier
        self._received(datagram, sender)

    def handle_close(self):
        """A pending socket error is no end for UDP: reading it clears it."""
        self._socket.getsockopt(socket.SOL_SOCKET, socket.SO_ERROR)

    def handle_error(self):
        raise

    def close(self):
        self._loop.unregister(self._fileno)
        self._socket.close()
