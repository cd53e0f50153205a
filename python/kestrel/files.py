"""Records as files that other programs read, and back."""
# SPDX-License-Identifier: MIT
from __future__ import annotations

import os
import pathlib
import tempfile
from collections.abc import Iterable, Mapping
from typing import TYPE_CHECKING, Any

from kestrel import _kestrel, values
from kestrel.errors import FileError

if TYPE_CHECKING:
    from kestrel.kept import ArchivedRecord
    from kestrel.record import Record

__all__ = ["formats", "load", "save"]


def formats() -> dict[str, str]:
    """The formats that can be written, with the usual ending of their files."""
    return dict(_kestrel.formats)


def _format_of(path: str, format: str | None) -> str:
    if format is None:
        ending = pathlib.Path(path).suffix.lower()
        format = next((name for name, each in formats().items() if each == ending), None)
    if isinstance(format, str) and format in formats():
        return format
    there = ", ".join(f"{name} ({ending})" for name, ending in formats().items())
    known = "its ending tells no format; give one" if format is None else (
        f"there is no format {values.shown(format)}")
    raise FileError(f"{path}: {known}. The formats are {there}.")


def write_whole(path: str | os.PathLike[str], content: bytes) -> None:
    """Writes a file whole, or leaves the one that is there as it is."""
    target = pathlib.Path(values.path(path))
    try:
        handle, name = tempfile.mkstemp(prefix=f".{target.name}.", dir=target.parent)
        try:
            with os.fdopen(handle, "wb") as file:
                file.write(content)
                file.flush()
                os.fsync(file.fileno())
            # As a file that was simply opened for writing.
            os.chmod(name, (target.stat().st_mode if target.exists() else 0o666 & ~_mask()) & 0o777)
            os.replace(name, target)
        except BaseException:
            os.unlink(name)
            raise
    except OSError as error:
        raise FileError(f"{target} cannot be written: {error.strerror}.") from error


def _mask() -> int:
    mask = os.umask(0)
    os.umask(mask)
    return mask


def save(path: str | os.PathLike[str],
         records: Record | ArchivedRecord | Iterable[Record | ArchivedRecord], *,
         format: str | None = None) -> None:
    """Writes records into one file that other programs read, whole or not at all.

    Parameters
    ----------
    path : str or path
        Its ending tells the format.
    records : Record, ArchivedRecord, or an iterable of them
        The remarks of an archived record go into the file too.
    format : str, optional
        One of `formats`, where the ending does not tell.

    Raises
    ------
    FileError
    """
    from kestrel.kept import ArchivedRecord
    from kestrel.record import Record
    chosen = _format_of(values.path(path), format)
    pairs: list[tuple[_kestrel.Record, Mapping[str, Any]]] = []
    for each in [records] if isinstance(records, (Record, ArchivedRecord)) else records:
        if isinstance(each, ArchivedRecord):
            pairs.append((each.record._core, each.remarks()))
        else:
            pairs.append((values.made("record", each, Record)._core, {}))
    write_whole(path, _kestrel.exported(pairs, chosen))


def load(path: str | os.PathLike[str], *, option: int | None = None, range: int | None = None,
         window: values.Window | None = None) -> list[Record]:
    """Reads the records of a data-log file, a universal file (58) or a WAV file.

    Parameters
    ----------
    path : str or path
    option : int, optional
        Sample-rate option, 0 to 3, where the file does not say.
    range : int, optional
        Full scale in g, 1, 5, 20 or 70, likewise.
    window : {"rectangular", "hanning", "flattop"}, optional
        FFT window, likewise.

    Returns
    -------
    list of Record

    Raises
    ------
    FileError
        Names the file, the place in it and the value; or what the file does not
        say.
    """
    from kestrel.record import Record
    from kestrel.settings import codes_of
    said = codes_of({"option": option, "range": range, "window": window})
    try:
        content = pathlib.Path(values.path(path)).read_bytes()
    except OSError as error:
        raise FileError(f"{values.path(path)} cannot be read: {error.strerror}.") from error
    records, _ = _kestrel.imported(values.path(path), content, said)
    return [Record(core) for core, _, _ in records]
