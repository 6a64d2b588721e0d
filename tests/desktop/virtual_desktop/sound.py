# SPDX-License-Identifier: GPL-3.0-or-later
"""A sound server with a silent loudspeaker that can be listened to, and a virtual microphone."""

from __future__ import annotations

import subprocess
import time
import warnings
from pathlib import Path
from typing import Mapping

import numpy as np
from numpy.typing import NDArray

from .processes import Processes, find_program, wait_for

with warnings.catch_warnings():
    warnings.simplefilter("ignore", DeprecationWarning)
    import aifc

RATE = 48000
Samples = NDArray[np.float32]

_RIG = """.fail
load-module module-native-protocol-unix socket={socket} auth-anonymous=1
load-module module-null-sink sink_name=out rate={rate} channels=2
load-module module-null-sink sink_name=micfeed rate={rate} channels=1 channel_map=mono
load-module module-remap-source source_name=mic master=micfeed.monitor channels=1 \
channel_map=mono master_channel_map=mono
set-default-sink out
set-default-source mic
"""

# A null sink that nobody listens to closely works in blocks of 2 s. Listeners that ask for a low
# latency keep it precise, once the blocks it had begun have run out.
_SETTLING_SECONDS = 4.0


class SoundServer:
    """PulseAudio with the sink "out" and the source "mic"."""

    def __init__(
        self, processes: Processes, folder: Path, env: Mapping[str, str], name: str = "sound"
    ) -> None:
        self._processes = processes
        socket = folder / f"{name}.socket"
        self.address = f"unix:{socket}"
        state = folder / f"{name}.state"
        state.mkdir()
        self._env = {
            **env,
            "PULSE_SERVER": self.address,
            "PULSE_RUNTIME_PATH": str(state),
            "PULSE_STATE_PATH": str(state),
            # On a bus it would claim a name that a second server cannot have.
            "DBUS_SESSION_BUS_ADDRESS": "disabled:",
        }
        self._name = name
        script = folder / f"{name}.pa"
        script.write_text(_RIG.format(socket=socket, rate=RATE), encoding="utf-8")
        command = [find_program("pulseaudio"), "-n", "-F", str(script), "--daemonize=no"]
        command += ["--use-pid-file=no", "--exit-idle-time=-1"]
        command += ["--realtime=no", "--high-priority=no"]
        self._server = processes.start(command, self._env, name)
        wait_for("the sound server", self._answers)
        for source in ("out.monitor", "mic"):
            self._listen(source, Path("/dev/null"))
        self._settled_at = time.monotonic() + _SETTLING_SECONDS

    def _answers(self) -> bool:
        pactl = [find_program("pactl"), "info"]
        answer = subprocess.run(pactl, env=self._env, capture_output=True, check=False)
        return answer.returncode == 0

    def _listen(self, source: str, output: Path) -> subprocess.Popen[bytes]:
        command = [find_program("parec"), "--raw", "--latency-msec=5", "--format=float32le"]
        command += [f"--rate={RATE}", "--channels=1", f"--device={source}"]
        return self._processes.start(command, self._env, f"{self._name}-listener", stdout=output)

    def wait_until_settled(self) -> None:
        """Waits until positions on the sink are true to a few milliseconds."""
        time.sleep(max(0.0, self._settled_at - time.monotonic()))

    def record(self, path: Path) -> Recording:
        """Records what the loudspeaker plays from now on."""
        self.wait_until_settled()
        process = self._listen("out.monitor", path)
        wait_for("the recording", lambda: path.stat().st_size)
        return Recording(self._processes, process, path)

    def play(self, path: Path, sink: str = "out") -> None:
        """Plays a file and waits for its end; sink "micfeed" speaks into the microphone."""
        command = [find_program("paplay"), f"--device={sink}", str(path)]
        subprocess.run(command, env=self._env, check=True, timeout=60)

    def kill(self) -> None:
        """The server crashes."""
        self._server.kill()
        self._server.wait()


class Recording:
    """Sound being recorded. Times are positions in the recording, in seconds, not of the clock."""

    def __init__(
        self, processes: Processes, process: subprocess.Popen[bytes], path: Path
    ) -> None:
        self._processes, self._process, self._path = processes, process, path

    def samples(self) -> Samples:
        """What has been recorded up to now."""
        data = self._path.read_bytes()
        return np.frombuffer(data[: len(data) // 4 * 4], np.float32)

    def is_silent(self, since: float = 0.0) -> bool:
        samples = self.samples()[int(since * RATE) :]
        return samples.size == 0 or float(np.abs(samples).max()) < 1e-4

    def length(self) -> float:
        return self.samples().size / RATE

    def starts_of(self, sound: Samples) -> list[float]:
        """Where plays of the sound begin in the recording, to a fraction of a millisecond."""
        samples, pattern = self.samples(), sound[: RATE // 5]
        if samples.size < pattern.size:
            return []
        return find_starts(samples, pattern, apart=sound.size // 2)

    def stop(self) -> None:
        self._processes.stop(self._process)


def find_starts(samples: Samples, pattern: Samples, apart: int) -> list[float]:
    """The positions, in seconds, at which the pattern is heard at half its loudness or more.

    By cross-correlation, best match first; two plays are at least `apart` samples apart, so that
    what a tone has in common with itself a few periods later does not count.
    """
    size = 1 << (samples.size + pattern.size).bit_length()
    spectrum = np.fft.rfft(samples, size) * np.conj(np.fft.rfft(pattern, size))
    match = np.fft.irfft(spectrum, size)[: samples.size - pattern.size + 1]
    match /= float((pattern.astype(np.float64) ** 2).sum())
    starts = []
    while match[best := int(np.argmax(match))] > 0.5:
        starts.append(best / RATE)
        match[max(best - apart, 0) : best + apart] = 0.0
    return sorted(starts)


def read_aiff(path: Path) -> Samples:
    """A PCM AIFF file, mixed down to one channel at the sink's rate."""
    with aifc.open(str(path), "rb") as file:
        frames = file.readframes(file.getnframes())
        width, channels, rate = file.getsampwidth(), file.getnchannels(), file.getframerate()
    if width != 2:
        raise ValueError(f"{path} has {8 * width} bits a sample; only 16 are read here")
    wave = np.frombuffer(frames, ">i2").reshape(-1, channels).mean(axis=1) / 32768
    seconds = wave.size / rate
    positions = np.arange(int(seconds * RATE)) / RATE
    return np.interp(positions, np.arange(wave.size) / rate, wave).astype(np.float32)


def write_chirp(path: Path, seconds: float) -> None:
    """An AIFF file with a tone that rises all the time, so that no part of it is like another."""
    time_axis = np.arange(int(seconds * RATE)) / RATE
    wave = 0.3 * np.sin(2 * np.pi * (300 + 100 * time_axis) * time_axis)
    with aifc.open(str(path), "wb") as file:
        file.setnchannels(1)
        file.setsampwidth(2)
        file.setframerate(RATE)
        file.writeframes((wave * 32767).astype(">i2").tobytes())
