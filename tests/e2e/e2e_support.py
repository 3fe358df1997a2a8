"""Support for the end-to-end tests: runs the real programs, natively or under
wine64, against the private store of this build, and reads what they leave.

Each test script calls main(globals()): every function named test_* runs in
file order with a fresh store, and the script prints "N passed, N failed"."""
import argparse
import os
import pathlib
import re
import shlex
import resource
import shutil
import signal
import struct
import subprocess
import sys
import time
import traceback
import zipfile


class Env:
    def __init__(self, args):
        self.bin_dir = pathlib.Path(args.bin_dir)
        self.suffix = args.exe_suffix
        self.runner = shlex.split(args.runner)
        self.appdata = pathlib.Path(args.appdata)
        self.work = pathlib.Path(args.work_dir)
        self.windows = self.suffix == ".exe"
        # What a text-mode stream writes for a line end, in files and on the console.
        self.eol = "\r\n" if self.windows else "\n"

    # -- the store -------------------------------------------------------
    @property
    def store(self):
        """The history folder on the host."""
        return self.appdata / "TAQ" / "ZORHistory"

    @property
    def store_as_program_sees_it(self):
        """The history folder in the program's own form, as stored in History.ini."""
        if self.windows:
            return "C:\\ProgramData\\TAQ\\ZORHistory"
        return str(self.appdata) + "\\TAQ\\ZORHistory"

    def program_path(self, host_path):
        """A host path as the program takes it on its command line."""
        host_path = str(host_path)
        if self.windows:
            return "Z:" + host_path.replace("/", "\\")
        return host_path

    def reset(self):
        shutil.rmtree(self.appdata / "TAQ", ignore_errors=True)
        shutil.rmtree(self.work, ignore_errors=True)
        self.appdata.mkdir(parents=True, exist_ok=True)
        self.work.mkdir(parents=True, exist_ok=True)

    # -- running ---------------------------------------------------------
    def run(self, program, *args, cwd=None, timeout=300):
        """Runs bin_dir/program with args; returns (exit code, stdout text)."""
        code, out, _ = self.run_full(program, *args, cwd=cwd, timeout=timeout)
        return code, out

    def run_full(self, program, *args, cwd=None, timeout=300, file_size_limit=None,
                 environment=None):
        """Runs bin_dir/program with args; returns (exit code, stdout text, stderr text).
        A program still running after `timeout` seconds fails the test. With
        file_size_limit no file may grow past that many bytes: a write past it
        fails as on a full disk (EFBIG), instead of stopping the process.
        `environment` adds variables to the program's environment."""
        exe = str(self.bin_dir / (program + self.suffix))
        result = subprocess.run(self.runner + [exe, *args], cwd=cwd or self.work,
                                env=dict(os.environ, **(environment or {})),
                                stdout=subprocess.PIPE, stderr=subprocess.PIPE, timeout=timeout,
                                preexec_fn=None if file_size_limit is None
                                else lambda: limit_file_size(file_size_limit))
        return result.returncode, result.stdout.decode("latin-1"), result.stderr.decode("latin-1")

    @property
    def arch(self):
        """x86 or x64 for a Windows build, from the machine of its programs' PE header."""
        return pe_arch(self.bin_dir / ("ZORRecordEvent" + self.suffix))

    @property
    def registry_bits(self):
        """The view of the registry that a Windows build's programs see: 64-bit
        Windows shows a 32-bit program the 32-bit view (Wow6432Node) of the keys
        that it redirects, as `reg ... /reg:32` names it."""
        return 32 if self.arch == "x86" else 64

    @property
    def native(self):
        """True when the programs run directly, not under an emulator such as Wine."""
        return not self.runner

    def expect_no_error_output(self, err, what=""):
        """The programs never write to the error stream. Checked on native runs
        only: under Wine the stream also carries Wine's own messages."""
        if self.native:
            expect_equal(err, "", f"standard error {what}".strip())

    def lines(self, *lines):
        """The console or file text of these lines, each with its line end."""
        return "".join(line + self.eol for line in lines)


PE_MACHINE_I386 = 0x14C


def pe_arch(path):
    """x86 or x64: the machine that a Windows binary is built for."""
    data = pathlib.Path(path).read_bytes()
    header = struct.unpack_from("<I", data, 0x3C)[0]
    return "x86" if struct.unpack_from("<H", data, header + 4)[0] == PE_MACHINE_I386 else "x64"


def limit_file_size(limit):
    resource.setrlimit(resource.RLIMIT_FSIZE, (limit, limit))
    signal.signal(signal.SIGXFSZ, signal.SIG_IGN)


def profile_bytes(sections):
    """A file in the private-profile format: for each (name, keys) a [name] line
    and key=value lines, CR LF; keys are (key, value) pairs or a dict."""
    lines = []
    for name, keys in sections:
        lines.append(f"[{name}]")
        pairs = keys.items() if isinstance(keys, dict) else keys
        lines.extend(f"{key}={value}" for key, value in pairs)
    return "".join(line + "\r\n" for line in lines).encode("latin-1")


def check_archive(path):
    """Checks an archive with Python's zipfile and unzip -t; returns its ZipInfo list."""
    with zipfile.ZipFile(path) as z:
        assert z.testzip() is None, f"testzip found a bad entry in {path}"
        infos = z.infolist()
    unzip = subprocess.run(["unzip", "-t", str(path)], capture_output=True, text=True)
    if infos:
        assert unzip.returncode == 0, f"unzip -t failed on {path}: {unzip.stdout}{unzip.stderr}"
    return infos


TIME = r"\d{8} \d\d:\d\d:\d\d"


def file_lines(env, path):
    """The lines of a text-mode file, split at the platform's line end."""
    text = path.read_bytes().decode("latin-1")
    assert text.endswith(env.eol), f"{path} doesn't end with a line end"
    return text[: -len(env.eol)].split(env.eol)


def store_section_lines(store, section):
    """The Key=Value lines of one section of the store's History.ini, in file order."""
    lines, inside = [], False
    for line in (store / "History.ini").read_bytes().decode("latin-1").splitlines():
        if line.startswith("["):
            inside = line == f"[{section}]"
        elif inside and line:
            lines.append(line)
    return lines


def section_lines(env, section):
    """The Key=Value lines of one section of History.ini, in file order."""
    return store_section_lines(env.store, section)


def expect_lines_match(actual, expected, what):
    """Expected lines may hold <time> where a time stamp stands."""
    expect_equal(len(actual), len(expected), f"{what}: number of lines\n{actual!r}")
    for number, (line, wanted) in enumerate(zip(actual, expected)):
        pattern = TIME.join(re.escape(part) for part in wanted.split("<time>"))
        assert re.fullmatch(pattern, line), f"{what}, line {number}:\n  expected: {wanted!r}\n  actual:   {line!r}"


def expect_equal(actual, expected, what=""):
    if actual != expected:
        raise AssertionError(f"{what}\n  expected: {expected!r}\n  actual:   {actual!r}")


class Probe:
    """A program of a name no other process has, running until stopped: a
    copy of sleep natively; under Wine a copy of Wine's cmd.exe, which waits
    for commands on its input, kept open until the probe stops. Under Wine the
    copy is of the build's own bitness, unless `bits` names 32 or 64: a 32-bit
    program on 64-bit Windows sees 64-bit processes otherwise than its own."""

    def __init__(self, env, bits=None, tag=""):
        self.env = env
        self.bits = bits or (64 if env.native else env.registry_bits)
        base = f"zorrpt{tag}{os.getpid()}"
        self.name = base + env.suffix
        self.program = env.work / self.name
        self.process = None

    def __enter__(self):
        if self.env.native:
            shutil.copy(shutil.which("sleep"), self.program)
            # Popen returns once the program runs under its new name.
            self.process = subprocess.Popen([str(self.program), "600"])
        else:
            self.start_under_wine()
        return self

    def start_under_wine(self):
        # Wine keeps the 32-bit programs of a 64-bit prefix in syswow64.
        folder = "syswow64" if self.bits == 32 else "system32"
        result = subprocess.run(self.env.runner + [
            "cmd.exe", "/c", "copy", "/y", f"%SystemRoot%\\{folder}\\cmd.exe",
            self.env.program_path(self.program)], capture_output=True, timeout=300)
        expect_equal(result.returncode, 0, f"copy of the {self.bits}-bit cmd.exe")
        self.process = subprocess.Popen(self.env.runner + [self.env.program_path(self.program)],
                                        cwd=self.env.work, stdin=subprocess.PIPE,
                                        stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        # The probe runs once it carries out a command of its input.
        ready = self.env.work / f"{self.name}.ready"
        self.process.stdin.write(f"echo ready>{ready.name}\r\n".encode("latin-1"))
        self.process.stdin.flush()
        deadline = time.monotonic() + 120
        while not ready.exists():
            assert self.process.poll() is None, f"{self.name} ended at once"
            assert time.monotonic() < deadline, f"{self.name} never carried out its first command"
            time.sleep(0.5)

    def __exit__(self, *exc):
        if self.process is None:
            return
        if self.process.stdin:
            # cmd.exe ends at the end of its input.
            self.process.stdin.close()
            try:
                self.process.wait(timeout=60)
                return
            except subprocess.TimeoutExpired:
                pass
        self.process.kill()
        self.process.wait()


def main(namespace):
    parser = argparse.ArgumentParser()
    for option in ("--bin-dir", "--exe-suffix", "--runner", "--appdata", "--work-dir"):
        parser.add_argument(option, default="")
    env = Env(parser.parse_args())
    tests = [(name, f) for name, f in namespace.items() if name.startswith("test_") and callable(f)]
    run_tests([(name, lambda test=test: test(env)) for name, test in tests], env.reset)


# The exit code of a script whose tests were all skipped: CTest shows it as
# skipped (SKIP_RETURN_CODE), not as passed.
ALL_SKIPPED = 77


class Skipped(Exception):
    """A test that this build or this machine can't run, and why."""


def skip(reason):
    raise Skipped(reason)


def run_tests(tests, before_each):
    """Runs each (name, test) in order, each after before_each(), prints how
    each went and "N passed, N failed, N skipped", and exits with 1 if any
    failed or none was there, ALL_SKIPPED if all were skipped."""
    passed = failed = skipped = 0
    for name, test in tests:
        before_each()
        began = time.monotonic()
        try:
            test()
            passed += 1
            print(f"PASS {name} ({time.monotonic() - began:.1f} s)")
        except Skipped as reason:
            skipped += 1
            print(f"SKIP {name}: {reason}")
        except Exception:
            failed += 1
            print(f"FAIL {name} ({time.monotonic() - began:.1f} s)")
            traceback.print_exc(file=sys.stdout)
    print(f"{passed} passed, {failed} failed, {skipped} skipped")
    if failed or not (passed or skipped):
        sys.exit(1)
    sys.exit(0 if passed else ALL_SKIPPED)
