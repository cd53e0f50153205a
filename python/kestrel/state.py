"""What a sensor can be told to do, and what it tells of itself."""
# SPDX-License-Identifier: MIT
from __future__ import annotations

import enum
from collections.abc import Mapping
from dataclasses import dataclass
from typing import NamedTuple

from kestrel import values
from kestrel.measured import AxisAlarms

__all__ = ["Adapter", "Command", "State"]


class Command(enum.IntEnum):
    """The sensor's functions, by their bit of the register COMMAND."""

    AUTONULL = 0
    POWER_DOWN = 1
    SELF_TEST = 2
    FACTORY_RESET = 3
    CLEAR_STATUS = 4
    FLASH_TEST = 5
    FLASH_UPDATE = 6
    SOFTWARE_RESET = 7
    CLEAR_RECORDS = 8
    CLEAR_ALARM_BANDS = 9
    RESET_BUFFER_POINTER = 10
    RECORD_START_STOP = 11
    SAVE_ALARM_BAND = 12
    RETRIEVE_RECORD = 13
    RETRIEVE_ALARM_BAND = 14
    CLEAR_NULLS = 15


class Adapter(NamedTuple):
    """A USB adapter that answers: name, board type, its two texts, firmware, USB version."""

    name: str
    type: str
    text1: str
    text2: str
    firmware: float
    usb: str


@dataclass(frozen=True)
class State:
    """STATUS, alarms and conditions at one moment.

    Attributes
    ----------
    status : mapping of str to bool
        Flags of STATUS by name.
    alarms : mapping of str to AxisAlarms
        By axis.
    supply : float
        V.
    temperature : float
        Degrees Celsius.
    """

    status: Mapping[str, bool]
    alarms: Mapping[values.Axis, AxisAlarms]
    supply: float
    temperature: float
