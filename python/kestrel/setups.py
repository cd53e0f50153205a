"""The whole configuration of a sensor as a value: saved, compared, restored."""
# SPDX-License-Identifier: MIT
from __future__ import annotations

import datetime
import os
import pathlib
from typing import NamedTuple

from kestrel import _kestrel, values
from kestrel.bands import BandTable
from kestrel.errors import FileError
from kestrel.files import write_whole

__all__ = ["Difference", "Restored", "Setup", "Setups"]


class Difference(NamedTuple):
    """One difference: its place, and the value in the first and in the second set-up."""

    place: str
    saved: str
    now: str


class Restored(NamedTuple):
    """How a set-up was restored.

    `whole` tells whether the sensor holds all of it now; `text` says what was
    restored, what was not and why. The lists name registers and bands:
    `equal` before, `written` and read back, `unsure` (written, but not read
    back) and `open` (not written).
    """

    whole: bool
    text: str
    equal: list[str]
    written: list[str]
    unsure: list[str]
    open: list[str]


class Setup:
    """The registers that say how a sensor works, and the bands of all options."""

    __slots__ = ("_core",)

    def __init__(self, core: _kestrel.Setup) -> None:
        values.core(core, _kestrel.Setup, "Set-ups come from a sensor or a file.")
        self._core = core

    @property
    def name(self) -> str:
        """Its name."""
        return self._core.name

    @property
    def taken(self) -> datetime.datetime:
        """When it was read out of a sensor, with its zone (UTC)."""
        return values.moment(self._core.nanoseconds)

    @property
    def product(self) -> int:
        """PROD_ID of the sensor it came from."""
        return self._core.product

    @property
    def registers(self) -> dict[str, int]:
        """The 16-bit word of each register, by its name."""
        return self._core.registers()

    @property
    def bands(self) -> BandTable:
        """The alarm bands."""
        return BandTable.of_rows(self._core.bands())

    def differences(self, other: Setup) -> list[Difference]:
        """How `other` differs, in words with units; empty where both work alike."""
        return [Difference(*each) for each in
                self._core.differences(values.made("other", other, Setup)._core)]

    def save(self, path: str | os.PathLike[str]) -> None:
        """Writes it as a file that people can read (JSON)."""
        write_whole(path, self._core.text())

    @classmethod
    def load(cls, path: str | os.PathLike[str]) -> Setup:
        """Reads a set-up from a file, whole or not at all.

        Raises
        ------
        FileError
            Names the file, the line or the field, and the value.
        """
        try:
            content = pathlib.Path(values.path(path)).read_bytes()
        except OSError as error:
            raise FileError(f"{values.path(path)} cannot be read: {error.strerror}.") from error
        return cls(_kestrel.setup_of_text(values.path(path), content))

    def __eq__(self, other: object) -> bool:
        return isinstance(other, Setup) and self._core == other._core

    __hash__ = None  # type: ignore[assignment]

    def __repr__(self) -> str:
        return f"<kestrel.Setup: {self.name!r}, {self.taken:%Y-%m-%d %H:%M} UTC>"


class Setups:
    """The sensor's whole configuration, read and restored. Transfers take seconds."""

    __slots__ = ("_core",)

    def __init__(self, core: _kestrel.Sensor) -> None:
        values.core(core, _kestrel.Sensor, "A sensor has it as `setups`.")
        self._core = core

    def read(self, name: str) -> Setup:
        """Reads what the sensor holds now, as a set-up of this name."""
        return Setup(self._core.read_setup(values.text("name", name)))

    def restore(self, setup: Setup, *, keep_nulls: bool = False,
                save_in_flash: bool = False) -> Restored:
        """Writes what differs and reads it back.

        Parameters
        ----------
        setup : Setup
        keep_nulls : bool
            Leaves the offset corrections X_NULL, Y_NULL and Z_NULL as they are.
        save_in_flash : bool
            Saves the registers in the sensor's flash as well, so that they outlast
            a loss of power.

        Returns
        -------
        Restored
        """
        return Restored(*self._core.restore_setup(
            values.made("setup", setup, Setup)._core, values.flag("keep_nulls", keep_nulls),
            values.flag("save_in_flash", save_in_flash)))
