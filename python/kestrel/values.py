"""Words and units in which settings and results are told."""
# SPDX-License-Identifier: MIT
from __future__ import annotations

import datetime
from collections.abc import Mapping
from typing import Literal, cast

from kestrel.errors import SettingError

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

_EPOCH = datetime.datetime(1970, 1, 1, tzinfo=datetime.timezone.utc)


def _several(values: list[object]) -> str:
    return ", ".join(repr(value) for value in values[:-1]) + f" or {values[-1]!r}"


def code(what: str, value: object, codes: Mapping[str, int] | Mapping[int, int]) -> int:
    """The sensor's code of a value; SettingError names what there is."""
    for name, number in codes.items():
        if value == name and not isinstance(value, bool):
            return number
    raise SettingError(f"{what} is {value!r}; it can be {_several(list(codes))}.")


def whole(what: str, value: object, allowed: range) -> int:
    """A whole number of a range; SettingError names the range."""
    number = value.__index__() if hasattr(value, "__index__") else None
    if isinstance(number, int) and not isinstance(value, bool) and number in allowed:
        return number
    raise SettingError(f"{what} is {value!r}; it is a whole number from {allowed[0]} to "
                       f"{allowed[-1]}.")


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
    return code("axis", str(axis).lower(), {"x": 0, "y": 1, "z": 2})


def quantity_codes(quantity: str, amplitude: str | None) -> tuple[int, int | None]:
    """Codes of a quantity and an amplitude."""
    if amplitude is None:
        return code("quantity", quantity, QUANTITIES), None
    if quantity == "density" and amplitude != "rms":
        raise SettingError(f"amplitude is {amplitude!r}; a density is power, which is always "
                           "\"rms\". Leave amplitude out, or choose another quantity.")
    return code("quantity", quantity, QUANTITIES), code("amplitude", amplitude, AMPLITUDES)


def moment(nanoseconds: int) -> datetime.datetime:
    """A time with its zone, UTC; parts of a microsecond are cut off."""
    return _EPOCH + datetime.timedelta(microseconds=nanoseconds // 1000)


def nanoseconds_of(what: str, time: datetime.datetime) -> int:
    """Nanoseconds since 1970 of a time that tells its zone; SettingError of one that does not."""
    if time.tzinfo is None:
        raise SettingError(f"{what} is {time!r}, which tells no zone. Say which: "
                           "datetime(..., tzinfo=timezone.utc), or time.astimezone().")
    return (time - _EPOCH) // datetime.timedelta(microseconds=1) * 1000
