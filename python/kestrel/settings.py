"""How the sensor records, as properties with units."""
# SPDX-License-Identifier: MIT
from __future__ import annotations

from collections.abc import Mapping
from typing import TypedDict

from kestrel import _kestrel, values
from kestrel.errors import SettingError

__all__ = ["SettingValues", "Settings"]


class SettingValues(TypedDict, total=False):
    """Settings of a step of a plan; what is left out, or None, stays as it is.

    mode, range (g), option, window and averages, as the properties of
    `Settings` take them.
    """

    mode: values.Mode | None
    range: int | None
    option: int | None
    window: values.Window | None
    averages: int | None


def codes_of(settings: Mapping[str, object]) -> dict[str, int]:
    """The sensor's codes of settings; SettingError names what cannot be."""
    found: dict[str, int] = {}
    for name, value in settings.items():
        if value is None and name in SettingValues.__annotations__:
            continue
        if name == "mode":
            found[name] = values.code(name, value, values.MODES)
        elif name == "range":
            found[name] = values.code(name, value, values.RANGES)
        elif name == "window":
            found[name] = values.code(name, value, values.WINDOWS)
        elif name == "option":
            found[name] = values.whole(name, value, values.OPTIONS)
        elif name == "averages":
            found[name] = values.whole(name, value, values.AVERAGES)
        else:
            raise SettingError(f"There is no setting {values.shown(name)}; there are mode, range, "
                               "option, window and averages.")
    return found


class Settings:
    """How the sensor records. Each property reads the sensor, and writes it when set.

    Examples
    --------
    >>> sensor.settings.range = 5
    >>> sensor.settings.update(window="flattop", averages=8)
    """

    __slots__ = ("_core",)

    def __init__(self, core: _kestrel.Sensor) -> None:
        values.core(core, _kestrel.Sensor, "A sensor has it as `settings`.")
        self._core = core

    def _read(self) -> dict[str, int]:
        return self._core.configure({})

    def _write(self, name: str, value: object) -> None:
        self._core.configure(codes_of({name: value}))

    @property
    def mode(self) -> values.Mode:
        """"manual" (spectra on request), "timer" (spectra by its timer) or "time" (samples)."""
        return values.mode_of(self._read()["mode"])

    @mode.setter
    def mode(self, value: values.Mode) -> None:
        self._write("mode", value)

    @property
    def range(self) -> int:
        """Full scale in g: 1, 5, 20 or 70."""
        return values.range_of(self._read()["range"])

    @range.setter
    def range(self, value: int) -> None:
        self._write("range", value)

    @property
    def option(self) -> int:
        """Sample-rate option, 0 (fastest) to 3."""
        return self._read()["option"]

    @option.setter
    def option(self, value: int) -> None:
        self._write("option", value)

    @property
    def sample_rate(self) -> float:
        """Samples per second at the option that is set; read only."""
        return _kestrel.sample_frequency(self.option)

    @property
    def window(self) -> values.Window:
        """FFT window: "rectangular", "hanning" or "flattop"."""
        return values.window_of(self._read()["window"])

    @window.setter
    def window(self, value: values.Window) -> None:
        self._write("window", value)

    @property
    def averages(self) -> int:
        """FFT averages, 1 to 255."""
        return self._read()["averages"]

    @averages.setter
    def averages(self, value: int) -> None:
        self._write("averages", value)

    def update(self, *, mode: values.Mode | None = None, range: int | None = None,
               option: int | None = None, window: values.Window | None = None,
               averages: int | None = None) -> None:
        """Writes several settings at once, or none where one of them is not allowed.

        What is left out stays as it is.

        Parameters
        ----------
        mode : {"manual", "timer", "time"}, optional
        range : int, optional
            Full scale in g: 1, 5, 20 or 70.
        option : int, optional
            Sample-rate option, 0 (fastest) to 3.
        window : {"rectangular", "hanning", "flattop"}, optional
        averages : int, optional
            1 to 255.

        Raises
        ------
        SettingError
            Names the setting, its value and what is allowed.
        """
        self._core.configure(codes_of({"mode": mode, "range": range, "option": option,
                                       "window": window, "averages": averages}))

    def as_dict(self) -> SettingValues:
        """All of them as they are now, in the words that `update` takes."""
        codes = self._read()
        return {"mode": values.mode_of(codes["mode"]),
                "range": values.range_of(codes["range"]),
                "option": codes["option"],
                "window": values.window_of(codes["window"]),
                "averages": codes["averages"]}

    def __repr__(self) -> str:
        told = ", ".join(f"{name}={value!r}" for name, value in self.as_dict().items())
        return f"<kestrel.Settings: {told}>"
