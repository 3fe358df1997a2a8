"""The build that each benchmark makes for itself: Release, no sanitizers, no
tests, with the machine-wide application data folder (where the store lies,
fixed at build time) moved to a private folder below the work folder."""
import pathlib
import subprocess
import sys

SOURCE = pathlib.Path(__file__).resolve().parent.parent


def build_program(work, target, options=(), source=SOURCE, build=None):
    """Builds `target` of the tree `source` in `build` (<work>/build unless
    given), configuring with the further cache `options` (-D...); returns its
    path and the private application data folder."""
    build = build or work / "build"
    appdata = work / "appdata"
    appdata.mkdir(parents=True, exist_ok=True)
    subprocess.run(["cmake", "-S", str(source), "-B", str(build), "-DCMAKE_BUILD_TYPE=Release",
                    "-DZOR_SANITIZE=OFF", "-DZOR_BUILD_TESTS=OFF",
                    "-DZOR_COMMON_APPDATA=" + str(appdata)] + list(options),
                   check=True, stdout=subprocess.DEVNULL)
    subprocess.run(["cmake", "--build", str(build), "-j2", "--target", target],
                   check=True, stdout=subprocess.DEVNULL)
    programs = [p for p in build.rglob(target) if p.is_file()]
    if not programs:
        sys.exit(f"the build made no {target} program")
    return programs[0], appdata
