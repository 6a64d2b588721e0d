# SPDX-License-Identifier: GPL-3.0-or-later
"""The building blocks of every sound: struck bodies, glides, noise, room, and placing them in time.

A sound is a float array, one row a channel, full scale 1.0, at RATE samples a second. Times are
seconds, pitches hertz.
"""

import numpy as np

RATE = 44100
TOP = 9500  # Partials above this are left out: they only hiss, and a click could hide among them.

# Partials of struck bodies as (ratio to the pitch, strength, ring time as a share of the first's).
BELL = [(0.5, 0.18, 1.4), (1.0, 1.0, 1.0), (1.0023, 0.55, 0.9), (2.0, 0.34, 0.6), (2.0051, 0.2, 0.5),
        (3.01, 0.16, 0.35), (4.17, 0.1, 0.22), (5.43, 0.06, 0.14)]
BAR_OF_WOOD = [(1.0, 1.0, 1.0), (3.93, 0.32, 0.32), (9.2, 0.09, 0.1)]
BAR_OF_METAL = [(1.0, 1.0, 1.0), (2.756, 0.42, 0.5), (5.404, 0.2, 0.25), (8.933, 0.06, 0.12)]
BOWL = [(1.0, 1.0, 1.0), (1.0042, 0.8, 1.0), (2.71, 0.6, 0.7), (2.7195, 0.42, 0.7), (5.12, 0.3, 0.4),
        (8.19, 0.12, 0.2)]
CUP = [(1.0, 1.0, 1.0), (1.51, 0.7, 0.8), (2.32, 0.55, 0.6), (2.345, 0.4, 0.6), (3.47, 0.24, 0.4)]


def time(length):
    return np.arange(round(length * RATE)) / RATE


def ease(shape, share):
    """A raised-cosine step from 0 to 1 over the first share (in samples) of an array's length."""
    step = np.ones(shape)
    step[:share] = 0.5 - 0.5 * np.cos(np.pi * np.arange(share) / share)
    return step


def faded(sound, rise=0.0, fall=0.0):
    """The sound with smooth ends: nothing starts or stops with a jump."""
    length = sound.shape[-1]
    into = ease(length, min(length, max(1, round(rise * RATE))))
    out = ease(length, min(length, max(1, round(fall * RATE))))[::-1]
    return sound * into * out


def struck(pitch, partials, ring, length, attack=0.003):
    """A body that is hit once: each partial dies away on its own."""
    t = time(length)
    body = np.zeros_like(t)
    for number, (ratio, strength, share) in enumerate(partials):
        if pitch * ratio < TOP:
            # Partials do not start in step; a start in step is a needle of a peak.
            body += strength * np.exp(-t / (ring * share)) * np.sin(2 * np.pi * pitch * ratio * t + 1.9 * number)
    return faded(body, attack, 0.2 * length)


def plucked(pitch, ring, length, brightness=0.8):
    """A string: harmonics a little sharp, the high ones gone first."""
    count = min(24, int(TOP / pitch))
    partials = [(n * np.sqrt(1 + 0.0002 * n * n), brightness ** n * abs(np.sin(np.pi * n * 0.22)), n ** -0.75)
                for n in range(1, count + 1)]
    return struck(pitch, partials, ring, length, attack=0.002)


def glide(pitches, harmonics=(1.0,)):
    """A tone that follows an array of pitches, one a sample."""
    phase = 2 * np.pi * np.cumsum(pitches) / RATE
    return sum(strength * np.sin(number * phase) for number, strength in enumerate(harmonics, start=1))


def noise(length, seed):
    return np.random.default_rng(seed).standard_normal(round(length * RATE))


def transform_size(samples):
    """A size from the next power of two on, which transforms fast."""
    return 1 << (samples - 1).bit_length()


def band(sound, low, high, steepness=8):
    """The part of a sound between two pitches, with soft edges."""
    size = transform_size(sound.shape[-1] + RATE // 10)
    pitch = np.maximum(np.fft.rfftfreq(size, 1 / RATE), 1.0)
    gain = 1 / (1 + (low / pitch) ** steepness) / (1 + (pitch / high) ** steepness)
    return np.fft.irfft(np.fft.rfft(sound, size) * gain, size)[..., :sound.shape[-1]]


def room(sound, ring, share, seed):
    """The sound in a room that rings for a while; gives two channels whose echoes differ."""
    tail = 1.6 * ring
    size = sound.shape[-1] + round(tail * RATE)
    dry = np.zeros((2, size))
    dry[:, :sound.shape[-1]] = sound
    wet = np.empty_like(dry)
    for channel in range(2):
        echo = band(noise(tail, seed + channel), 200, 5000) * np.exp(-3.5 * time(tail) / ring)
        echo = faded(echo, 0.012, 0.3 * tail)
        echo /= np.sqrt(np.sum(echo ** 2))
        span = transform_size(size + echo.size)
        wet[channel] = np.fft.irfft(np.fft.rfft(dry[channel], span) * np.fft.rfft(echo, span), span)[:size]
    return dry + share * wet


def canvas(length, channels=1):
    return np.zeros((channels, round(length * RATE)))


def place(onto, sound, at, strength=1.0, side=0.0):
    """Adds a sound at a moment, side from -1 (left) to 1 (right); what hangs over the end is cut."""
    start = round(at * RATE)
    piece = np.atleast_2d(sound)[:, :max(0, onto.shape[-1] - start)]
    gains = np.array([[1.0]]) if len(onto) == 1 else np.sqrt([[1 - side], [1 + side]])
    onto[:, start:start + piece.shape[-1]] += strength * gains * piece
