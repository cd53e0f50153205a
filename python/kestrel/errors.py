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
    """The base of all exceptions of the package except `Interrupted`.

    Parameters
    ----------
    text : str
        What happened, what it means and what to do, for people.

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
    """No sensor could be reached, or it was lost during a step.

    Close the sensor and open it again once it is attached.
    """


class SensorRefused(Error):
    """The sensor did not do a step; the text says why. It is still connected."""


class SettingError(Error, ValueError):
    """A value that is not allowed; the text names it and what is allowed."""


class UnknownName(SettingError, KeyError):
    """There is no register, field or band of this name; the text says which there are."""


class ClosedError(Error):
    """A sensor or an archive was used after it was closed, or after a fork."""


class BusyError(Error):
    """A sensor or an archive is in use already.

    Raised where a second sensor is opened in one process, where a second
    thread uses what another one is using, and where a callback uses the
    sensor whose step it was called from.
    """


class ArchiveError(Error):
    """The archive cannot be opened, read or written; the text says why and what to do."""


class FileError(Error):
    """A file that cannot be read or written; the text names it and the place in it."""


class CannotTell(Error):
    """The data cannot carry what was asked for.

    Attributes
    ----------
    title : str
        What cannot be determined.
    reason : str
        Why, with the two numbers that decide.
    cure : str
        What to do, for example "Capture at option 3."
    cure_option : int or None
        The sample-rate option that would do; None where none is known.
    has, needs : float
        What the data have and what would be needed, in `unit`; both 0 where no
        number decides.
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
    """Asked of the wrong kind of record: a time record has no `frequency`, a spectrum no `time`."""


class Stopped(Error):
    """`Sensor.stop` ended a step before it was done.

    Attributes
    ----------
    record : Record or None
        After a stopped capture what the sensor held, which is the data of the
        record before: new ones were not ready. None for other steps.
    """

    def __init__(self, text: str, record: Record | None = None) -> None:
        super().__init__(text)
        self.record = record


class Interrupted(KeyboardInterrupt):
    """Ctrl-C ended a capture as the Stop button does: the sensor is idle and can go on.

    It is a `KeyboardInterrupt`: a script that does not catch it ends as usual.

    Attributes
    ----------
    text : str
        The same as ``str(error)``.
    record : Record or None
        What the sensor held then; `Record.is_new` tells whether it comes from
        this capture.
    """

    def __init__(self, text: str, record: Record | None = None) -> None:
        super().__init__(text)
        self.text = text
        self.record = record
