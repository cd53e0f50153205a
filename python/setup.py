"""Builds the module with CMake; the version is the project's."""
# SPDX-License-Identifier: MIT
import os
import pathlib
import re
import subprocess
import sys

from setuptools import Extension, setup
from setuptools.command.build_ext import build_ext

HERE = pathlib.Path(__file__).resolve().parent
VERSION = re.search(r"project\(kestrel VERSION ([0-9.]+)",
                    (HERE / "CMakeLists.txt").read_text()).group(1)


class CMakeBuild(build_ext):
    def build_extension(self, extension):
        target = pathlib.Path(self.get_ext_fullpath(extension.name)).resolve()
        build = pathlib.Path(self.build_temp).resolve()
        build.mkdir(parents=True, exist_ok=True)
        subprocess.run(["cmake", "-S", HERE, "-B", build, "-G", "Ninja",
                        "-DCMAKE_BUILD_TYPE=Release", "-DCMAKE_CXX_FLAGS_RELEASE=-O2",
                        "-DKESTREL_PYTHON_ONLY=ON",
                        f"-DPython_EXECUTABLE={sys.executable}"], check=True)
        jobs = os.environ.get("CMAKE_BUILD_PARALLEL_LEVEL", str(os.cpu_count()))
        subprocess.run(["cmake", "--build", build, "--target", "_kestrel", "-j", jobs], check=True)
        target.parent.mkdir(parents=True, exist_ok=True)
        module = next((build / "python/kestrel").glob("_kestrel*.so"))
        subprocess.run(["strip", "--strip-unneeded", "-o", target, module], check=True)


setup(version=VERSION, ext_modules=[Extension("kestrel._kestrel", [])],
      cmdclass={"build_ext": CMakeBuild})
