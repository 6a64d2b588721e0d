# SPDX-License-Identifier: GPL-3.0-or-later
"""A sound server with a silent loudspeaker that can be listened to, and a microphone to speak to."""

from __future__ import annotations

import subprocess
from pathlib import Path
from typing import Mapping

import numpy as np
from numpy.typing import NDArray

from .processes import Processes, find_program, wait_for

RATE = 48000
Samples = NDArray[np.float32]

_RIG = """.fail
load-module module-native-protocol-unix socket={socket} auth-anonymous=1
load-module module-null-sink sink_name=out rate={rate} channels=2
load-module module-null-sink sink_name=micfeed rate={rate} channels=1
load-module module-remap-source source_name=mic master=micfeed.monitor
set-default-sink out
set-default-source mic
"""


class SoundServer:
    """PulseAudio with the sink "out", and the source "mic", which hears the sink "micfeed"."""

    def __init__(self, processes: Processes, folder: Path, env: Mapping[str, str],
                 name: str = "sound") -> None:
        self._processes, self._name = processes, name
        socket, state, script = (folder / f"{name}.{kind}" for kind in ("socket", "state", "pa"))
        state.mkdir()
        script.write_text(_RIG.format(socket=socket, rate=RATE), encoding="utf-8")
        self.address = f"unix:{socket}"
        # On a bus it would claim a name that a second server cannot have.
        self.env = {**env, "PULSE_SERVER": self.address, "PULSE_RUNTIME_PATH": str(state),
                    "PULSE_STATE_PATH": str(state), "DBUS_SESSION_BUS_ADDRESS": "disabled:"}
        self._server = processes.start(
            [find_program("pulseaudio"), "-n", "-F", str(script), "--daemonize=no",
             "--use-pid-file=no", "--exit-idle-time=-1", "--realtime=no", "--high-priority=no"],
            self.env, name)
        wait_for("the sound server", lambda: self._pactl("info"))
        # A null sink that nobody listens to closely works in blocks of 2 s. With a listener that
        # asks for a low latency it is precise as soon as it begins anew.
        for source in ("out.monitor", "mic"):
            self._listen(Path("/dev/null"), source)
        wait_for("the listeners", lambda: self._pactl("list", "short", "source-outputs").count(
            b"protocol-native") == 2)
        for sink in ("out", "micfeed"):
            for suspended in ("1", "0"):
                self._pactl("suspend-sink", sink, suspended)

    def _pactl(self, *arguments: str) -> bytes:
        return subprocess.run([find_program("pactl"), *arguments], env=self.env,
                              capture_output=True, check=False).stdout

    def _listen(self, output: Path, source: str = "out.monitor") -> subprocess.Popen[bytes]:
        return self._processes.start(
            [find_program("parec"), "--raw", "--latency-msec=5", "--format=float32le",
             f"--rate={RATE}", "--channels=1", f"--device={source}"],
            self.env, f"{self._name}-listener", stdout=output)

    def record(self, path: Path) -> Recording:
        """Records what the loudspeaker plays from now on."""
        process = self._listen(path)
        wait_for("the recording", lambda: path.stat().st_size)
        return Recording(self._processes, process, path)

    def kill(self) -> None:
        """The server crashes."""
        self._server.kill()
        self._server.wait()


class Recording:
    """Sound being recorded. Times are positions in the recording, in seconds, not of the clock."""

    def __init__(self, processes: Processes, process: subprocess.Popen[bytes], path: Path) -> None:
        self._processes, self._process, self._path = processes, process, path

    def samples(self) -> Samples:
        """What has been recorded up to now."""
        data = self._path.read_bytes()
        return np.frombuffer(data[: len(data) // 4 * 4], np.float32)

    def starts_of(self, sound: Samples) -> list[float]:
        """Where plays of the sound begin in the recording, to a fraction of a millisecond."""
        samples, pattern = self.samples(), sound[: RATE // 5]
        if samples.size < pattern.size:
            return []
        # By cross-correlation, best match first, from half its loudness on; what a tone has in
        # common with itself a few periods later does not count as another play.
        size = 1 << (samples.size + pattern.size).bit_length()
        spectrum = np.fft.rfft(samples, size) * np.conj(np.fft.rfft(pattern, size))
        match = np.fft.irfft(spectrum, size)[: samples.size - pattern.size + 1]
        match /= float((pattern.astype(np.float64) ** 2).sum())
        starts, apart = [], sound.size // 2
        while match[best := int(np.argmax(match))] > 0.5:
            starts.append(best / RATE)
            match[max(best - apart, 0) : best + apart] = 0.0
        return sorted(starts)

    def stop(self) -> None:
        self._processes.stop(self._process)


def read_aiff(path: Path) -> Samples:
    """Mixed down to one channel at the sink's rate."""
    command = [find_program("ffmpeg"), "-loglevel", "error", "-i", str(path)]
    command += ["-f", "f32le", "-ac", "1", "-ar", str(RATE), "-"]
    output = subprocess.run(command, stdout=subprocess.PIPE, check=True).stdout
    return np.frombuffer(output, np.float32)
