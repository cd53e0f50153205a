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
