"""What resamplers do to sound, measured from outside: samples go in, samples come out, through qv_resample_raw."""
import subprocess

import numpy as np


class Converters:
    """The library and its peers, by the names of qv_resample_raw."""

    def __init__(self, program):
        self.program = program
        listing = subprocess.run([program, "--list"], stdout=subprocess.PIPE, check=True, text=True).stdout
        self.names = [line.split("\t")[0] for line in listing.splitlines()]

    def convert(self, name, source, target, samples):
        """One channel of doubles at another rate."""
        command = [self.program, "--with", name, "--from", str(source), "--to", str(target)]
        done = subprocess.run(command, input=np.asarray(samples, float).tobytes(), stdout=subprocess.PIPE, check=True)
        return np.frombuffer(done.stdout)

    def gains(self, name, source, target, hertz):
        """What becomes of tones of whole hertz: (gain, gain of its mirror image), each a factor.

        All tones sound together, at phases that keep the peak low. A second of the sound is a whole number of periods of
        each, so the spectrum of one second of the result has each tone in a bin of its own and nothing leaks. The image of a
        tone at f is what comes out at source - f when the rate goes up, and at target - f when it goes down.
        """
        phases = np.random.default_rng(1).uniform(0, 2 * np.pi, len(hertz))
        second = np.zeros(source // 2 + 1, complex)
        second[hertz] = np.exp(1j * phases)
        second = np.fft.irfft(second, source)
        level = 0.5 / np.abs(second).max()
        result = self.convert(name, source, target, np.tile(second * level, 4))
        spectrum = np.abs(np.fft.rfft(result[2 * target:3 * target])) / target * source / level
        half = min(source, target)
        at = lambda f: np.where(f <= target // 2, spectrum[np.clip(f, 0, target // 2)], np.nan)
        return at(hertz), at(np.abs(half - hertz))

    def impulse(self, name, source, target):
        """(seconds from the peak, the response with its peak as 1), finer than the target's rate.

        Impulses half a second apart, each a frame later on the source's grid than the last: the target's grid meets each at
        another moment, and their answers laid over one another are one answer at all those moments.
        """
        count, apart = 16, source // 2
        places = np.arange(1, count + 1) * apart + np.arange(count)
        samples = np.zeros((count + 1) * apart + count)
        samples[places] = 1
        result = self.convert(name, source, target, samples)
        time = np.arange(len(result)) / target
        near = [np.flatnonzero(np.abs(time - place / source) < 0.24) for place in places]
        moments = np.concatenate([time[of] - place / source for of, place in zip(near, places)])
        values = np.concatenate([result[of] for of in near])
        order = np.argsort(moments, kind="stable")
        moments, values = moments[order], values[order]
        peak = np.argmax(np.abs(values))
        return moments - moments[peak], values / values[peak]

    def sweep(self, name, source, target, seconds, columns, rows):
        """The spectrogram, in decibels below the sweep's level, of a sine going from 0 to half the source's rate."""
        time = np.arange(seconds * source) / source
        rate = source / 2 / seconds
        result = self.convert(name, source, target, 0.5 * np.sin(np.pi * rate * time * time))
        size = 2 * rows
        window = np.kaiser(size, 26)
        starts = np.linspace(0, len(result) - size, columns).astype(int)
        frames = np.array([result[start:start + size] for start in starts]) * window
        spectrum = np.abs(np.fft.rfft(frames, axis=1))[:, :rows] / (0.25 * window.sum())
        return 20 * np.log10(np.maximum(spectrum.T, 1e-12))
