#!/usr/bin/env python3
"""Keeps records of a simulated sensor at every option, window, range and kind, exports them as CSV, and
compares the program's trends with what numpy makes of the exported points.

check_trend.py KESTREL_CLI
"""

import csv
import json
import pathlib
import subprocess
import sys
import tempfile

import numpy as np
from scipy import signal

N = 512
WINDOWS = ["boxcar", "hann",
           ("general_cosine", [0.21557895, 0.41663158, 0.277263158, 0.083578947, 0.006947368])]
NAMES = ["rectangular", "hanning", "flattop"]
FIRST = [1, 2, 5]  # bin beyond the lobe around 0 Hz
BANDS = [(1000, 9000), (587.5, 1234.5), (20000, 48000)]
TOLERANCE = 1e-12


def bandwidth(code):
    w = signal.get_window(WINDOWS[code], N, fftbins=True)
    return N * np.sum(w**2) / np.sum(w) ** 2


def run(program, archive, *words):
    done = subprocess.run([program, "--json", "--archive", archive, *words], capture_output=True,
                          text=True, check=False)
    if done.returncode != 0:
        raise AssertionError(f"{words}: {done.stderr}")
    return json.loads(done.stdout)


def exported(path):
    """Facts and points of the records in a file, by their number in it."""
    records = {}
    rows = []
    for line in path.read_text(encoding="utf-8").splitlines():
        if line.startswith("# record "):
            number, fact = line[len("# record "):].split(", ", 1)
            name, value = fact.split(":", 1)
            records.setdefault(int(number), {})[name] = value.strip()
        elif not line.startswith("#"):
            rows.append(line)
    table = list(csv.DictReader(rows))
    for number, record in records.items():
        own = [row for row in table if int(row["record"]) == number]
        for axis in "XYZ":
            record[axis] = np.array([float(row[f"{axis.lower()}_g"]) for row in own])
    return records


def levels(record, axis):
    """RMS, peak, and RMS of the bands; none where the record does not hold it."""
    values = record[axis]
    if record["type"] == "time":
        moved = values - np.mean(values)
        return [np.sqrt(np.mean(moved**2)), np.max(np.abs(moved))] + [None] * len(BANDS)
    code, width = int(record["window_code"]), float(record["bin_width_hz"])
    hz = np.arange(len(values)) * width
    power = values**2 / 2 / bandwidth(code)
    power[: FIRST[code]] = 0
    told = [np.sqrt(np.sum(power)), np.max(values[FIRST[code]:])]
    for low, high in BANDS:
        if low < (FIRST[code] - 0.5) * width or high > (len(values) - 0.5) * width:
            told.append(None)
            continue
        share = np.clip(hz + width / 2, low, high) - np.clip(hz - width / 2, low, high)
        told.append(np.sqrt(np.sum(power * share / width)))
    return told


def compare(name, trend, wanted, counts):
    found = {point["id"]: point["value"] for series in trend["series"] for point in series["points"]}
    holding = {number: value for number, value in wanted.items() if value is not None}
    if set(found) != set(holding):
        raise AssertionError(f"{name}: records {sorted(found)} are not {sorted(holding)}")
    if trend["refused"] != len(wanted) - len(holding):
        raise AssertionError(f"{name}: {trend['refused']} refused of {len(wanted)}")
    for number, value in holding.items():
        if not np.isclose(found[number], value, rtol=TOLERANCE, atol=0):
            raise AssertionError(f"{name}, record {number}: {found[number]} is not {value}")
    counts[0] += len(holding)
    counts[1] += trend["refused"]


def main():
    program = sys.argv[1]
    with tempfile.TemporaryDirectory() as folder:
        archive = str(pathlib.Path(folder, "archive.db"))
        file = pathlib.Path(folder, "records.csv")
        for option in range(4):
            for window, reach in ((0, "70"), (1, "20"), (2, "5")):
                run(program, archive, "--simulate", "capture", "--averages", "1", "--option",
                    str(option), "--window", NAMES[window], "--range", reach)
            run(program, archive, "--simulate", "capture", "--mode", "time", "--option", str(option))
        ids = [record["id"] for record in run(program, archive, "archive", "list")]
        if len(ids) != 16:
            raise AssertionError(f"{len(ids)} records were kept, not 16")
        run(program, archive, "archive", "export", "--format", "csv", "--out", str(file),
            *map(str, ids))
        records = exported(file)
        counts = [0, 0]
        for axis in "XYZ":
            wanted = {ids[number - 1]: levels(record, axis) for number, record in records.items()}
            asked = [["rms"], ["peak"]] + [["rms", "--low", str(low), "--high", str(high)]
                                           for low, high in BANDS]
            for place, words in enumerate(asked):
                trend = run(program, archive, "trend", *words, "--axis", axis)
                compare(f"{words}, {axis}", trend,
                        {number: told[place] for number, told in wanted.items()}, counts)
    if counts[0] < 100 or counts[1] < 20:
        raise AssertionError(f"only {counts[0]} levels and {counts[1]} refusals were compared")
    print(f"{counts[0]} levels are those of numpy to {TOLERANCE}, {counts[1]} are refused by both")


if __name__ == "__main__":
    main()
