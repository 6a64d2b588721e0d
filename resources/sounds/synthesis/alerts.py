# SPDX-License-Identifier: GPL-3.0-or-later
"""The short family: each is played three times end to end, so each carries its own pause."""

import numpy as np

from synthesis.tones import (BAR_OF_METAL, BAR_OF_WOOD, BELL, BOWL, CUP, band, canvas, faded, glide, noise, place,
                             plucked, struck, time)


def ping():
    """One clear strike of a small bell, the hit itself a soft breath of brightness."""
    sound = canvas(1.5)
    place(sound, struck(1318.5, BELL, 0.42, 1.42), 0.004)
    place(sound, struck(2637.0, BAR_OF_METAL[:2], 0.07, 0.3, attack=0.002), 0.004, 0.25)
    return sound


def basso():
    """Low and round; the upper partials let small loudspeakers tell it too."""
    sound = canvas(1.1)
    t = time(1.0)
    pitches = 98.0 * (1 + 0.06 * np.exp(-t / 0.03))
    tone = glide(pitches, (1.0, 0.85, 0.6, 0.42, 0.22, 0.12)) * np.exp(-t / 0.3)
    place(sound, faded(tone, 0.012, 0.35), 0.004)
    return sound


def brook():
    """Water over stones: quick drops that rise as they close, each at its own height."""
    sound = canvas(1.6)
    chance = np.random.default_rng(41)
    for number, at in enumerate(np.cumsum(chance.uniform(0.05, 0.11, 15))):
        t = time(chance.uniform(0.07, 0.12))
        drop = glide(chance.uniform(620, 1250) * (1 + 5.5 * t), (1.0, 0.12)) * np.exp(-t / 0.035)
        place(sound, faded(drop, 0.006, 0.03), at - 0.09, 0.6 + 0.4 * np.sin(number * 1.3))
    return sound


def copper():
    """A bowl of metal struck with felt, beating slowly as it dies away."""
    sound = canvas(1.9)
    place(sound, struck(523.3, BOWL, 0.62, 1.85, attack=0.016), 0.004)
    return sound


def glimmer():
    """Five small bars, running up."""
    sound = canvas(1.4)
    for number, pitch in enumerate((1046.5, 1318.5, 1568.0, 2093.0, 2637.0)):
        place(sound, struck(pitch, BAR_OF_METAL[:3], 0.2, 0.85), 0.004 + 0.085 * number, 0.8 + 0.06 * number)
    return sound


def harbour():
    """Two far horns, the second lower, as if across the water."""
    sound = canvas(1.8)
    for at, pitch, length in ((0.004, 233.1, 0.62), (0.62, 174.6, 1.12)):
        t = time(length)
        swell = glide(pitch * (1 - 0.012 * np.exp(-t / 0.05)), (1.0, 0.7, 0.55, 0.36, 0.22, 0.12, 0.06))
        place(sound, faded(swell, 0.07, 0.55 * length), at)
    return sound


def knock():
    """Knuckles on a wooden door: two and two."""
    sound = canvas(1.2)
    for number, at in enumerate((0.004, 0.17, 0.52, 0.69)):
        hit = struck(392.0 if number % 2 else 440.0, BAR_OF_WOOD, 0.075, 0.36, attack=0.002)
        place(sound, hit, at, 1.0 if number % 2 == 0 else 0.85)
        place(sound, faded(band(noise(0.05, number), 300, 2500), 0.002, 0.045), at, 0.12)
    return sound


def lantern():
    """Two warm tones, a falling third, each with a bright edge that melts."""
    sound = canvas(1.6)
    for at, pitch in ((0.004, 880.0), (0.34, 698.5)):
        t = time(1.2)
        edge = 1.4 * np.exp(-t / 0.16) * np.sin(2 * np.pi * pitch * 2 * t)
        tone = np.sin(2 * np.pi * pitch * t + edge) * np.exp(-t / 0.34)
        place(sound, faded(tone, 0.005, 0.4), at)
    return sound


def quill():
    """An open fifth and its octave on three strings, touched one after the other."""
    sound = canvas(1.5)
    for number, pitch in enumerate((293.7, 440.0, 587.3)):
        place(sound, plucked(pitch, 0.5, 1.35), 0.004 + 0.06 * number)
    return sound


def teacup():
    """A spoon against a cup, twice, lightly."""
    sound = canvas(1.0)
    for at, strength in ((0.004, 1.0), (0.15, 0.7)):
        place(sound, struck(1864.7, CUP, 0.12, 0.75, attack=0.002), at, strength)
    return sound


def thimble():
    """Three dry taps, the last one higher."""
    sound = canvas(0.9)
    for at, pitch in ((0.004, 1174.7), (0.13, 1174.7), (0.26, 1760.0)):
        place(sound, struck(pitch, BAR_OF_WOOD, 0.055, 0.45, attack=0.002), at)
    return sound


def wren():
    """A small bird: a trill that bends down, and an answer that bends up."""
    sound = canvas(1.3)
    t = time(0.42)
    trill = glide(3700 - 1500 * t + 420 * np.sin(2 * np.pi * 26 * t)) * (0.6 + 0.4 * np.cos(2 * np.pi * 26 * t))
    place(sound, faded(trill, 0.03, 0.12), 0.004)
    for at in (0.52, 0.68):
        t = time(0.11)
        place(sound, faded(glide(2500 + 1700 * (t / 0.11) ** 2, (1.0, 0.15)), 0.02, 0.05), at)
    return sound


ALERTS = {"Basso": basso, "Brook": brook, "Copper": copper, "Glimmer": glimmer, "Harbour": harbour, "Knock": knock,
          "Lantern": lantern, "Ping": ping, "Quill": quill, "Teacup": teacup, "Thimble": thimble, "Wren": wren}
