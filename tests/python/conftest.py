# What the tests of the Python package share: one simulated sensor, an archive, the command line.
# SPDX-License-Identifier: MIT
import json
import os
import pathlib
import subprocess
import sys

import pytest

import kestrel

CLI = os.environ["KESTREL_CLI"]
EXAMPLES = pathlib.Path(os.environ["KESTREL_SOURCE"]) / "python" / "examples"


@pytest.fixture
def sensor():
    with kestrel.open(simulate=True) as opened:
        yield opened


@pytest.fixture(scope="module")
def record():
    """A spectrum of the running machine."""
    with kestrel.open(simulate=True) as opened:
        return opened.capture()


@pytest.fixture(scope="module")
def samples():
    """A time record at the slowest option."""
    with kestrel.open(simulate=True) as opened:
        return opened.capture(mode="time", option=3)


@pytest.fixture
def archive(tmp_path):
    with kestrel.open_archive(str(tmp_path / "archive.db")) as opened:
        yield opened


@pytest.fixture
def cli():
    """Runs the command line; gives its JSON."""
    def run(*words):
        # It brings the sanitizer's library itself, where the interpreter has to be given it.
        environment = {name: value for name, value in os.environ.items() if name != "LD_PRELOAD"}
        done = subprocess.run([CLI, "--json", *map(str, words)], capture_output=True, text=True,
                              check=True, timeout=60, env=environment)
        return json.loads(done.stdout)
    return run


@pytest.fixture
def script():
    """Runs Python in a process of its own; gives what became of it."""
    def run(text, timeout=60, **more):
        return subprocess.run([sys.executable, "-c", text], capture_output=True, text=True,
                              timeout=timeout, **more)
    return run
