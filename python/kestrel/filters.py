"""What is told of records, and which of them are asked for."""
# SPDX-License-Identifier: MIT
from __future__ import annotations

import contextlib
import datetime
import inspect
from collections.abc import Callable, Iterable, Mapping, Sequence
from typing import Any, Literal, ParamSpec, TypedDict, TypeVar

from kestrel import values
from kestrel.errors import SettingError

__all__ = ["Filter", "RecordSet", "Remarks"]

_IDS = range(-2**63, 2**63)


class Remarks(TypedDict, total=False):
    """What only the user knows of a record, as `Archive.write` takes it."""

    machine: str
    point: str
    orientation: str
    rpm: float | None
    note: str
    tags: Sequence[str]


class Filter(TypedDict, total=False):
    """Which records are wanted, as `Archive.search` takes it; all where nothing is given."""

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


class RecordSet(Filter, total=False):
    """Records of a baseline: a `Filter`, or `ids`, their numbers in the archive."""

    ids: Sequence[int]


Given = ParamSpec("Given")
Result = TypeVar("Result")


def called_as(template: Callable[Given, object]
              ) -> Callable[[Callable[..., Result]], Callable[Given, Result]]:
    """Gives a function of any keywords the parameters of another, for types and for help."""
    def with_signature(function: Callable[..., Result]) -> Callable[Given, Result]:
        result = inspect.signature(function).return_annotation
        parameters = inspect.signature(template).parameters.values()
        function.__signature__ = inspect.Signature(  # type: ignore[attr-defined]
            list(parameters), return_annotation=result)
        return function
    return with_signature


def filter_codes(filter: Mapping[str, Any]) -> dict[str, Any]:
    """A filter in codes; SettingError names what cannot be."""
    told: dict[str, Any] = {}
    for name, value in filter.items():
        if value is None:
            continue
        if name in ("since", "until") and isinstance(value, datetime.datetime):
            told[name] = values.nanoseconds_of(name, value)
        elif name in ("since", "until"):
            raise SettingError(f"{name} is {values.shown(value)}; it must be a datetime with a "
                               "time zone.")
        elif name == "kind":
            told["is_time"] = values.code(name, value, {"spectrum": 0, "time": 1}) == 1
        elif name == "range":
            told[name] = values.code(name, value, values.RANGES)
        elif name == "window":
            told[name] = values.code(name, value, values.WINDOWS)
        elif name == "option":
            told[name] = values.whole(name, value, values.OPTIONS)
        elif name in ("alarm", "simulated", "deleted"):
            told[name] = values.flag(name, value)
        elif name in ("machine", "point", "bench", "tag", "text"):
            told[name] = values.text(name, value)
        else:
            raise SettingError(f"Records cannot be searched by {values.shown(name)}; they can by "
                               f"{', '.join(Filter.__annotations__)}.")
    return told


def remark_values(remarks: Mapping[str, Any]) -> dict[str, Any]:
    """Remarks as the archive takes them; SettingError names what cannot be."""
    unknown = set(remarks) - set(Remarks.__annotations__)
    if unknown:
        raise SettingError(f"There is no remark {unknown.pop()!r}; the remarks are "
                           f"{', '.join(Remarks.__annotations__)}.")
    told: dict[str, Any] = {}
    for name, value in remarks.items():
        if name == "tags":
            tags = [value] if isinstance(value, str) else value
            if not isinstance(tags, Iterable):
                raise SettingError(f"tags is {values.shown(value)}; it must be a text, or several.")
            told[name] = [values.text(name, tag) for tag in tags]
        elif name == "rpm":
            told[name] = None if value is None else _speed(value)
        else:
            told[name] = values.text(name, value)
    return told


def _speed(rpm: object) -> float:
    speed = values.number("rpm", rpm, 0, 1e7, "rpm")
    if not speed:
        raise SettingError(f"rpm is {rpm!r}; leave it out for a shaft at rest.")
    return speed


def ids_of(ids: object) -> list[int]:
    """Numbers of records, one or several; SettingError of what is none."""
    if not isinstance(ids, Iterable) or isinstance(ids, (str, bytes)):
        return [id_of(ids)]
    return [id_of(each) for each in ids]


def id_of(id: object) -> int:
    """The number of a record; SettingError of what is none."""
    with contextlib.suppress(SettingError):
        return values.whole("id", id, _IDS)
    raise SettingError(f"id is {values.shown(id)}; it must be the number of a record, as "
                       "search gives it.")
