# SPDX-License-Identifier: GPL-3.0-or-later
"""Sound files in and out: AIFF with 16 bits by hand, Ogg Vorbis and MP3 through ffmpeg."""

import struct
import subprocess

import numpy as np

from synthesis.tones import RATE

RATE_AS_EXTENDED = struct.pack(">HQ", 16383 + 15, RATE << 48)  # AIFF writes its rate with 80 bits.


def frames(sound):
    return np.round(np.clip(sound, -1.0, 1.0) * 32767).astype(np.int16).T


def chunk(name, body):
    return name + struct.pack(">I", len(body)) + body + b"\0" * (len(body) % 2)


def write_aiff(path, sound):
    data = frames(sound)
    common = chunk(b"COMM", struct.pack(">hIh", data.shape[1], data.shape[0], 16) + RATE_AS_EXTENDED)
    samples = chunk(b"SSND", struct.pack(">II", 0, 0) + data.astype(">i2").tobytes())
    path.write_bytes(chunk(b"FORM", b"AIFF" + common + samples))


def encode(path, sound, *codec):
    data = frames(sound)
    subprocess.run(
        ["ffmpeg", "-loglevel", "error", "-y", "-f", "s16le", "-ar", str(RATE), "-ac", str(data.shape[1]), "-i", "-",
         "-fflags", "+bitexact", "-flags:a", "+bitexact", "-map_metadata", "-1", "-metadata", f"title={path.stem}",
         *codec, str(path)],
        input=data.astype("<i2").tobytes(), check=True)


def write_vorbis(path, sound):
    encode(path, sound, "-serial_offset", "1", "-c:a", "libvorbis", "-q:a", "3")


def write_mp3(path, sound):
    """As small as calm music allows."""
    encode(path, sound, "-c:a", "libmp3lame", "-abr", "1", "-b:a", "54k", "-compression_level", "0")


def read(path):
    """Any sound file as its channels; the file must have our rate."""
    probe = subprocess.run(
        ["ffprobe", "-loglevel", "error", "-show_entries", "stream=sample_rate,channels", "-of", "csv=p=0", str(path)],
        stdout=subprocess.PIPE, check=True, text=True)
    rate, channels = (int(word) for word in probe.stdout.strip().split(","))
    if rate != RATE:
        raise ValueError(f"{path}: {rate} samples a second instead of {RATE}")
    decoded = subprocess.run(["ffmpeg", "-loglevel", "error", "-i", str(path), "-f", "f32le", "-"],
                             stdout=subprocess.PIPE, check=True)
    return np.frombuffer(decoded.stdout, "<f4").reshape(-1, channels).T.astype(float)
