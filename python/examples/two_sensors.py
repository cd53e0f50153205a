"""Two sensors side by side: the same plan on both, and how far they differ.

One sensor can be open in a process at a time, so each gets a process of its
own; records come back pickled.

    python3 two_sensors.py --adapters 0 1
    python3 two_sensors.py --simulate
"""
# SPDX-License-Identifier: MIT
from __future__ import annotations

import argparse
import concurrent.futures
import math
import multiprocessing
from typing import Any

import kestrel


def main(words: list[str] | None = None) -> None:
    """Captures with both at the same time and compares levels."""
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--simulate", action="store_true", help="use two simulated sensors")
    parser.add_argument("--adapters", type=int, nargs=2, default=(0, 1),
                        help="numbers of the two USB adapters, 0 to 3")
    parser.add_argument("--captures", type=int, default=5, help="captures of each sensor")
    chosen = parser.parse_args(words)

    roads: list[dict[str, Any]] = [{"adapter": number} for number in chosen.adapters]
    if chosen.simulate:
        roads = [{"simulate": True}, {"simulate": True, "scenario": "calibrator"}]
    context = multiprocessing.get_context("spawn")
    with concurrent.futures.ProcessPoolExecutor(2, context) as processes:
        first, second = processes.map(records_of, roads, [chosen.captures] * len(roads))
    for axis in kestrel.AXES:
        one, two = mean_rms(first, axis), mean_rms(second, axis)
        print(f"{axis.upper()}  {one:.4g} and {two:.4g} g RMS, {20 * math.log10(two / one):+.2f} dB")


def records_of(road: dict[str, Any], count: int) -> list[kestrel.Record]:
    """Takes captures with one sensor; runs in a process of its own."""
    with kestrel.open(**road) as sensor:
        sensor.settings.update(mode="manual", range=20, window="hanning", averages=4)
        return list(sensor.captures(count))


def mean_rms(records: list[kestrel.Record], axis: kestrel.Axis) -> float:
    """Mean of power over records, as RMS in g."""
    return math.sqrt(sum(record.levels(axis).rms ** 2 for record in records) / len(records))


if __name__ == "__main__":
    try:
        main()
    except kestrel.Error as error:
        raise SystemExit(f"{error}") from None
