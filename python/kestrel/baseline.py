"""Thresholds of alarm bands from records that are known to be good."""
# SPDX-License-Identifier: MIT
from __future__ import annotations

import json
from collections.abc import Mapping
from dataclasses import dataclass, field
from typing import TYPE_CHECKING, Any

from kestrel import _kestrel, values
from kestrel.bands import BandTable

if TYPE_CHECKING:
    from kestrel.filters import RecordSet

__all__ = ["Baseline"]


@dataclass(frozen=True, eq=False)
class Baseline:
    """Proposed thresholds, and the alarms they would have raised.

    Attributes
    ----------
    bands : BandTable
        With the thresholds that are proposed, in codes of the records' range.
    told : mapping
        Sets, thresholds and replay as ``kestrel-cli --json baseline`` reports
        them.
    """

    bands: BandTable
    told: Mapping[str, Any] = field(repr=False)


def propose(core: _kestrel.Archive, good: RecordSet, bad: RecordSet | None, bands: BandTable | None,
            sigma: float, percentile: int | None, at_least: float, fault_above: float) -> Baseline:
    """Has the thresholds worked out."""
    rule = {"sigma": values.number("sigma", sigma, 0, 100),
            "at_least": values.number("at_least", at_least, 0, 100, "dB"),
            "fault_above": values.number("fault_above", fault_above, 0, 100, "dB")}
    if percentile is not None:
        values.code("percentile", percentile, {95: 0, 99: 1})
        rule["percentile"] = percentile
    table = BandTable() if bands is None else values.made("bands", bands, BandTable)
    told, rows = _kestrel.baseline(core, _part("good", good),
                                   None if bad is None else _part("bad", bad), table.rows(), rule)
    return Baseline(BandTable.of_rows(rows), json.loads(told))


def _part(what: str, filter: RecordSet) -> dict[str, Any]:
    from kestrel.filters import filter_codes, ids_of
    if not isinstance(filter, Mapping):
        raise TypeError(f"{what} is {values.shown(filter)}; it must be a dict of keywords of "
                        "`Archive.search`, or of ids.")
    chosen: dict[str, Any] = dict(filter)
    ids = chosen.pop("ids", None)
    part = filter_codes(chosen)
    if ids is not None:
        part["ids"] = ids_of(ids)
    return part
