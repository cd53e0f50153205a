"""The archive: records found, read, amended, kept; levels over time; baselines."""
# SPDX-License-Identifier: MIT
from __future__ import annotations

import datetime
from collections.abc import Iterable, Iterator, Sequence
from dataclasses import dataclass, field
from types import TracebackType
from typing import TYPE_CHECKING, Any, Literal, TypedDict

from kestrel import _kestrel, values
from kestrel.errors import ArchiveError, SettingError
from kestrel.record import Record

if TYPE_CHECKING:
    import numpy as np
    import pandas as pd
    from numpy.typing import NDArray

    from kestrel.bands import BandTable
    from kestrel.baseline import Baseline

__all__ = ["Archive", "ArchivedRecord", "Trend", "TrendSeries", "open_archive"]

# Rows that are read at once on the way through many.
_BLOCK = 256
_LEVELS = {"rms": 0, "peak": 1, "temperature": 4, "supply": 5}
_BAND = {"rms": 2, "peak": 3}
_NEAR = 6


class Remarks(TypedDict, total=False):
    """What only the user knows of a record."""

    machine: str
    point: str
    orientation: str
    rpm: float | None
    note: str
    tags: Sequence[str]


class Filter(TypedDict, total=False):
    """Which records are asked for; what is not there asks for nothing."""

    since: datetime.datetime
    until: datetime.datetime
    machine: str
    point: str
    bench: str
    tag: str
    text: str
    kind: Literal["spectrum", "time"]
    option: int
    range: int
    window: values.Window
    alarm: bool
    simulated: bool
    deleted: bool


@dataclass(frozen=True)
class ArchivedRecord:
    """A record as the archive has it, with what was told of it.

    Attributes
    ----------
    id : int
        Its number in its archive.
    record : Record
        In a list its points are not read: all are 0.
    machine, point, orientation, note : str
        What was told of it.
    rpm : float or None
        Speed of the shaft, 1/min.
    tags : tuple of str
        Sorted.
    program, bench : str
        The version that read it and the computer it stood at.
    levels : tuple of 3
        RMS and peak in g of X, Y, Z; None where it carries none.
    deleted : datetime or None
        When it was deleted, but not yet for good.
    """

    id: int
    record: Record
    machine: str
    point: str
    orientation: str
    rpm: float | None
    note: str
    tags: tuple[str, ...]
    program: str
    bench: str
    levels: tuple[tuple[float, float] | None, ...]
    deleted: datetime.datetime | None

    @property
    def taken(self) -> datetime.datetime | None:
        """When it was taken, UTC."""
        return self.record.taken

    def remarks(self) -> Remarks:
        """What was told of it, as `Archive.amend` takes it."""
        return {"machine": self.machine, "point": self.point, "orientation": self.orientation,
                "rpm": self.rpm, "note": self.note, "tags": list(self.tags)}


def _kept(told: _kestrel._Kept) -> ArchivedRecord:
    number, core, remarks, program, bench, levels, deleted = told
    return ArchivedRecord(number, Record(core), remarks["machine"], remarks["point"],
                          remarks["orientation"], remarks["rpm"], remarks["note"],
                          tuple(remarks["tags"]), program, bench, tuple(levels),
                          None if deleted is None else values.moment(deleted))


def filter_codes(filter: Filter) -> dict[str, Any]:
    """A filter in codes; SettingError names what cannot be."""
    told: dict[str, Any] = {}
    for name, value in filter.items():
        if value is None:
            continue
        if name in ("since", "until") and isinstance(value, datetime.datetime):
            told[name] = values.nanoseconds_of(name, value)
        elif name in ("since", "until"):
            raise SettingError(f"{name} is {value!r}; it is a datetime with a zone.")
        elif name == "kind":
            told["is_time"] = values.code(name, value, {"spectrum": 0, "time": 1}) == 1
        elif name == "range":
            told[name] = values.code(name, value, values.RANGES)
        elif name == "window":
            told[name] = values.code(name, value, values.WINDOWS)
        elif name == "option":
            told[name] = values.whole(name, value, values.OPTIONS)
        elif name in ("alarm", "simulated", "deleted"):
            told[name] = bool(value)
        elif name in ("machine", "point", "bench", "tag", "text"):
            told[name] = str(value)
        else:
            raise SettingError(f"There is nothing to search by called {name!r}; there are "
                               f"{', '.join(Filter.__annotations__)}.")
    return told


def _remark_values(remarks: Remarks) -> dict[str, Any]:
    unknown = set(remarks) - set(Remarks.__annotations__)
    if unknown:
        raise SettingError(f"There is no remark {unknown.pop()!r}; there are "
                           f"{', '.join(Remarks.__annotations__)}.")
    told: dict[str, Any] = dict(remarks)
    if "tags" in told:
        told["tags"] = [told["tags"]] if isinstance(told["tags"], str) else list(told["tags"])
    rpm = told.get("rpm")
    if rpm is not None and not 0 < rpm <= 1e6:
        raise SettingError(f"rpm is {rpm!r}; it is a speed in 1/min above 0, to 1,000,000.")
    return told


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
        Whether some band's alarm was on.
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
        Records that cannot carry the level.
    refusal : str
        Why, of the first of them.
    """

    unit: str
    series: list[TrendSeries]
    refused: int
    refusal: str

    def to_pandas(self) -> pd.DataFrame:
        """A data frame of all series: time, value, id, alarm, series. Needs pandas."""
        from kestrel.tables import frame_of_trend
        return frame_of_trend(self)


class Archive:
    """Records kept for good. Made by `open_archive`; use it in a ``with`` block, or close it.

    Notes
    -----
    It may be used from one thread at a time: another one that calls in
    meanwhile gets a `BusyError`. Reads and writes let other threads run. After
    a fork the child opens one of its own.
    """

    def __init__(self, core: _kestrel.Archive, place: str) -> None:
        self._core = core
        self._place = place

    def __enter__(self) -> Archive:
        return self

    def __exit__(self, kind: type[BaseException] | None, error: BaseException | None,
                 trace: TracebackType | None) -> None:
        self.close()

    def close(self) -> None:
        """Lets it go; once more does nothing."""
        self._core.close()

    @property
    def is_open(self) -> bool:
        """Whether it can be used."""
        return self._core.is_open

    @property
    def place(self) -> str:
        """Where it is, without a password."""
        return _kestrel.shown_place(self._place)

    # Found and read.

    def search(self, **filter: Any) -> list[int]:
        """Numbers of records, the latest first.

        Parameters
        ----------
        **filter
            since and until (datetime with a zone; taken then or later, and
            before), machine, point, bench, tag, text (in machine, point, note
            or a tag), kind ("spectrum" or "time"), option, range (g), window,
            alarm, simulated, deleted.

        Returns
        -------
        list of int
        """
        return self._core.find(filter_codes(filter))  # type: ignore[arg-type]

    def read(self, id: int) -> ArchivedRecord:
        """A record with its points.

        Raises
        ------
        ArchiveError
            Where there is none of this number.
        """
        told = self._core.get(int(id))
        if told is None:
            raise ArchiveError(f"There is no record {id} in the archive.")
        return _kept(told)

    def read_all(self, **filter: Any) -> Iterator[ArchivedRecord]:
        """Records with their points one after the other, the latest first; few are in memory."""
        for id in self.search(**filter):
            told = self._core.get(id)
            if told is not None:
                yield _kept(told)

    def list(self, **filter: Any) -> Iterator[ArchivedRecord]:
        """Records without their points, the latest first."""
        ids = self.search(**filter)
        for start in range(0, len(ids), _BLOCK):
            for told in self._core.list(ids[start:start + _BLOCK]):
                yield _kept(told)

    def __len__(self) -> int:
        return self._core.count()

    def machines(self) -> Sequence[str]:
        """Machines told so far, sorted."""
        return self._core.machines()

    def points(self, machine: str) -> Sequence[str]:
        """Points told so far of a machine, sorted."""
        return self._core.points(machine)

    def damage(self) -> Sequence[str]:
        """What is damaged, a line each."""
        return self._core.damage()

    # Written.

    def write(self, record: Record, **remarks: Any) -> int:
        """Keeps a record; it is on the disk when this returns.

        Parameters
        ----------
        record : Record
        **remarks
            machine, point, orientation, rpm (1/min), note, tags.

        Returns
        -------
        int
            Its number.
        """
        return self._core.keep(record._core, _remark_values(remarks))  # type: ignore[arg-type]

    def amend(self, ids: int | Iterable[int], **remarks: Any) -> None:
        """Changes what was told of records; what is not told stays. All or none."""
        self._core.amend(_ids(ids), _remark_values(remarks))  # type: ignore[arg-type]

    def delete(self, ids: int | Iterable[int], *, for_good: bool = False) -> None:
        """Deletes records, so that they can be brought back; or for good."""
        (self._core.remove if for_good else self._core.delete)(_ids(ids))

    def bring_back(self, ids: int | Iterable[int]) -> None:
        """Brings deleted records back."""
        self._core.bring_back(_ids(ids))

    # Over many records.

    def trend(self, of: str = "rms", axis: values.Axis = "x", *, low: float | None = None,
              high: float | None = None, near: float | None = None, within: float | None = None,
              **filter: Any) -> Trend:
        """A level over time.

        Parameters
        ----------
        of : {"rms", "peak", "temperature", "supply"}
        axis : {"x", "y", "z"}
            Of an RMS or a peak.
        low, high : float, optional
            Of a band of spectra, Hz.
        near : float, optional
            The largest peak near this frequency, Hz.
        within : float, optional
            How far from it, Hz; 1 % where not told.
        **filter
            As `search` takes it.

        Returns
        -------
        Trend
        """
        choice = _trend_choice(of, axis, low, high, near, within)
        unit, refused, refusal, series = _kestrel.trend(
            self._core, filter_codes(filter), choice)  # type: ignore[arg-type]
        return Trend(unit, [_series(each) for each in series], refused, refusal)

    def baseline(self, good: Filter, bad: Filter | None = None, *, bands: BandTable | None = None,
                 sigma: float = 3.0, percentile: Literal[95, 99] | None = None,
                 at_least: float = 1.5, fault_above: float = 3.0) -> Baseline:
        """Thresholds of alarm bands from records that are known to be good.

        Parameters
        ----------
        good : dict
            Which records are good, as `search` takes it; `ids` names some.
        bad : dict, optional
            Which are bad.
        bands : BandTable, optional
            Whose bins are taken; six that adjoin where none are set.
        sigma : float
            Warning at the mean of the decibels and so many standard deviations.
        percentile : {95, 99}, optional
            Warning at what so many percent of all records keep to, said with
            95 % confidence, in place of it.
        at_least : float
            dB above the mean, however small the deviation.
        fault_above : float
            dB of the fault above the warning.

        Returns
        -------
        Baseline

        Raises
        ------
        CannotTell
            Where there are too few records.
        """
        from kestrel.baseline import propose
        return propose(self._core, good, bad, bands, sigma, percentile, at_least, fault_above)

    def __repr__(self) -> str:
        return f"<kestrel.Archive: {self.place}, {'open' if self.is_open else 'closed'}>"


def _ids(ids: int | Iterable[int]) -> list[int]:
    return [ids] if isinstance(ids, int) else [int(id) for id in ids]


def _trend_choice(of: str, axis: str, low: float | None, high: float | None, near: float | None,
                  within: float | None) -> dict[str, float]:
    level = values.code("of", of, _LEVELS)
    choice = {"of": level, "axis": values.axis_index(axis), "low": low or 0.0, "high": high or 0.0,
              "near": near or 0.0, "within": within or 0.0}
    if near is not None:
        if of != "peak" or low is not None or high is not None:
            raise SettingError("near is told of a peak, without low and high.")
        choice["of"] = _NEAR
        choice["within"] = near * 0.01 if within is None else within
        if choice["within"] <= 0:
            raise SettingError(f"within is {choice['within']!r} Hz, which holds no peak.")
    elif high is not None or low is not None:
        if high is None or not (low or 0.0) < high:
            raise SettingError(f"A band from {low} to {high} Hz is none.")
        choice["of"] = values.code("of, in a band,", of, _BAND)
    return choice


def _series(told: _kestrel._Series) -> TrendSeries:
    is_time, option, window, times, levels, ids, alarms = told
    return TrendSeries("time" if is_time else "spectrum", option,
                       values.word(values.WINDOWS, window), times.view("datetime64[ns]"), levels,
                       ids, alarms.view("bool"))


def open_archive(place: str | None = None, *, read_only: bool = False) -> Archive:
    """Opens the archive.

    Parameters
    ----------
    place : str, optional
        A file, or a server (postgresql://...); usually the user's own archive.
        A file that is not there is made, unless it is only read.
    read_only : bool
        Changes nothing.

    Returns
    -------
    Archive

    Raises
    ------
    ArchiveError
        Names the place and the cure.
    """
    chosen = _kestrel.usual_archive() if place is None else str(place)
    if not chosen:
        raise ArchiveError("No home of the user is known that an archive could be in; name a "
                           "place.")
    return Archive(_kestrel.Archive(chosen, not read_only), chosen)
