#!/usr/bin/env python3
"""A synthetic USB GPS receiver on a pseudo-terminal.

It stands where a USB GPS receiver would stand, outside the Windows machine:
it opens a pty pair, links the program's side into a Wine prefix as a COM
port ($WINEPREFIX/dosdevices/comN), and talks on the other side at its own
line speed. At each moment it reads the speed that the program set on the
port (the pty's termios): while the two agree it sends its NMEA sentences,
otherwise the bytes that a serial port set to the program's speed would make
of its signal, as a real receiver read at a wrong rate gives garbage. Bytes
are paced at the receiver's rate, so that read timeouts behave as on a line,
and nothing is sent while no program has the port open.

Scripts (--script), one burst a second:
  steady    GGA, then GSA and RMC, with a fix
  nofix     the same without a fix: empty position fields, quality 0
  cut       a whole burst, then the first 40 bytes of a GGA with another position
  zerobyte  a zero byte at the start of each burst, then a whole burst
  flood     one burst of --flood-bytes bytes of GGA sentences, far more than a read asks for
  silence   nothing at all: a port that exists and stays silent
  notime    steady, but the GGA's time field is empty
  nogga     a GSA sentence alone: a short burst without any GGA

Control while it runs, through files in --state DIR:
  stop      ends it: the COM link is removed
  hangup    closes the pty under the program, as a receiver pulled out mid-run
  script    holds the name of a script to change to
It writes there: pid, log (what the program did to the port) and, once the
link is in place, pty.

  synthgps.py --prefix ~/.wine --port 3 --baud 4800
"""
import argparse
import ctypes
import ctypes.util
import datetime
import fcntl
import math
import os
import select
import signal
import struct
import sys
import termios
import time
import tty

SCRIPTS = ["steady", "nofix", "cut", "zerobyte", "flood", "silence", "notime", "nogga"]
TICK = 0.01  # seconds between two looks at the line
GAP = 0.2  # least silence between two bursts


# Linux's termios2: the speed as a number in c_ispeed, when c_cflag's speed
# code is BOTHER (Wine 10 sets line speeds this way; Wine 8 by a code).
TCGETS2 = 0x802C542A
TERMIOS2_BYTES = 44
ISPEED_OFFSET = 36


def line_rate(fd, rates):
    """The rate the program set on the line: by its speed code, or by the
    number termios2 holds when the code is BOTHER; 0 when neither tells."""
    code = termios.tcgetattr(fd)[4]
    if code in rates:
        return rates[code]
    try:
        raw = fcntl.ioctl(fd, TCGETS2, bytes(TERMIOS2_BYTES))
    except OSError:
        return 0
    return struct.unpack_from("I", raw, ISPEED_OFFSET)[0]


def speeds():
    """Termios speed codes and the rates they stand for."""
    table = {}
    for name in dir(termios):
        if name.startswith("B") and name[1:].isdigit():
            table[getattr(termios, name)] = int(name[1:])
    return table


class PortWatch:
    """Openings and closings of the program's side of the pty, in order. The pty's hang-up state alone
    misses a port closed and opened again within one look at the line, as a scan of rates does."""

    IN_OPEN = 0x20
    IN_CLOSE_WRITE = 0x08
    IN_CLOSE_NOWRITE = 0x10

    def __init__(self, path):
        libc = ctypes.CDLL(ctypes.util.find_library("c"), use_errno=True)
        self.fd = libc.inotify_init1(os.O_NONBLOCK | os.O_CLOEXEC)
        if self.fd < 0 or libc.inotify_add_watch(self.fd, path.encode(), self.IN_OPEN | self.IN_CLOSE_WRITE |
                                                 self.IN_CLOSE_NOWRITE) < 0:
            raise OSError(ctypes.get_errno(), "cannot watch " + path)

    def changes(self):
        """"open" and "close", oldest first, since the last call."""
        found = []
        try:
            data = os.read(self.fd, 4096)
        except BlockingIOError:
            return found
        at = 0
        while at + 16 <= len(data):
            _, mask, _, length = struct.unpack_from("iIII", data, at)
            at += 16 + length
            if mask & self.IN_OPEN:
                found.append("open")
            if mask & (self.IN_CLOSE_WRITE | self.IN_CLOSE_NOWRITE):
                found.append("close")
        return found

    def close(self):
        os.close(self.fd)


def sentence(body):
    checksum = 0
    for byte in body.encode("ascii"):
        checksum ^= byte
    return ("$%s*%02X\r\n" % (body, checksum)).encode("ascii")


class Position:
    def __init__(self, args):
        self.latitude = args.latitude
        self.longitude = args.longitude
        self.altitude = args.altitude
        self.satellites = args.satellites


def clock_text(moment):
    return moment.strftime("%H%M%S.") + "%02d" % (moment.microsecond // 10000)


def gga(moment, position, fix=True, timed=True):
    clock = clock_text(moment) if timed else ""
    if not fix:
        return sentence("GPGGA,%s,,,,,0,00,,,M,,M,," % clock)
    return sentence("GPGGA,%s,%s,%s,1,%02d,0.9,%s,M,46.9,M,," % (
        clock, position.latitude, position.longitude, position.satellites, position.altitude))


def gsa(fix=True):
    if not fix:
        return sentence("GPGSA,A,1,,,,,,,,,,,,,99.99,99.99,99.99")
    return sentence("GPGSA,A,3,04,05,,09,12,,,24,,,,,2.5,1.3,2.1")


def rmc(moment, position, fix=True):
    date = moment.strftime("%d%m%y")
    if not fix:
        return sentence("GPRMC,%s,V,,,,,,,%s,,," % (clock_text(moment), date))
    return sentence("GPRMC,%s,A,%s,%s,000.0,000.0,%s,,," % (
        clock_text(moment), position.latitude, position.longitude, date))


def burst(script, moment, position, flood_bytes):
    """The bytes the receiver sends in one burst."""
    if script == "silence":
        return b""
    fix = script != "nofix"
    whole = gga(moment, position, fix, script != "notime") + gsa(fix) + rmc(moment, position, fix)
    if script == "nogga":
        return gsa(fix)
    if script == "cut":
        other = Position(argparse.Namespace(latitude="5107.0000,S", longitude="00131.0000,W",
                                            altitude="100.0", satellites=9))
        return whole + gga(moment, other)[:40]
    if script == "zerobyte":
        return b"\0" + whole
    if script == "flood":
        data = b""
        step = 0
        while len(data) < flood_bytes:
            moved = Position(argparse.Namespace(latitude=position.latitude, longitude=position.longitude,
                                                altitude="%d.0" % step, satellites=position.satellites))
            data += gga(moment, moved)
            step += 1
        return data
    return whole


def line_bits(data):
    """The line's levels, one a bit: start bit 0, eight data bits from the lowest, stop bit 1."""
    bits = []
    for byte in data:
        bits.append(0)
        bits.extend((byte >> i) & 1 for i in range(8))
        bits.append(1)
    return bits


def decode(data, sender_rate, receiver_rate):
    """What a port at receiver_rate reads from data sent at sender_rate: (moment, byte) pairs, the moment
    counted from the burst's start, when the byte is complete."""
    if sender_rate == receiver_rate:
        return [((i + 1) * 10.0 / sender_rate, byte) for i, byte in enumerate(data)]
    bits = line_bits(data)
    # Whole units of 1 / (2 * sender_rate * receiver_rate) seconds, so that
    # every edge and every sampling point falls on one.
    sent = 2 * receiver_rate  # a bit on the line
    bit = 2 * sender_rate  # a bit as the port samples it
    second = 2 * sender_rate * receiver_rate
    end = len(bits) * sent

    def level(moment):
        index = moment // sent
        return bits[index] if 0 <= index < len(bits) else 1

    decoded = []
    moment = 0
    while moment < end:
        if level(moment) == 1:
            # Idle: on to the next falling edge.
            index = moment // sent + 1
            while index < len(bits) and bits[index] == 1:
                index += 1
            moment = index * sent
            continue
        if level(moment + bit // 2) != 0:
            moment += max(1, bit // 4)
            continue
        value = 0
        for i in range(8):
            if level(moment + bit + bit // 2 + i * bit):
                value |= 1 << i
        stop = moment + 9 * bit + bit // 2
        # A frame without its stop bit still hands its byte over.
        decoded.append((stop / second, value))
        moment = stop
        while moment < end and level(moment) == 0:
            moment += max(1, bit // 4)
    return decoded


class Receiver:
    def __init__(self, args):
        self.args = args
        self.rate = args.baud
        self.script = args.script
        self.position = Position(args)
        self.state = args.state
        self.rates = speeds()
        self.started = time.monotonic()
        self.master = None
        self.link = None
        self.log_file = None
        if self.state:
            os.makedirs(self.state, exist_ok=True)
            for name in ("pty", "log", "stop", "hangup", "script", "stopped"):
                if os.path.exists(os.path.join(self.state, name)):
                    os.remove(os.path.join(self.state, name))
            self.write_state("pid", "%d\n" % os.getpid())
            self.log_file = open(os.path.join(self.state, "log"), "a", buffering=1)

    def log(self, text):
        line = "%.3f %s" % (time.monotonic() - self.started, text)
        if self.log_file:
            self.log_file.write(line + "\n")
        if self.args.verbose:
            print(line, flush=True)

    def write_state(self, name, text):
        path = os.path.join(self.state, name)
        with open(path + ".new", "w") as out:
            out.write(text)
        os.replace(path + ".new", path)

    def control(self, name):
        return self.state and os.path.exists(os.path.join(self.state, name))

    def open_line(self):
        master, slave = os.openpty()
        tty.setraw(slave)
        attributes = termios.tcgetattr(slave)
        # The line starts at the receiver's own rate, as a port left so would.
        code = next((c for c, r in self.rates.items() if r == self.rate), termios.B38400)
        attributes[4] = attributes[5] = code
        termios.tcsetattr(slave, termios.TCSANOW, attributes)
        name = os.ttyname(slave)
        # Only the program holds the other side: with it closed the master
        # sees a hang-up, and nothing is sent into a port nobody reads.
        os.close(slave)
        os.set_blocking(master, False)
        self.master = master
        self.watch = PortWatch(name)
        if self.args.prefix:
            self.link = os.path.join(self.args.prefix, "dosdevices", "com%d" % self.args.port)
        elif self.args.link:
            self.link = self.args.link
        if self.link:
            if os.path.lexists(self.link):
                os.remove(self.link)
            os.symlink(name, self.link)
        self.log("ready %s %s" % (name, self.link or ""))
        if self.state:
            self.write_state("pty", name + "\n")
        if not self.state or self.args.verbose:
            print("synthgps: %s at %d baud, script %s%s" % (
                name, self.rate, self.script, (", linked as " + self.link) if self.link else ""), flush=True)

    def close_line(self):
        if self.master is not None:
            os.close(self.master)
            self.master = None
            self.watch.close()

    def remove_link(self):
        if self.link and os.path.islink(self.link):
            os.remove(self.link)
        self.link = None

    def run(self):
        self.open_line()
        poller = select.poll()
        poller.register(self.master, select.POLLIN | select.POLLHUP)
        openings = 0
        program_rate = self.rate
        current = None  # (start, data, {rate: decoded})
        next_start = float(int(time.time()) + 1)
        sent_until = 0.0
        hung_up = False
        deadline = time.monotonic() + self.args.seconds if self.args.seconds else None
        hangup_at = time.monotonic() + self.args.hangup_after if self.args.hangup_after else None
        last_control = 0.0
        while True:
            now_monotonic = time.monotonic()
            if deadline and now_monotonic > deadline:
                self.log("time up")
                break
            if now_monotonic - last_control > 0.1:
                last_control = now_monotonic
                if self.control("stop"):
                    self.log("stop")
                    break
                if self.control("script"):
                    with open(os.path.join(self.state, "script")) as named:
                        script = named.read().strip()
                    os.remove(os.path.join(self.state, "script"))
                    if script in SCRIPTS:
                        self.script = script
                        self.log("script " + script)
                if not hung_up and (self.control("hangup") or (hangup_at and now_monotonic > hangup_at)):
                    self.log("hangup")
                    poller.unregister(self.master)
                    self.close_line()
                    hung_up = True
            if hung_up:
                time.sleep(0.1)
                continue

            events = dict(poller.poll(0))
            flags = events.get(self.master, 0)
            is_open = not (flags & select.POLLHUP)
            if flags & select.POLLIN:
                try:
                    os.read(self.master, 4096)  # the program never writes; this drains any echo
                except OSError:
                    pass
            rate = line_rate(self.master, self.rates)
            # A closing is logged with the rate the port had while it was
            # open, an opening with the rate it has now.
            just_opened = False
            for change in self.watch.changes():
                if change == "open":
                    openings += 1
                    just_opened = True
                    self.log("open %d" % rate)
                else:
                    openings = max(0, openings - 1)
                    self.log("close %d" % program_rate)
            if openings and not just_opened and rate != program_rate:
                self.log("rate %d" % rate)
            program_rate = rate

            now = time.time()
            if current is None and now >= next_start:
                # The receiver's own clock, which may run ahead of this
                # computer's (or behind, with a negative --clock-ahead).
                moment = datetime.datetime.fromtimestamp(next_start + self.args.clock_ahead, datetime.timezone.utc)
                data = burst(self.script, moment, self.position, self.args.flood_bytes)
                current = (next_start, data, {})
                sent_until = next_start
            if current is not None:
                start, data, renderings = current
                if rate not in renderings and rate:
                    renderings[rate] = decode(data, self.rate, rate)
                due = [byte for moment, byte in renderings.get(rate, [])
                       if sent_until < start + moment <= now]
                # Bytes that arrive while the port is closed, or in the
                # moment it is opened and before its rate is set, are lost.
                if due and is_open and not just_opened:
                    try:
                        os.write(self.master, bytes(due))
                    except BlockingIOError:
                        self.log("overrun %d" % len(due))
                    except OSError:
                        pass
                sent_until = now
                end = start + len(data) * 10.0 / self.rate
                if now >= end:
                    # One burst a second; one that ran over starts the next
                    # at the following whole second.
                    current = None
                    next_start = start + 1.0
                    if end + GAP > next_start:
                        next_start = float(math.ceil(end + GAP))
            time.sleep(TICK)
        self.close_line()
        self.remove_link()
        if self.state:
            self.write_state("stopped", "\n")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    where = parser.add_mutually_exclusive_group()
    where.add_argument("--prefix", help="Wine prefix to link the port into (with --port)")
    where.add_argument("--link", help="a path to link the port at instead")
    parser.add_argument("--port", type=int, default=3, help="COM port number in the prefix (default 3)")
    parser.add_argument("--baud", type=int, default=4800, help="the receiver's own rate (default 4800)")
    parser.add_argument("--script", choices=SCRIPTS, default="steady")
    parser.add_argument("--latitude", default="4807.038,N")
    parser.add_argument("--longitude", default="01131.000,E")
    parser.add_argument("--altitude", default="545.4")
    parser.add_argument("--satellites", type=int, default=8)
    parser.add_argument("--flood-bytes", type=int, default=12000)
    parser.add_argument("--clock-ahead", type=float, default=0,
                        help="seconds the receiver's time runs ahead of this computer's clock")
    parser.add_argument("--state", help="folder for control and log files")
    parser.add_argument("--seconds", type=float, default=0, help="end after this long (0: run until stopped)")
    parser.add_argument("--hangup-after", type=float, default=0, help="hang up after this many seconds")
    parser.add_argument("--verbose", action="store_true", help="print the log")
    args = parser.parse_args()
    if args.baud not in speeds().values():
        parser.error("no such line speed: %d" % args.baud)
    receiver = Receiver(args)
    # A plain kill ends it as the stop file does, taking its link away.
    signal.signal(signal.SIGTERM, lambda *_: (_ for _ in ()).throw(KeyboardInterrupt()))
    try:
        receiver.run()
    except KeyboardInterrupt:
        receiver.close_line()
        receiver.remove_link()
    return 0


if __name__ == "__main__":
    sys.exit(main())
