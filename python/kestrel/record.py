"""A record: what one capture gave, as arrays and plain values."""
# SPDX-License-Identifier: MIT
from __future__ import annotations

import datetime
import json
import os
from collections.abc import Callable, Mapping, Sequence
from dataclasses import dataclass
from typing import TYPE_CHECKING, Any, Literal

from kestrel import _kestrel, values
from kestrel.numbers import Curve, Level, Peak, Velocity
from kestrel.values import Amplitude, Axis, Quantity, Window

if TYPE_CHECKING:
    import matplotlib.axes
    import numpy as np
    import pandas as pd
    from numpy.typing import NDArray

    from kestrel.bands import BandTable
    from kestrel.wide import WideSpectrum

__all__ = ["AxisAlarms", "Record", "SensorIdentity"]


@dataclass(frozen=True)
class AxisAlarms:
    """What the sensor's alarm registers of one axis told.

    Attributes
    ----------
    word : int
        ALM_x_STAT as it was read.
    warnings, faults : tuple of int
        Bands 1 to 6 whose alarm 1 and alarm 2 is on.
    peak : float
        ALM_x_PEAK in g.
    peak_bin : int
        ALM_x_FREQ, a bin.
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
        Number of the product; 0 where the program was not told.
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


class Record:
    """What one capture gave, and what is needed to understand it later.

    Records come from a sensor, an archive or a file; they are never changed,
    can be compared, pickled and used from any thread.

    Notes
    -----
    Arrays are read-only views of the record's memory, which they keep alive.
    Of a spectrum they have 256 points, of a time record 512.
    """

    __slots__ = ("_core",)

    def __init__(self, core: _kestrel.Record) -> None:
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
        AttributeError
            Of a time record, which has `time`.
        """
        if self.is_time:
            raise AttributeError("A time record has no frequency; its points are over `time`.")
        return self._core.places()

    @property
    def time(self) -> NDArray[np.float64]:
        """Time of each sample of a time record in s from the first, shape (512,).

        Raises
        ------
        AttributeError
            Of a spectrum, which has `frequency`.
        """
        if not self.is_time:
            raise AttributeError("A spectrum has no time axis; its points are over `frequency`. "
                                 "When it was taken is `taken`.")
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
        """Samples a second at its option."""
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
        """When its read-out began, with its zone (UTC); None where nobody knows."""
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
        """What the alarm registers of each axis told."""
        return {axis: AxisAlarms(word, tuple(warned), tuple(faults), peak, at)
                for axis, (word, warned, faults, peak, at) in zip(values.AXES, self._core.alarms)}

    @property
    def sensor(self) -> SensorIdentity:
        """Which sensor it came from."""
        return SensorIdentity(*self._core.sensor)

    @property
    def stored(self) -> int | None:
        """Its number in the sensor's flash; None of a capture."""
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

    # What it means.

    def peaks(self, axis: Axis, *, most: int = 50, quantity: Quantity = "g",
              amplitude: Amplitude | None = None) -> list[Peak]:
        """Peaks of a spectrum between bins, with their bounds.

        Parameters
        ----------
        axis : {"x", "y", "z"}
        most : int
            At most so many, 1 to 256.
        quantity : {"g", "velocity", "displacement", "density"}
            What amplitudes are told in.
        amplitude : {"peak", "rms", "pp"}, optional
            Usually peak of g, RMS of velocity and density, peak to peak of
            displacement.

        Returns
        -------
        list of Peak
            The largest first.

        Raises
        ------
        CannotTell
            Where the record cannot carry the quantity; with the option that
            would do.
        """
        index = values.axis_index(axis)
        most = values.whole("most", most, range(1, 257))
        found, told = _kestrel.peaks(self._core, index, most,
                                     *values.quantity_codes(quantity, amplitude))
        return [Peak.made(full, short) for full, short in zip(found, json.loads(told)["peaks"])]

    def levels(self, axis: Axis, *, quantity: Quantity = "g",
               amplitude: Amplitude | None = None,
               bands: BandTable | None = None) -> Level:
        """Overall level of an axis, and that of the sensor's alarm bands.

        Parameters
        ----------
        axis : {"x", "y", "z"}
        quantity : {"g", "velocity", "displacement", "density"}
        amplitude : {"peak", "rms", "pp"}, optional
            Of the largest bin.
        bands : BandTable, optional
            Judges these bands as the sensor does.

        Returns
        -------
        Level

        Raises
        ------
        CannotTell
            Where the record cannot carry the quantity.
        """
        index = values.axis_index(axis)
        rows = None if bands is None else bands.rows()
        full, told = _kestrel.levels(self._core, index, *values.quantity_codes(quantity, amplitude),
                                     rows)
        return Level.made(full, json.loads(told)["levels"])

    def spectrum(self, axis: Axis, quantity: Quantity = "g", *,
                 amplitude: Amplitude | None = None, lowest: float = 0.0) -> Curve:
        """The spectrum of an axis in a quantity; of a time record its own transform.

        Parameters
        ----------
        axis : {"x", "y", "z"}
        quantity : {"g", "velocity", "displacement", "density"}
        amplitude : {"peak", "rms", "pp"}, optional
        lowest : float
            Hz from which velocity and displacement are wanted; 0: what the
            bins allow.

        Returns
        -------
        Curve

        Raises
        ------
        CannotTell
            Where the record cannot carry the quantity.
        """
        return Curve(axis, *_kestrel.in_quantity(
            self._core, values.axis_index(axis), *values.quantity_codes(quantity, amplitude),
            float(lowest)))

    def to_velocity(self, axis: Axis = "x", *, lowest: float | None = None
                    ) -> Curve | Velocity:
        """Velocity in mm/s: over frequency of a spectrum, over time of a time record.

        Parameters
        ----------
        axis : {"x", "y", "z"}
        lowest : float, optional
            Hz from which it is wanted; usually what the record allows.

        Returns
        -------
        Curve or Velocity
            RMS magnitudes of a spectrum, samples of a time record.

        Raises
        ------
        CannotTell
            Where the record cannot carry it; with the option that would do.
        """
        if not self.is_time:
            return self.spectrum(axis, "velocity", lowest=lowest or 0.0)
        samples, from_hz, rms = _kestrel.velocity(self._core, values.axis_index(axis), lowest)
        return Velocity(axis, self.time, samples, from_hz, rms)

    def wide(self, *others: Record, axis: Axis = "x", limit: float = 3.0) -> WideSpectrum:
        """One spectrum over this and other records, each of another sample-rate option.

        Parameters
        ----------
        *others : Record
            Taken of the same machine while it ran steadily.
        axis : {"x", "y", "z"}
        limit : float
            dB from which two options that overlap count as unsteady.

        Returns
        -------
        WideSpectrum

        Raises
        ------
        CannotTell
            Where two records have the same option.
        """
        from kestrel.wide import join
        return join((self, *others), axis=axis, limit=limit)

    # Other forms.

    def to_dict(self) -> dict[str, Any]:
        """Everything that ``kestrel-cli --json`` tells of a record, to the last bit."""
        told: dict[str, Any] = json.loads(self._core.json())
        return told

    def to_pandas(self) -> pd.DataFrame:
        """A data frame with columns x, y, z in g over frequency (Hz) or time (s).

        Returns
        -------
        pandas.DataFrame
            Shape (256, 3) or (512, 3). Needs pandas.
        """
        from kestrel.tables import frame_of
        return frame_of(self)

    def plot(self, ax: matplotlib.axes.Axes | None = None) -> matplotlib.axes.Axes:
        """Draws the three axes. Needs matplotlib.

        Parameters
        ----------
        ax : matplotlib.axes.Axes, optional
            Where to; a new figure where none is given.

        Returns
        -------
        matplotlib.axes.Axes
        """
        from kestrel.tables import plotted
        return plotted(self, ax)

    def save(self, path: str | os.PathLike[str], format: str | None = None) -> None:
        """Writes a file that other programs read, whole or not at all.

        Parameters
        ----------
        path : str or path
            Its ending says the format: .uff, .wav, .mat, .csv, .json.
        format : str, optional
            Of `formats`, where the ending does not tell: "uff58b" is the
            universal file with binary data.

        Raises
        ------
        FileError
            Where it cannot be written, or the format is not known.
        """
        from kestrel.files import save
        save(path, [self], format=format)

    def describe(self) -> str:
        """What it is, in one line with its local time."""
        taken = self.taken
        return self._core.line(f"{taken.astimezone():%H:%M:%S}" if taken else "")

    def details(self) -> list[str]:
        """Everything that is known about it, a line each."""
        taken = self.taken
        return self._core.details(f"{taken.astimezone():%Y-%m-%d %H:%M:%S}" if taken else "")

    def __repr__(self) -> str:
        return f"<kestrel.Record: {self.describe()}>"

    def _repr_html_(self) -> str:
        from kestrel.picture import html_of
        return html_of(self)

    def __eq__(self, other: object) -> bool:
        return isinstance(other, Record) and self._core == other._core

    def __hash__(self) -> int:
        return hash((self._core.nanoseconds, self._core.rec_info, self._core.count))

    def __reduce__(self) -> tuple[Callable[[tuple[Any, ...]], Record], tuple[tuple[Any, ...]]]:
        return _restored, (self._core.state(),)


def _restored(state: tuple[Any, ...]) -> Record:
    return Record(_kestrel.record_of_state(state))
