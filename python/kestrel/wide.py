"""One spectrum over several sample-rate options."""
# SPDX-License-Identifier: MIT
from __future__ import annotations

import math
from collections.abc import Iterable
from typing import TYPE_CHECKING, NamedTuple

from kestrel import _kestrel, values
from kestrel.errors import CannotTell, SettingError

if TYPE_CHECKING:
    import numpy as np
    from numpy.typing import NDArray

    from kestrel.record import Record

__all__ = ["Line", "Overlap", "Segment", "WideSpectrum", "join"]


class Segment(NamedTuple):
    """What one record holds and which part of it is used; Hz."""

    option: int
    bin_width: float
    holds_from: float
    holds_to: float
    used_from: float
    used_to: float


class Overlap(NamedTuple):
    """Where two records overlap: a steady machine shows the same RMS (g) in both.

    `difference` is in dB, coarse over fine; `unsteady` tells whether it is above
    the limit.
    """

    fine_option: int
    coarse_option: int
    from_hz: float
    to_hz: float
    fine_rms: float
    coarse_rms: float
    difference: float
    unsteady: bool


class Line(NamedTuple):
    """A line of the joined spectrum: Hz, its bound ± Hz, g peak, and the option that shows it."""

    frequency: float
    frequency_uncertainty: float
    amplitude: float
    option: int


class WideSpectrum:
    """One spectrum of an axis over records of several sample-rate options."""

    __slots__ = ("_axis", "_core")

    def __init__(self, core: _kestrel.Joined, axis: values.Axis) -> None:
        values.core(core, _kestrel.Joined, "Sensor.wide and kestrel.join make one.")
        self._core = core
        self._axis = axis

    @property
    def axis(self) -> values.Axis:
        """ "x", "y" or "z"."""
        return self._axis

    @property
    def frequency(self) -> NDArray[np.float64]:
        """Hz, rising; shape (points,)."""
        return self._core.frequency()

    @property
    def density(self) -> NDArray[np.float64]:
        """Power density in g²/Hz, shape (points,)."""
        return self._core.density()

    @property
    def magnitude(self) -> NDArray[np.float64]:
        """Magnitudes in g, peak of a sine, shape (points,)."""
        return self._core.magnitude()

    @property
    def options(self) -> NDArray[np.int32]:
        """Sample-rate option that each point comes from, shape (points,)."""
        return self._core.options()

    @property
    def segments(self) -> list[Segment]:
        """One per record, the finest first."""
        return [Segment(*each) for each in self._core.segments()]

    @property
    def overlaps(self) -> list[Overlap]:
        """One for each two neighbours."""
        return [Overlap(*each) for each in self._core.overlaps()]

    @property
    def lines(self) -> list[Line]:
        """Peaks, each once, the largest first."""
        return [Line(*each) for each in self._core.lines()]

    @property
    def steady(self) -> bool:
        """Whether all overlaps agree."""
        return self._core.is_steady()

    def rms(self, from_hz: float, to_hz: float) -> float:
        """RMS in g between two frequencies.

        Parameters
        ----------
        from_hz, to_hz : float
            Hz.

        Returns
        -------
        float
            g RMS.

        Raises
        ------
        CannotTell
            Where the records do not reach over all of it.
        """
        low = values.number("from_hz", from_hz, 0, 1e6, "Hz")
        high = values.number("to_hz", to_hz, 0, 1e6, "Hz")
        if low >= high:
            raise SettingError(f"from_hz is {low:g} and to_hz {high:g}; from_hz must be the lower.")
        self._check_held(low, high)
        return self._core.rms(low, high)

    def __repr__(self) -> str:
        parts = self.segments
        options = ", ".join(str(part.option) for part in parts)
        return (f"<kestrel.WideSpectrum: {self._axis.upper()}, {parts[0].used_from:.4g} to "
                f"{parts[-1].used_to:.6g} Hz, options {options}"
                + ("" if self.steady else ", not steady") + ">")

    def _check_held(self, low: float, high: float) -> None:
        """CannotTell where a part of it is in no record."""
        parts = self.segments
        for end, begin in zip([0.0, *(part.used_to for part in parts)],
                              [*(part.used_from for part in parts), math.inf]):
            if low < begin and high > end and begin > end:
                has, needs = (begin, low) if begin < math.inf else (end, high)
                cure = f"Ask for frequencies from {begin:.6g} Hz on." if not end else (
                    f"Ask for frequencies up to {end:.6g} Hz." if begin == math.inf else
                    f"Capture at the options between, or ask up to {end:.6g} Hz.")
                title = f"The RMS from {low:g} to {high:g} Hz cannot be determined from these records."
                reason = ("They hold " + " and ".join(
                    f"{part.used_from:.6g} to {part.used_to:.6g} Hz" for part in parts) + ".")
                raise CannotTell(f"{title} {reason} {cure}", title, reason, cure, None, has, needs,
                                 "Hz")


def join(records: Iterable[Record], *, axis: values.Axis = "x", limit: float = 3.0) -> WideSpectrum:
    """Joins records of one machine, each at a different sample-rate option, to one spectrum.

    Parameters
    ----------
    records : iterable of Record
        The order does not matter, and not all four options need be there.
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
        Where there is no record, or the same option twice, or an unknown window.
    """
    from kestrel.record import Record
    cores = [values.made("record", record, Record)._core for record in records]
    index = values.axis_index(axis)
    return WideSpectrum(_kestrel.Joined(cores, index, values.number("limit", limit, 0, 100, "dB")),
                        values.AXES[index])
