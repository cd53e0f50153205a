"""The sensor's spectral alarm bands as a table."""
# SPDX-License-Identifier: MIT
from __future__ import annotations

import os
from collections.abc import Iterable, Iterator, Sequence
from dataclasses import dataclass, replace
from typing import TYPE_CHECKING, Any

from kestrel import _kestrel, values
from kestrel.errors import SettingError, UnknownName
from kestrel.files import write_whole

if TYPE_CHECKING:
    import pandas as pd  # type: ignore[import]

__all__ = ["Band", "BandTable", "Bands"]

_BINS = range(256)
_CODES = range(65536)


@dataclass(frozen=True)
class Band:
    """One alarm band of one sample-rate option.

    Attributes
    ----------
    option : int
        0 to 3.
    number : int
        1 to 6.
    low, high : int
        First and last bin, 0 to 255.
    warning, fault : tuple of 3 int
        Thresholds of alarm 1 and alarm 2 for X, Y, Z, in codes of the range that
        is set; 0 for none. `Bands.g_per_code` tells what a code is worth.
    """

    option: int
    number: int
    low: int = 0
    high: int = 0
    warning: tuple[int, int, int] = (0, 0, 0)
    fault: tuple[int, int, int] = (0, 0, 0)

    def __post_init__(self) -> None:
        self._keep("option", values.whole("option", self.option, range(4)))
        self._keep("number", values.whole("number", self.number, range(1, 7)))
        where = f"option {self.option}, band {self.number}: "
        for name in ("low", "high"):
            self._keep(name, values.whole(where + name, getattr(self, name), _BINS))
        for name in ("warning", "fault"):
            codes = getattr(self, name)
            if not isinstance(codes, Sequence) or len(codes) != len(values.AXES):
                raise SettingError(f"{where}{name} is {values.shown(codes)}; it must be three codes, "
                                   "for X, Y and Z.")
            self._keep(name, tuple(values.whole(where + name, code, _CODES) for code in codes))

    def _keep(self, name: str, value: object) -> None:
        object.__setattr__(self, name, value)

    @property
    def from_hz(self) -> float:
        """Frequency of its first bin, Hz."""
        return self.low * _kestrel.bin_width(self.option)

    @property
    def to_hz(self) -> float:
        """Frequency of its last bin, Hz."""
        return self.high * _kestrel.bin_width(self.option)

    @property
    def is_used(self) -> bool:
        """Whether anything of it is set."""
        return self != Band(self.option, self.number)


class BandTable:
    """The 24 alarm bands: six of each sample-rate option.

    A value that is never changed: `with_band` gives another table.

    Parameters
    ----------
    bands : iterable of Band
        Bands that are left out are not set.

    Examples
    --------
    >>> table[0, 3].low
    >>> table = table.with_band(0, 3, low=40, high=60, warning=(120, 120, 120))
    """

    __slots__ = ("_bands",)

    def __init__(self, bands: Iterable[Band] = ()) -> None:
        self._bands = {(option, number): Band(option, number)
                       for option in range(4) for number in range(1, 7)}
        self._bands.update({(band.option, band.number): band
                            for band in (values.made("band", each, Band) for each in bands)})

    @classmethod
    def of_rows(cls, rows: Iterable[Iterable[int]]) -> BandTable:
        """Makes a table of rows of option, band, low, high and six thresholds."""
        table = cls()
        for place, each in enumerate(rows, 1):
            row = list(each)
            if len(row) != 10:
                raise SettingError(f"row {place} has {len(row)} values; it must have 10: option, "
                                   "band, low, high, and alarm 1 and alarm 2 of X, Y, Z.")
            band = Band(row[0], row[1], row[2], row[3], (row[4], row[5], row[6]),
                        (row[7], row[8], row[9]))
            table._bands[band.option, band.number] = band
        return table

    def rows(self) -> list[list[int]]:
        """Rows of option, band, low, high and six thresholds."""
        return [[band.option, band.number, band.low, band.high, *band.warning, *band.fault]
                for band in self]

    @classmethod
    def load(cls, path: str | os.PathLike[str]) -> BandTable:
        """Reads the bands of an alarm file.

        Raises
        ------
        FileError
            Where it is not an alarm file: it names the path, the line and the
            value.
        """
        return cls.of_rows(_kestrel.bands_of_file(os.path.abspath(values.path(path))))

    def save(self, path: str | os.PathLike[str]) -> None:
        """Writes an alarm file, AlarmSpectrum_<name>.csv."""
        name = os.path.basename(values.path(path))
        if not _kestrel.is_band_file_name(name):
            raise SettingError(f"The name must be AlarmSpectrum_<name>.csv, not {name!r}.")
        write_whole(path, _kestrel.band_file_text(self.rows()).encode())

    def __getitem__(self, place: tuple[int, int]) -> Band:
        """The band of an option and a number; UnknownName where there is none."""
        if not isinstance(place, tuple) or len(place) != 2:
            raise UnknownName(f"A band has an option and a number, table[0, 3]; not "
                              f"{values.shown(place)}.")
        try:
            return self._bands[values.whole("option", place[0], range(4)),
                               values.whole("number", place[1], range(1, 7))]
        except SettingError as error:
            raise UnknownName(str(error)) from None

    def __iter__(self) -> Iterator[Band]:
        return iter(self._bands.values())

    def __len__(self) -> int:
        return len(self._bands)

    def __eq__(self, other: object) -> bool:
        return isinstance(other, BandTable) and self._bands == other._bands

    __hash__ = None  # type: ignore[assignment]

    def with_band(self, option: int, number: int, **changes: Any) -> BandTable:
        """The same table with one band changed.

        Parameters
        ----------
        option, number : int
            0 to 3 and 1 to 6.
        **changes
            New values of low, high, warning and fault.
        """
        return BandTable([*self, replace(self[option, number], **changes)])

    def to_pandas(self) -> pd.DataFrame:
        """A data frame with one row per band. Needs pandas."""
        from kestrel.tables import frame_of_bands
        return frame_of_bands(self)

    def __repr__(self) -> str:
        used = sum(band.is_used for band in self)
        return f"<kestrel.BandTable: {used} of {len(self)} bands set>"


class Bands:
    """The alarm bands in the sensor's flash. Transfers take seconds."""

    __slots__ = ("_core",)

    def __init__(self, core: _kestrel.Sensor) -> None:
        values.core(core, _kestrel.Sensor, "A sensor has it as `bands`.")
        self._core = core

    def read(self) -> BandTable:
        """Reads all bands of the sensor."""
        return BandTable.of_rows(self._core.read_bands())

    def write(self, table: BandTable) -> str:
        """Clears the sensor's bands, then writes those of the table.

        Returns
        -------
        str
            How it ended, for people.
        """
        return self._core.write_bands(values.made("table", table, BandTable).rows())

    def clear(self) -> str:
        """Clears the sensor's bands.

        Returns
        -------
        str
            How it ended, for people.
        """
        return self._core.clear_bands()

    @property
    def g_per_code(self) -> float:
        """What one code of a threshold is worth in g, at the range that is set."""
        self._core.configure({})
        return self._core.g_per_code()
