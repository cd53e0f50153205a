"""Every exception of the package: one family, with the program's texts and cures.

All but `Interrupted` are a kind of `Error`. `str(error)` is for people: what
happened, what it means, and the cure where one is known.
"""
# SPDX-License-Identifier: MIT
from __future__ import annotations

from typing import TYPE_CHECKING

if TYPE_CHECKING:
    from kestrel.record import Record

__all__ = ["ArchiveError", "BusyError", "CannotTell", "ClosedError", "Error", "FileError",
           "Interrupted", "SensorLost", "SensorRefused", "SettingError", "Stopped", "UnknownName",
           "WrongKind"]


class Error(Exception):
    """What all exceptions of the package have in common.

    Parameters
    ----------
    text : str
        What happened, what it means and what helps, for people.

    Attributes
    ----------
    text : str
        The same as ``str(error)``.
    """

    def __init__(self, text: str) -> None:
        super().__init__(text)
        self.text = text

    def __str__(self) -> str:
        return self.text


class SensorLost(Error):
    """No sensor could be reached, or it was lost on the way.

    Close the sensor and open it again once it is attached.
    """


class SensorRefused(Error):
    """A step that the sensor cannot do as it is; it is still there."""


class SettingError(Error, ValueError):
    """A value that is not one of those that can be; the text names both."""


class UnknownName(SettingError, KeyError):
    """A register, a field or a band of this name is not there; the text tells which are."""


class ClosedError(Error):
    """A sensor or an archive was used after it was closed, or after a fork."""


class BusyError(Error):
    """A sensor or an archive is in use already.

    Raised where a second sensor is opened in one process, where a second
    thread uses what another one is using, and where a callback uses the
    sensor whose step it was called from.
    """


class ArchiveError(Error):
    """The archive cannot be had or read; the text names place and cure."""


class FileError(Error):
    """A file that cannot be read or written; the text names it and the place in it."""


class CannotTell(Error):
    """The data cannot carry what was asked for.

    Attributes
    ----------
    title : str
        What cannot be told from what.
    reason : str
        Why, with the two numbers that decide.
    cure : str
        What to do: "Capture at option 3".
    cure_option : int or None
        The sample-rate option that would do.
    has, needs : float
        The two numbers that decide, in `unit`; 0 where none do.
    unit : str
        "Hz", "s", or empty.
    """

    def __init__(self, text: str, title: str = "", reason: str = "", cure: str = "",
                 cure_option: int | None = None, has: float = 0.0, needs: float = 0.0,
                 unit: str = "") -> None:
        super().__init__(text)
        self.title = title or text
        self.reason = reason
        self.cure = cure
        self.cure_option = cure_option
        self.has = has
        self.needs = needs
        self.unit = unit


class WrongKind(CannotTell, AttributeError):
    """What only records of the other kind have: the frequency of a time record."""


class Stopped(Error):
    """`Sensor.stop` ended a step before it was done.

    Attributes
    ----------
    record : Record or None
        What the sensor held after a capture was stopped: the data of the
        record before, since data were not ready.
    """

    def __init__(self, text: str, record: Record | None = None) -> None:
        super().__init__(text)
        self.record = record


class Interrupted(KeyboardInterrupt):
    """Ctrl-C ended a capture as Stop does: the sensor is idle and can go on.

    A kind of `KeyboardInterrupt`, so that a script that does not know it ends.

    Attributes
    ----------
    text : str
        The same as ``str(error)``.
    record : Record or None
        What the sensor held then; `Record.is_new` tells whether it is of this
        capture.
    """

    def __init__(self, text: str, record: Record | None = None) -> None:
        super().__init__(text)
        self.text = text
        self.record = record
