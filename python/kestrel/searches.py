"""How searches, trends and remarks are called: parameters that several functions share."""
# SPDX-License-Identifier: MIT
from __future__ import annotations

import datetime
from collections.abc import Iterable, Sequence
from typing import TYPE_CHECKING, Any, Literal

from kestrel import values

if TYPE_CHECKING:
    from kestrel.archive import Archive
    from kestrel.kept import ArchivedRecord
    from kestrel.record import Record

# What is left out stays as it is.
KEPT: Any = ...


def search(self: Archive, *, since: datetime.datetime | None = None,
           until: datetime.datetime | None = None, machine: str | None = None,
           point: str | None = None, bench: str | None = None, tag: str | None = None,
           text: str | None = None, kind: Literal["spectrum", "time"] | None = None,
           option: int | None = None, range: int | None = None,
           window: values.Window | None = None, alarm: bool | None = None,
           simulated: bool | None = None, deleted: bool | None = None) -> None:
    """Of records that are asked for."""


def trend(self: Archive, of: Literal["rms", "peak", "temperature", "supply"] = "rms",
          axis: values.Axis = "x", *, low: float | None = None, high: float | None = None,
          near: float | None = None, within: float | None = None,
          since: datetime.datetime | None = None, until: datetime.datetime | None = None,
          machine: str | None = None, point: str | None = None, bench: str | None = None,
          tag: str | None = None, text: str | None = None,
          kind: Literal["spectrum", "time"] | None = None, option: int | None = None,
          range: int | None = None, window: values.Window | None = None,
          alarm: bool | None = None, simulated: bool | None = None,
          deleted: bool | None = None) -> None:
    """Of a level over time."""


def write(self: Archive, record: Record | ArchivedRecord, *, machine: str = KEPT,
          point: str = KEPT, orientation: str = KEPT, rpm: float | None = KEPT, note: str = KEPT,
          tags: str | Sequence[str] = KEPT) -> None:
    """Of a record that is kept."""


def write_all(self: Archive, records: Iterable[Record | ArchivedRecord], *, machine: str = KEPT,
              point: str = KEPT, orientation: str = KEPT, rpm: float | None = KEPT,
              note: str = KEPT, tags: str | Sequence[str] = KEPT) -> None:
    """Of records that are kept."""


def amend(self: Archive, ids: int | Iterable[int], *, machine: str = KEPT, point: str = KEPT,
          orientation: str = KEPT, rpm: float | None = KEPT, note: str = KEPT,
          tags: str | Sequence[str] = KEPT) -> None:
    """Of records that are known already."""
