#!/usr/bin/env python3
"""usage: hear-alert.py FOLDER-OF-THE-PROGRAMS
Runs the console with a sound of two tones, sends it two notifications, and looks for them in what the
sound server played: the second has to cut the first short and begin anew.  A third one has to be heard
after files that are no sound have stood in its place.  Then the same without a
server and with one that hangs.  Ends with 1 where something is not as it has to be."""

import array
import contextlib
import itertools
import math
import operator
import os
import signal
import socket
import subprocess
import sys
import tempfile
import time
import wave

RATE = 8000
TONES = ((1000, 0.2), (400, 3.0))  # hertz and seconds
DURATION = sum(seconds for _, seconds in TONES)
BLOCK = 80  # samples that are looked at together: a hundredth of a second
NOTIFICATION = (b"Alarm (Full) Event raised: System Log, 08/21/2008 2:05:09 PM, Disk, Error, None, 7, joe, pc, text")


def write_sound(path):
    samples = array.array("h")
    for hertz, seconds in TONES:
        samples.extend(int(12000 * math.sin(2 * math.pi * hertz * i / RATE)) for i in range(int(RATE * seconds)))
    with wave.open(path, "wb") as file:
        file.setparams((1, 2, RATE, 0, "NONE", ""))
        file.writeframes(samples.tobytes())


def power(block, hertz):
    """How much of the block's sound is that tone (Goertzel's way)."""
    factor = 2 * math.cos(2 * math.pi * hertz / RATE)
    last = before = 0.0
    for sample in block:
        last, before = sample + factor * last - before, last
    return last * last + before * before - factor * last * before


def tone_of(block):
    tone = max((hertz for hertz, _ in TONES), key=lambda hertz: power(block, hertz))
    return tone if power(block, tone) > (1000 * BLOCK / 2) ** 2 else 0


def joined(runs):
    return [(tone, sum(seconds for _, seconds in group)) for tone, group in
            itertools.groupby(runs, key=operator.itemgetter(0))]


def heard(recording):
    """(tone, seconds) one after the other; silence is the tone 0.  What is shorter than 30 ms is the edge of
    two."""
    samples = array.array("h", recording[:len(recording) // 2 * 2])
    blocks = (samples[begin:begin + BLOCK] for begin in range(0, len(samples) - BLOCK, BLOCK))
    runs = joined((tone_of(block), BLOCK / RATE) for block in blocks)
    return [(tone, round(seconds, 2)) for tone, seconds in joined(run for run in runs if run[1] >= 0.03)]


def bad_sounds(path):
    """Puts one after the other in the place of the sound: none of them may be heard or do harm."""
    with open(path, "rb") as file:
        whole = file.read()
    for bytes_of_it in (whole[:1000], whole[:24] + (1).to_bytes(4, "little") + whole[28:], whole + bytes(20 << 20)):
        os.unlink(path)
        with open(path, "wb") as file:
            file.write(bytes_of_it)
        yield
    os.unlink(path)
    os.mkfifo(path)
    yield
    os.unlink(path)
    write_sound(path)


def wait_for(what, condition, seconds=20):
    end = time.monotonic() + seconds
    while not condition():
        if time.monotonic() > end:
            sys.exit(f"error: {what} took over {seconds} seconds")
        time.sleep(0.02)


@contextlib.contextmanager
def running(*words, **options):
    process = subprocess.Popen(words, **options)
    try:
        yield process
    finally:
        process.kill()
        process.wait()


def free_port():
    with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as chosen:
        chosen.bind(("127.0.0.1", 0))
        return chosen.getsockname()[1]


class Console:
    """The console on a folder of its own, without a screen."""

    def __init__(self, folder):
        self.port = free_port()
        self.sent = 0
        self.folder = folder
        os.makedirs(folder)
        with open(f"{folder}/thlisten.ini", "w") as settings:
            settings.write(f"[General]\nMessageViews=7\nSoundOn=1\nSyslogUDPPort={self.port}\n")
        write_sound(f"{folder}/sound.wav")

    @contextlib.contextmanager
    def runs(self, programs, server):
        surroundings = dict(os.environ, PULSE_SERVER=server, QT_QPA_PLATFORM="offscreen",
                            TALLYHORN_SUMMARY=f"{self.folder}/summary")
        with open(f"{self.folder}/errors", "w+") as self.errors, running(
                f"{programs}/tallyhorn-console", "--folder", self.folder, env=surroundings,
                stderr=self.errors) as self.process:
            wait_for("the console's start", self.listens)
            time.sleep(0.5)
            yield

    def listens(self):
        if self.process.poll() is not None:
            sys.exit(f"error: the console ended with {self.process.returncode}")
        with contextlib.suppress(OSError), socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as other:
            other.bind(("127.0.0.1", self.port))
            return False
        return True

    def send(self):
        with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as sender:
            sender.sendto(NOTIFICATION, ("127.0.0.1", self.port))
        self.sent += 1

    def end(self):
        """Seconds that it took.  It has to end well, to have got all and to have said nothing."""
        begin = time.monotonic()
        self.process.send_signal(signal.SIGTERM)
        with contextlib.suppress(subprocess.TimeoutExpired):
            self.process.wait(20)
        seconds = time.monotonic() - begin
        if self.process.poll() != 0:
            sys.exit(f"error: the console does not end well: {self.process.poll()}")
        with open(f"{self.folder}/summary") as summary:
            if f"Syslog {self.sent} received, {self.sent} kept" not in (text := summary.read()):
                sys.exit(f"error: the console received\n{text}")
        self.errors.seek(0)
        # Qt's display without a screen tells what it cannot do.
        if said := [line for line in self.errors if not line.startswith("This plugin does not support ")]:
            sys.exit(f"error: the console says on standard error:\n{''.join(said)}")
        return seconds


def check_hearing(programs, folder):
    address = f"{folder}/server"
    with running("pulseaudio", "-n", "--daemonize=no", "--exit-idle-time=-1", "--use-pid-file=no", "--realtime=no",
                 "--high-priority=no", "--disable-shm=yes",
                 f"--load=module-null-sink sink_name=nothing format=s16le rate={RATE} channels=1",
                 f"--load=module-native-protocol-unix socket={address} auth-anonymous=1",
                 stderr=subprocess.DEVNULL):
        wait_for("the sound server's start", lambda: os.path.exists(address))
        recording = f"{folder}/recording"
        with open(recording, "wb") as file, running(
                "parec", f"--server=unix:{address}", "--device=nothing.monitor", "--raw", "--format=s16le",
                f"--rate={RATE}", "--channels=1", "--latency-msec=20", stdout=file):
            wait_for("the recording's start", lambda: os.path.getsize(recording) > 0)
            console = Console(f"{folder}/heard")
            with console.runs(programs, f"unix:{address}"):
                console.send()
                time.sleep(0.3)
                console.send()
                time.sleep(DURATION + 1.5)
                for _ in bad_sounds(f"{console.folder}/sound.wav"):
                    console.send()
                    time.sleep(0.3)
                console.send()
                time.sleep(DURATION + 1.5)
                console.end()
        with open(recording, "rb") as file:
            runs = [run for run in heard(file.read()) if run[0] != 0]
    print("heard, in hertz and seconds:", *runs)
    (first, first_length), (second, second_length) = TONES
    if [tone for tone, _ in runs] != [first, second] * 3:
        sys.exit("error: that is not the sound, cut short and begun anew")
    lengths = [seconds for _, seconds in runs]
    if any(abs(length - first_length) > 0.06 for length in lengths[::2]) or any(
            abs(length - second_length) > 0.1 for length in lengths[3::2]):
        sys.exit("error: the tones have not their lengths")
    if lengths[1] > second_length - 0.5:
        sys.exit("error: the first sound was not cut short")


def check_silence(programs, folder, name, server):
    console = Console(f"{folder}/{name}")
    with console.runs(programs, server):
        console.send()
        time.sleep(0.3)
        console.send()
        time.sleep(1)
        seconds = console.end()
    print(f"{name}: silent, both notifications taken, ended in {seconds:.1f} s")
    if seconds > 5:
        sys.exit("error: the end was held up")


def main():
    programs = os.path.abspath(sys.argv[1])
    with tempfile.TemporaryDirectory() as folder:
        os.environ.update(HOME=folder, XDG_RUNTIME_DIR=folder)
        os.environ.pop("DISPLAY", None)
        check_hearing(programs, folder)
        check_silence(programs, folder, "no-server", f"unix:{folder}/nobody")
        with socket.socket(socket.AF_UNIX) as deaf:
            deaf.bind(f"{folder}/deaf")
            deaf.listen()
            check_silence(programs, folder, "hung-server", f"unix:{folder}/deaf")


if __name__ == "__main__":
    main()
