"""First capture: the level and the largest peaks of each axis, and the record in a file.

    python3 first_capture.py --simulate
"""
# SPDX-License-Identifier: MIT
from __future__ import annotations

import argparse

import kestrel


def main(words: list[str] | None = None) -> None:
    """Captures once, prints levels and the largest peaks, and saves the record."""
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--simulate", action="store_true", help="use the simulated sensor")
    parser.add_argument("--out", default="first_capture.uff", help="file for the record")
    chosen = parser.parse_args(words)

    with kestrel.open(simulate=chosen.simulate) as sensor:
        record = sensor.capture()

    print(record.describe())
    for axis in kestrel.AXES:
        level = record.levels(axis)
        print(f"{axis.upper()}  {level.rms:.4g} {level.unit}, largest {level.largest:.4g} "
              f"{level.largest_unit} at {level.largest_hz:.0f} Hz")
        for peak in record.peaks(axis, most=3):
            print(f"     {peak.frequency:9.1f} Hz  {peak.amplitude:.4g} {peak.unit}"
                  + (f" ± {peak.uncertainty:.2g}" if peak.uncertainty else ""))
    record.save(chosen.out)
    print(f"saved as {chosen.out}")


if __name__ == "__main__":
    try:
        main()
    except kestrel.Error as error:
        raise SystemExit(f"{error}") from None
