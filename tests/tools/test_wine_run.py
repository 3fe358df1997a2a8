"""The launcher of Windows programs, scripts/wine-run.py, against a stand-in
`wine` on PATH that behaves as each case needs: only a start with Wine's
start flake (exit code 1, no output, ended at once) is made once more and
logged; every other outcome reaches the caller as it happened, on the first run.
The launcher's bound for "at once" is set to 2 s here, so that the stand-in's
quick ends count as quick however busy the machine is; a start that counts as
slow sleeps 3 s.

Usage: test_wine_run.py LAUNCHER WORK_DIR
Prints "N passed, N failed" and exits non-zero when a case fails."""
import os
import pathlib
import shutil
import signal
import subprocess
import sys
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "e2e"))
from e2e_support import run_tests  # noqa: E402

# The stand-in: counts its starts in `starts`; its behaviour on each start is the
# line of `plan` of that number (the last line again once the plan runs out). It
# is a POSIX shell script of builtins only, so that a start it ends at once ends
# well within the launcher's bound.
STAND_IN = r'''#!/bin/sh
work="${0%/*}/.."
echo start >> "$work/starts"
n=0
while read -r _; do n=$((n + 1)); done < "$work/starts"
i=0
line=
while IFS= read -r step; do
    i=$((i + 1))
    last="$step"
    [ "$i" -eq "$n" ] && line="$step"
done < "$work/plan"
[ -n "$line" ] || line="$last"
eval "$line"
'''


BOUND_MS = 2000


class Case:
    def __init__(self, launcher, root, name):
        self.launcher = launcher
        self.work = root / name
        shutil.rmtree(self.work, ignore_errors=True)
        (self.work / "bin").mkdir(parents=True)
        self.prefix = self.work / "prefix"
        self.prefix.mkdir()
        (self.prefix / "system.reg").write_text("")
        for tool, body in (("wine", STAND_IN),
                           ("wineserver", "#!/bin/bash\nexit 2\n"),
                           ("wineboot", "#!/bin/bash\nexit 0\n")):
            path = self.work / "bin" / tool
            path.write_text(body)
            path.chmod(0o755)

    def plan(self, *lines):
        (self.work / "plan").write_text("".join(line + "\n" for line in lines))

    def run(self, *args, stdin=None, limit_file_size=False):
        """Runs the launcher; with limit_file_size, as the disk-full tests run
        it: with SIGXFSZ ignored, so that a write past a limit fails."""
        environment = self.environment()
        ignore = (lambda: signal.signal(signal.SIGXFSZ, signal.SIG_IGN)) if limit_file_size else None
        return subprocess.run([sys.executable, self.launcher, str(self.prefix), "program.exe", *args],
                              input=stdin, capture_output=True, env=environment, timeout=60,
                              preexec_fn=ignore)

    def environment(self):
        return dict(os.environ, PATH=f"{self.work / 'bin'}:{os.environ['PATH']}",
                    ZOR_WINE_FLAKE_BOUND_MS=str(BOUND_MS))

    @property
    def starts(self):
        path = self.work / "starts"
        return len(path.read_text().splitlines()) if path.exists() else 0

    @property
    def retries(self):
        path = pathlib.Path(str(self.prefix) + ".retries")
        return path.read_text().splitlines() if path.exists() else []


def expect(condition, what):
    if not condition:
        raise AssertionError(what)


def test_a_start_with_the_flakes_signature_is_made_once_more_and_logged(case):
    case.plan("exit 1", 'echo "ran $*"; exit 0')
    result = case.run("a", "b")
    expect(result.returncode == 0, f"exit code {result.returncode}")
    expect(result.stdout == b"ran program.exe a b\n", f"output {result.stdout!r}")
    expect(case.starts == 2, f"{case.starts} starts")
    expect(len(case.retries) == 1 and case.retries[0].endswith("ms: program.exe a b"),
           f"retry log {case.retries}")


def test_the_flake_twice_in_a_row_is_reported_after_one_retry(case):
    case.plan("exit 1")
    result = case.run()
    expect(result.returncode == 1, f"exit code {result.returncode}")
    expect(case.starts == 2, f"{case.starts} starts")


def test_exit_1_with_output_is_the_programs_own(case):
    case.plan("echo failed; exit 1", "exit 0")
    result = case.run()
    expect((result.returncode, result.stdout) == (1, b"failed\n"), f"{result}")
    expect(case.starts == 1 and not case.retries, f"{case.starts} starts, {case.retries}")


def test_exit_1_with_only_error_output_is_the_programs_own(case):
    case.plan("echo oops >&2; exit 1", "exit 0")
    result = case.run()
    expect((result.returncode, result.stderr) == (1, b"oops\n"), f"{result}")
    expect(case.starts == 1, f"{case.starts} starts")


def test_a_silent_exit_1_after_the_bound_is_the_programs_own(case):
    case.plan("sleep 3; exit 1", "exit 0")
    result = case.run()
    expect(result.returncode == 1, f"exit code {result.returncode}")
    expect(case.starts == 1 and not case.retries, f"{case.starts} starts, {case.retries}")


def test_another_quick_silent_exit_code_is_the_programs_own(case):
    case.plan("exit 2", "exit 0")
    result = case.run()
    expect(result.returncode == 2 and case.starts == 1, f"{result.returncode}, {case.starts} starts")


def test_output_input_and_exit_code_pass_through(case):
    case.plan("cat; printf 'to err' >&2; exit 7")
    data = bytes(range(256)) * 1000
    result = case.run(stdin=data)
    expect(result.returncode == 7, f"exit code {result.returncode}")
    expect(result.stdout == data, "standard output differs from the input")
    expect(result.stderr == b"to err", f"error output {result.stderr!r}")


def test_a_write_past_the_callers_file_size_limit_fails_instead_of_killing(case):
    case.plan('ulimit -f 1; head -c 8192 /dev/zero > "$work/big"; echo "head: $?"')
    result = case.run(limit_file_size=True)
    expect(result.returncode == 0, f"exit code {result.returncode}")
    expect(result.stdout == b"head: 1\n", f"output {result.stdout!r}")


def test_a_program_ended_by_a_signal_ends_the_launcher_by_it(case):
    case.plan("kill -TERM $$")
    result = case.run()
    expect(result.returncode == -signal.SIGTERM, f"exit status {result.returncode}")
    expect(case.starts == 1, f"{case.starts} starts")


def test_a_program_ends_when_its_launcher_is_killed(case):
    case.plan('echo $$ > "$work/pid"; exec sleep 60')
    launcher = subprocess.Popen([sys.executable, case.launcher, str(case.prefix), "program.exe"],
                                env=case.environment())
    pid_file = case.work / "pid"
    deadline = time.monotonic() + 30
    while not pid_file.exists() or not pid_file.read_text().strip():
        expect(time.monotonic() < deadline, "the program never started")
        time.sleep(0.05)
    program = int(pid_file.read_text())
    launcher.kill()
    launcher.wait()
    deadline = time.monotonic() + 10
    while pathlib.Path(f"/proc/{program}").exists() and not is_zombie(program):
        expect(time.monotonic() < deadline, "the program outlived its launcher")
        time.sleep(0.05)


def is_zombie(pid):
    try:
        return pathlib.Path(f"/proc/{pid}/stat").read_text().split(") ")[1].startswith("Z")
    except OSError:
        return True


def main():
    launcher, root = sys.argv[1], pathlib.Path(sys.argv[2])
    run_tests([(name, lambda test=test, name=name: test(Case(launcher, root, name)))
               for name, test in list(globals().items()) if name.startswith("test_")], lambda: None)


if __name__ == "__main__":
    main()
