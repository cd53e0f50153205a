"""Plans of captures, judged before the first of them."""
# SPDX-License-Identifier: MIT
from __future__ import annotations

from collections.abc import Iterable, Mapping
from typing import cast

from kestrel import values
from kestrel.errors import SettingError
from kestrel.settings import SettingValues, codes_of


def check_progress(callback: object) -> None:
    """TypeError of what can be no callback."""
    if callback is not None and not callable(callback):
        raise TypeError(f"progress is {values.shown(callback)}; it must be a function of "
                        "three values: a text of what is being done, how much of it is done, and "
                        "how much there is in all.")


def steps_of(plan: Iterable[SettingValues | Mapping[str, object]] | None) -> list[SettingValues]:
    """The steps of a plan; SettingError names the step that cannot be."""
    if plan is None:
        return [{}]
    steps = []
    for place, step in enumerate(plan, 1):
        if not isinstance(step, Mapping):
            raise SettingError(f"plan, step {place} is {values.shown(step)}; it must be a "
                               "mapping of settings: {\"range\": 5}.")
        try:
            codes_of(step)
        except SettingError as error:
            raise SettingError(f"plan, step {place}: {error}") from None
        steps.append(cast(SettingValues, dict(step)))
    if not steps:
        raise SettingError("plan is empty; it must hold the settings of at least one capture.")
    return steps
