# SPDX-License-Identifier: GPL-3.0-or-later
"""The music for a break: slow chords that breathe, bells and a flute above them, a harp beneath.

One bar is one calm breath of ten seconds, eight beats long. Everything stands in D major; the
melody leaves out its fourth and its seventh, so that any two notes may ring into each other. The
piece starts from silence on the chord on which it ends, so it can be repeated without a seam.
"""

import numpy as np

from synthesis.tones import RATE, band, canvas, faded, noise, place, plucked, room, struck, time

BEAT = 1.25
BAR = 8 * BEAT

NAMES = {"D": 2, "E": 4, "F": 6, "G": 7, "A": 9, "B": 11, "C": 1}  # F and C are sharp.

# A bass note and the voices above it, led in small steps.
HOME = ("D2", "D3 A3 E4 F4")
FALL = ("B1", "D3 A3 D4 F4")
OPEN = ("G1", "D3 B3 D4 A4")
LIFT = ("A1", "E3 B3 D4 A4")
HOVER = ("F2", "E3 A3 C5 A4")
SHADE = ("E2", "E3 B3 D4 G4")
CHORDS = (HOME, OPEN, HOME, FALL, OPEN, LIFT,
          HOME, HOVER, OPEN, SHADE,
          FALL, SHADE, OPEN, LIFT, FALL, HOVER, OPEN, LIFT,
          HOME, OPEN, HOME)
END = len(CHORDS) * BAR + 4  # What still rings has until here.

# The melody of the bells, bar by bar: beat and note.
BELLS = {
    1: "4 A5 6 F5",
    2: "0 F5 3 E5 4 D5",
    3: "0 F5 2 A5 5 B5",
    4: "0 A5 4 F5 6 E5",
    5: "0 E5 3 D5 4 E5",
    6: "0 F5 3 E5 4 D5 6 A4",
    7: "1 A5 4 F5",
    8: "0 B5 2 A5 5 D6",
    9: "0 B5 4 A5 6 E5",
    10: "0 F5",
    11: "4 B5",
    12: "0 A5 6 D6",
    13: "2 B5 4 A5",
    14: "0 F6 3 E6 4 D6",
    15: "0 E6 2 D6 5 A5",
    16: "0 B5 3 A5 4 F5 6 D5",
    17: "1 E5 4 A5",
    18: "0 F5 3 E5 4 D5",
    19: "0 A5 4 F5",
    20: "0 D6",
}

# The flute in the middle of the piece: beat, note and how many beats it is held.
FLUTE = {
    10: "0 F4 3 3 E4 1.5 4.5 D4 3.5",
    11: "0 E4 4 4 B4 4",
    12: "0 A4 3 3 B4 2 5 D5 3",
    13: "0 B4 4 4 A4 4",
    14: "0 D5 3 3 F5 1.5 4.5 E5 3.5",
    15: "0 A4 5 5 B4 3",
    16: "0 D5 3 3 B4 2 5 A4 3",
    17: "0 E4 7",
}

HARP_BARS = (*range(6, 10), *range(14, 19))
BELL_BODY = [(1.0, 1.0, 1.0), (1.0017, 0.5, 0.95), (2.0, 0.22, 0.7), (3.01, 0.07, 0.4), (4.2, 0.03, 0.25)]


def pitch(name):
    return 440.0 * 2 ** ((NAMES[name[0]] + 12 * int(name[1]) - 57) / 12)


def notes(line, width):
    """A line of a part as tuples of so many words, the note the second of them."""
    words = line.split()
    return [(float(words[i]), words[i + 1], *map(float, words[i + 2:i + width])) for i in range(0, len(words), width)]


def drift(t, seed, slowest=17.0):
    """A value that wanders slowly between 0 and 1."""
    chance = np.random.default_rng(seed)
    waves = sum(np.sin(2 * np.pi * (t / (slowest * share) + chance.uniform()))
                for share in (1.0, 0.62, 0.41))
    return 0.5 + waves / 6


def pad(hertz, length, seed):
    """A held voice on two sides, each harmonic of which comes and goes on its own."""
    t = time(length)
    sides = np.zeros((2, t.size))
    for number in range(1, 6):
        strength = number ** -1.7 * (0.35 + 0.65 * drift(t, seed + number))
        for side, detune in enumerate((-0.0011, 0.0011)):
            phase = 2 * np.pi * (hertz * number * (1 + detune) * t + 0.37 * number + 0.21 * side)
            sides[side] += strength * np.sin(phase)
    return faded(sides, 3.4, 4.6)


def flute(hertz, length):
    """A breath on a pipe: it starts straight and begins to sway when it is held."""
    t = time(length)
    sway = np.minimum(1.0, t / 1.8) ** 2
    phase = 2 * np.pi * np.cumsum(hertz * (1 + 0.0028 * sway * np.sin(2 * np.pi * 4.6 * t))) / RATE
    tone = np.sin(phase) + 0.16 * np.sin(2 * phase) + 0.05 * np.sin(3 * phase)
    air = band(noise(length, round(hertz)), 0.8 * hertz, 2.5 * hertz, 4) * 0.012
    return faded((tone + air) * (0.85 + 0.15 * np.sin(2 * np.pi * 4.6 * t) * sway), 0.35, 0.9)


def chords(sound):
    """The ground of the piece, fullest two thirds of the way through."""
    for bar, (bass, voices) in enumerate(CHORDS):
        at, fullness = BAR * bar, np.interp(bar, (0, 4, 15, 20), (0.6, 0.8, 1.0, 0.6))
        low = pitch(bass)
        t = time(BAR + 3)
        ground = np.sin(2 * np.pi * low * t) + 0.45 * np.sin(4 * np.pi * low * t) + 0.16 * np.sin(6 * np.pi * low * t)
        place(sound, faded(ground, 2.6, 4.0), at, 0.2 * fullness)
        for number, voice in enumerate(voices.split()):
            held = pad(pitch(voice), BAR + 4.4, 100 * bar + 10 * number)
            place(sound, np.flipud(held) if number % 2 else held, at, fullness * (0.13, 0.12, 0.1, 0.08)[number])


def shimmer(sound):
    """The upper voices again, two octaves up and hardly there, in the middle of the piece."""
    for bar in range(8, 19):
        strength = 0.009 * np.sin(np.pi * (bar - 7) / 12)
        for number, voice in enumerate(CHORDS[bar][1].split()[2:]):
            t = time(BAR + 4)
            glow = np.sin(2 * np.pi * 4 * pitch(voice) * t) * (0.3 + 0.7 * drift(t, bar * 7 + number, 5.0))
            place(sound, faded(glow, 4.0, 4.5), BAR * bar, strength, 0.7 - 1.4 * number)


def bells(sound):
    """Each bell is answered twice from the other side, quieter and later."""
    chance = np.random.default_rng(3)
    for bar, line in BELLS.items():
        for beat, name in notes(line, 2):
            at = BAR * bar + BEAT * beat + chance.uniform(0, 0.03)
            strength = 0.16 * chance.uniform(0.8, 1.0) * (1.15 if beat == 0 else 1.0)
            bell = struck(pitch(name), BELL_BODY, 1.5, 6.0, attack=0.009)
            side = 0.45 * np.sin(1.7 * bar + beat)
            for echo, level in enumerate((1.0, 0.3, 0.12)):
                place(sound, bell, at + 0.75 * BEAT * echo, strength * level, side * (-1.4) ** echo)


def harp(sound):
    chance = np.random.default_rng(5)
    for bar in HARP_BARS:
        bass, voices = CHORDS[bar]
        low, *rest = [pitch(voice) for voice in voices.split()]
        figure = (pitch(bass) * 2, low, rest[0], rest[1], rest[2], rest[1], rest[0], low) * 2
        for number, hertz in enumerate(figure):
            at = BAR * bar + 0.5 * BEAT * number + chance.uniform(0, 0.025)
            swell = 0.45 + 0.55 * np.sin(np.pi * (number + 0.5) / len(figure))
            place(sound, plucked(hertz, 0.9, 3.2, brightness=0.55), at, 0.1 * swell * chance.uniform(0.85, 1.0),
                  0.55 * np.sin(hertz / 60))


def flutes(sound):
    for bar, line in FLUTE.items():
        for beat, name, beats in notes(line, 3):
            place(sound, flute(pitch(name), BEAT * beats + 0.7), BAR * bar + BEAT * beat, 0.085, -0.2)


def breath(sound):
    """Air that rises and falls once a bar, as if the room were breathing too."""
    t = time(END)
    swell = np.sin(np.pi * (t % BAR) / BAR) ** 2
    for side in (-0.8, 0.8):
        air = band(noise(END, 71 + round(side)), 250, 1100, 3)
        place(sound, air * swell, 0, 0.006, side)


def respito():
    sound = canvas(END, 2)
    for part in (chords, shimmer, bells, harp, flutes, breath):
        part(sound)
    return faded(room(sound, 3.6, 0.55, 61)[:, :round(END * RATE)], 2.0, 7.0)


TRACKS = {"Respito": respito}
