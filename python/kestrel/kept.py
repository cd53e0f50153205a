"""A record as an archive has it."""
# SPDX-License-Identifier: MIT
from __future__ import annotations

import datetime
from dataclasses import dataclass
from typing import Any

from kestrel import _kestrel, values
from kestrel.filters import Remarks
from kestrel.record import Record

__all__ = ["ArchivedRecord"]


@dataclass(frozen=True)
class ArchivedRecord:
    """A record as an archive keeps it, with its remarks.

    Attributes
    ----------
    id : int
        Its number in its archive.
    record : Record
        From `Archive.list` it comes without points: all are 0.
    machine, point, orientation, note : str
        Remarks of the user.
    rpm : float or None
        Speed of the shaft, rpm.
    tags : tuple of str
        Sorted.
    program, bench : str
        The version of the program that read it, and the bench or computer where.
    levels : tuple of 3
        RMS and peak in g, for X, Y and Z; None where the record carries none.
    deleted : datetime or None
        When it was deleted; None where it was not.
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
        """Its remarks, as `Archive.amend` takes them."""
        return {"machine": self.machine, "point": self.point, "orientation": self.orientation,
                "rpm": self.rpm, "note": self.note, "tags": list(self.tags)}


def kept_of(told: _kestrel._Kept) -> ArchivedRecord:
    """Of what the module tells."""
    number, core, remarks, program, bench, levels, deleted = told
    return ArchivedRecord(number, Record(core), remarks["machine"], remarks["point"],
                          remarks["orientation"], remarks["rpm"], remarks["note"],
                          tuple(remarks["tags"]), program, bench, tuple(levels),
                          None if deleted is None else values.moment(deleted))


def noted(record: Record | ArchivedRecord, told: dict[str, Any]
          ) -> tuple[_kestrel.Record, dict[str, Any]]:
    """A record and its remarks as the module keeps them."""
    if isinstance(record, ArchivedRecord):
        return record.record._core, {**record.remarks(), **told}
    return values.made("record", record, Record)._core, told
