#!/usr/bin/python3
"""The virtual instrument as a USB device, for `orbel-sim usb-run`.

usage: orbel-sim-usb --directory DIR --serial S [--verbose] -- COMMAND [ARGS...]

Runs COMMAND with the running virtual instrument S visible through umockdev's usbdevfs emulation.
Its descriptors and every transfer come from the instrument over its socket DIR/S.sock (frames as
sim/WireFrame.h lays them out); this program only translates. The device follows the instrument's
cable: the socket goes away when the cable is pulled, and then every transfer in flight ends with
"no device" and udev hears "remove"; when the socket comes back udev hears "add".
"""
import errno
import os
import shutil
import socket
import struct
import subprocess
import sys
import threading

MISSING = ('orbel-sim: usb-run needs umockdev; on Debian: '
           'sudo apt-get install umockdev gir1.2-umockdev-1.0 python3-gi\n')

# The instrument's socket: request and answer headers, kinds and statuses.
MAGIC, VERSION = 0x4F42534D, 1
REQUEST = struct.Struct('>IBBHIIII')
ANSWER = struct.Struct('>IBBBBII')
CONTROL, BULK_READ, BULK_WRITE, INTERRUPT_READ, CANCEL, CANCEL_BULK_READS, DESCRIPTORS = range(1, 8)
OK, STALL, TIMEOUT, SHORT, NO_DEVICE, CANCELLED = range(6)

# usbdevfs: the ioctls libusb sends, struct usbdevfs_urb on LP64, and the capabilities offered.
URB = struct.Struct('=BBxxiIxxxxQiiiiiIQ')
URB_CONTROL, URB_INTERRUPT, URB_BULK = 2, 1, 3
SETUP = struct.Struct('<BBHHH')
CAPABILITIES = 0x01 | 0x02 | 0x04 | 0x10  # zero packet, bulk continuation, no size limit, reap after disconnect


def _ioctl(direction, number, size):
    return (direction << 30) | (size << 16) | (ord('U') << 8) | number


SUBMITURB, DISCARDURB = _ioctl(2, 10, URB.size), _ioctl(0, 11, 0)
REAPURB, REAPURBNDELAY = _ioctl(1, 12, 8), _ioctl(1, 13, 8)
CLAIMINTERFACE, RELEASEINTERFACE = _ioctl(2, 15, 4), _ioctl(2, 16, 4)
GETDRIVER, DISCONNECT_CLAIM, GET_CAPABILITIES = _ioctl(1, 8, 260), _ioctl(2, 27, 264), _ioctl(2, 26, 4)
ACCEPTED = {_ioctl(2, 4, 8), _ioctl(2, 5, 4), _ioctl(2, 21, 4), _ioctl(0, 20, 0)}  # interface, config, halt, reset

# umockdev's preload hands each ioctl on the node to this program as three native longs (what,
# two arguments); the answer may read and write the opener's memory before it says done. The opener
# handles the frames of one answer in order, so what it is to write goes out with the done in one send.
FRAME = struct.Struct('=QQQ')
CALL_IOCTL = 1  # the others are a read or a write on the node
DONE, READ_MEMORY, WRITE_MEMORY = 3, 5, 6
NOT_EMULATED = -100  # the preload then makes the call on the node itself
LONG_MASK = (1 << 64) - 1
URB_STATUS_OFFSET = 4
URB_RESULT = struct.Struct('=iIxxxxQii')  # status, flags, buffer, buffer_length, actual_length

SYSPATH = '/sys/devices/pci0000:00/0000:00:14.0/usb1/1-1'
DEVNODE = '/dev/bus/usb/001/002'
WATCH_SECONDS = 0.02


def log(verbose, text):
    if verbose:
        sys.stderr.write('orbel-sim usb: ' + text + '\n')


class InstrumentLink:
    """One connection on the instrument's socket: an opened instrument. Answers arrive on a thread."""

    def __init__(self, path, on_answer, on_gone):
        self.sock = socket.socket(socket.AF_UNIX, socket.SOCK_STREAM)
        self.sock.connect(path)
        self.write_lock = threading.Lock()
        self.next_id = 0
        self.on_answer, self.on_gone = on_answer, on_gone
        self.reader = threading.Thread(target=self._read_loop, daemon=True)
        self.reader.start()

    @staticmethod
    def descriptors(path):
        with socket.socket(socket.AF_UNIX, socket.SOCK_STREAM) as sock:
            sock.connect(path)
            sock.sendall(REQUEST.pack(MAGIC, VERSION, DESCRIPTORS, 0, 1, 0, 0, 0))
            _, status, body = InstrumentLink._read_answer(sock)
            if status != OK:
                raise RuntimeError('the instrument gave no descriptors')
            return body

    def send(self, kind, length=0, body=b''):
        with self.write_lock:
            self.next_id += 1
            self.sock.sendall(REQUEST.pack(MAGIC, VERSION, kind, 0, self.next_id, 0, length, len(body)) + body)
            return self.next_id

    def close(self):
        try:
            self.sock.shutdown(socket.SHUT_RDWR)
        except OSError:
            pass
        if threading.current_thread() is not self.reader:
            self.reader.join()
        self.sock.close()

    @staticmethod
    def _read_exact(sock, count):
        data = b''
        while len(data) < count:
            chunk = sock.recv(count - len(data))
            if not chunk:
                raise EOFError
            data += chunk
        return data

    @staticmethod
    def _read_answer(sock):
        magic, version, _, status, _, request_id, length = ANSWER.unpack(
            InstrumentLink._read_exact(sock, ANSWER.size))
        if magic != MAGIC or version != VERSION:
            raise EOFError
        return request_id, status, InstrumentLink._read_exact(sock, length)

    def _read_loop(self):
        try:
            while True:
                self.on_answer(self, *self._read_answer(self.sock))
        except (EOFError, OSError):
            self.on_gone(self)


class Opener:
    """One opened device node, as the preload forwards it: the calls of its opener, one at a time."""

    def __init__(self, sock):
        self.sock = sock
        self.writes = []

    def next_call(self):
        """(what, argument 1, argument 2), or None once the opener has closed the node."""
        try:
            return FRAME.unpack(InstrumentLink._read_exact(self.sock, FRAME.size))
        except (EOFError, OSError):
            return None

    def read_memory(self, address, length):
        self.sock.sendall(b''.join(self.writes) + FRAME.pack(READ_MEMORY, address, length))
        self.writes = []
        return InstrumentLink._read_exact(self.sock, length)

    def write_memory(self, address, data):
        self.writes.append(FRAME.pack(WRITE_MEMORY, address, len(data)) + data)

    def complete(self, result, error):
        self.sock.sendall(b''.join(self.writes) + FRAME.pack(DONE, result & LONG_MASK, error))
        self.writes = []

    def close(self):
        try:
            self.sock.shutdown(socket.SHUT_RDWR)
        except OSError:
            pass


class Urb:
    """A submitted struct usbdevfs_urb in the opener's memory; what the host sent out is read at
    once, its outcome is written when the host reaps it."""

    def __init__(self, opener, address):
        self.address = address
        fields = URB.unpack(opener.read_memory(address, URB.size))
        self.type, self.endpoint, self.flags, self.buffer, self.length = fields[0], fields[1], fields[3], \
            fields[4], fields[5]
        outward = self.type == URB_CONTROL or not self.endpoint & 0x80
        self.sent = opener.read_memory(self.buffer, self.length) if outward and self.length else b''
        self.discarded = False
        self.outcome = None

    def contents(self):
        return self.sent

    def finish(self, status, data=b'', offset=0, actual=None):
        self.outcome = (status, data, offset, len(data) if actual is None else actual)

    def write_back(self, opener):
        status, data, offset, actual = self.outcome
        if data:
            opener.write_memory(self.buffer + offset, data)
        opener.write_memory(self.address + URB_STATUS_OFFSET,
                            URB_RESULT.pack(status, self.flags, self.buffer, self.length, actual))


class Client:
    """One opened device node: its own link to the instrument and its own URBs."""

    def __init__(self, gone):
        self.link = None
        self.pending = {}  # request id -> (urb, kind, frame length, frame body)
        self.silent = []  # URBs the instrument never answered: they end when libusb discards them
        self.reapable = []
        self.gone = gone


class UsbDevice:
    """The usbdevfs side: ioctls of every client, turned into frames on the instrument's socket."""

    def __init__(self, socket_path, verbose):
        self.socket_path, self.verbose = socket_path, verbose
        self.lock = threading.Lock()
        self.clients = {}
        self.cable_gone = False
        self.wake_fd, self.armed = None, True

    def use_fifo_node(self, node):
        """A FIFO kept full in place of umockdev's plain-file node: the client's poll() then fires only
        while a URB waits to be reaped, instead of always (libusb would spin on REAPURBNDELAY)."""
        fifo = node + '.fifo'
        os.mkfifo(fifo)
        self.wake_fd = os.open(fifo, os.O_RDWR | os.O_NONBLOCK)
        os.rename(fifo, node)  # at once: a host opening the node never finds none
        with self.lock:
            self._update_wake()

    def unplug(self):
        """The cable is gone: every transfer in flight ends with "no device", as the kernel does."""
        with self.lock:
            self._cable_went()
        for client in list(self.clients.values()):
            if client.link:
                client.link.close()

    def close(self):
        self.unplug()
        if self.wake_fd is not None:
            os.close(self.wake_fd)

    def _update_wake(self):  # lock held
        wanted = any(client.reapable for client in self.clients.values())
        if self.wake_fd is None or wanted == self.armed:
            return
        if wanted:
            os.read(self.wake_fd, 4096)
        else:
            try:
                while True:
                    os.write(self.wake_fd, bytes(4096))
            except BlockingIOError:
                pass
        self.armed = wanted

    def _complete(self, client, urb):  # lock held
        client.reapable.append(urb)
        self._update_wake()

    def _cable_went(self):  # lock held
        """Whichever client learns it first, the cable is gone for all, and a node opened after it
        can't claim the device any more, as with the kernel's usbfs."""
        self.cable_gone = True
        for client in self.clients.values():
            self._fail_all(client)

    def _fail_all(self, client):  # lock held
        client.gone = True
        for urb, *_ in client.pending.values():
            urb.finish(-errno.ENODEV)
            self._complete(client, urb)
        for urb in client.silent:
            urb.finish(-errno.ENODEV)
            self._complete(client, urb)
        client.pending, client.silent = {}, []

    # --- answers from the instrument -------------------------------------------------------------
    def _on_answer(self, client, link, request_id, status, body):
        with self.lock:
            if client.link is not link:
                return
            entry = client.pending.pop(request_id, None)
            if entry is None:
                return
            urb, kind, length, frame = entry
            if status == CANCELLED and kind == BULK_READ and not urb.discarded:
                # Cancelled beside a discarded read: asked again, it loses nothing.
                client.pending[client.link.send(BULK_READ, length)] = entry
                return
            if status == TIMEOUT and not urb.discarded:
                client.silent.append(urb)
                return
            self._finish(urb, kind, status, body)
            self._complete(client, urb)
            if status == NO_DEVICE:
                self._cable_went()

    @staticmethod
    def _finish(urb, kind, status, body):
        if status == STALL:
            urb.finish(-errno.EPIPE)
        elif status == NO_DEVICE:
            urb.finish(-errno.ENODEV)
        elif status in (CANCELLED, TIMEOUT):
            urb.finish(-errno.ENOENT)
        elif kind == CONTROL and urb.contents()[0] & 0x80:
            urb.finish(0, body, offset=SETUP.size)
        elif kind == CONTROL:
            urb.finish(0, actual=urb.length - SETUP.size)
        elif kind == BULK_WRITE:
            urb.finish(0, actual=urb.length)
        else:
            urb.finish(0, body)

    def _on_gone(self, client, link):
        with self.lock:
            if client.link is link:
                self._cable_went()

    # --- ioctls ------------------------------------------------------------------------------------
    def forget(self, key):
        with self.lock:
            client = self.clients.pop(key, None)
            link = client and self._release(client)
        if link:
            link.close()

    def _client(self, key):
        return self.clients.setdefault(key, Client(self.cable_gone))

    def _connect(self, client):  # lock held
        if client.link is None and not client.gone:
            try:
                client.link = InstrumentLink(self.socket_path, lambda *answer: self._on_answer(client, *answer),
                                             lambda link: self._on_gone(client, link))
            except OSError:
                self._cable_went()
        return not client.gone

    def _release(self, client):  # lock held
        link, client.link = client.link, None
        client.pending, client.silent = {}, []
        return link

    def handle(self, opener, request, argument):
        link = None
        with self.lock:
            client = self._client(opener)
            if client.gone and request not in (REAPURB, REAPURBNDELAY, RELEASEINTERFACE, DISCARDURB):
                opener.complete(-1, errno.ENODEV)
            elif request == GET_CAPABILITIES:
                opener.write_memory(argument, struct.pack('I', CAPABILITIES))
                opener.complete(0, 0)
            elif request in (CLAIMINTERFACE, DISCONNECT_CLAIM):
                ok = self._connect(client)
                opener.complete(0 if ok else -1, 0 if ok else errno.ENODEV)
            elif request == RELEASEINTERFACE:
                link = self._release(client)
                opener.complete(0, 0)
            elif request == GETDRIVER:
                opener.complete(-1, errno.ENODATA)
            elif request in ACCEPTED:
                opener.complete(0, 0)
            elif request == SUBMITURB:
                failure = self._submit(client, Urb(opener, argument))
                opener.complete(-1 if failure else 0, failure)
            elif request in (REAPURB, REAPURBNDELAY):
                self._reap(client, opener, argument)
            elif request == DISCARDURB:
                failure = self._discard(client, argument)
                opener.complete(-1 if failure else 0, failure)
            else:
                log(self.verbose, 'ioctl %#x not emulated' % request)
                opener.complete(-1, errno.ENOTTY)
        if link:
            link.close()

    def _submit(self, client, urb):  # lock held
        if not self._connect(client):
            return errno.ENODEV
        if urb.type == URB_CONTROL:
            kind, length, body = self._control_frame(urb.contents())
        elif urb.type == URB_BULK and urb.endpoint & 0x80:
            kind, length, body = BULK_READ, urb.length, b''
        elif urb.type == URB_BULK:
            kind, length, body = BULK_WRITE, urb.length, urb.contents()
        elif urb.type == URB_INTERRUPT and urb.endpoint & 0x80:
            kind, length, body = INTERRUPT_READ, 0, b''
        else:
            return errno.EINVAL
        request_id = self._send(client, kind, length, body)
        if request_id is None:
            return errno.ENODEV
        client.pending[request_id] = (urb, kind, length, body)
        return 0

    def _send(self, client, kind, length=0, body=b''):  # lock held
        """The frame's id, or None when the instrument's socket has gone since the last look."""
        try:
            return client.link.send(kind, length, body)
        except OSError:
            self._cable_went()
            return None

    @staticmethod
    def _control_frame(contents):
        """The instrument's 10-byte control request: direction, type, recipient, code, value, index."""
        request_type, code, value, index, length = SETUP.unpack_from(contents)
        inward = request_type & 0x80 != 0
        setup = bytes([1 if inward else 0, (request_type >> 5) & 3, request_type & 0x1F, 0, code, 0])
        setup += struct.pack('<HH', value, index)
        return CONTROL, length, setup + (b'' if inward else contents[SETUP.size:SETUP.size + length])

    def _reap(self, client, opener, argument):  # lock held
        if client.reapable:
            urb = client.reapable.pop(0)
            urb.write_back(opener)
            opener.write_memory(argument, struct.pack('Q', urb.address))
            self._update_wake()
            opener.complete(0, 0)
        else:
            opener.complete(-1, errno.ENODEV if client.gone else errno.EAGAIN)

    def _discard(self, client, address):  # lock held
        for urb in client.silent:
            if urb.address == address:
                client.silent.remove(urb)
                urb.finish(-errno.ENOENT)
                self._complete(client, urb)
                return 0
        for urb, kind, *_ in client.pending.values():
            if urb.address == address and not urb.discarded:
                urb.discarded = True
                if kind == INTERRUPT_READ:
                    self._send(client, CANCEL)
                elif kind == BULK_READ:
                    self._send(client, CANCEL_BULK_READS)
                return 0
        return errno.EINVAL


class EmulatedBus:
    """The testbed with the instrument's device on it, present while the instrument's cable is."""

    def __init__(self, socket_path, verbose):
        from gi.repository import UMockdev
        self.socket_path, self.verbose = socket_path, verbose
        self.descriptors = InstrumentLink.descriptors(socket_path)
        self.vendor, self.product = struct.unpack_from('<HH', self.descriptors, 8)
        self.testbed = UMockdev.Testbed.new()
        self.device, self.retired, self.owners, self.servers = None, [], {}, []
        self.lock = threading.Lock()
        self.stopping = threading.Event()
        self._add()
        self.node_calls = self._node_calls_socket()
        self.device.use_fifo_node(self.root() + DEVNODE)
        self.threads = [threading.Thread(target=self._accept), threading.Thread(target=self._watch)]
        for thread in self.threads:
            thread.start()

    def ids(self):
        return '%04x:%04x' % (self.vendor, self.product)

    def root(self):
        return self.testbed.get_root_dir()

    def close(self):
        self.stopping.set()
        self.node_calls.shutdown(socket.SHUT_RDWR)
        with self.lock:
            openers = list(self.owners)
        for opener in openers:
            opener.close()
        for thread in self.threads + self.servers:
            thread.join()
        self.node_calls.close()
        for device in [self.device] + self.retired:
            if device:
                device.close()
        self.testbed = None  # its folder goes with it

    def _entry(self):
        return '\n'.join([
            'P: ' + SYSPATH[len('/sys'):], 'N: ' + DEVNODE[len('/dev/'):],
            'E: SUBSYSTEM=usb', 'E: DEVTYPE=usb_device', 'E: DEVNAME=' + DEVNODE,
            'E: PRODUCT=%x/%x/100' % (self.vendor, self.product), 'E: BUSNUM=001', 'E: DEVNUM=002',
            'E: MAJOR=189', 'E: MINOR=1', 'A: busnum=1', 'A: devnum=2', 'A: speed=480',
            'A: bConfigurationValue=1', 'A: bNumConfigurations=1', 'A: idVendor=%04x' % self.vendor,
            'A: idProduct=%04x' % self.product, 'A: dev=189:1',
            'H: descriptors=' + self.descriptors.hex().upper(), ''])

    def _node_calls_socket(self):
        """Where the preload turns for the calls on the node, in place of umockdev's own handler:
        its handler answers each memory access in a round trip of its own."""
        path = self.root() + '/ioctl' + DEVNODE
        os.makedirs(os.path.dirname(path), exist_ok=True)
        listener = socket.socket(socket.AF_UNIX, socket.SOCK_STREAM)
        listener.bind(path)
        listener.listen()
        return listener

    def _accept(self):
        """A node opened anew belongs to the device present now; each opener has a thread of its own."""
        while True:
            try:
                opener = Opener(self.node_calls.accept()[0])
            except OSError:
                return
            server = threading.Thread(target=self._serve, args=(opener,))
            with self.lock:
                self.owners[opener] = self.device
                self.servers.append(server)
            server.start()

    def _serve(self, opener):
        """An opened node stays with the device it was opened on: after an unplug its clients reap
        their failed transfers from the device that has gone, while new ones reach the new device."""
        try:
            while (call := opener.next_call()) is not None:
                self._answer(opener, *call)
        except OSError:
            pass  # the opener went in the middle of a call
        with self.lock:
            device = self.owners.pop(opener, None)
        if device is not None:
            device.forget(opener)
        opener.sock.close()

    def _answer(self, opener, what, request, argument):
        with self.lock:
            device = self.owners.get(opener)
        if what != CALL_IOCTL:
            opener.complete(NOT_EMULATED, 0)
        elif device is None:
            opener.complete(-1, errno.ENODEV)
        else:
            device.handle(opener, request, argument)

    def _add(self):
        device = UsbDevice(self.socket_path, self.verbose)
        self.testbed.add_from_string(self._entry())
        with self.lock:
            self.device = device
        log(self.verbose, 'plugged in')

    def _replug(self):
        self._add()
        # The node that the testbed makes anew is a plain file again.
        self.device.use_fifo_node(self.root() + DEVNODE)
        self.testbed.uevent(SYSPATH, 'add')

    def _remove(self):
        with self.lock:
            gone, self.device = self.device, None
        gone.unplug()
        self.retired.append(gone)
        self.testbed.uevent(SYSPATH, 'remove')
        self.testbed.remove_device(SYSPATH)
        log(self.verbose, 'unplugged')

    def _answers(self):
        """The socket shows before the instrument listens on it: a host must not find it sooner."""
        try:
            InstrumentLink.descriptors(self.socket_path)
            return True
        except (OSError, EOFError, RuntimeError):
            return False

    def _watch(self):
        while not self.stopping.wait(WATCH_SECONDS):
            present = os.path.exists(self.socket_path)
            if present and self.device is None and self._answers():
                self._replug()
            elif present and self.device is not None and self.device.cable_gone and self._answers():
                # Dropped and plugged again between two looks: the host must see it go and come.
                self._remove()
                self._replug()
            elif not present and self.device is not None:
                self._remove()


def parse(arguments):
    usage = 'usage: orbel-sim-usb --directory DIR --serial S [--verbose] -- COMMAND [ARGS...]'
    if '--' not in arguments:
        raise SystemExit(usage)
    split = arguments.index('--')
    options, command = arguments[:split], arguments[split + 1:]
    pairs = [option for option in options if option != '--verbose']
    values = dict(zip(pairs[::2], pairs[1::2]))
    if not command or '--directory' not in values or '--serial' not in values:
        raise SystemExit(usage)
    return values['--directory'], values['--serial'], '--verbose' in options, command


def main():
    if not shutil.which('umockdev-wrapper'):
        sys.stderr.write(MISSING)
        return 1
    # udev's events are sent from this process, so it must see the emulated /sys too.
    if 'libumockdev-preload' not in os.environ.get('LD_PRELOAD', ''):
        os.execvp('umockdev-wrapper', ['umockdev-wrapper', sys.executable] + sys.argv)
    try:
        import gi
        gi.require_version('UMockdev', '1.0')
    except (ImportError, ValueError):
        sys.stderr.write(MISSING)
        return 1
    directory, serial, verbose, command = parse(sys.argv[1:])
    socket_path = os.path.join(directory, serial + '.sock')
    try:
        bus = EmulatedBus(socket_path, verbose)
    except (OSError, EOFError, RuntimeError) as error:
        sys.stderr.write('orbel-sim: no instrument with serial %s is plugged in (%s)\n' % (serial, error))
        return 1
    environment = dict(os.environ, UMOCKDEV_DIR=bus.root(), ORBEL_USB_ID=bus.ids(), ORBEL_VIRTUAL='off',
                       ORBEL_SIM_DIR=directory, ORBEL_SIM_SERIAL=serial)
    try:
        return subprocess.call(command, env=environment)
    except OSError as error:
        sys.stderr.write('orbel-sim: %s: %s\n' % (command[0], error.strerror))
        return 127
    finally:
        bus.close()


if __name__ == '__main__':
    sys.exit(main())
