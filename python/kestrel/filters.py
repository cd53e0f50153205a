"""What is told of records, and which of them are asked for."""
# SPDX-License-Identifier: MIT
from __future__ import annotations

import datetime
from collections.abc import Sequence
from typing import Any, Literal, TypedDict

from kestrel import values
from kestrel.errors import SettingError

__all__ = ["Filter", "Remarks"]


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


def remark_values(remarks: Remarks) -> dict[str, Any]:
    """Remarks as the archive takes them; SettingError names what cannot be."""
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
