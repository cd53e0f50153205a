"""Thresholds of alarm bands from records that are known to be good."""
# SPDX-License-Identifier: MIT
from __future__ import annotations

import json
from collections.abc import Mapping
from dataclasses import dataclass, field
from typing import TYPE_CHECKING, Any

from kestrel import _kestrel
from kestrel.bands import BandTable

if TYPE_CHECKING:
    from kestrel.filters import Filter

__all__ = ["Baseline"]


@dataclass(frozen=True, eq=False)
class Baseline:
    """What is proposed, and what it does to the records.

    Attributes
    ----------
    bands : BandTable
        With the thresholds that are proposed, in codes of the records' range.
    told : mapping
        Sets, thresholds and replay as ``kestrel-cli --json baseline`` tells
        them.
    """

    bands: BandTable
    told: Mapping[str, Any] = field(repr=False)


def propose(core: _kestrel.Archive, good: Filter, bad: Filter | None, bands: BandTable | None,
            sigma: float, percentile: int | None, at_least: float, fault_above: float) -> Baseline:
    """Has the thresholds worked out."""
    rule: dict[str, float] = {"sigma": sigma, "at_least": at_least, "fault_above": fault_above}
    if percentile is not None:
        from kestrel.values import code
        code("percentile", percentile, {95: 0, 99: 1})
        rule["percentile"] = percentile
    told, rows = _kestrel.baseline(core, _part(good), None if bad is None else _part(bad),
                                   (bands or BandTable()).rows(), rule)
    return Baseline(BandTable.of_rows(rows), json.loads(told))


def _part(filter: Filter) -> dict[str, Any]:
    from kestrel.filters import filter_codes
    chosen: dict[str, Any] = dict(filter)
    ids = chosen.pop("ids", None)
    part = filter_codes(chosen)  # type: ignore[arg-type]
    if ids is not None:
        part["ids"] = [int(id) for id in ids]
    return part
