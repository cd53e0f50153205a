"""The sensor's registers by name and by field."""
# SPDX-License-Identifier: MIT
from __future__ import annotations

import difflib
from collections.abc import Iterator
from dataclasses import dataclass

from kestrel import _kestrel, values
from kestrel.errors import SettingError, UnknownName

__all__ = ["Field", "Register", "Registers"]


@dataclass(frozen=True)
class Field:
    """A bit field of a register.

    Attributes
    ----------
    name : str
        Its title.
    bits : str
        "13:12", or "7" of a single bit.
    value : int
        Its code.
    meaning : str
        What the code means; empty where the value says it.
    """

    name: str
    bits: str
    value: int
    meaning: str

    @property
    def lowest(self) -> int:
        """Its lowest bit."""
        return int(self.bits.split(":")[-1])

    @property
    def mask(self) -> int:
        """Its bits in the word."""
        highest = int(self.bits.split(":")[0])
        return (2 << highest) - (1 << self.lowest)


@dataclass(frozen=True)
class Register:
    """A register as it was read.

    Attributes
    ----------
    name : str
    address : int
        Address of the low byte.
    word : int
        Its 16 bits, 0 to 65535.
    value : int
        Decoded; negative where the register is signed.
    scaled : float
        In the register's own unit.
    fields : tuple of Field
        Highest bits first; empty where the word is one number.
    """

    name: str
    address: int
    word: int
    value: int
    scaled: float
    fields: tuple[Field, ...]

    def __getitem__(self, field: str) -> Field:
        """A field by its title, in any case; UnknownName where there is none."""
        for each in self.fields:
            if isinstance(field, str) and each.name.lower() == field.lower():
                return each
        there = ", ".join(each.name for each in self.fields)
        raise UnknownName(f"{self.name} has no field {values.shown(field)}; there are: {there}."
                          if there else f"{self.name} has no fields; its 16 bits are one number.")


class Registers:
    """Registers by name, in any case. Reading and writing goes to the sensor.

    Examples
    --------
    >>> sensor.registers["TEMP_OUT"].scaled
    >>> sensor.registers["FFT_AVG"] = 8
    >>> sensor.registers["REC_CTRL"]["Windowing"].meaning
    >>> sensor.registers.set_field("REC_CTRL", "Windowing", 2)
    """

    __slots__ = ("_core",)

    def __init__(self, core: _kestrel.Sensor) -> None:
        values.core(core, _kestrel.Sensor, "A sensor has it as `registers`.")
        self._core = core

    def _made(self, told: tuple[str, int, int, int, float]) -> Register:
        fields = self._core.fields(told[0], told[2])
        return Register(*told, tuple(Field(title, bits, value, meaning)
                                     for bits, value, title, meaning in fields))

    def __getitem__(self, name: str) -> Register:
        """Reads a register; UnknownName where none of this name can be read."""
        return self._made(self._core.read_register(self._find(name, 1, "read")))

    def __setitem__(self, name: str, word: int) -> None:
        """Writes a word, 0 to 65535; UnknownName where none of this name can be written."""
        found = self._find(name, 2, "written")
        self._core.write_register(found, values.whole(found, word, range(65536)))

    def _find(self, name: str, place: int, what: str) -> str:
        there = self._core.register_names()
        for each in there:
            if isinstance(name, str) and each[0] == name.upper() and each[place]:
                return each[0]
        near = difflib.get_close_matches(name.upper() if isinstance(name, str) else "",
                                         [each[0] for each in there if each[place]])
        raise UnknownName(f"There is no register {values.shown(name)} that can be {what}. "
                          + (f"Similar names: {', '.join(near)}." if near else
                             "list(sensor.registers) names those that can be read."))

    def __iter__(self) -> Iterator[str]:
        return (name for name, readable, _ in self._core.register_names() if readable)

    def __len__(self) -> int:
        return sum(1 for _ in self)

    def __contains__(self, name: object) -> bool:
        return isinstance(name, str) and name.upper() in list(self)

    def __repr__(self) -> str:
        return "<kestrel.Registers: " + (", ".join(self) if self._core.is_open else "closed") + ">"

    def read_all(self) -> dict[str, Register]:
        """Every readable register, by name."""
        return {told[0]: self._made(told) for told in self._core.read_registers()}

    def set_field(self, name: str, field: str, value: int) -> Register:
        """Changes one field: reads the register, writes it, reads it again.

        Parameters
        ----------
        name : str
            Name of the register, in any case.
        field : str
            Title of the field, in any case.
        value : int
            Its code, from 0 to the largest that fits into the field.

        Returns
        -------
        Register
            As it is now.
        """
        register = self[name]
        found = register[field]
        value = values.whole(f"{register.name}, {found.name}", value,
                             range((found.mask >> found.lowest) + 1))
        if found.mask > 0xFFFF:
            raise SettingError(f"{register.name}, {found.name} is not among the 16 bits of the "
                               "register and cannot be set.")
        self[name] = (register.word & ~found.mask) | (value << found.lowest)
        return self[name]
