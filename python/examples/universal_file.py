"""Universal file: a record written for other tools, and read with nothing but numpy.

Shows what is in a file of datasets 58, so that it can be read wherever no
reader is at hand.

    python3 universal_file.py --simulate --out pump.uff
"""
# SPDX-License-Identifier: MIT
from __future__ import annotations

import argparse
import pathlib

import numpy as np
from numpy.typing import NDArray

import kestrel


def main(words: list[str] | None = None) -> None:
    """Saves a capture, reads the file and compares its values with the record."""
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--simulate", action="store_true", help="use the simulated sensor")
    parser.add_argument("--out", default="record.uff", help="file for the record")
    chosen = parser.parse_args(words)

    with kestrel.open(simulate=chosen.simulate) as sensor:
        record = sensor.capture()
    record.save(chosen.out)
    for axis, (step, values) in zip(kestrel.AXES, datasets_of(chosen.out)):
        # Numbers of the text have 13 digits; the format "uff58b" has every bit.
        same = np.allclose(values, record.values(axis), rtol=1e-12, atol=0)
        print(f"{axis.upper()}  {len(values)} values, every {step:.6g} Hz, "
              + ("equal to the record" if same else "NOT equal to the record"))


def datasets_of(file: str) -> list[tuple[float, NDArray[np.float64]]]:
    """Step and values of each dataset 58 with real numbers on an even axis, as text.

    A dataset stands between two lines of "-1". After its number come eleven
    lines: five of text, one of what was measured, one of the axis (kind of
    number, how many, even or not, first value, step), four of units. Then come
    the values.
    """
    found = []
    for block in pathlib.Path(file).read_text(encoding="latin-1").split("    -1\n"):
        lines = block.splitlines()
        if not lines or lines[0].strip() != "58":
            continue
        axis = lines[7].split()
        count, step = int(axis[1]), float(axis[4])
        values = np.array(" ".join(lines[12:]).split(), dtype=float)
        found.append((step, values[:count]))
    return found


if __name__ == "__main__":
    try:
        main()
    except kestrel.Error as error:
        raise SystemExit(f"{error}") from None
