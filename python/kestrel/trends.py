"""Levels of an archive's records over time."""
# SPDX-License-Identifier: MIT
from __future__ import annotations

from dataclasses import dataclass, field
from typing import TYPE_CHECKING

from kestrel import _kestrel, values
from kestrel.errors import SettingError

if TYPE_CHECKING:
    import numpy as np
    import pandas as pd  # type: ignore[import]
    from numpy.typing import NDArray

__all__ = ["Trend", "TrendSeries"]

_LEVELS = {"rms": 0, "peak": 1, "temperature": 4, "supply": 5}
_BAND = {"rms": 2, "peak": 3}
_NEAR = 6


@dataclass(frozen=True, eq=False)
class TrendSeries:
    """Points that can be compared: of records of one kind, option and window.

    Attributes
    ----------
    kind : {"spectrum", "time"}
    option : int
        Sample-rate option.
    window : str
        FFT window; of time records "rectangular".
    time : numpy.ndarray of datetime64[ns], shape (points,)
        UTC, the oldest first.
    values : numpy.ndarray of float64, shape (points,)
        In the trend's unit.
    ids : numpy.ndarray of int64, shape (points,)
        Numbers of the records.
    alarms : numpy.ndarray of bool, shape (points,)
        Whether the alarm of any band was on.
    """

    kind: str
    option: int
    window: str
    time: NDArray[np.datetime64] = field(repr=False)
    values: NDArray[np.float64] = field(repr=False)
    ids: NDArray[np.int64] = field(repr=False)
    alarms: NDArray[np.bool_] = field(repr=False)


@dataclass(frozen=True, eq=False)
class Trend:
    """A level over time.

    Attributes
    ----------
    unit : str
        "g RMS", "°C".
    series : list of TrendSeries
        The one with most points first.
    refused : int
        Number of records that cannot carry the level.
    refusal : str
        Why the first of them cannot.
    """

    unit: str
    series: list[TrendSeries]
    refused: int
    refusal: str

    def to_pandas(self) -> pd.DataFrame:
        """A data frame of all series: time, value, id, alarm, series. Needs pandas."""
        from kestrel.tables import frame_of_trend
        return frame_of_trend(self)


def choice_of(of: str, axis: str, low: float | None, high: float | None, near: float | None,
              within: float | None) -> dict[str, float]:
    """What is asked for, in codes; SettingError names what cannot be."""
    level = values.code("of", of, _LEVELS)
    choice: dict[str, float] = {"of": level, "axis": values.axis_index(axis)}
    for name, value in (("low", low), ("high", high), ("near", near), ("within", within)):
        choice[name] = 0.0 if value is None else values.number(name, value, 0, 1e6, "Hz")
    if near is not None:
        if of != "peak" or low is not None or high is not None:
            raise SettingError("near follows the peak near a frequency: give of=\"peak\", and "
                               "neither low nor high.")
        choice["of"] = _NEAR
        if within is None:
            choice["within"] = choice["near"] * 0.01
        if choice["within"] <= 0:
            raise SettingError(f"near is {near!r} Hz, within {choice['within']:g} Hz; that holds "
                               "no peak. Give both above 0 Hz.")
    elif within is not None:
        raise SettingError("within is the distance from near at most; give near as well.")
    elif high is not None or low is not None:
        if high is None:
            raise SettingError(f"low is {low!r} Hz, but high is missing; a band needs both.")
        if not choice["low"] < choice["high"]:
            raise SettingError(f"A band cannot go from {low or 0:g} to {high:g} Hz; low must be "
                               "the lower one.")
        choice["of"] = values.code("of, in a band,", of, _BAND)
    return choice


def series_of(told: _kestrel._Series) -> TrendSeries:
    """A series of the module as arrays."""
    is_time, option, window, times, levels, ids, alarms = told
    return TrendSeries("time" if is_time else "spectrum", option,
                       values.word(values.WINDOWS, window), times.view("datetime64[ns]"), levels,
                       ids, alarms.view("bool"))
