# Every public name is documented, typed and tested; types, stubs and documents agree with the code.
# SPDX-License-Identifier: MIT
import enum
import inspect
import os
import pathlib
import re
import subprocess
import sys
import typing

import pytest

import kestrel

SOURCE = pathlib.Path(os.environ["KESTREL_SOURCE"])
PACKAGE = pathlib.Path(kestrel.__file__).parent
REFERENCE = (SOURCE / "docs/python-reference.md").read_text(encoding="utf-8")
TESTS = "\n".join(file.read_text(encoding="utf-8")
                  for file in pathlib.Path(__file__).parent.glob("*.py")
                  if file.name != pathlib.Path(__file__).name)


def public():
    """Public names: "open", "Record", "Record.x", each with what it is."""
    for name in sorted(set(kestrel.__all__) - {"__version__"}):
        value = getattr(kestrel, name)
        yield name, value
        if not inspect.isclass(value) or typing.is_typeddict(value) or issubclass(value, enum.Enum):
            continue
        everything = {member: each for part in value.__mro__ if part.__module__.startswith("kestrel")
                      for member, each in vars(part).items()}
        for member, each in everything.items():
            if member.startswith("_"):
                continue
            if isinstance(each, (property, classmethod)) or inspect.isfunction(each):
                yield f"{name}.{member}", each


NAMES = dict(public())


def function_of(value):
    if isinstance(value, property):
        return value.fget
    return value.__func__ if isinstance(value, classmethod) else value


def test_there_are_as_many_names_as_people_can_use():
    assert len(NAMES) > 150
    assert not {name for name in dir(kestrel) if name in ("json", "os", "np", "numpy")}


def test_every_public_name_is_documented():
    for name, value in NAMES.items():
        if inspect.isclass(value) or inspect.isfunction(function_of(value)):
            text = inspect.getdoc(function_of(value))
            assert text and len(text.split()) >= 2, name
            assert re.search(r"[.:]$|[.:;]\n", text, re.M), f"{name}: no sentence"
        heading = rf"^## {name}$" if "." not in name else rf"^### `{re.escape(name)}[(`]"
        assert re.search(heading, REFERENCE, re.M), f"{name} is not in the reference"


def test_parameters_are_documented_as_they_are_called():
    """Sections in numpy's style: each parameter that is told exists, with its type."""
    for name, value in NAMES.items():
        function = function_of(value)
        if not inspect.isfunction(function):
            continue
        text = inspect.getdoc(function) or ""
        section = re.search(r"^Parameters\n-+\n(.*?)(?=^\w+\n-+\n|\Z)", text, re.M | re.S)
        if not section:
            continue
        told = {word.strip(" *") for line in section.group(1).split("\n")
                if line and not line.startswith(" ")
                for word in line.split(" : ")[0].split(",")}
        parameters = set(inspect.signature(function).parameters) - {"self"}
        assert told <= parameters, f"{name} tells of {told - parameters}"
        assert parameters <= told, f"{name} does not tell of {parameters - told}"


def test_every_public_name_is_typed():
    for name, value in NAMES.items():
        function = function_of(value)
        if not inspect.isfunction(function):
            continue
        parameters = inspect.signature(function).parameters.values()
        untyped = [each.name for each in parameters
                   if each.name not in ("self", "cls") and each.annotation is each.empty]
        assert not untyped, f"{name}: {untyped}"
        assert inspect.signature(function).return_annotation is not inspect.Signature.empty, name
    assert (PACKAGE / "py.typed").exists() and (PACKAGE / "_kestrel.pyi").exists()


def test_every_public_name_is_tested():
    everything = TESTS + "\n".join(
        file.read_text(encoding="utf-8") for file in (SOURCE / "python/examples").glob("*.py"))
    untested = [name for name in NAMES
                if not re.search(rf"\b{name.rpartition('.')[2]}\b", everything)]
    assert untested == []


def mypy(*words):
    done = subprocess.run([sys.executable, "-m", "mypy", "--no-error-summary", "--cache-dir",
                           os.devnull, *map(str, words)], capture_output=True, text=True,
                          cwd=PACKAGE.parent, timeout=300)
    return done.returncode, done.stdout + done.stderr


def test_strict_types_hold_in_package_and_examples():
    """With nothing but --strict, as anybody would call it."""
    assert mypy("--strict", "-p", "kestrel") == (0, "")
    examples = sorted((SOURCE / "python/examples").glob("*.py"))
    assert mypy("--strict", "--ignore-missing-imports", "--scripts-are-modules",
                *examples) == (0, "")


def test_wrong_use_is_found_by_types(tmp_path):
    script = tmp_path / "wrong.py"
    script.write_text("""import kestrel
with kestrel.open(simulate=True) as sensor:
    sensor.settings.window = "hamming"
    record = sensor.capture()
    record.values("w")
    record.x.nonsense()
    reveal_type(record.x)
    sensor.capture(rnage=5)
    sensor.settings.update(window="hamming")
    sensor.captures(plan=[{"mode": "manual"}])
    sensor.settings.update(**sensor.settings.as_dict())
with kestrel.open_archive() as archive:
    archive.search(colour="red")
    archive.search(machine=5)
    reveal_type(archive.search(machine="a"))
    archive.trend("rms", "w", low=5)
    archive.write(record, machine="a", rpm="fast")
    for kept in archive.read_all(tag="a"):
        kept.nonsense()
    archive.baseline({"tag": "a", "ids": [1]}, {"tg": "b"})
""")
    code, told = mypy("--strict", script)
    assert code == 1
    assert [int(line) for line in re.findall(r"wrong.py:(\d+): error", told)] == [
        3, 5, 6, 8, 9, 13, 14, 16, 17, 19, 20], told
    assert 'Revealed type is "builtins.list[builtins.int]"' in told
    assert "numpy.ndarray[Any, numpy.dtype[" in told


def test_the_stub_is_as_the_module(tmp_path):
    """Classes of the module have a metaclass of their own, and those that it makes alone take anything."""
    allow = tmp_path / "allow.txt"
    allow.write_text(r"kestrel\._kestrel\.(Archive|Joined|Record|Sensor|Setup)(\.__init__)?" + "\n")
    done = subprocess.run([sys.executable, "-m", "mypy.stubtest", "kestrel._kestrel", "--allowlist",
                           allow, "--mypy-config-file", SOURCE / "python/mypy.ini"],
                          capture_output=True, text=True, cwd=tmp_path, timeout=300,
                          env=os.environ | {"MYPYPATH": str(PACKAGE.parent)})
    assert done.returncode == 0, done.stdout + done.stderr


def test_the_reference_is_what_the_docstrings_make():
    done = subprocess.run([sys.executable, SOURCE / "tools/make-python-docs", "--check"],
                          capture_output=True, text=True, timeout=60)
    assert (done.returncode, done.stderr) == (0, "")


def test_the_tour_runs_as_it_stands(script, tmp_path):
    text = (SOURCE / "docs/python.md").read_text(encoding="utf-8")
    blocks = re.findall(r"^```python\n(.*?)^```$", text, re.M | re.S)
    assert len(blocks) > 8
    pytest.importorskip("matplotlib")
    pytest.importorskip("pandas")
    done = script("\n".join(blocks), timeout=300, cwd=tmp_path, env=os.environ | {"MPLBACKEND": "Agg"})
    assert done.returncode == 0, done.stderr
    assert "range is 7; it can be 1, 5, 20 or 70." in done.stdout
    made = {file.name for file in tmp_path.glob("*.png")}
    assert made == set(re.findall(r"pictures/(python_\w+\.png)", text))
    for picture in made:
        assert (SOURCE / "docs/pictures" / picture).exists()
