"""Peaks, levels and curves: what analysis tells of a record."""
# SPDX-License-Identifier: MIT
from __future__ import annotations

from collections.abc import Mapping, Sequence
from dataclasses import dataclass, field
from typing import TYPE_CHECKING, Any

if TYPE_CHECKING:
    import numpy as np
    from numpy.typing import NDArray

__all__ = ["Curve", "Level", "Peak", "Velocity"]


@dataclass(frozen=True)
class Peak:
    """A peak of a spectrum, between bins.

    Numbers have as many digits as their bounds carry, as
    ``kestrel-cli --json`` tells them; `full` has them unrounded.

    Attributes
    ----------
    frequency : float
        Hz.
    frequency_uncertainty : float
        Hz; 95 % of lines in noise are within it.
    amplitude : float
        In `unit`.
    uncertainty : float or None
        Likewise, in `unit`; None where it cannot be told.
    unit : str
        "g peak", "mm/s RMS".
    unresolved : bool
        Whether another line, or none of the window's shape, is within it: the
        bin's own values then.
    bin : int
        Its bin.
    noise : float
        Median of the bins around it, g peak.
    full : mapping
        The numbers without rounding: frequency, frequency_uncertainty,
        amplitude, uncertainty.
    """

    frequency: float
    frequency_uncertainty: float
    amplitude: float
    uncertainty: float | None
    unit: str
    unresolved: bool
    bin: int
    noise: float
    full: Mapping[str, float | None] = field(repr=False)

    @classmethod
    def _made(cls, full: Mapping[str, Any], told: Mapping[str, Any]) -> Peak:
        """From unrounded numbers and those that are told."""
        return cls(told["frequency_hz"], told["frequency_uncertainty_hz"], told["amplitude"],
                   told["uncertainty"], told["unit"], told["unresolved"], full["bin"],
                   full["noise_g"],
                   {name: full[name] for name in ("frequency", "frequency_uncertainty",
                                                  "amplitude", "uncertainty")})


@dataclass(frozen=True)
class Level:
    """The level of an axis.

    Of a spectrum `largest` is its largest bin; of a time record it is the
    largest distance from the mean, and `crest_factor` and `kurtosis` are told.
    Numbers have six digits, as ``kestrel-cli --json`` tells them.

    Attributes
    ----------
    rms : float
        In `unit`.
    unit : str
        "g RMS", "mm/s RMS".
    largest : float
        In `largest_unit`.
    largest_unit : str
        "g peak".
    from_hz, to_hz : float or None
        What part of the axis holds the quantity, Hz; None where no such edge
        is told.
    largest_hz : float or None
        Frequency of the largest bin.
    mean, crest_factor, kurtosis : float or None
        Of a time record.
    bands : sequence of mapping
        Each of the sensor's bands as it judges it: band, state, rms, largest,
        headroom_db; where bands were given.
    full : mapping
        Numbers without rounding.
    """

    rms: float
    unit: str
    largest: float
    largest_unit: str
    from_hz: float | None
    to_hz: float | None
    largest_hz: float | None
    mean: float | None
    crest_factor: float | None
    kurtosis: float | None
    bands: Sequence[Mapping[str, Any]] = field(repr=False)
    full: Mapping[str, Any] = field(repr=False)

    @classmethod
    def _made(cls, full: Mapping[str, Any], told: Mapping[str, Any]) -> Level:
        """From unrounded numbers and those that are told."""
        is_time = "peak" in told
        return cls(told["overall"], told["unit"], told["peak" if is_time else "largest"],
                   told["peak_unit" if is_time else "largest_unit"], told.get("from_hz"),
                   told.get("to_hz"), told.get("largest_hz"), told.get("mean"),
                   told.get("crest_factor"), told.get("kurtosis"), told["bands"], full)


@dataclass(frozen=True, eq=False)
class Curve:
    """A spectrum in a quantity.

    Attributes
    ----------
    axis : str
        "x", "y" or "z".
    values : numpy.ndarray of float64, shape (bins,)
        In `unit`.
    floor : numpy.ndarray of float64, shape (bins,)
        What one step of the magnitude word is worth there: nothing smaller
        can be told.
    first_valid : int
        Bins below hold offset, or are too low to integrate.
    title : str
        "Velocity, mm/s RMS".
    unit : str
        "mm/s RMS".
    frequency : numpy.ndarray of float64, shape (bins,)
        Hz.
    """

    axis: str
    values: NDArray[np.float64] = field(repr=False)
    floor: NDArray[np.float64] = field(repr=False)
    first_valid: int
    title: str
    unit: str
    frequency: NDArray[np.float64] = field(repr=False)


@dataclass(frozen=True, eq=False)
class Velocity:
    """Velocity over time.

    Attributes
    ----------
    axis : str
        "x", "y" or "z".
    time : numpy.ndarray of float64, shape (512,)
        s.
    values : numpy.ndarray of float64, shape (512,)
        mm/s.
    from_hz : float
        Edge of the high-pass (-3 dB), Hz.
    rms : float
        mm/s.
    """

    axis: str
    time: NDArray[np.float64] = field(repr=False)
    values: NDArray[np.float64] = field(repr=False)
    from_hz: float
    rms: float

    @property
    def unit(self) -> str:
        """Unit of the values, always "mm/s"."""
        return "mm/s"
