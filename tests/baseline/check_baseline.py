#!/usr/bin/env python3
"""Captures good and bad records, and compares "baseline" with numpy and scipy on what is exported.

check_baseline.py KESTREL-CLI
"""

import json
import pathlib
import subprocess
import sys
import tempfile

import numpy as np
from scipy import stats

GOOD, BAD = 14, 6


def run(*arguments):
    done = subprocess.run(arguments, capture_output=True, text=True)
    if done.returncode != 0:
        sys.exit(f"{' '.join(map(str, arguments))}\n{done.stderr}")
    return done.stdout


def standing(levels, threshold, m, n, release):
    """The alarm after each record, looking at the last n anew every time."""
    alarms = []
    for end in range(1, len(levels) + 1):
        last = levels[max(0, end - n):end]
        stood = bool(alarms and alarms[-1])
        alarms.append(np.sum(last < release) < m if stood else np.sum(last > threshold) >= m)
    return np.array(alarms)


def bounds(counted, of):
    return (0 if counted == 0 else stats.beta.ppf(0.025, counted, of - counted + 1),
            1 if counted == of else stats.beta.ppf(0.975, counted + 1, of - counted))


def near(found, wanted, what):
    if not np.allclose(found, wanted, rtol=1e-9, atol=1e-9):
        sys.exit(f"{what}: {found!r}, not {wanted!r}")


def check_count(found, alarms, what):
    near(found["count"], np.sum(alarms), what)
    near(found["of"], len(alarms), what)
    near([found["low"], found["high"]], bounds(int(np.sum(alarms)), len(alarms)), f"{what}, bounds")


def check_cell(cell, words, step, rule, judgement):
    """One band and axis; returns the warnings of good and bad records."""
    what = f"band {cell['band']} {cell['axis']}"
    axis = "XYZ".index(cell["axis"])
    peaks = words[:, axis, cell["f_low"]:cell["f_high"] + 1].max(axis=1)
    good, bad = peaks[:GOOD], peaks[GOOD:]
    decibels = 20 * np.log10(np.maximum(good, 0.5) * step)
    near(cell["good"]["mean_db"], np.mean(decibels), f"{what}, mean")
    near(cell["good"]["sigma_db"], np.std(decibels, ddof=1), f"{what}, sigma")
    limit = np.mean(decibels) + max(rule["k"] * np.std(decibels, ddof=1), rule["least"])
    for name, db in (("warning", limit), ("fault", limit + rule["above"])):
        code = int(np.ceil(10 ** (db / 20) / step - 1e-9))
        near(cell[name]["code"], code, f"{what}, {name}")
        m, n, hysteresis = judgement
        release = code if n == 1 else code * 10 ** (-hysteresis / 20)
        alarms = [standing(part, code, m, n, release) if n > 1 else part > code
                  for part in (good, bad)]
        check_count(cell[f"{name}s"]["false_alarms"], alarms[0], f"{what}, {name}, false alarms")
        check_count(cell[f"{name}s"]["caught"], alarms[1], f"{what}, {name}, caught")
        if name == "warning":
            warnings = alarms
    return warnings


def check(program, folder, rule, judgement):
    archive = ["--archive", folder / "archive.db"]
    found = json.loads(run(
        program, *archive, "--json", "baseline", "--good-tag", "good", "--bad-tag", "bad",
        "--sigma", str(rule["k"]), "--at-least", str(rule["least"]), "--fault-above",
        str(rule["above"]), "--m", str(judgement[0]), "--n", str(judgement[1]), "--hysteresis",
        str(judgement[2])))
    records = json.loads((folder / "records.json").read_text())["records"]
    records.sort(key=lambda record: (record["tags"] != ["good"], record["time"]))
    step = records[0]["lsb_weight_g"]
    near(found["settings"]["g_per_code"], step, "step")
    words = np.array([[record["axes"][axis]["raw"] for axis in "XYZ"] for record in records])
    warnings = [check_cell(cell, words, step, rule, judgement) for cell in found["bands"]]
    check_count(found["false_alarms"], np.any([each[0] for each in warnings], axis=0), "any band")
    check_count(found["misses"], ~np.any([each[1] for each in warnings], axis=0), "all silent")
    return sum(np.sum(each[0]) + np.sum(each[1]) for each in warnings)


def main():
    program = sys.argv[1]
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        archive = ["--archive", folder / "archive.db"]
        run(program, "--simulate", *archive, "capture", "--averages", "1", "--count", str(GOOD),
            "--tag", "good")
        run(program, "--simulate", "--scenario", "bearing-fault", *archive, "capture", "--averages",
            "1", "--count", str(BAD), "--tag", "bad")
        ids = [str(record["id"]) for record in json.loads(run(program, *archive, "--json",
                                                              "archive", "list"))]
        run(program, *archive, "archive", "export", "--format", "json", "--out",
            folder / "records.json", *ids)
        alarms = 0
        for k, least, above in ((3, 1.5, 3), (0.5, 0, 1), (0, 0.25, 6)):
            for judgement in ((1, 1, 1), (2, 3, 0.5), (1, 4, 2)):
                rule = {"k": k, "least": least, "above": above}
                alarms += check(program, folder, rule, judgement)
        if alarms == 0:
            sys.exit("no record raised an alarm: nothing was compared")
        print(f"{alarms} alarms where numpy has them")


if __name__ == "__main__":
    main()
