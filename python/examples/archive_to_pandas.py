"""Archive to pandas: a table of all records and their levels, and a trend by the hour.

    python3 archive_to_pandas.py --archive watch.db --out levels.csv
"""
# SPDX-License-Identifier: MIT
from __future__ import annotations

import argparse

import pandas as pd

import kestrel


def main(words: list[str] | None = None) -> None:
    """Reads the records of an archive, without their points, and summarises them."""
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--archive", help="file or server; your own archive if not given")
    parser.add_argument("--machine", help="only records of this machine")
    parser.add_argument("--out", default="levels.csv", help="file of the table")
    chosen = parser.parse_args(words)

    filter = {} if chosen.machine is None else {"machine": chosen.machine}
    with kestrel.open_archive(chosen.archive, read_only=True) as archive:
        rows = [row_of(kept) for kept in archive.list(**filter)]
        trend = archive.trend("rms", "z", **filter).to_pandas()

    frame = pd.DataFrame(rows).set_index("id").sort_index()
    frame.to_csv(chosen.out)
    print(frame.groupby(["machine", "kind", "option"])[["rms_x", "rms_y", "rms_z"]]
          .agg(["count", "mean", "max"]).round(4).to_string())
    print(trend.set_index("time")["value"].resample("1h").mean().dropna().to_string())


def row_of(kept: kestrel.ArchivedRecord) -> dict[str, object]:
    """What is known of a record without its points."""
    record = kept.record
    row: dict[str, object] = {
        "id": kept.id, "taken": kept.taken, "machine": kept.machine, "point": kept.point,
        "kind": record.kind, "option": record.option, "range_g": record.range,
        "temperature_c": record.temperature}
    for axis, level in zip(kestrel.AXES, kept.levels):
        row[f"rms_{axis}"] = level[0] if level else None
        row[f"peak_{axis}"] = level[1] if level else None
    return row


if __name__ == "__main__":
    try:
        main()
    except kestrel.Error as error:
        raise SystemExit(f"{error}") from None
