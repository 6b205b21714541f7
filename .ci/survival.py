"""Kills the console at random moments and compares what the next start restores with what was sent.

Numbered datagrams, and on Linux numbered mailslot texts, are sent at about 5,000 a second; under Wine, whose processes
are slow, datagrams at 1,000 a second.  A notification that was sent a second before the kill, and that the console has
taken from the system, must be there afterwards, exactly once, unless the operator deleted it before.  A newer one may
be there.  Nothing else may be there.  Each line of the output shows one kill.
"""
import argparse
import os
import random
import re
import shlex
import signal
import socket
import subprocess
import sys
import threading
import time

TITLE = "^Tallyhorn Listener Console$"
FENCE = 1.0  # seconds before the kill: what was sent earlier must survive
MOMENTS = ("feed", "pause", "save", "clear", "load", "delete", "display")
TYPES = ("Error", "Warning", "Information")


class Failure(Exception):
    """What the console did wrong."""


def wait_for(seconds, condition, what):
    end = time.monotonic() + seconds
    while not condition():
        if time.monotonic() > end:
            raise Failure(what)
        time.sleep(0.05)


class Display:
    """An invisible display with a window manager."""

    def __init__(self):
        read, write = os.pipe()
        self.server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(write), "-screen", "0", "1280x800x24", "-nolisten", "tcp", "-noreset"],
            pass_fds=[write], stderr=subprocess.DEVNULL)
        os.close(write)
        with os.fdopen(read) as number:
            os.environ["DISPLAY"] = ":" + number.readline().strip()
        self.manager = subprocess.Popen(["openbox"], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        wait_for(20, lambda: run("xdotool", "get_num_desktops")[0] == 0, "openbox does not start")

    def end(self):
        for process in (self.manager, self.server):
            process.kill()
            process.wait()


def run(*command):
    done = subprocess.run(command, capture_output=True, text=True, timeout=30, check=False)
    return done.returncode, done.stdout


def windows():
    return len(run("xdotool", "search", "--onlyvisible", "--name", TITLE)[1].split())


def has_keyboard():
    active = run("xdotool", "getactivewindow")
    return active[0] == 0 and active == run("xdotool", "getwindowfocus")


def keys(*names):
    wait_for(15, has_keyboard, "the active window does not get the keyboard focus")
    run("xdotool", "key", "--delay", "60", *names)


def answer_yes(*names):
    """Presses keys that open a question, and answers it with Yes.  Keys pressed while a window opens may be lost."""
    end = time.monotonic() + 30
    while windows() < 2:
        if time.monotonic() > end:
            raise Failure("no question after the keys " + " ".join(names))
        keys(*names)
        for _ in range(60):
            if windows() < 2:
                time.sleep(0.1)
    keys("alt+y")
    wait_for(15, lambda: windows() < 2, "the question does not close")


class Feed:
    """Sends numbered notifications from a thread until it is stopped."""

    def __init__(self, port, first, mailslot, queued):
        self.port, self.next, self.mailslot = port, first, mailslot
        self.queued = queued  # returns how many bytes wait in the system
        self.drained = 0.0  # when nothing waited in the system
        self.sent = {}  # the time at which each number was sent by syslog
        self.sent_texts = []  # the times at which texts were sent by mailslot
        self.stopping = False
        self.thread = threading.Thread(target=self.send)
        self.thread.start()

    def send(self):
        datagrams = socket.socket(socket.AF_INET, socket.SOCK_DGRAM)
        texts = socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM)
        begin, count = time.monotonic(), 0
        pause = 0.005 if self.mailslot else 0.02
        while not self.stopping:
            for _ in range(20):
                kind = TYPES[self.next % 3]
                text = (f"<13>Alarm (N{self.next:09d}) Event raised: System Log, 08/21/2008 2:05:09 PM, Disk, {kind}, "
                        f"None, 7, JOE, PC{self.next % 50}, a text of usual length " + "x" * 100)
                datagrams.sendto(text.encode(), ("127.0.0.1", self.port))
                self.sent[self.next] = time.monotonic()
                self.next += 1
            if self.mailslot:
                self.send_texts(texts)
            count += 1
            if count % 10 == 0:
                self.look()
            time.sleep(max(0.0, begin + count * pause - time.monotonic()))

    def look(self):
        now = time.monotonic()
        if self.queued() == 0:
            self.drained = now

    def send_texts(self, texts):
        for _ in range(5):
            try:
                texts.sendto(f"Date: 08/21/2008 14:05:09\r\n\r\n\r\nAlarm (T{len(self.sent_texts)})\r\n\r\n\r\nLog: System\r\n"
                             "Source: Disk\r\nType: Error\r\nCategory: None\r\nEventID: 7\r\nAccount: JOE\r\n"
                             "Computer: PC\r\nDescription: text\0".encode(), self.mailslot)
                self.sent_texts.append(time.monotonic())
            except OSError:  # the console has ended
                return

    def stop(self):
        self.stopping = True
        self.thread.join()


class Trial:
    def __init__(self, options):
        self.random = random.Random(options.seed)
        self.wine = options.wine
        self.folder = os.path.join(os.environ["SURVIVAL_FOLDER"], "data")
        self.runtime = os.path.join(os.environ["SURVIVAL_FOLDER"], "run")
        os.makedirs(self.folder)
        os.makedirs(self.runtime, 0o700)
        os.environ["XDG_RUNTIME_DIR"] = self.runtime
        self.port = self.free_port()
        with open(self.path("thlisten.ini"), "w", newline="\r\n", encoding="ascii") as settings:
            settings.write(f"[General]\nMessageViews=7\nSyslogUDPPort={self.port}\n")
        self.display = Display()
        self.console = None
        self.kept = set()  # the numbers that the backup file contains
        self.next = 1

    @staticmethod
    def free_port():
        with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as probe:
            probe.bind(("127.0.0.1", 0))
            return probe.getsockname()[1]

    def path(self, name):
        return os.path.join(self.folder, name)

    # ---- the console

    def launch(self, runtime=None):
        folder, summary = self.folder, self.path("summary.txt")
        if self.wine:
            folder, summary = ("Z:" + text.replace("/", "\\") for text in (folder, summary))
        environment = dict(os.environ, TALLYHORN_SUMMARY=summary)
        if runtime:
            environment["XDG_RUNTIME_DIR"] = runtime
        return subprocess.Popen(shlex.split(os.environ["SURVIVAL_CONSOLE"]) + ["--folder", folder],
                                env=environment, stderr=subprocess.DEVNULL)

    def listens(self):
        if self.console.poll() is not None:
            raise Failure(f"the console ended with status {self.console.returncode} while starting")
        return self.drops() is not None and windows() == 1

    def drops(self):
        """Returns how many datagrams the system dropped at the port, or None if nobody listens there."""
        row = self.port_row()
        return None if row is None else int(row[-1])

    def queued(self):
        """Returns how many bytes wait at the port, or None if nobody listens there."""
        row = self.port_row()
        return None if row is None else int(row[4].split(":")[1], 16)

    def port_row(self):
        for table in ("/proc/net/udp", "/proc/net/udp6"):
            with open(table, encoding="ascii") as lines:
                for line in lines:
                    fields = line.split()
                    if fields[1].endswith(f":{self.port:04X}"):
                        return fields
        return None

    def start(self):
        self.console = self.launch()
        wait_for(40, self.listens, "the console does not show its window and listen")
        time.sleep(0.3)

    def kill(self):
        self.console.kill()
        self.console.wait()

    def end_normally(self):
        if self.wine:
            answer_yes("alt+F4")
        else:
            self.console.terminate()
        status = self.console.wait(timeout=30)
        if status != 0:
            raise Failure(f"the console ended with status {status}")

    def check_second_console(self):
        runtime = os.path.join(os.environ["SURVIVAL_FOLDER"], "other")
        os.makedirs(runtime, 0o700, exist_ok=True)
        second = self.launch(runtime)
        wait_for(20, lambda: windows() == 2, "a second console on the same folder is not refused")
        second.kill()
        second.wait()
        wait_for(10, lambda: windows() == 1, "the message of the second console stays")

    # ---- one kill

    def kill_once(self, moment):
        self.start()
        if moment == "pause":
            keys("alt+e", "p")
        mailslot = None if self.wine else self.runtime + "/mailslot/TallyhornEngine"
        feed = Feed(self.port, self.next, mailslot, self.queued)
        try:
            self.act(moment, feed)
            drops = self.drops()
            killed = time.monotonic()
            if moment == "display":
                self.display.end()
                self.console.wait(timeout=20)
                self.display = Display()
            else:
                self.kill()
        finally:
            feed.stop()
        self.next = feed.next
        if moment == "load":
            self.console = self.launch()
            time.sleep(self.random.uniform(0.05, 0.9))
            self.kill()
        fence = min(killed, feed.drained + FENCE / 2) - FENCE
        must = self.kept | {number for number, sent in feed.sent.items() if sent < fence}
        may = self.kept | set(feed.sent)
        deleted = self.deleted
        must_texts = sum(1 for sent in feed.sent_texts if self.texts_cleared < sent < killed - FENCE)
        may_texts = sum(1 for sent in feed.sent_texts if self.texts_cleared < sent)
        if moment == "save":
            must_texts = 0  # a completed save does not keep them
        self.compare(moment, must - deleted, may - deleted, must_texts, may_texts, drops)

    def act(self, moment, feed):
        self.deleted, self.texts_cleared = set(), 0.0
        time.sleep(self.random.uniform(FENCE + 0.3, FENCE + 1.5))
        if moment in ("clear", "delete"):
            feed.stop()
            wait_for(30, lambda: self.queued() == 0, "datagrams stay in the system")
            time.sleep(2 if self.wine else 0.5)
            feed.look()
            present = self.kept | set(feed.sent)
            keys("alt+s")
            if moment == "clear":
                answer_yes("alt+f", "c")
                self.deleted = present
            else:
                keys("alt+c", "ctrl+a")
                answer_yes("Delete")
                self.deleted = {number for number in present if number % 3 == 0}
            time.sleep(1.5)
            feed.look()
        if moment == "save":
            feed.stop()
            time.sleep(0.3)
            self.console.send_signal(signal.SIGTERM)
            time.sleep(self.random.uniform(0, 0.2))

    def compare(self, moment, must, may, must_texts, may_texts, drops):
        journal = os.path.getsize(self.path("Journal.dat")) if os.path.exists(self.path("Journal.dat")) else 0
        self.start()
        time.sleep(1)
        self.end_normally()
        numbers = self.backup_numbers()
        with open(self.path("summary.txt"), encoding="ascii") as summary:
            texts = int(re.search(r"NetBIOS \d+ received, (\d+) kept", summary.read()).group(1))
        self.kept = set(numbers)
        print(f"{moment:8} sent up to {self.next - 1}, journal {journal} bytes, restored {len(numbers)} of {len(must)} to "
              f"{len(may)} datagrams and {texts} of {must_texts} to {may_texts} texts", flush=True)
        if len(self.kept) != len(numbers):
            raise Failure(f"{len(numbers) - len(self.kept)} messages are there twice")
        if self.kept - may:
            raise Failure(f"{len(self.kept - may)} messages are there that were deleted: {sorted(self.kept - may)[:5]}")
        if must - self.kept and not drops:
            raise Failure(f"{len(must - self.kept)} messages are lost: {sorted(must - self.kept)[:5]}")
        if drops:
            print(f"         the system dropped {drops} datagrams, so that losses could not be checked")
        if not self.wine and not must_texts <= texts <= may_texts:
            raise Failure("a wrong number of mailslot texts is there")
        if os.path.exists(self.path("Journal.dat")):
            raise Failure("a journal remains after a normal end")

    def backup_numbers(self):
        with open(self.path("Backup.dat"), "rb") as file:
            rest, numbers = file.read(), []
        while rest:
            size = int(rest[:5])
            numbers.append(int(re.search(rb"Alarm Name: N(\d+)", rest[5:5 + size]).group(1)))
            rest = rest[5 + size:] if len(rest) > 5 + size else b""
        return numbers


def main():
    parser = argparse.ArgumentParser(prog=".ci/check-survival")
    parser.add_argument("--count", type=int)
    parser.add_argument("--seed", type=int, default=int(time.time()) % 100000)
    parser.add_argument("--wine", action="store_true")
    options = parser.parse_args()
    count = options.count or (5 if options.wine else 20)
    trial = Trial(options)
    print(f"==> {count} kills, seed {options.seed}", flush=True)
    moments = [moment for moment in MOMENTS if not (options.wine and moment in ("save", "display"))]
    try:
        for i in range(count):
            trial.kill_once(moments[i % len(moments)])
        trial.start()
        if not options.wine:
            trial.check_second_console()
        trial.end_normally()
    except Failure as failure:
        print(f"error: {failure}\n       repeat with --seed {options.seed}; the files are in {trial.folder}")
        return 1
    finally:
        if trial.console and trial.console.poll() is None:
            trial.kill()
        trial.display.end()
    print("==> Every kill was survived")
    return 0


if __name__ == "__main__":
    sys.exit(main())
