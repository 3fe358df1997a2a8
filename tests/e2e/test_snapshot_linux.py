"""The snapshot of the Linux build against what a Linux machine may hold: an
installer that records many events in one process with few descriptors to
spend, and processes whose executables carry line ends and control
characters in their names, or were deleted while they run. Natively only:
under Wine the machine is a Windows one."""
import grp
import os
import pwd
import resource
import shutil
import subprocess

from e2e_support import expect_equal, main, skip

PROCESS_HEADER = "Process ID         Process Name                     "
PROCESS_END = "---------- Process List ( end )-------------------- "


def log_lines(env, event):
    text = (env.store / event / "ZORInstallEvent.Log").read_bytes().decode("latin-1")
    return text[: -len(env.eol)].split(env.eol)


def process_tables(lines):
    """The (count, rows) of each process report of a log, rows as (id, name)."""
    tables, start = [], 0
    while PROCESS_HEADER in lines[start:]:
        header = lines.index(PROCESS_HEADER, start)
        end = lines.index(PROCESS_END, header)
        count = int(lines[header - 2][len("Processes:"):])
        rows = [(line[:19].strip(), line[19:]) for line in lines[header + 2:end]]
        tables.append((count, rows))
        start = end
    return tables


def local_group_lists(lines):
    """The group names of each "Local Group List:" table of a log."""
    lists = []
    for number, line in enumerate(lines):
        if line == "Local Group List:":
            first = number + 4
            lists.append(lines[first:lines.index("-" * 35, first)])
    return lists


def start_program(env, name, *args):
    """Runs a copy of `sleep` named `name` from the work folder."""
    program = env.work / name
    shutil.copy(shutil.which("sleep"), program)
    return program, subprocess.Popen([str(program), *args])


def stop(process):
    process.kill()
    process.wait()


def record(env, *options):
    result = subprocess.run([str(env.bin_dir / "ZORRecordEvent"), *options], cwd=env.work,
                            stdout=subprocess.PIPE, stderr=subprocess.PIPE, timeout=300)
    expect_equal((result.returncode, result.stdout, result.stderr), (0, b"", b""),
                 f"result and output of {options[0]}")


def limit_descriptors(limit):
    resource.setrlimit(resource.RLIMIT_NOFILE, (limit, limit))


def test_three_hundred_events_in_one_process_with_128_descriptors_list_everything(env):
    if not env.native:
        skip("the Linux build only")
    events = 300
    _, probe = start_program(env, "zormany", "600")
    try:
        result = subprocess.run([str(env.bin_dir / "record_events"), str(events)], cwd=env.work,
                                stdout=subprocess.PIPE, stderr=subprocess.PIPE, timeout=1800,
                                preexec_fn=lambda: limit_descriptors(128))
    finally:
        stop(probe)
    expect_equal((result.returncode, result.stdout, result.stderr), (0, b"", b""),
                 "result and output of 300 events")
    user = pwd.getpwuid(os.geteuid()).pw_name
    groups = [group.gr_name for group in grp.getgrall()]
    for n in range(1, events + 1):
        event = f"Many-{n}"
        lines = log_lines(env, event)
        tables = process_tables(lines)
        expect_equal(len(tables), 2, f"{event}: process reports")
        for count, rows in tables:
            expect_equal(len(rows), count, f"{event}: rows against the count")
            assert (str(probe.pid), "zormany") in rows, f"{event}: the running probe is missing"
        users = [line for line in lines if line.startswith("Logged on User:")]
        expect_equal(users, [f"Logged on User:{user}"] * 2, f"{event}: logged-on user")
        expect_equal(local_group_lists(lines), [groups, groups], f"{event}: local groups")


def test_control_characters_of_a_process_name_are_written_as_question_marks(env):
    if not env.native:
        skip("the Linux build only")
    _, probe = start_program(env, "zor\nForged line\r\t\x1b[31mred\x7f", "60")
    try:
        record(env, "-start", "Names-1")
    finally:
        stop(probe)
    lines = log_lines(env, "Names-1")
    (_, rows), = process_tables(lines)
    assert (str(probe.pid), "zor?Forged line???[31mred?") in rows, rows
    assert not any(line.startswith("Forged line") for line in lines), "a forged line in the log"


def test_a_deleted_executable_is_listed_by_its_name(env):
    if not env.native:
        skip("the Linux build only")
    program, probe = start_program(env, "zorgone", "60")
    program.unlink()
    try:
        record(env, "-start", "Deleted-1")
    finally:
        stop(probe)
    (_, rows), = process_tables(log_lines(env, "Deleted-1"))
    assert (str(probe.pid), "zorgone") in rows, rows


def test_a_deleted_executable_named_with_a_line_end_is_one_line(env):
    if not env.native:
        skip("the Linux build only")
    program, probe = start_program(env, "zor\nx (deleted)", "60")
    program.unlink()
    try:
        record(env, "-start", "Deleted-2")
    finally:
        stop(probe)
    (_, rows), = process_tables(log_lines(env, "Deleted-2"))
    assert (str(probe.pid), "zor?x (deleted)") in rows, rows


def test_an_executable_whose_name_ends_like_a_deleted_one_keeps_its_name(env):
    if not env.native:
        skip("the Linux build only")
    _, probe = start_program(env, "zorkept (deleted)", "60")
    try:
        record(env, "-start", "Kept-1")
    finally:
        stop(probe)
    (_, rows), = process_tables(log_lines(env, "Kept-1"))
    assert (str(probe.pid), "zorkept (deleted)") in rows, rows


if __name__ == "__main__":
    main(globals())
