"""The archive: records found, read, amended, kept; levels over time; baselines."""
# SPDX-License-Identifier: MIT
from __future__ import annotations

import builtins
import os
from collections.abc import Iterable, Iterator, Sequence
from types import TracebackType
from typing import TYPE_CHECKING, Any, Literal

from kestrel import _kestrel, searches, standing, values
from kestrel.errors import ArchiveError
from kestrel.filters import RecordSet, called_as, filter_codes, id_of, ids_of, remark_values
from kestrel.kept import ArchivedRecord, kept_of, noted
from kestrel.trends import Trend, choice_of, series_of

if TYPE_CHECKING:
    from kestrel.bands import BandTable
    from kestrel.baseline import Baseline
    from kestrel.record import Record

__all__ = ["Archive", "open_archive"]

# Rows that are read at once on the way through many.
_BLOCK = 256


class Archive:
    """Records kept for good. Made by `open_archive`; use it in a ``with`` block, or close it.

    Notes
    -----
    It may be used from one thread at a time: another one that calls it
    meanwhile gets a `BusyError`. Other threads run while it reads and writes.
    After a fork it belongs to the parent; the child gets a `ClosedError` and
    opens one of its own.
    """

    __slots__ = ("__weakref__", "_core", "_place")

    def __init__(self, core: _kestrel.Archive, place: str) -> None:
        values.core(core, _kestrel.Archive, "kestrel.open_archive opens an archive.")
        self._core = core
        self._place = place

    def __enter__(self) -> Archive:
        return self

    def __exit__(self, kind: type[BaseException] | None, error: BaseException | None,
                 trace: TracebackType | None) -> None:
        self.close()

    def close(self) -> None:
        """Closes the archive; closing it again does nothing."""
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

    @called_as(searches.search)
    def search(self, **filter: Any) -> list[int]:
        """Finds records; returns their numbers, the latest first.

        Parameters
        ----------
        since, until : datetime, optional
            Taken at `since` or later, and before `until`; each with a time zone.
        machine, point, bench, tag : str, optional
            Exactly as the record has it.
        text : str, optional
            Found in machine, point, note or a tag.
        kind : {"spectrum", "time"}, optional
        option : int, optional
            Sample-rate option, 0 to 3.
        range : int, optional
            Full scale in g: 1, 5, 20 or 70.
        window : {"rectangular", "hanning", "flattop"}, optional
        alarm, simulated : bool, optional
            Whether the alarm of any band was on; whether the sensor was simulated.
        deleted : bool, optional
            True: deleted records, and no others.

        Returns
        -------
        list of int
        """
        return self._found(filter).tolist()

    def _found(self, filter: dict[str, Any]) -> memoryview:
        return memoryview(self._core.find(filter_codes(filter))).cast("q")

    def read(self, id: int) -> ArchivedRecord:
        """Reads a record with its points.

        Raises
        ------
        ArchiveError
            Where there is no record of this number.
        """
        number = id_of(id)
        told = self._core.get(number)
        if told is None:
            raise ArchiveError(f"There is no record {number} in the archive.")
        return kept_of(told)

    @called_as(searches.search)
    def read_all(self, **filter: Any) -> Iterator[ArchivedRecord]:
        """Reads the records that `search` finds, with their points; one at a time is in memory."""
        return self._each(self._found(filter))

    def _each(self, ids: memoryview) -> Iterator[ArchivedRecord]:
        for id in ids:
            told = self._core.get(id)
            if told is not None:
                yield kept_of(told)

    @called_as(searches.search)
    def list(self, **filter: Any) -> Iterator[ArchivedRecord]:
        """Reads the records that `search` finds, without their points, which is fast."""
        return self._listed(self._found(filter))

    def _listed(self, ids: memoryview) -> Iterator[ArchivedRecord]:
        for start in range(0, len(ids), _BLOCK):
            for told in self._core.list(ids[start:start + _BLOCK].tolist()):
                yield kept_of(told)

    def __len__(self) -> int:
        return self._core.count()

    def machines(self) -> Sequence[str]:
        """Names of the machines so far, sorted."""
        return self._core.machines()

    def points(self, machine: str) -> Sequence[str]:
        """Names of a machine's points so far, sorted."""
        return self._core.points(values.text("machine", machine))

    def damage(self) -> Sequence[str]:
        """Looks for damage: one line for each thing that is damaged, none where all is whole."""
        return self._core.damage()

    # Written.

    @called_as(searches.write)
    def write(self, record: Record | ArchivedRecord, **remarks: Any) -> int:
        """Keeps a record; it is on the disk when this returns.

        Parameters
        ----------
        record : Record or ArchivedRecord
            The remarks of an archived record are kept with it, but for those
            that are given here.
        machine, point, orientation : str
            What and where was measured, and where the axes point: "X radial, Z
            axial".
        rpm : float or None
            Speed of the shaft, rpm; None where it is not known.
        note : str
        tags : str or sequence of str

        Returns
        -------
        int
            Its number in this archive.
        """
        return self._core.keep(*noted(record, remark_values(remarks)))

    @called_as(searches.write_all)
    def write_all(self, records: Iterable[Record | ArchivedRecord], **remarks: Any) -> None:
        """Keeps many records at once, all or none.

        Parameters
        ----------
        records : iterable of Record or ArchivedRecord
        machine, point, orientation : str
            As in `write`, the same for each of them.
        rpm : float or None
            Speed of the shaft, rpm.
        note : str
        tags : str or sequence of str
        """
        told = remark_values(remarks)
        self._core.keep_all([noted(record, told) for record in records])

    @called_as(searches.amend)
    def amend(self, ids: int | Iterable[int], **remarks: Any) -> None:
        """Changes remarks of records, of all or of none; what is left out stays.

        Parameters
        ----------
        ids : int or iterable of int
        machine, point, orientation : str
        rpm : float or None
            Speed of the shaft, rpm; None where it is not known.
        note : str
        tags : str or sequence of str
            In place of those that each had.
        """
        told = remark_values(remarks)
        self._core.amend(self._there(ids), told)

    def delete(self, ids: int | Iterable[int], *, for_good: bool = False) -> None:
        """Deletes records; `bring_back` undoes it, unless they are deleted for good."""
        is_for_good = values.flag("for_good", for_good)
        chosen = self._there(ids)
        if is_for_good:
            self._core.remove(chosen)
        else:
            self._core.delete(chosen)

    def bring_back(self, ids: int | Iterable[int]) -> None:
        """Brings deleted records back."""
        self._core.bring_back(self._there(ids))

    def _there(self, ids: int | Iterable[int]) -> builtins.list[int]:
        chosen = ids_of(ids)
        found = {told[0] for told in self._core.list(chosen)}
        missing = [id for id in chosen if id not in found]
        if missing:
            raise ArchiveError(f"There is no record {missing[0]} in the archive. Nothing was changed.")
        return chosen

    # Over many records.

    @called_as(searches.trend)
    def trend(self, of: str = "rms", axis: values.Axis = "x", *, low: float | None = None,
              high: float | None = None, near: float | None = None, within: float | None = None,
              **filter: Any) -> Trend:
        """A level over time.

        Parameters
        ----------
        of : {"rms", "peak", "temperature", "supply"}
        axis : {"x", "y", "z"}
            Axis of an RMS or a peak.
        low, high : float, optional
            Ends of a band of the spectrum, Hz; left out: the whole spectrum.
        near : float, optional
            Follows the largest peak near this frequency, Hz.
        within : float, optional
            How far from it at most, Hz; left out: 1 % of it.
        since, until, machine, point, bench, tag, text
        kind, option, range, window, alarm, simulated, deleted
            Which records, as in `search`.

        Returns
        -------
        Trend
        """
        choice = choice_of(of, axis, low, high, near, within)
        unit, refused, refusal, series = _kestrel.trend(self._core, filter_codes(filter), choice)
        return Trend(unit, [series_of(each) for each in series], refused, refusal)

    def baseline(self, good: RecordSet, bad: RecordSet | None = None, *, bands: BandTable | None = None,
                 sigma: float = 3.0, percentile: Literal[95, 99] | None = None,
                 at_least: float = 1.5, fault_above: float = 3.0) -> Baseline:
        """Proposes thresholds of the alarm bands from records that are known to be good.

        Parameters
        ----------
        good : RecordSet
            Which records are good: {"tag": "good"}, {"ids": [3, 4, 5]}.
        bad : RecordSet, optional
            Which are known to be bad.
        bands : BandTable, optional
            Bands whose bins are used; where none are set, six that adjoin.
        sigma : float
            The warning lies this many standard deviations of the good records'
            decibels above their mean.
        percentile : {95, 99}, optional
            In place of `sigma`: the warning lies at the level that this
            percentage of all records stays below, with 95 % confidence.
        at_least : float
            The warning lies at least this many dB above the mean, however small
            the deviation.
        fault_above : float
            The fault lies this many dB above the warning.

        Returns
        -------
        Baseline

        Raises
        ------
        CannotTell
            Where there are too few good records.
        """
        from kestrel.baseline import propose
        return propose(self._core, good, bad, bands, sigma, percentile, at_least, fault_above)

    def __repr__(self) -> str:
        return f"<kestrel.Archive: {self.place}, {'open' if self.is_open else 'closed'}>"


def open_archive(place: str | os.PathLike[str] | None = None, *, read_only: bool = False
                 ) -> Archive:
    """Opens the archive.

    Parameters
    ----------
    place : str or path, optional
        A file, or a server (postgresql://...); left out: the user's own
        archive, which the program keeps too. A missing file is made, but not
        for reading only.
    read_only : bool
        Opens it for reading only.

    Returns
    -------
    Archive

    Raises
    ------
    ArchiveError
        Names the place and says what to do.
    """
    chosen = _kestrel.usual_archive() if place is None else values.path(place)
    if place is not None and not chosen:
        raise ArchiveError("place is empty; name a file or a server.")
    if not chosen:
        raise ArchiveError("The user's data folder, where the archive usually is, is not known: "
                           "name a place.")
    core = _kestrel.Archive(chosen, not values.flag("read_only", read_only))
    standing.stands(core)
    return Archive(core, chosen)
