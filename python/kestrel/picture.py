"""The small picture that a notebook shows of a record: SVG, made without any library."""
# SPDX-License-Identifier: MIT
from __future__ import annotations

import html
from typing import TYPE_CHECKING

from kestrel import values
from kestrel.tables import COLOURS

if TYPE_CHECKING:
    from kestrel.record import Record

_WIDTH, _HEIGHT = 480.0, 120.0  # of the plot, px
_LEFT, _TOP, _BOTTOM = 48.0, 6.0, 18.0


def html_of(record: Record) -> str:
    """Its line, the picture of the three axes, and what is not as it seems."""
    notices = "".join(f"<li>{html.escape(notice)}</li>" for notice in record.notices)
    return ("<div style='font-family:sans-serif;font-size:13px'>"
            f"<div>{html.escape(record.describe())}</div>{_svg(record)}"
            + (f"<ul>{notices}</ul>" if notices else "") + "</div>")


def _svg(record: Record) -> str:
    first = 0 if record.is_time else 1  # bin 0 holds the mean
    points = {axis: record.values(axis)[first:].tolist() for axis in values.AXES}
    everything = [value for each in points.values() for value in each]
    top = max(max(everything), 0.0)
    low = min(min(everything), 0.0)
    span = (top - low) or 1.0
    lines = "".join(_line(points[axis], COLOURS[axis], low, span) for axis in values.AXES)
    places = record.time * 1e3 if record.is_time else record.frequency / 1e3
    unit = "ms" if record.is_time else "kHz"
    keys = "".join(f"<tspan fill='{COLOURS[axis]}' dx='8'>{axis.upper()}</tspan>"
                   for axis in values.AXES)
    base = _TOP + _HEIGHT
    return (f"<svg role='img' aria-label='{html.escape(record.describe(), quote=True)}' "
            f"width='{_LEFT + _WIDTH + 8:.0f}' height='{base + _BOTTOM:.0f}' "
            "style='font-size:11px' fill='currentColor'>"
            f"<rect x='{_LEFT}' y='{_TOP}' width='{_WIDTH}' height='{_HEIGHT}' fill='none' "
            f"stroke='currentColor' stroke-opacity='0.3'/>{lines}"
            f"<text x='{_LEFT - 4}' y='{_TOP + 9}' text-anchor='end'>{top:.3g} g</text>"
            f"<text x='{_LEFT - 4}' y='{base}' text-anchor='end'>{low:.3g}</text>"
            f"<text x='{_LEFT}' y='{base + 13}'>{places[first]:.3g}</text>"
            f"<text x='{_LEFT + _WIDTH / 2 - 30}' y='{base + 13}'>{keys}</text>"
            f"<text x='{_LEFT + _WIDTH}' y='{base + 13}' text-anchor='end'>{places[-1]:.4g} {unit}"
            "</text></svg>")


def _line(points: list[float], colour: str, low: float, span: float) -> str:
    step = _WIDTH / (len(points) - 1)
    path = " ".join(f"{_LEFT + i * step:.1f},{_TOP + _HEIGHT * (1 - (value - low) / span):.1f}"
                    for i, value in enumerate(points))
    return f"<polyline points='{path}' fill='none' stroke='{colour}' stroke-width='1'/>"
