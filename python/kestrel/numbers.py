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

    Numbers have as many digits as their bounds justify, as
    ``kestrel-cli --json`` reports them; `full` has them unrounded.

    Attributes
    ----------
    frequency : float
        Hz.
    frequency_uncertainty : float
        Bound of the frequency, ± Hz: 95 % of lines in noise lie within it.
    amplitude : float
        In `unit`.
    uncertainty : float or None
        Bound of the amplitude likewise, ± `unit`; None where it is not known.
    unit : str
        "g peak", "mm/s RMS".
    unresolved : bool
        True where another line is too near, or the peak has not the shape of the
        window: frequency and amplitude are then those of the bin itself.
    bin : int
        Number of its bin.
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
    largest distance from the mean, and there are `crest_factor` and `kurtosis`.
    Numbers have six digits, as ``kestrel-cli --json`` reports them.

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
        Frequencies from and to which the level holds, Hz; None where there is no
        such limit.
    largest_hz : float or None
        Frequency of the largest bin, Hz; None where there is none, as in a time
        record.
    mean, crest_factor, kurtosis : float or None
        Of a time record; None for a spectrum.
    bands : sequence of mapping
        How the sensor judges each band that was given: band, state, rms, largest,
        headroom_db.
    full : mapping
        The numbers without rounding.
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
        What one step of the sensor's magnitude word is worth in each bin:
        nothing smaller can be resolved.
    first_valid : int
        Number of the first bin to use: those below hold the offset, or are too
        low to integrate.
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
        s, from the first sample.
    values : numpy.ndarray of float64, shape (512,)
        mm/s.
    from_hz : float
        Corner frequency of the high-pass filter (-3 dB), Hz.
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
