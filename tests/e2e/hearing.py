"""What the game plays, written to a file by the sound library, and what an ear would tell about it: levels and bands."""
import array
import cmath
import math

RATE = 44100
FRAME = 2048  # samples that are looked at together: 46 ms, and 21.5 Hz from line to line
SILENT = -120.0


class Recording:
    """The sound of one game. environment() goes to the game; the file grows while the game runs."""

    def __init__(self, root):
        self.path, self.settings = root / "heard.wav", root / "sound.conf"
        self.settings.write_text(f"[general]\nfrequency={RATE}\nchannels=stereo\nsample-type=int16\n[wave]\nfile={self.path}\n")

    def environment(self):
        return {"ALSOFT_DRIVERS": "wave", "ALSOFT_CONF": str(self.settings)}

    def now(self):
        """Seconds that have been written so far."""
        return max(0, self.path.stat().st_size - 68) / 4 / RATE if self.path.exists() else 0.0

    def samples(self, start=0.0, end=None):
        """The mean of both sides, -1 to 1. The head of a file that still grows says nothing about its length."""
        data = self.path.read_bytes()
        body = data.index(b"data") + 8
        first = body + int(start * RATE) * 4
        last = len(data) if end is None else body + int(end * RATE) * 4
        sides = array.array("h", data[first:first + (last - first) // 4 * 4 if last > first else first])
        return [(left + right) / 65536 for left, right in zip(sides[0::2], sides[1::2])]

    def peak(self):
        data = self.path.read_bytes()
        body = data.index(b"data") + 8
        sides = array.array("h", data[body:body + (len(data) - body) // 4 * 4])
        return max(max(sides), -min(sides)) / 32768


TURNS = [cmath.exp(-2j * math.pi * k / FRAME) for k in range(FRAME // 2)]
WINDOW = [0.5 - 0.5 * math.cos(2 * math.pi * k / FRAME) for k in range(FRAME)]


def transform(values):
    """The Fourier transform of FRAME values."""
    count = len(values)
    if count == 1:
        return values
    even, odd = transform(values[0::2]), transform(values[1::2])
    step = FRAME // count
    turned = [TURNS[k * step] * odd[k] for k in range(count // 2)]
    return [e + t for e, t in zip(even, turned)] + [e - t for e, t in zip(even, turned)]


def spectrum(samples):
    """The power of each line; a sine at full height has 1."""
    lines = transform([s * w for s, w in zip(samples, WINDOW)])
    return [abs(line) ** 2 * 16 / FRAME ** 2 / 1.5 for line in lines[:FRAME // 2]]


def frames(samples):
    """Spectra of one frame behind the other."""
    return [spectrum(samples[at:at + FRAME]) for at in range(0, len(samples) - FRAME + 1, FRAME)]


def power(lines, low=20, high=RATE / 2):
    return sum(lines[math.ceil(low * FRAME / RATE):math.ceil(high * FRAME / RATE)])


def decibels(value):
    return 10 * math.log10(value) if value > 1e-12 else SILENT


def level(lines, low=20, high=RATE / 2):
    """dB below a sine of full height."""
    return decibels(power(lines, low, high))


def mean(spectra):
    return [sum(column) / len(spectra) for column in zip(*spectra)]


def loudest(spectra, low=20, high=RATE / 2):
    """The number of the loudest frame."""
    return max(range(len(spectra)), key=lambda at: power(spectra[at], low, high))
