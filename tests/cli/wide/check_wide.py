#!/usr/bin/env python3
"""Captures wide spectra of a simulated machine, exports their records, and compares the program's joined
density, overlaps and third octaves with what numpy and scipy make of the exported points.

check_wide.py KESTREL_CLI
"""

import json
import pathlib
import subprocess
import sys
import tempfile

import numpy as np
from scipy import signal

N = 512
RATE = 100189.9
# scipy's name, first bin that is used, first bin beyond the offset, bins of the lobe
WINDOWS = {
    "rectangular": ("boxcar", 3, 1, 1),
    "hanning": ("hann", 3, 2, 2),
    "flattop": (("general_cosine",
                 [0.21557895, 0.41663158, 0.277263158, 0.083578947, 0.006947368]), 5, 5, 5),
}
CASES = [("hanning", 1), ("hanning", 3), ("flattop", 2), ("rectangular", 1)]  # window, averages
REACH = 16  # bins of the noise around a line, either side
TOLERANCE = 1e-9


def width(option):
    return RATE / 8**option / N


def bandwidth(window):
    w = signal.get_window(WINDOWS[window][0], N, fftbins=True)
    return N * np.sum(w**2) / np.sum(w) ** 2


def run(program, archive, *words):
    done = subprocess.run([program, "--json", "--archive", archive, *words], capture_output=True,
                          text=True, check=False)
    if done.returncode != 0:
        raise AssertionError(f"{words}: {done.stderr}")
    return json.loads(done.stdout)


def exported(path):
    """Magnitudes in g, and the step of their words, by option and axis."""
    found = {}
    for record in json.loads(path.read_text(encoding="utf-8"))["records"]:
        option = round(np.log2(RATE / N / record["frequency_hz"][1]) / 3)
        for axis in "XYZ":
            points = record["axes"][axis]
            step = next(g / raw for g, raw in zip(points["data_g"], points["raw"]) if raw > 0)
            found[option, axis] = np.array(points["data_g"]), step
    assert len(found) == 12, "four records of three axes"
    return found


def around(magnitudes, at, window):
    """Median (of two the upper) of the bins beyond the lobe about a bin."""
    _, _, first, lobe = WINDOWS[window]
    steps = range(lobe + 1, lobe + 1 + REACH)
    bins = [at - s for s in steps if at - s >= first] + [at + s for s in steps if at + s < 256]
    return np.sort(magnitudes[bins])[len(bins) // 2]


def with_noise_power(magnitudes, step, window, averages):
    """Noise as the root of its mean power: the mean of Rayleigh magnitudes is too small for that."""
    _, _, first, lobe = WINDOWS[window]
    given = 1 / (np.pi / 4 + (1 - np.pi / 4) / averages) - 1
    if given <= 0:
        return magnitudes
    in_line = np.zeros(256, dtype=bool)
    tops, _ = signal.find_peaks(magnitudes)
    for top in tops:
        # A flat top counts by its first bin.
        while magnitudes[top - 1] == magnitudes[top]:
            top -= 1
        enough = max(10 ** (6 / 20) * around(magnitudes, top, window), 2 * step)
        if top >= first and magnitudes[top] >= enough:
            in_line[max(top - lobe, 0):top + lobe + 1] = True
    noise = np.array([min(m, around(magnitudes, k, window)) if in_line[k] else m
                      for k, m in enumerate(magnitudes)])
    noise[:first] = 0
    return np.sqrt(magnitudes**2 + given * noise**2)


def power(magnitudes, window, option, low, high):
    hz = np.arange(256) * width(option)
    share = np.clip(np.minimum(hz + width(option) / 2, high)
                    - np.maximum(hz - width(option) / 2, low), 0, None) / width(option)
    share[:WINDOWS[window][2]] = 0
    return np.sum(share * magnitudes**2 / 2) / bandwidth(window)


def expected(four, window):
    """Points, overlaps and third octaves of one axis, from its magnitudes by option."""
    first_used, first = WINDOWS[window][1:3]
    starts = {option: first_used * width(option) for option in range(4)}
    hz, density, options = [], [], []
    for option in (3, 2, 1, 0):
        at = np.arange(256) * width(option)
        end = starts[option - 1] if option else np.inf
        used = (at >= starts[option]) & (at < end)
        hz += list(at[used])
        density += list(four[option][used] ** 2 / 2 / (bandwidth(window) * width(option)))
        options += [option] * int(np.sum(used))
    overlaps = []
    for fine, coarse in ((3, 2), (2, 1), (1, 0)):
        low, high = starts[coarse], 255 * width(fine)
        overlaps.append([np.sqrt(power(four[fine], window, fine, low, high)),
                         np.sqrt(power(four[coarse], window, coarse, low, high))])
    thirds = []
    for number in range(-33, 18):
        centre = 1000 * 10 ** (number / 10)
        low, high = centre * 10**-0.05, centre * 10**0.05
        for option in (3, 2, 1, 0):
            bottom, top = (first - 0.5) * width(option), 255.5 * width(option)
            if low >= bottom and high <= top and high - low >= 3 * width(option):
                thirds.append([low, high, np.sqrt(power(four[option], window, option, low, high))])
                break
    return hz, density, options, overlaps, thirds


def check(name, found, wanted):
    found, wanted = np.array(found, dtype=float), np.array(wanted, dtype=float)
    assert found.shape == wanted.shape, f"{name}: {found.shape} for {wanted.shape}"
    assert found.size > 0, name
    worst = np.max(np.abs(found - wanted) / np.maximum(np.abs(wanted), 1e-30))
    assert worst <= TOLERANCE, f"{name}: {worst}"


def main():
    program = sys.argv[1]
    with tempfile.TemporaryDirectory() as folder:
        for window, averages in CASES:
            archive = str(pathlib.Path(folder) / f"{window}{averages}.db")
            file = pathlib.Path(folder) / f"{window}{averages}.json"
            wide = run(program, archive, "--simulate", "--scenario", "broadband-machine", "wide",
                       "--averages", str(averages), "--window", window, "--range", "1")
            run(program, archive, "archive", "export", "--wide", wide["set"], "--format", "json",
                "--out", str(file))
            points = exported(file)
            for axis in "XYZ":
                four = {o: with_noise_power(*points[o, axis], window, averages) for o in range(4)}
                hz, density, options, overlaps, thirds = expected(four, window)
                told, place = wide["axes"][axis], f"{window}, {averages} averages, {axis}: "
                check(place + "frequency", told["frequency"], hz)
                check(place + "density", told["density"], density)
                assert told["options"] == options, place + "options"
                check(place + "overlaps", [[each["fine_rms_g"], each["coarse_rms_g"]]
                                           for each in told["overlaps"]], overlaps)
                check(place + "third octaves", [[each["from_hz"], each["to_hz"], each["rms_g"]]
                                                for each in told["third_octaves"]], thirds)
                print(f"{place}{len(hz)} points, {len(thirds)} third octaves as scipy has them")
    return 0


if __name__ == "__main__":
    sys.exit(main())
