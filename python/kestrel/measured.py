"""What a record holds: its points as arrays, how it was taken, and what surrounded it."""
# SPDX-License-Identifier: MIT
from __future__ import annotations

import datetime
from collections.abc import Mapping, Sequence
from dataclasses import dataclass
from typing import TYPE_CHECKING, Literal

from kestrel import _kestrel, values
from kestrel.errors import WrongKind
from kestrel.values import Axis, Window

if TYPE_CHECKING:
    import numpy as np
    from numpy.typing import NDArray

__all__ = ["AxisAlarms", "Measured", "SensorIdentity"]


@dataclass(frozen=True)
class AxisAlarms:
    """What the sensor's alarm registers of one axis said.

    Attributes
    ----------
    word : int
        ALM_x_STAT as it was read.
    warnings, faults : tuple of int
        Bands, 1 to 6, whose alarm 1 (warning) or alarm 2 (fault) is on.
    peak : float
        ALM_x_PEAK in g.
    peak_bin : int
        ALM_x_FREQ, the number of the bin.
    """

    word: int
    warnings: tuple[int, ...]
    faults: tuple[int, ...]
    peak: float
    peak_bin: int


@dataclass(frozen=True)
class SensorIdentity:
    """Which sensor a record came from.

    Attributes
    ----------
    product : int
        PROD_ID of the sensor; 0 where it is not known.
    interface : str
        "Ezusb-0", "parallel port 378".
    adapter : str
        The board's own texts; empty for the parallel port.
    simulated : bool
        Whether it is the simulated sensor.
    """

    product: int
    interface: str
    adapter: str
    simulated: bool


class Measured:
    """The part of a `Record` that was measured."""

    __slots__ = ("_core",)

    def __init__(self, core: _kestrel.Record) -> None:
        values.core(core, _kestrel.Record, "Records come from a sensor, an archive or a file.")
        self._core = core

    # Points.

    def values(self, axis: Axis) -> NDArray[np.float64]:
        """Points of an axis in g.

        Parameters
        ----------
        axis : {"x", "y", "z"}

        Returns
        -------
        numpy.ndarray of float64, shape (256,) or (512,)
            Magnitudes of a spectrum (peak of a sine), samples of a time
            record; g. Scaled by the range the record was taken at.
        """
        return self._core.values(values.axis_index(axis))

    def words(self, axis: Axis) -> NDArray[np.float64]:
        """Words of an axis as the sensor sent them, decoded.

        Parameters
        ----------
        axis : {"x", "y", "z"}

        Returns
        -------
        numpy.ndarray of float64, shape (256,) or (512,)
            Whole numbers; `lsb` is what one is worth in g.
        """
        return self._core.words(values.axis_index(axis))

    @property
    def x(self) -> NDArray[np.float64]:
        """Points of the X axis in g, shape (256,) or (512,)."""
        return self._core.values(0)

    @property
    def y(self) -> NDArray[np.float64]:
        """Points of the Y axis in g, shape (256,) or (512,)."""
        return self._core.values(1)

    @property
    def z(self) -> NDArray[np.float64]:
        """Points of the Z axis in g, shape (256,) or (512,)."""
        return self._core.values(2)

    @property
    def frequency(self) -> NDArray[np.float64]:
        """Frequency of each bin of a spectrum in Hz, shape (256,).

        Raises
        ------
        WrongKind
            Of a time record, which has `time`.
        """
        if self.is_time:
            raise WrongKind("A time record has no frequency; its points are over `time`.")
        return self._core.places()

    @property
    def time(self) -> NDArray[np.float64]:
        """Time of each sample of a time record in s from the first, shape (512,).

        Raises
        ------
        WrongKind
            Of a spectrum, which has `frequency`.
        """
        if not self.is_time:
            raise WrongKind("A spectrum has no time axis; its points are over `frequency`. "
                            "`taken` says when it was taken.")
        return self._core.places()

    # How it was taken.

    @property
    def kind(self) -> Literal["spectrum", "time"]:
        """Whether it is a spectrum or a time record."""
        return "time" if self._core.is_time else "spectrum"

    @property
    def is_time(self) -> bool:
        """Whether it is a time record."""
        return self._core.is_time

    @property
    def option(self) -> int:
        """Sample-rate option, 0 to 3."""
        return self._core.option

    @property
    def sample_rate(self) -> float:
        """Samples per second at its option."""
        return _kestrel.sample_frequency(self.option)

    @property
    def bin_width(self) -> float:
        """Width of a bin in Hz at its option."""
        return _kestrel.bin_width(self.option)

    @property
    def range(self) -> int:
        """Full scale in g: 1, 5, 20 or 70."""
        return values.range_of(self._core.range)

    @property
    def window(self) -> Window:
        """FFT window: "rectangular", "hanning", "flattop"; "none (3)" of a code that is none."""
        return values.window_of(self._core.window)

    @property
    def averages(self) -> int:
        """FFT averages, 1 to 511; of a time record 1."""
        return 1 if self.is_time else max(self._core.averages, 1)

    @property
    def lsb(self) -> float:
        """g that one step of a word is worth."""
        return self._core.lsb

    @property
    def taken(self) -> datetime.datetime | None:
        """When its read-out began, with its zone (UTC); None where it is not known."""
        time = self._core.nanoseconds
        return values.moment(time) if time else None

    @property
    def supply(self) -> float:
        """Supply of the sensor in V."""
        return self._core.supply

    @property
    def temperature(self) -> float:
        """Temperature of the sensor in degrees Celsius."""
        return self._core.temperature

    @property
    def count(self) -> int:
        """The sensor's count of records, REC_CNT."""
        return self._core.count

    @property
    def status(self) -> Mapping[str, bool]:
        """Flags of STATUS by name; empty where it was not read."""
        return self._core.status

    @property
    def alarms(self) -> Mapping[Axis, AxisAlarms]:
        """What the alarm registers of each axis said."""
        return {axis: AxisAlarms(word, tuple(warned), tuple(faults), peak, at)
                for axis, (word, warned, faults, peak, at) in zip(values.AXES, self._core.alarms)}

    @property
    def sensor(self) -> SensorIdentity:
        """Which sensor it came from."""
        return SensorIdentity(*self._core.sensor)

    @property
    def stored(self) -> int | None:
        """Its number in the sensor's flash; None for a capture."""
        return self._core.stored

    @property
    def stopped(self) -> bool:
        """Whether its capture was ended before data were ready."""
        return self._core.stopped

    @property
    def is_new(self) -> bool:
        """False where the capture was stopped and these are the data of the record before."""
        return self._core.is_new

    @property
    def notices(self) -> Sequence[str]:
        """What is not as it seems: nothing recorded, clipped, not new; the gravest first."""
        return self._core.notices()
