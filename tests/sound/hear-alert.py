#!/usr/bin/env python3
"""usage: hear-alert.py FOLDER-OF-THE-PROGRAMS
Runs the console with an alert sound of two tones, sends it notifications, and examines what the sound server played.  The
second notification must cut the first alert short and start a new one.  A third alert must be heard after files that are
no valid sound have replaced sound.wav for a while.  Then runs the console without a sound server and with one that hangs:
it must stay silent and keep working.  Ends with status 1 if a check fails."""

import array
import cmath
import contextlib
import itertools
import os
import pathlib
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
BLOCK = 80  # the samples of 10 ms, the unit of the analysis
NOTIFICATION = b"Alarm (Full) Event raised: System Log, 08/21/2008 2:05:09 PM, Disk, Error, None, 7, joe, pc, text"
PROGRAMS = pathlib.Path(sys.argv[1]).absolute()


def write_sound(path):
    samples = array.array("h", (int(12000 * cmath.sin(2 * cmath.pi * hertz * i / RATE).real)
                                for hertz, seconds in TONES for i in range(int(RATE * seconds))))
    with wave.open(str(path), "wb") as file:
        file.setparams((1, 2, RATE, 0, "NONE", ""))
        file.writeframes(samples.tobytes())


def tone_of(block):
    """Returns the frequency of the stronger tone in the block, or 0 for silence."""
    powers = {hertz: abs(sum(sample * cmath.exp(2j * cmath.pi * hertz * i / RATE) for i, sample in enumerate(block)))
              for hertz, _ in TONES}
    tone = max(powers, key=powers.get)
    return tone if powers[tone] > 1000 * BLOCK / 2 else 0


def joined(runs):
    return [(tone, sum(seconds for _, seconds in group)) for tone, group in
            itertools.groupby(runs, key=lambda run: run[0])]


def heard(recording):
    """Returns (hertz, seconds) of each tone in the recording.  Omits runs shorter than 30 ms, edges between tones."""
    samples = array.array("h", recording[:len(recording) // 2 * 2])
    blocks = (samples[begin:begin + BLOCK] for begin in range(0, len(samples) - BLOCK, BLOCK))
    runs = joined((tone_of(block), BLOCK / RATE) for block in blocks)
    return [(tone, round(seconds, 2)) for tone, seconds in joined(run for run in runs if run[1] >= 0.03) if tone]


def bad_sounds(path):
    """Replaces the sound by files that must not be heard and must do no harm, one after the other: a cut one, one with a
    wrong chunk length, one that is too large, and a FIFO, which would block a reader.  Restores the sound at the end."""
    whole = path.read_bytes()
    for bad in (whole[:1000], whole[:24] + (1).to_bytes(4, "little") + whole[28:], whole + bytes(20 << 20)):
        path.unlink()
        path.write_bytes(bad)
        yield
    path.unlink()
    os.mkfifo(path)
    yield
    path.unlink()
    write_sound(path)


def require(condition, complaint):
    if not condition:
        sys.exit(f"error: {complaint}")


def wait_for(what, condition):
    end = time.monotonic() + 20
    while not condition():
        require(time.monotonic() < end, f"{what} took over 20 seconds")
        time.sleep(0.02)


def start(cleanup, *words, **options):
    process = subprocess.Popen(words, **options)
    cleanup.callback(process.wait)
    cleanup.callback(process.kill)
    return process


class Console:
    """A running console with its own folder, without a display."""

    def __init__(self, cleanup, folder, server):
        self.folder, self.sent = folder, 0
        with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as chosen:
            chosen.bind(("127.0.0.1", 0))
            self.port = chosen.getsockname()[1]
        folder.mkdir()
        (folder / "thlisten.ini").write_text(f"[General]\nMessageViews=7\nSoundOn=1\nSyslogUDPPort={self.port}\n")
        write_sound(folder / "sound.wav")
        self.errors = cleanup.enter_context(open(folder / "errors", "w+"))
        self.process = start(cleanup, PROGRAMS / "tallyhorn-console", "--folder", folder, stderr=self.errors, env=dict(
            os.environ, PULSE_SERVER=server, QT_QPA_PLATFORM="offscreen", TALLYHORN_SUMMARY=str(folder / "summary")))
        wait_for("starting the console", self.listens)
        time.sleep(0.5)

    def listens(self):
        require(self.process.poll() is None, f"the console ended with status {self.process.returncode}")
        with contextlib.suppress(OSError), socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as other:
            other.bind(("127.0.0.1", self.port))
            return False
        return True

    def send(self, wait):
        with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as sender:
            sender.sendto(NOTIFICATION, ("127.0.0.1", self.port))
        self.sent += 1
        time.sleep(wait)

    def end(self):
        """Ends the console and returns the seconds that this took.  Checks its status, that it kept all notifications,
        and that it wrote nothing to standard error."""
        begin = time.monotonic()
        self.process.send_signal(signal.SIGTERM)
        wait_for("ending the console", lambda: self.process.poll() is not None)
        seconds = time.monotonic() - begin
        require(self.process.returncode == 0, f"the console ended with status {self.process.returncode}")
        summary = (self.folder / "summary").read_text()
        require(f"Syslog {self.sent} received, {self.sent} kept" in summary, f"the console received\n{summary}")
        self.errors.seek(0)
        # Qt's "offscreen" platform reports what it cannot do, which is no fault.
        said = "".join(line for line in self.errors if not line.startswith("This plugin does not support "))
        require(not said, f"the console wrote to standard error:\n{said}")
        return seconds


def check_hearing(cleanup, folder):
    address, recording = folder / "server", folder / "recording"
    start(cleanup, "pulseaudio", "-n", "--daemonize=no", "--exit-idle-time=-1", "--use-pid-file=no", "--realtime=no",
          "--high-priority=no", "--disable-shm=yes",
          f"--load=module-null-sink sink_name=nothing format=s16le rate={RATE} channels=1",
          f"--load=module-native-protocol-unix socket={address} auth-anonymous=1", stderr=subprocess.DEVNULL)
    wait_for("starting the sound server", address.exists)
    with open(recording, "wb") as file:
        start(cleanup, "parec", f"--server=unix:{address}", "--device=nothing.monitor", "--raw", "--format=s16le",
              f"--rate={RATE}", "--channels=1", "--latency-msec=20", stdout=file)
    wait_for("starting the recording", lambda: recording.stat().st_size > 0)
    console = Console(cleanup, folder / "heard", f"unix:{address}")
    console.send(0.3)
    console.send(DURATION + 1.5)
    for _ in bad_sounds(console.folder / "sound.wav"):
        console.send(0.3)
    console.send(DURATION + 1.5)
    console.end()
    runs = heard(recording.read_bytes())
    print("heard, in hertz and seconds:", *runs)
    (first, first_length), (second, second_length) = TONES
    require([tone for tone, _ in runs] == [first, second] * 3, "these are not the tones of three alerts")
    lengths = [seconds for _, seconds in runs]
    require(all(abs(length - first_length) <= 0.06 for length in lengths[::2]), "a first tone has the wrong length")
    require(all(abs(length - second_length) <= 0.1 for length in lengths[3::2]), "a second tone has the wrong length")
    require(lengths[1] <= second_length - 0.5, "the second alert did not cut the first one short")


def check_silence(cleanup, folder, server):
    console = Console(cleanup, folder, server)
    console.send(0.3)
    console.send(1)
    seconds = console.end()
    print(f"{folder.name}: silent, both notifications were kept, ending took {seconds:.1f} s")
    require(seconds <= 5, "the sound server delayed the end of the console")


def main():
    with tempfile.TemporaryDirectory() as name, contextlib.ExitStack() as cleanup, socket.socket(socket.AF_UNIX) as deaf:
        folder = pathlib.Path(name)
        os.environ.update(HOME=name, XDG_RUNTIME_DIR=name)
        os.environ.pop("DISPLAY", None)
        check_hearing(cleanup, folder)
        check_silence(cleanup, folder / "no-server", f"unix:{folder}/nobody")
        deaf.bind(f"{folder}/deaf")
        deaf.listen()
        check_silence(cleanup, folder / "hung-server", f"unix:{folder}/deaf")


main()
