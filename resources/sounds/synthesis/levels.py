# SPDX-License-Identifier: GPL-3.0-or-later
"""What makes the family one: how loud a sound is to the ear, how high it peaks, whether it clicks."""

import numpy as np

from synthesis.tones import RATE, band, transform_size

# The weighting of ITU-R BS.1770 as two filters of second order: (gain, corner, quality) of the
# shelf that stands for the head, and of the low cut.
SHELF_GAIN, SHELF_CORNER, SHELF_QUALITY = 3.999843853973347, 1681.974450955533, 0.7071752369554196
CUT_CORNER, CUT_QUALITY = 38.13547087602444, 0.5003270373238773

CLICK_FLOOR = 12500  # Well above the pitches that sounds are made of: here only a jump in the wave shows.


def decibels(level):
    return 20 * np.log10(max(level, 1e-9))


def peak(sound):
    return decibels(np.max(np.abs(sound)))


def weighting(pitch):
    """The gain of the two filters at each pitch, from their analogue forms through the bilinear map."""
    s = 1j * np.tan(np.pi * pitch / RATE)
    k = np.tan(np.pi * SHELF_CORNER / RATE)
    high = 10 ** (SHELF_GAIN / 20)
    middle = high ** 0.4996667741545416
    shelf = (high * s ** 2 + middle * k / SHELF_QUALITY * s + k ** 2) / (s ** 2 + k / SHELF_QUALITY * s + k ** 2)
    k = np.tan(np.pi * CUT_CORNER / RATE)
    return np.abs(shelf * s ** 2 / (s ** 2 + k / CUT_QUALITY * s + k ** 2))


def loudness(sound, window):
    """LUFS of the loudest stretch of so many seconds. One channel counts as heard from both sides."""
    size = transform_size(sound.shape[-1] + round(window * RATE))
    pitch = np.minimum(np.fft.rfftfreq(size, 1 / RATE), 0.49999 * RATE)
    power = np.fft.irfft(np.fft.rfft(sound, size) * weighting(pitch), size) ** 2
    power = np.sum(power, axis=0) * (2 if len(sound) == 1 else 1)
    total = np.concatenate(([0.0], np.cumsum(power)))
    span = round(window * RATE)
    return -0.691 + 10 * np.log10(max(np.max(total[span:] - total[:-span]) / span, 1e-12))


def clicks(sound):
    """The highest level above the pitches that the sounds are made of, in dB."""
    pad = np.pad(sound, ((0, 0), (RATE // 20, RATE // 20)))
    return peak(band(pad, CLICK_FLOOR, RATE, steepness=24))


def edges(sound):
    """The highest level of the first and of the last millisecond, in dB."""
    span = RATE // 1000
    return peak(sound[:, :span]), peak(sound[:, -span:])
