"""Sweep: one capture with each range and window, as a table.

    python3 sweep.py --simulate --out sweep.csv
"""
# SPDX-License-Identifier: MIT
from __future__ import annotations

import argparse
import csv

import kestrel

HEAD = ["range_g", "window", "axis", "rms_g", "largest_g", "largest_hz", "notices"]


def main(words: list[str] | None = None) -> None:
    """Goes through all ranges and windows and writes the levels of each capture."""
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--simulate", action="store_true", help="use the simulated sensor")
    parser.add_argument("--averages", type=int, default=4, help="FFT averages, 1 to 255")
    parser.add_argument("--out", default="sweep.csv", help="file of the table")
    chosen = parser.parse_args(words)

    plan = [{"mode": "manual", "range": g, "window": window, "averages": chosen.averages}
            for g in (1, 5, 20, 70) for window in ("rectangular", "hanning", "flattop")]
    rows: list[list[object]] = []
    with kestrel.open(simulate=chosen.simulate) as sensor:
        before = sensor.settings.as_dict()
        try:
            for record in sensor.captures(plan=plan):
                rows.extend(rows_of(record))
        finally:
            sensor.settings.update(**before)

    with open(chosen.out, "w", newline="", encoding="utf-8") as file:
        csv.writer(file).writerows([HEAD, *rows])
    print(f"{len(plan)} captures, {len(rows)} rows in {chosen.out}")


def rows_of(record: kestrel.Record) -> list[list[object]]:
    """One row per axis."""
    rows: list[list[object]] = []
    for axis in kestrel.AXES:
        level = record.levels(axis)
        rows.append([record.range, record.window, axis, level.rms, level.largest, level.largest_hz,
                     "; ".join(record.notices)])
    return rows


if __name__ == "__main__":
    try:
        main()
    except kestrel.Error as error:
        raise SystemExit(f"{error}") from None
