"""Words and units in which settings and results are told."""
# SPDX-License-Identifier: MIT
from __future__ import annotations

import contextlib
import datetime
import numbers
import operator
import os
from collections.abc import Mapping
from typing import Literal, TypeVar, cast

from kestrel.errors import FileError, SettingError

Mode = Literal["manual", "timer", "time"]
Window = Literal["rectangular", "hanning", "flattop"]
Axis = Literal["x", "y", "z"]
Quantity = Literal["g", "velocity", "displacement", "density"]
Amplitude = Literal["peak", "rms", "pp"]

#: The three axes, in the order of the sensor.
AXES: tuple[Axis, Axis, Axis] = ("x", "y", "z")
MODES: Mapping[str, int] = {"manual": 0, "timer": 1, "time": 2}
RANGES: Mapping[int, int] = {1: 0, 5: 1, 20: 2, 70: 3}  # g
WINDOWS: Mapping[str, int] = {"rectangular": 0, "hanning": 1, "flattop": 2}
QUANTITIES: Mapping[str, int] = {"g": 0, "density": 2, "velocity": 3, "displacement": 4}
AMPLITUDES: Mapping[str, int] = {"peak": 0, "rms": 1, "pp": 2}
OPTIONS = range(4)
AVERAGES = range(1, 256)

# Years 1824 to 2116: what lies beyond is before or after every record.
_FARTHEST = 2**62
_EPOCH = datetime.datetime(1970, 1, 1, tzinfo=datetime.timezone.utc)


def _several(values: list[object]) -> str:
    return ", ".join(repr(value) for value in values[:-1]) + f" or {values[-1]!r}"


def shown(value: object) -> str:
    """A value as a text shows it, whatever it is: short, on one line."""
    try:
        text = repr(value)
    except Exception:
        text = f"a {type(value).__name__}"
    text = " ".join(text.split())
    return text if len(text) <= 60 else text[:57] + "..."


def code(what: str, value: object, codes: Mapping[str, int] | Mapping[int, int]) -> int:
    """The sensor's code of a value; SettingError names what there is."""
    if isinstance(value, (str, numbers.Real)) and not isinstance(value, bool):
        for name, number in codes.items():
            if value == name:
                return number
    raise SettingError(f"{what} is {shown(value)}; it can be {_several(list(codes))}.")


def _is_flag(value: object) -> bool:
    return isinstance(value, bool) or type(value).__name__ == "bool_"  # numpy's


def whole(what: str, value: object, allowed: range) -> int:
    """A whole number of a range; SettingError names the range."""
    if not _is_flag(value):
        try:
            number = operator.index(value)  # type: ignore[arg-type]
        except TypeError:
            number = None
        if number is not None and number in allowed:
            return number
    raise SettingError(f"{what} is {shown(value)}; it must be a whole number from "
                       f"{allowed[0]} to {allowed[-1]}.")


def number(what: str, value: object, lowest: float, highest: float, unit: str = "") -> float:
    """A number of a range; SettingError names the range."""
    if isinstance(value, numbers.Real) and not isinstance(value, bool):
        with contextlib.suppress(OverflowError):
            if lowest <= float(value) <= highest:
                return float(value)
    raise SettingError(f"{what} is {shown(value)}; it must be a number from {lowest:.10g} to "
                       f"{highest:.10g}{unit and ' ' + unit}.")


def text(what: str, value: object) -> str:
    """A text that can be kept; SettingError of what is none."""
    if not isinstance(value, str):
        raise SettingError(f"{what} is {shown(value)}; it must be a text.")
    try:
        value.encode()
    except UnicodeEncodeError as error:
        raise SettingError(f"{what} is {shown(value)}, which no file can hold: character "
                           f"{error.start + 1} is only half of one. Take it out.") from None
    if "\0" in value:
        raise SettingError(f"{what} is {shown(value)}, which no file can hold: character "
                           f"{value.index(chr(0)) + 1} is a null character. Take it out.")
    return str(value)


def flag(what: str, value: object) -> bool:
    """True or False; SettingError of anything else, which could be meant either way."""
    if _is_flag(value):
        return bool(value)
    raise SettingError(f"{what} is {shown(value)}; it must be True or False.")


def core(value: object, kind: type, cure: str) -> None:
    """TypeError where a part of the package is made of what is not part of the module."""
    if type(value) is not kind:
        raise TypeError(f"This is not made by calling its class. {cure}")


def path(what: object) -> str:
    """The name of a file; FileError of one that no file can have, TypeError of no name."""
    name = os.fspath(what)  # type: ignore[call-overload]
    try:
        told = os.fsdecode(name)
        os.fsencode(told)
    except UnicodeError:
        raise FileError(f"{shown(what)} cannot be the name of a file.") from None
    if "\0" in told:
        raise FileError(f"{shown(what)} cannot be the name of a file.")
    return told


Made = TypeVar("Made")


def made(what: str, value: object, kind: type[Made]) -> Made:
    """A value of a type; TypeError names both."""
    if isinstance(value, kind):
        return value
    raise TypeError(f"{what} is {shown(value)}; it must be a kestrel.{kind.__name__}.")


def word(codes: Mapping[str, int], number: int) -> str:
    """The word of a code; "none (3)" of one that means nothing."""
    return next((name for name, each in codes.items() if each == number), f"none ({number})")


def mode_of(number: int) -> Mode:
    """The word of a record mode."""
    return cast(Mode, word(MODES, number))


def window_of(number: int) -> Window:
    """The word of a window; "none (3)" of the code that is none, which no type foresees."""
    return cast(Window, word(WINDOWS, number))


def range_of(number: int) -> int:
    """Full scale in g of a range code."""
    return next(g for g, each in RANGES.items() if each == number)


def axis_index(axis: str) -> int:
    """0, 1 or 2."""
    return code("axis", axis.lower() if isinstance(axis, str) else axis, {"x": 0, "y": 1, "z": 2})


def quantity_codes(quantity: str, amplitude: str | None) -> tuple[int, int | None]:
    """Codes of a quantity and an amplitude."""
    chosen = code("quantity", quantity, QUANTITIES)
    if amplitude is None:
        return chosen, None
    told = code("amplitude", amplitude, AMPLITUDES)
    if chosen == QUANTITIES["density"] and told != AMPLITUDES["rms"]:
        raise SettingError(f"amplitude is {amplitude!r}; a density is power, which is always "
                           "\"rms\". Leave amplitude out, or choose another quantity.")
    return chosen, told


def moment(nanoseconds: int) -> datetime.datetime:
    """A time with its zone, UTC; parts of a microsecond are cut off."""
    return _EPOCH + datetime.timedelta(microseconds=nanoseconds // 1000)


def nanoseconds_of(what: str, time: datetime.datetime) -> int:
    """Nanoseconds since 1970 of a time that tells its zone; SettingError of one that does not."""
    if time.tzinfo is None:
        raise SettingError(f"{what} is {shown(time)}, which has no time zone. Give one: "
                           "datetime(..., tzinfo=timezone.utc), or time.astimezone().")
    found = (time - _EPOCH) // datetime.timedelta(microseconds=1) * 1000
    return max(-_FARTHEST, min(found, _FARTHEST))
