"""The launcher of Windows programs, scripts/wine-run.py, against a stand-in
`wine` on PATH that behaves as each case needs: every Wine process runs without
address space randomization, and every outcome of the program reaches the
caller as it happened, on its one run.

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
# line of `plan` of that number (the last line again once the plan runs out).
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

# The stand-in for wineboot keeps its personality, as a new prefix is made.
PERSONALITY_KEEPER = '#!/bin/sh\ncat /proc/self/personality > "${0%/*}/../wineboot-personality"\n'

# The personality flag of a process that runs without address space randomization.
ADDR_NO_RANDOMIZE = 0x0040000


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
                           ("wineboot", PERSONALITY_KEEPER)):
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
        return dict(os.environ, PATH=f"{self.work / 'bin'}:{os.environ['PATH']}")

    @property
    def starts(self):
        path = self.work / "starts"
        return len(path.read_text().splitlines()) if path.exists() else 0


def expect(condition, what):
    if not condition:
        raise AssertionError(what)


def test_the_program_runs_without_address_space_randomization(case):
    case.plan("cat /proc/self/personality")
    result = case.run()
    expect(result.returncode == 0, f"exit code {result.returncode}")
    expect(int(result.stdout, 16) & ADDR_NO_RANDOMIZE, f"personality {result.stdout!r}")


def test_a_new_prefix_is_made_without_address_space_randomization(case):
    (case.prefix / "system.reg").unlink()
    case.plan("exit 0")
    result = case.run()
    expect(result.returncode == 0, f"exit code {result.returncode}")
    personality = (case.work / "wineboot-personality").read_text()
    expect(int(personality, 16) & ADDR_NO_RANDOMIZE, f"wineboot's personality {personality!r}")


def test_a_silent_exit_1_is_the_programs_own(case):
    case.plan("exit 1", "exit 0")
    result = case.run()
    expect((result.returncode, result.stdout, result.stderr) == (1, b"", b""), f"{result}")
    expect(case.starts == 1, f"{case.starts} starts")


def test_a_failure_of_the_launcher_is_told_apart_from_the_programs(case):
    case.plan("exit 0")
    (case.work / "file").write_text("")
    result = subprocess.run([sys.executable, case.launcher, str(case.work / "file" / "prefix"),
                             "program.exe"], capture_output=True, env=case.environment(), timeout=60)
    expect(result.returncode == 125, f"exit code {result.returncode}")
    expect(result.stderr.startswith(b"wine-run.py: "), f"error output {result.stderr!r}")
    expect(case.starts == 0, f"{case.starts} starts")


def test_exit_1_with_output_is_the_programs_own(case):
    case.plan("echo failed; exit 1", "exit 0")
    result = case.run()
    expect((result.returncode, result.stdout) == (1, b"failed\n"), f"{result}")
    expect(case.starts == 1, f"{case.starts} starts")


def test_exit_1_with_only_error_output_is_the_programs_own(case):
    case.plan("echo oops >&2; exit 1", "exit 0")
    result = case.run()
    expect((result.returncode, result.stderr) == (1, b"oops\n"), f"{result}")
    expect(case.starts == 1, f"{case.starts} starts")


def test_another_silent_exit_code_is_the_programs_own(case):
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
