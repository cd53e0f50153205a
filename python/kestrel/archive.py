"""The archive: records found, read, amended, kept; levels over time; baselines."""
# SPDX-License-Identifier: MIT
from __future__ import annotations

import datetime
from collections.abc import Iterable, Iterator, Sequence
from dataclasses import dataclass
from types import TracebackType
from typing import TYPE_CHECKING, Any, Literal

from kestrel import _kestrel, values
from kestrel.errors import ArchiveError
from kestrel.filters import Filter, Remarks, filter_codes, remark_values
from kestrel.record import Record
from kestrel.trends import Trend, choice_of, series_of

if TYPE_CHECKING:
    from kestrel.bands import BandTable
    from kestrel.baseline import Baseline

__all__ = ["Archive", "ArchivedRecord", "open_archive"]

# Rows that are read at once on the way through many.
_BLOCK = 256


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
        return self._core.keep(record._core, remark_values(remarks))  # type: ignore[arg-type]

    def amend(self, ids: int | Iterable[int], **remarks: Any) -> None:
        """Changes what was told of records; what is not told stays. All or none."""
        self._core.amend(_ids(ids), remark_values(remarks))  # type: ignore[arg-type]

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
        choice = choice_of(of, axis, low, high, near, within)
        unit, refused, refusal, series = _kestrel.trend(
            self._core, filter_codes(filter), choice)  # type: ignore[arg-type]
        return Trend(unit, [series_of(each) for each in series], refused, refusal)

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
