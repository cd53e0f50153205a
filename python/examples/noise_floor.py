"""Noise floor: what the sensor shows of itself while nothing moves.

Averages power over several captures; the median over frequency keeps single
lines out of the result.

    python3 noise_floor.py --simulate --captures 20
"""
# SPDX-License-Identifier: MIT
from __future__ import annotations

import argparse

import numpy as np
from numpy.typing import NDArray

import kestrel


def main(words: list[str] | None = None) -> None:
    """Measures the density of the noise of each axis."""
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--simulate", action="store_true", help="use a simulated sensor at rest")
    parser.add_argument("--captures", type=int, default=10, help="number of captures")
    parser.add_argument("--range", type=int, default=1, help="full scale in g: 1, 5, 20 or 70")
    chosen = parser.parse_args(words)

    scenario = "at-rest" if chosen.simulate else ""
    with kestrel.open(simulate=chosen.simulate, scenario=scenario) as sensor:
        sensor.settings.update(mode="manual", range=chosen.range, window="hanning", averages=1)
        floors = noise_of(list(sensor.captures(chosen.captures)))
    for axis, floor in floors.items():
        density = float(np.sqrt(np.median(floor)))
        print(f"{axis.upper()}  {density * 1e6:8.1f} µg/√Hz")


def noise_of(records: list[kestrel.Record]) -> dict[str, NDArray[np.float64]]:
    """Mean power density of each bin that holds vibration, g²/Hz, by axis."""
    floors = {}
    for axis in kestrel.AXES:
        curves = [record.spectrum(axis, "density") for record in records]
        first = curves[0].first_valid
        floors[str(axis)] = np.mean([curve.values[first:] for curve in curves], axis=0)
    return floors


if __name__ == "__main__":
    try:
        main()
    except kestrel.Error as error:
        raise SystemExit(f"{error}") from None
