#!/usr/bin/python3 -B
"""Draws what this library and its peers make of the same sound.

    draw.py RESAMPLE_RAW TABLE FOLDER

RESAMPLE_RAW is the program qv_resample_raw, TABLE what qv_bench_audio has written, FOLDER where the pictures go.
"""
import pathlib
import sys

import matplotlib

matplotlib.use("Agg")
import matplotlib.pyplot as plt
import numpy as np
from PIL import Image

from converters import Converters

PAIRS = [(44100, 48000), (48000, 44100), (96000, 44100), (44100, 96000)]

# Name in qv_resample_raw: name in the pictures, colour.
LOOKS = {
    "ours": ("Quavermill", "#0b3d91"),
    "soxr-steep": ("soxr VHQ, pass band 0.995", "#d55e00"),
    "soxr": ("soxr VHQ", "#e69f00"),
    "samplerate": ("libsamplerate best sinc", "#009e73"),
    "zita": ("zita-resampler 96 (float)", "#cc79a7"),
    "speex": ("speex 10 (float)", "#8c8c8c"),
}

STYLE = {
    "font.family": "DejaVu Sans", "font.size": 9, "svg.fonttype": "none", "svg.hashsalt": "quavermill",
    "axes.edgecolor": "#999999", "axes.linewidth": 0.6, "axes.grid": True, "axes.axisbelow": True,
    "axes.titlesize": 9, "axes.titleweight": "bold", "axes.spines.top": False, "axes.spines.right": False,
    "grid.color": "#e4e4e4", "grid.linewidth": 0.6, "xtick.color": "#555555", "ytick.color": "#555555",
    "legend.frameon": False, "path.simplify_threshold": 0.3,
}


def kilohertz(rate):
    return f"{rate / 1000:g}"


def title(pair):
    return f"{kilohertz(pair[0])} to {kilohertz(pair[1])} kHz"


def plot(axes, name, x, y):
    label, colour = LOOKS[name]
    isOurs = name == "ours"
    axes.plot(x, y, color=colour, label=label, linewidth=1.8 if isOurs else 1.0, zorder=3 if isOurs else 2)


def save(figure, folder, name):
    handles, labels = figure.axes[0].get_legend_handles_labels()
    figure.legend(handles, labels, loc="upper center", ncol=3)
    figure.savefig(folder / name, metadata={"Date": None, "Creator": None})
    plt.close(figure)


def panels(rows, columns, height):
    figure, axes = plt.subplots(rows, columns, figsize=(9, height))
    figure.subplots_adjust(left=0.08, right=0.98, bottom=0.5 / height, top=1 - 0.85 / height, hspace=0.35, wspace=0.18)
    return figure, np.atleast_1d(axes).ravel()


def draw_passband(converters, folder):
    figure, axes = panels(2, 2, 6)
    for pair, ax in zip(PAIRS, axes):
        nyquist = min(pair) // 2
        hertz = np.unique(np.r_[np.linspace(20, nyquist - 1500, 60), np.linspace(nyquist - 1500, nyquist - 20, 75)].astype(int))
        for name in converters.names:
            gain, _ = converters.gains(name, *pair, hertz)
            plot(ax, name, hertz / 1000, np.maximum(np.abs(20 * np.log10(gain)), 1e-10))
        ax.set(title=title(pair), yscale="log", ylim=(1e-10, 100), xlim=(0, nyquist / 1000))
    label(figure, axes, "frequency, kHz", "deviation from 0 dB, dB")
    save(figure, folder, "pass-band.svg")


def draw_transition(converters, folder):
    figure, axes = panels(2, 2, 6)
    for pair, ax in zip(PAIRS, axes):
        nyquist = min(pair) // 2
        # Tones and the images of others never meet: 1 and 4 above the tens.
        below = np.arange(nyquist - 1800, nyquist, 10) // 10 * 10 + 1
        for name in converters.names:
            if pair[0] < pair[1]:
                gain, image = converters.gains(name, *pair, below)
                x, y = np.r_[below, pair[0] - below[::-1]], np.r_[gain, image[::-1]]
            else:
                hertz = np.r_[below, np.arange(nyquist, nyquist + 1800, 10) // 10 * 10 + 14]
                hertz = hertz[hertz < pair[0] // 2]
                gain, image = converters.gains(name, *pair, hertz)
                x, y = hertz, np.where(hertz < nyquist, gain, image)
            plot(ax, name, x / 1000, 20 * np.log10(np.maximum(y, 1e-12)))
        ax.axvline(nyquist / 1000, color="#555555", linewidth=0.8, linestyle=":")
        ax.set(title=title(pair), ylim=(-220, 10), xlim=((nyquist - 1500) / 1000, (nyquist + 1500) / 1000))
    label(figure, axes, "frequency, kHz (beyond the dotted lower Nyquist frequency: images and aliases)", "gain, dB")
    save(figure, folder, "transition.svg")


def draw_impulse(converters, folder):
    figure, axes = panels(2, 2, 6)
    for row, pair in enumerate([(44100, 48000), (96000, 44100)]):
        near, far = axes[2 * row:2 * row + 2]
        for name in converters.names:
            time, response = converters.impulse(name, *pair)
            middle = np.abs(time) < 0.0006
            plot(near, name, time[middle] * 1000, response[middle])
            plot(far, name, *envelope(time, response))
        near.set(title=title(pair), xlim=(-0.5, 0.5))
        far.set(title=title(pair) + ", level", xlim=(-100, 100), ylim=(-220, 5))
        far.set_ylabel("dB", labelpad=0)
    label(figure, axes, "time from the peak, ms", "")
    save(figure, folder, "impulse.svg")


def envelope(time, response):
    """(milliseconds, the highest level in each 2 ms, in decibels)."""
    milliseconds = np.floor(time * 500).astype(int)
    steps = np.arange(milliseconds.min(), milliseconds.max() + 1)
    level = np.zeros(len(steps))
    np.maximum.at(level, milliseconds - steps[0], np.abs(response))
    return steps * 2 + 1, 20 * np.log10(np.maximum(level, 1e-12))


def label(figure, axes, x, y):
    figure.supxlabel(x, fontsize=9)
    for ax in axes[::2]:
        ax.set_ylabel(y)


def draw_sweep(converters, folder, pair):
    """A panel for each, pixel by pixel, with few colours: noise is most of such a file."""
    figure, axes = plt.subplots(2, 3, figsize=(9, 5.2), dpi=130, sharex=True, sharey=True)
    figure.subplots_adjust(left=0.06, right=0.9, bottom=0.09, top=0.95, hspace=0.16, wspace=0.05)
    colours = plt.get_cmap("magma", 20)
    for name, ax in zip(converters.names, axes.ravel()):
        image = converters.sweep(name, *pair, 8, 340, 512)
        extent = (0, pair[0] / 2000, 0, pair[1] / 2000)
        drawn = ax.imshow(image, origin="lower", aspect="auto", extent=extent, cmap=colours, vmin=-200, vmax=0,
                          interpolation="nearest")
        ax.set_title(LOOKS[name][0])
        ax.grid(False)
    figure.supxlabel("frequency of the sine, kHz", fontsize=9)
    figure.supylabel("frequency of what comes out, kHz", fontsize=9)
    figure.colorbar(drawn, cax=figure.add_axes([0.912, 0.09, 0.015, 0.86]), label="dB")
    file = folder / f"sweep-{pair[0]}-{pair[1]}.png"
    figure.savefig(file)
    plt.close(figure)
    Image.open(file).convert("RGB").quantize(48, dither=Image.Dither.NONE).save(file, optimize=True)


def draw_throughput(table, folder):
    """Speed beside this library's, from the rows of qv_bench_audio's group `resample`."""
    rows = [line.split("\t") for line in pathlib.Path(table).read_text().splitlines()]
    rows = [(work, name, 1 / float(ratio)) for group, work, name, _, ratio in rows if group == "Resampling"]
    works = list(dict.fromkeys(work for work, _, _ in rows))
    figure, (ax,) = panels(1, 1, 6.5)
    figure.subplots_adjust(left=0.14)
    width = 0.8 / len(LOOKS)
    for index, name in enumerate(LOOKS):
        speeds = [speed for work in works for w, n, speed in rows if w == work and n == name]
        at = np.arange(len(works)) + index * width
        bars = ax.barh(at, speeds, width * 0.9, color=LOOKS[name][1], label=LOOKS[name][0])
        ax.bar_label(bars, [f"{speed:.2f}" for speed in speeds], fontsize=7, padding=2, color="#555555")
    names = ["\n".join(title(tuple(int(rate) for rate in work.split(" to "))).split(" to ")) for work in works]
    ax.set_yticks(np.arange(len(works)) + 0.4 - width / 2, [name.replace("\n", " to\n") for name in names])
    ax.axvline(1, color="#0b3d91", linewidth=0.8, linestyle=":")
    ax.set(xlabel="speed, Quavermill's = 1")
    ax.invert_yaxis()
    ax.grid(axis="y", visible=False)
    save(figure, folder, "throughput.svg")


def main():
    program, table, folder = sys.argv[1], sys.argv[2], pathlib.Path(sys.argv[3])
    folder.mkdir(parents=True, exist_ok=True)
    converters = Converters(program)
    with plt.rc_context(STYLE):
        draw_throughput(table, folder)
        draw_passband(converters, folder)
        draw_transition(converters, folder)
        draw_impulse(converters, folder)
        for pair in PAIRS:
            draw_sweep(converters, folder, pair)


main()
