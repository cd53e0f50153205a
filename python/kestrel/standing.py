"""What is open in this process, and what becomes of it when the interpreter ends or forks."""
# SPDX-License-Identifier: MIT
from __future__ import annotations

import atexit
import os
import threading
import weakref
from typing import Protocol

from kestrel import _kestrel

# How long the end of the interpreter waits for what is at work, s.
_PATIENCE = 10.0


class _Core(Protocol):
    @property
    def is_open(self) -> bool: ...

    def end(self, seconds: float) -> bool: ...


_standing: weakref.WeakValueDictionary[int, _Core] = weakref.WeakValueDictionary()
_door = threading.Lock()


def opening() -> threading.Lock:
    """Held while a sensor is opened: one at a time."""
    return _door


def stands(core: _Core) -> None:
    """Has it closed at the end of the interpreter."""
    _standing[id(core)] = core


def _end_all() -> None:
    for core in list(_standing.values()):
        if core.is_open:
            core.end(_PATIENCE)


def _after_fork() -> None:
    global _door
    _door = threading.Lock()
    _standing.clear()
    _kestrel.after_fork()


atexit.register(_end_all)
os.register_at_fork(after_in_child=_after_fork)
