"""Long watch: captures at an interval, kept in an archive, with a plot drawn anew each time.

Ctrl-C ends it; what was captured is kept.

    python3 long_watch.py --simulate --interval 10 --archive watch.db --plot watch.png
"""
# SPDX-License-Identifier: MIT
from __future__ import annotations

import argparse

import matplotlib

matplotlib.use("Agg")  # into a file; leave it out to see a window
import matplotlib.pyplot as plt  # noqa: E402

import kestrel  # noqa: E402


def main(words: list[str] | None = None) -> None:
    """Watches until the count is reached or Ctrl-C is pressed."""
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--simulate", action="store_true", help="use the simulated sensor")
    parser.add_argument("--count", type=int, help="end after this many captures")
    parser.add_argument("--interval", type=float, default=60.0,
                        help="seconds from the start of a capture to that of the next")
    parser.add_argument("--archive", default="watch.db", help="file or server")
    parser.add_argument("--plot", default="watch.png", help="file of the plot")
    parser.add_argument("--machine", default="", help="name of the machine")
    chosen = parser.parse_args(words)

    scenario = "bearing-fault" if chosen.simulate else ""
    with kestrel.open(simulate=chosen.simulate, scenario=scenario) as sensor, \
            kestrel.open_archive(chosen.archive) as archive:
        try:
            for record in sensor.captures(chosen.count, interval=chosen.interval):
                archive.write(record, machine=chosen.machine, tags=["long watch"])
                draw(archive, chosen.plot)
                alarms = [axis.upper() for axis, each in record.alarms.items() if each.faults]
                print(record.describe(), "fault on " + ", ".join(alarms) if alarms else "")
        except KeyboardInterrupt:  # in a capture, or between two
            print("ended")
        print(f"{len(archive.search(tag='long watch'))} records in {chosen.archive}")


def draw(archive: kestrel.Archive, file: str) -> None:
    """Draws the RMS of all axes over time."""
    figure, axes = plt.subplots(figsize=(8, 3), layout="constrained")
    for axis in kestrel.AXES:
        trend = archive.trend("rms", axis, tag="long watch")
        for series in trend.series[:1]:
            axes.plot(series.time, series.values, marker=".", color=kestrel.COLOURS[axis],
                      label=axis.upper())
    axes.set(xlabel="Time, UTC", ylabel="Acceleration, g RMS", ylim=(0, None))
    axes.grid(alpha=0.3)
    axes.legend(frameon=False, ncols=3)
    figure.savefig(file)
    plt.close(figure)


if __name__ == "__main__":
    try:
        main()
    except kestrel.Error as error:
        raise SystemExit(f"{error}") from None
