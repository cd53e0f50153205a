#!/usr/bin/env python3
"""Asks the program about random spectra and time records and compares with numpy and scipy.

check_analysis.py PROGRAM. KESTREL_SEED adds a seed to the fixed ones.
"""

import os
import subprocess
import sys

import numpy as np
from scipy import constants, fft, signal, stats

SEEDS = [1, 2, 3]
ROUNDS = 150  # a seed; every question is asked once a round
N = 512
RATE = 100189.9
WINDOWS = ["boxcar", "hann",
           ("general_cosine", [0.21557895, 0.41663158, 0.277263158, 0.083578947, 0.006947368])]
FIRST = [1, 2, 5]  # bin beyond the lobe
INTEGRABLE = [3, 3, 5]
G_MM = constants.g * 1000  # mm/s² a g


def window_of(code):
    return signal.get_window(WINDOWS[code], N, fftbins=True)


def bandwidth(code):
    w = window_of(code)
    return N * np.sum(w**2) / np.sum(w) ** 2


def width(option):
    return RATE / 8**option / N


def scallop(code):
    w = window_of(code)
    half = np.abs(np.sum(w * np.exp(-1j * np.pi * np.arange(N) / N)))
    return -20 * np.log10(half / np.sum(w))


def amplitudes(samples, code):
    w = window_of(code)
    found = np.abs(fft.rfft(samples * w)) * 2 / np.sum(w)
    found[[0, -1]] /= 2
    return found


def bins_of(spectrum, option):
    return np.arange(len(spectrum)) * width(option)


def power(spectrum, code, option, low, high, weight=lambda hz: np.ones_like(hz)):
    """Integral of the density, each bin a step of its width, between two frequencies."""
    hz = bins_of(spectrum, option)
    edges_low = np.clip(hz - width(option) / 2, low, high)
    edges_high = np.clip(hz + width(option) / 2, low, high)
    density = spectrum**2 / 2 / (bandwidth(code) * width(option))
    density[: FIRST[code]] = 0
    with np.errstate(divide="ignore", invalid="ignore"):
        weighted = np.where(density > 0, density * weight(hz), 0)
    return float(np.sum(weighted * (edges_high - edges_low)))


def segments(code):
    """(option, from, to) as the joined spectrum uses them, lowest frequencies first."""
    starts = {o: INTEGRABLE[code] * width(o) for o in range(4)}
    return [(o, starts[o], starts[o - 1] if o else 255 * width(0)) for o in (3, 2, 1, 0)]


def joined(four, code):
    points = []
    for option, low, high in segments(code):
        hz = bins_of(four[option], option)
        inside = (hz >= low) & ((hz < high) if option else (hz <= high))
        density = four[option] ** 2 / 2 / (bandwidth(code) * width(option))
        points += [value for pair in zip(hz[inside], density[inside]) for value in pair]
    return points


def overlaps(four, code):
    found = []
    for fine, coarse in ((3, 2), (2, 1), (1, 0)):
        low, high = INTEGRABLE[code] * width(coarse), 255 * width(fine)
        found += [low, high, np.sqrt(power(four[fine], code, fine, low, high)),
                  np.sqrt(power(four[coarse], code, coarse, low, high))]
    return found


def severity(four, code):
    def butterworth(hz):
        _, low = signal.freqs(*signal.butter(3, 10, "highpass", analog=True), hz)
        _, high = signal.freqs(*signal.butter(3, 1000, "lowpass", analog=True), hz)
        return np.abs(low * high) ** 2

    def velocity(hz):
        return (G_MM / (2 * np.pi * hz)) ** 2 * butterworth(hz)

    total = sum(power(four[option], code, option, low, high, velocity)
                for option, low, high in segments(code))
    return [np.sqrt(total)]


def thirds(four, code):
    found = []
    for number in range(-33, 18):
        centre = 1000 * 10 ** (number / 10)
        low, high = centre * 10**-0.05, centre * 10**0.05
        for option in (3, 2, 1, 0):
            bottom, top = (FIRST[code] - 0.5) * width(option), 255.5 * width(option)
            if low >= bottom and high <= top and high - low >= 3 * width(option):
                found += [centre, np.sqrt(power(four[option], code, option, low, high))]
                break
    return found


def time_velocity(samples, option, lowest):
    rest = signal.detrend(samples)
    turned = np.concatenate([rest, -rest[::-1]])
    hz = fft.fftfreq(2 * N, 1 / (RATE / 8**option))
    bins = fft.fft(turned)
    bins[[0, N]] = 0
    hz[0] = 1
    _, response = signal.freqs(*signal.butter(3, lowest, "highpass", analog=True), np.abs(hz))
    return list(fft.ifft(bins * np.abs(response) / (2j * np.pi * hz)).real[:N] * G_MM)


def time_facts(samples, code):
    rest = samples - np.mean(samples)
    rms = np.std(samples)
    w = window_of(code)
    # Parseval's theorem for the windowed samples.
    spectrum = np.sqrt(np.sum((rest * w) ** 2) / np.sum(w**2))
    return [np.mean(samples), rms, np.max(np.abs(rest)), np.max(np.abs(rest)) / rms,
            stats.kurtosis(samples, fisher=False), spectrum, 20 * np.log10(spectrum / rms)]


def random_spectrum(draw, step):
    spectrum = draw.rayleigh(10 ** draw.uniform(-4, -2), 256)
    for _ in range(draw.integers(0, 8)):
        spectrum[draw.integers(0, 256)] += 10 ** draw.uniform(-3, 1)
    return np.round(spectrum / step) * step if draw.random() < 0.5 else spectrum


def random_samples(draw):
    n = np.arange(N)
    samples = draw.normal(draw.uniform(-1, 1), 10 ** draw.uniform(-4, 0), N)
    for _ in range(draw.integers(0, 5)):
        samples += 10 ** draw.uniform(-3, 1) * np.sin(
            2 * np.pi * draw.uniform(0, 256) * n / N + draw.uniform(0, 7))
    return samples + draw.uniform(-1e-3, 1e-3) * n


def per_bin(spectrum, code, option):
    hz = bins_of(spectrum, option)
    hz[0] = np.inf
    rms = spectrum / np.sqrt(2)
    omega = 2 * np.pi * hz
    rms_or_mean = np.concatenate([spectrum[:1], rms[1:]])
    pp = np.concatenate([spectrum[:1], 2 * spectrum[1:]])
    with np.errstate(divide="ignore"):
        level = np.maximum(20 * np.log10(rms_or_mean), -400)
        micro = np.maximum(20 * np.log10(rms_or_mean * constants.g / 1e-6), -400)
    return {"rms": rms_or_mean, "pp": pp, "level": level, "micro": micro,
            "density": spectrum**2 / 2 / (bandwidth(code) * width(option)),
            "velocity": rms * G_MM / omega,
            "displacement": 2 * spectrum * constants.g * 1e6 / omega**2}


def integrated_bands(draw, spectrum, code, option):
    """Levels of a band in velocity and displacement, as `questions` yields them."""
    bottom = (INTEGRABLE[code] - 0.5) * width(option)
    low, high = np.sort(draw.uniform(0, 255.5, 2)) * width(option)
    if high <= bottom:
        return
    hz = bins_of(spectrum, option)
    inside = (hz >= max(low, bottom)) & (hz <= high)
    curves = per_bin(spectrum, code, option)
    weights = {"velocity": lambda hz: (G_MM / (2 * np.pi * hz)) ** 2,
               "displacement": lambda hz: (constants.g * 1e6 / (2 * np.pi * hz) ** 2) ** 2}
    for name, weight in weights.items():
        values = np.where(inside, curves[name], 0)
        rms = np.sqrt(power(spectrum, code, option, max(low, bottom), high, weight))
        yield (f"{name}band {code} {option}", np.concatenate([[low, high], spectrum]),
               [max(low, bottom), rms, np.max(values),
                hz[np.argmax(values)] if np.max(values) > 0 else 0])


def baselines(draw):
    """Bounds of counted shares, ranks of limits, usual levels and false alarms."""
    of = (10 ** draw.uniform(0, 5, 6)).astype(int)
    counted = np.array([draw.choice([0, total, draw.integers(0, total + 1), min(total, 5)])
                        for total in of])
    low = np.where(counted == 0, 0, stats.beta.ppf(0.025, counted, of - counted + 1))
    high = np.where(counted == of, 1, stats.beta.ppf(0.975, counted + 1, of - counted))
    yield ("bounds 0 0", np.stack([counted, of], 1).ravel(), np.stack([low, high], 1).ravel())
    captures = int(10 ** draw.uniform(0, 4))
    share, confidence = draw.choice([0.5, 0.9, 0.95, 0.99]), draw.choice([0.6, 0.9, 0.95])
    rank = int(stats.binom.ppf(confidence, captures, share)) + 1
    yield "rank 0 0", [captures, share, confidence], [rank if rank <= captures else 0]
    levels = draw.normal(draw.uniform(-60, 20), draw.uniform(0.1, 6), draw.integers(2, 300))
    sigma = np.std(levels, ddof=1)
    yield ("usual 0 0", levels,
           [np.mean(levels), sigma, -np.expm1(18 * stats.norm.logcdf(sigma))])


def questions(draw):
    """(question, numbers it is asked with, wanted answer) of one round."""
    code, option = int(draw.integers(0, 3)), int(draw.integers(0, 4))
    head = f"{code} {option}"
    spectrum = random_spectrum(draw, 0.0000153)
    for name, wanted in per_bin(spectrum, code, option).items():
        yield f"{name} {head}", spectrum, wanted
    low, high = np.sort(draw.uniform((FIRST[code] - 0.5), 255.5, 2)) * width(option)
    hz = bins_of(spectrum, option)
    inside = np.where((hz >= low) & (hz <= high) & (np.arange(256) >= FIRST[code]), spectrum, 0)
    yield (f"band {head}", np.concatenate([[low, high], spectrum]),
           [np.sqrt(power(spectrum, code, option, low, high)), np.max(inside),
            hz[np.argmax(inside)] if np.max(inside) > 0 else 0])
    yield from integrated_bands(draw, spectrum, code, option)
    w = window_of(code)
    yield f"window {head}", [], np.concatenate(
        [[np.mean(w), bandwidth(code), scallop(code)], w])
    samples = random_samples(draw)
    yield f"transform {head}", samples, amplitudes(samples, code)
    yield f"time {head}", samples, time_facts(samples, code)
    lowest = draw.uniform(5, 100) * width(option) * 1.0001
    yield (f"timevelocity {head}", np.concatenate([[lowest], samples]),
           time_velocity(samples, option, lowest))
    four = [random_spectrum(draw, 0.0000153) for _ in range(4)]
    everything = np.concatenate(four)
    for name, function in {"joined": joined, "overlaps": overlaps, "severity": severity,
                           "thirds": thirds}.items():
        yield f"{name} {head}", everything, function(four, code)


def check(program: str, seed: int) -> int:
    draw = np.random.default_rng(seed)
    asked = [each for _ in range(ROUNDS) for each in questions(draw)]
    asked += [each for _ in range(ROUNDS) for each in baselines(draw)]
    text = "".join(
        f"{line} {' '.join(repr(float(x)) for x in numbers)}\n" for line, numbers, _ in asked)
    run = subprocess.run([program], input=text, capture_output=True, text=True, check=True)
    answers = run.stdout.split("\n")
    assert len(answers) == len(asked) + 1, (len(answers), len(asked))
    for step, ((line, _, wanted), answer) in enumerate(zip(asked, answers)):
        found = np.array([float(word) for word in answer.split()])
        wanted = np.asarray(wanted, dtype=float)
        where = f"KESTREL_SEED={seed} step {step}: {line!r}"
        if found.shape != wanted.shape:
            sys.exit(f"{where} gives {found.size} values, not {wanted.size}")
        allowed = 1e-9 * np.abs(wanted) + 1e-10 * np.max(np.abs(wanted), initial=1e-3)
        if line.startswith("window"):
            allowed[2] = 2e-5  # the scallop of an endless window
        if not np.all(np.abs(found - wanted) <= allowed):
            worst = int(np.argmax(np.abs(found - wanted) - allowed))
            sys.exit(f"{where} gives {found[worst]!r} at {worst}, not {wanted[worst]!r}")
    return len(asked)


if __name__ == "__main__":
    count = sum(check(sys.argv[1], each) for each in
                SEEDS + [int(s) for s in [os.environ.get("KESTREL_SEED")] if s])
    print(f"{count} questions answered as numpy and scipy have it")
