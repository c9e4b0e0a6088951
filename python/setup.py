"""Packages the vorex_zd binding with the shared library inside it.

The library comes from the environment variable VOREX_ZD_LIBRARY when it
names a built libvorex_zd.so; otherwise it is built here with CMake from the
source tree this folder belongs to (g++ and cmake needed, nothing else).

    pip install --no-build-isolation ./python
"""

import os
import re
import shutil
import subprocess
from pathlib import Path

from setuptools import Distribution, setup
from setuptools.command.build_py import build_py

HERE = Path(__file__).resolve().parent
SOURCE_TREE = HERE.parent
LIBRARY_NAME = "libvorex_zd.so"


def version():
    text = (HERE / "vorex_zd" / "__init__.py").read_text(encoding="utf-8")
    return re.search(r'^__version__ = "([^"]+)"', text, re.M).group(1)


def build_library(build_temp):
    """Builds only the shared library, without tests or benchmarks, and
    returns its path."""
    if not (SOURCE_TREE / "CMakeLists.txt").is_file():
        raise SystemExit("vorex_zd: no source tree at %s; set VOREX_ZD_LIBRARY to a built %s"
                         % (SOURCE_TREE, LIBRARY_NAME))
    if shutil.which("cmake") is None:
        raise SystemExit("vorex_zd: cmake is needed to build %s (apt-get install cmake g++)"
                         % LIBRARY_NAME)
    build_dir = Path(build_temp).resolve() / "native"
    configure = ["cmake", "-S", str(SOURCE_TREE), "-B", str(build_dir),
                 "-DCMAKE_BUILD_TYPE=Release", "-DVOREX_ZD_TESTS=OFF", "-DVOREX_ZD_BENCH=OFF"]
    if shutil.which("ninja"):
        configure += ["-G", "Ninja"]
    subprocess.check_call(configure)
    jobs = os.environ.get("CMAKE_BUILD_PARALLEL_LEVEL", "2")
    subprocess.check_call(["cmake", "--build", str(build_dir), "--target", "vorex_zd",
                           "--parallel", jobs])
    return build_dir / LIBRARY_NAME


class build_with_library(build_py):
    """build_py that also places libvorex_zd.so inside the package."""

    def run(self):
        super().run()
        named = os.environ.get("VOREX_ZD_LIBRARY", "")
        library = Path(named) if named else build_library(self.get_finalized_command("build").build_temp)
        if not library.is_file():
            raise SystemExit("vorex_zd: %s is not a file" % library)
        target = Path(self.build_lib) / "vorex_zd" / LIBRARY_NAME
        target.parent.mkdir(parents=True, exist_ok=True)
        shutil.copyfile(library, target)


class BinaryDistribution(Distribution):
    """The package holds a native library, so its wheel is platform-bound."""

    def has_ext_modules(self):
        return True


setup(
    name="vorex_zd",
    version=version(),
    description="Python binding of the vorex_zd robot program translator",
    packages=["vorex_zd"],
    python_requires=">=3.7",
    cmdclass={"build_py": build_with_library},
    distclass=BinaryDistribution,
    zip_safe=False,
)
