"""A record: what one capture gave, as arrays and plain values."""
# SPDX-License-Identifier: MIT
from __future__ import annotations

import json
import os
from collections.abc import Callable
from typing import TYPE_CHECKING, Any

from kestrel import _kestrel, values
from kestrel.bands import BandTable
from kestrel.errors import Error
from kestrel.measured import Measured
from kestrel.numbers import Curve, Level, Peak, Velocity
from kestrel.values import Amplitude, Axis, Quantity

if TYPE_CHECKING:
    import matplotlib.axes  # type: ignore[import]
    import pandas as pd  # type: ignore[import]

    from kestrel.wide import WideSpectrum

__all__ = ["Record"]

# No frequency that anybody could ask for is above, Hz.
_HIGHEST = 1e6


class Record(Measured):
    """What one capture gave, and what is needed to understand it later.

    Records come from a sensor, an archive or a file; they are never changed,
    can be compared, pickled and used from any thread.

    Notes
    -----
    Arrays are read-only views of the record's memory, which they keep alive.
    Of a spectrum they have 256 points, of a time record 512.
    """

    __slots__ = ()

    # What it means.

    def peaks(self, axis: Axis, *, most: int = 50, quantity: Quantity = "g",
              amplitude: Amplitude | None = None) -> list[Peak]:
        """Peaks of a spectrum between bins, with their bounds.

        Parameters
        ----------
        axis : {"x", "y", "z"}
        most : int
            At most this many, 1 to 256.
        quantity : {"g", "velocity", "displacement", "density"}
            Of the amplitudes: in g, mm/s, µm or g²/Hz.
        amplitude : {"peak", "rms", "pp"}, optional
            Left out: peak of g, RMS of velocity and density, peak to peak of
            displacement.

        Returns
        -------
        list of Peak
            The largest first.

        Raises
        ------
        CannotTell
            Where the record cannot carry the quantity; it names the option that
            would do.
        """
        index = values.axis_index(axis)
        most = values.whole("most", most, range(1, 257))
        found, told = _kestrel.peaks(self._core, index, most,
                                     *values.quantity_codes(quantity, amplitude))
        return [Peak._made(full, short) for full, short in zip(found, json.loads(told)["peaks"])]

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
            Bands to judge as well, as the sensor does.

        Returns
        -------
        Level

        Raises
        ------
        CannotTell
            Where the record cannot carry the quantity.
        """
        index = values.axis_index(axis)
        rows = None if bands is None else values.made("bands", bands, BandTable).rows()
        full, told = _kestrel.levels(self._core, index, *values.quantity_codes(quantity, amplitude),
                                     rows)
        return Level._made(full, json.loads(told)["levels"])

    def spectrum(self, axis: Axis, quantity: Quantity = "g", *,
                 amplitude: Amplitude | None = None, lowest: float = 0.0) -> Curve:
        """The spectrum of an axis in a quantity; a time record is transformed for it.

        Parameters
        ----------
        axis : {"x", "y", "z"}
        quantity : {"g", "velocity", "displacement", "density"}
        amplitude : {"peak", "rms", "pp"}, optional
        lowest : float
            Frequency in Hz from which velocity and displacement are wanted; 0:
            from as low as the bins allow.

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
            values.number("lowest", lowest, 0, _HIGHEST, "Hz")))

    def to_velocity(self, axis: Axis = "x", *, lowest: float | None = None
                    ) -> Curve | Velocity:
        """Velocity in mm/s: over frequency of a spectrum, over time of a time record.

        Parameters
        ----------
        axis : {"x", "y", "z"}
        lowest : float, optional
            Frequency in Hz from which it is wanted; left out: from as low as the
            record allows.

        Returns
        -------
        Curve or Velocity
            RMS magnitudes of a spectrum, samples of a time record.

        Raises
        ------
        CannotTell
            Where the record cannot carry it; it names the option that would do.
        """
        if not self.is_time:
            return self.spectrum(axis, "velocity", lowest=0.0 if lowest is None else lowest)
        if lowest is not None:
            lowest = values.number("lowest", lowest, 0, _HIGHEST, "Hz")
        samples, from_hz, rms = _kestrel.velocity(self._core, values.axis_index(axis), lowest)
        return Velocity(axis, self.time, samples, from_hz, rms)

    def wide(self, *others: Record, axis: Axis = "x", limit: float = 3.0) -> WideSpectrum:
        """Joins this and other records, each at a different sample-rate option, to one spectrum.

        Parameters
        ----------
        *others : Record
            Taken at the same machine while it ran steadily.
        axis : {"x", "y", "z"}
        limit : float
            Difference in dB, where two options overlap, above which the machine
            counts as not steady; 0 to 100.

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
        """Everything that ``kestrel-cli --json`` reports of a record, to the last bit."""
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
            Axes to draw into; a new figure where none are given.

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
            Its ending tells the format: .uff, .wav, .mat, .csv, .json.
        format : str, optional
            Of `formats`, where the ending does not tell: "uff58b" is the
            universal file with binary data.

        Raises
        ------
        FileError
            Where the file cannot be written, or the format is not known.
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
    try:
        return Record(_kestrel.record_of_state(state))
    except (TypeError, IndexError):
        raise Error("What was pickled is not a record, or it was damaged.") from None
