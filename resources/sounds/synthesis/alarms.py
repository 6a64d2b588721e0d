# SPDX-License-Identifier: GPL-3.0-or-later
"""The long sounds, for waking up. Each says something within its first two seconds and grows
or goes on from there, so that it works whether it is heard for ten seconds or to its end."""

import numpy as np

from synthesis.tones import (BAR_OF_METAL, BAR_OF_WOOD, BELL, RATE, band, canvas, faded, glide, noise, place, room,
                             struck, time)


def note(steps):
    """The pitch so many half tones above the A of 220 Hz."""
    return 220.0 * 2 ** (steps / 12)


def growth(count, start):
    """Strengths that rise evenly to the ear from start to full."""
    return np.geomspace(start, 1.0, count)


def first_light():
    """Slow chords like a horizon getting brighter, bells above them more and more often."""
    sound = canvas(34, 2)
    chords = ((-9, 3, 7, 10), (-14, 2, 5, 10), (-12, 0, 3, 7), (-16, -4, 3, 8))
    for number, strength in enumerate(growth(8, 0.4)):
        t = time(5.6)
        for voice, step in enumerate(chords[number % 4]):
            for detune in (-0.0015, 0.0015):
                brightness = strength * np.array((0.4, 0.25, 0.12))
                pad = glide(note(step) * (1 + detune) + 0 * t, (1.0, *brightness))
                side = (voice - 1.5) / 2 * np.sign(detune)
                place(sound, faded(pad, 1.6, 2.4), 0.02 + 3.8 * number, 0.16 * strength, side)
    melody = (15, 22, 19, 27, 22, 15, 26, 22)
    for number, strength in enumerate(growth(34, 0.45)):
        at = 0.6 + 3.8 * 8 * (number / 34) ** 0.85
        place(sound, struck(note(melody[number % 8] + 12), BAR_OF_METAL[:2], 0.55, 1.8), at, 0.3 * strength,
              0.6 * np.sin(number * 2.1))
    return faded(room(sound, 1.8, 0.5, 11)[:, :34 * RATE], 0.05, 2.0)


def hedge_birds():
    """Three birds in a garden: one trills, one calls in pairs, one answers low."""
    sound = canvas(27, 2)
    chance = np.random.default_rng(7)
    for turn in range(13):
        at, strength = 0.1 + 1.95 * turn, min(1.0, 0.45 + 0.07 * turn)
        for number in range(4 + turn % 3):
            t = time(0.1)
            chirp = glide(2900 + 300 * (turn % 4) + 1500 * np.sin(np.pi * t / 0.2), (1.0, 0.1))
            place(sound, faded(chirp, 0.02, 0.05), at + 0.14 * number, 0.5 * strength, -0.6)
        for number in range(2):
            t = time(0.22)
            call = glide(2350 - 2600 * t + 40 * np.sin(2 * np.pi * 31 * t), (1.0, 0.2))
            place(sound, faded(call, 0.03, 0.1), at + 0.85 + 0.3 * number, 0.5 * strength, 0.5)
        if turn % 2:
            t = time(0.5)
            answer = glide(1150 + 170 * np.sin(2 * np.pi * 4 * t) * t, (1.0, 0.25, 0.08))
            place(sound, faded(answer, 0.08, 0.2), at + 1.35 + chance.uniform(0, 0.1), 0.4 * strength, 0.1)
    return faded(room(sound, 0.9, 0.35, 21)[:, :27 * RATE], 0.01, 0.8)


def marimba_walk():
    """A walking figure on bars of wood over a bass note, two bars to a turn."""
    sound = canvas(24, 2)
    figure = (3, 10, 15, 10, 12, 10, 7, 10, 5, 8, 12, 8, 10, 8, 5, 2)
    beat = 0.2
    for number in range(int(22 / beat)):
        turn = number // 16
        if (number % 16) % 8 == 7 and turn % 2 == 0:
            continue
        step = figure[number % 16] + (0, 0, -2, 0, 3, 3, -2)[turn % 7]
        accent = 1.0 if number % 4 == 0 else 0.7
        place(sound, struck(note(step), BAR_OF_WOOD, 0.2, 0.9, attack=0.002), 0.01 + beat * number, accent,
              0.5 * np.sin(0.7 * step))
        if number % 8 == 0:
            place(sound, struck(note(figure[number % 16] - 12), BAR_OF_WOOD[:2], 0.45, 1.4), 0.01 + beat * number, 0.9)
    return faded(room(sound, 0.7, 0.22, 31)[:, :24 * RATE], 0.0, 1.2)


def old_bell():
    """Two brass domes and a hammer between them, wound up, running down at the end."""
    sound = canvas(18, 2)
    at, number = 0.01, 0
    while at < 16.6:
        gap = 0.052 + 0.05 * max(0.0, (at - 13.5) / 3.1) ** 2
        pitch, side = ((1661.2, -0.35), (1864.7, 0.35))[number % 2]
        strength = min(1.0, 0.55 + at / 3) * (1.0 - 0.6 * max(0.0, (at - 13.5) / 3.1))
        place(sound, struck(pitch, BELL[1:], 0.3, 0.9, attack=0.002), at, strength, side)
        place(sound, faded(band(noise(0.012, number), 900, 5000), 0.002, 0.009), at, 0.1 * strength, side)
        at, number = at + gap, number + 1
    return faded(room(sound, 0.5, 0.15, 41)[:, :18 * RATE], 0.0, 1.0)


def quartz_watch():
    """The small loudspeaker of a watch: two beeps, then four, then a steady hurry."""
    sound = canvas(21, 2)

    def beep(at, strength):
        t = time(0.065)
        tone = glide(2048 + 0 * t, (1.0, 0.0, 0.33, 0.0, 0.12))
        place(sound, faded(tone, 0.003, 0.006), at, strength)

    for second in range(20):
        beeps = 2 if second < 6 else 4
        for number in range(beeps):
            beep(0.01 + second + 0.125 * number, 0.7 + 0.3 * min(1, second / 8))
        if second >= 13:
            for number in range(beeps):
                beep(0.51 + second + 0.125 * number, 1.0)
    return faded(sound, 0.0, 0.1)


def soft_pulse():
    """A round tone that breathes, a little faster and clearer each time, with its fifth above."""
    sound = canvas(30, 2)
    at, number = 0.02, 0
    while at < 27.5:
        share = at / 27.5
        t = time(1.1)
        tone = glide(note((7, 7, 10, 5)[number // 4 % 4]) + 0 * t, (1.0, 0.25 + 0.35 * share, 0.1 + 0.2 * share))
        place(sound, faded(tone, 0.16, 0.75), at, 0.55 + 0.45 * share, -0.25)
        shiver = 1 + 0.003 * np.sin(2 * np.pi * 5 * t)
        above = glide(note((14, 14, 17, 12)[number // 4 % 4]) * shiver, (1.0, 0.3 * share))
        place(sound, faded(above, 0.3, 0.7), at + 0.12, 0.3 + 0.4 * share, 0.3)
        at, number = at + 1.25 - 0.5 * share, number + 1
    return faded(room(sound, 1.2, 0.3, 51)[:, :30 * RATE], 0.02, 1.5)


ALARMS = {"First Light": first_light, "Hedge Birds": hedge_birds, "Marimba Walk": marimba_walk, "Old Bell": old_bell,
          "Quartz Watch": quartz_watch, "Soft Pulse": soft_pulse}
