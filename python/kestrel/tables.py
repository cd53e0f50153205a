"""Conveniences over pandas and matplotlib, neither of which is needed to import the package."""
# SPDX-License-Identifier: MIT
from __future__ import annotations

from typing import TYPE_CHECKING

from kestrel import values

if TYPE_CHECKING:
    import matplotlib.axes  # type: ignore[import]
    import pandas as pd  # type: ignore[import]

    from kestrel.trends import Trend
    from kestrel.bands import BandTable
    from kestrel.record import Record

#: The colours of the axes in all windows of the program.
COLOURS = {"x": "#1b6ac9", "y": "#c2410c", "z": "#15803d"}


def frame_of(record: Record) -> pd.DataFrame:
    """Columns x, y, z over frequency or time."""
    import pandas
    places = record.time if record.is_time else record.frequency
    index = pandas.Index(places, name="time, s" if record.is_time else "frequency, Hz")
    return pandas.DataFrame({axis: record.values(axis) for axis in values.AXES}, index=index)


def frame_of_trend(trend: Trend) -> pd.DataFrame:
    """All series under one another."""
    import pandas
    parts = [pandas.DataFrame({"time": pandas.to_datetime(series.time, utc=True),
                               "value": series.values, "id": series.ids, "alarm": series.alarms,
                               "series": number})
             for number, series in enumerate(trend.series)]
    if not parts:
        return pandas.DataFrame(columns=["time", "value", "id", "alarm", "series"])
    return pandas.concat(parts, ignore_index=True)


def frame_of_bands(table: BandTable) -> pd.DataFrame:
    """A row a band."""
    import pandas
    names = ["option", "band", "low", "high"] + [
        f"{alarm}_{axis}" for alarm in ("warning", "fault") for axis in values.AXES]
    return pandas.DataFrame(table.rows(), columns=names).set_index(["option", "band"])


def plotted(record: Record, ax: matplotlib.axes.Axes | None) -> matplotlib.axes.Axes:
    """The three axes of a record."""
    if ax is not None and not hasattr(ax, "plot"):
        raise TypeError(f"ax is {values.shown(ax)}; it must be axes of matplotlib.")
    if ax is None:
        import matplotlib.pyplot  # type: ignore[import]
        ax = matplotlib.pyplot.subplots(figsize=(8, 3.2), layout="constrained")[1]
    places = record.time * 1e3 if record.is_time else record.frequency / 1e3
    first = 0 if record.is_time else 1  # bin 0 holds the mean
    for axis in values.AXES:
        ax.plot(places[first:], record.values(axis)[first:], color=COLOURS[axis], linewidth=1,
                label=axis.upper())
    ax.set_xlabel("Time, ms" if record.is_time else "Frequency, kHz")
    ax.set_ylabel("Acceleration, g" + ("" if record.is_time else " peak"))
    ax.set_title(record.describe(), fontsize="small")
    ax.grid(alpha=0.3)
    ax.legend(frameon=False, ncols=3)
    return ax
