"""The machine snapshot of a real event, through ZORRecordEvent on the machine
the test runs on (natively, or under Wine with the real Windows calls): the
computer report, both snapshots with their six sections, and the facts that the
machine itself reports through its own tools."""
import os
import platform
import pwd
import grp
import shutil
import socket
import subprocess

from e2e_support import Probe, expect_equal, main, skip

EVENT = "Snap-1"

SIX_HEADINGS = [
    "1) User Group & User Information:",
    "2) Software Installed on the machine:",
    "3) Current Running Processes:",
    "4) Services & Service Status:",
    "5) ZOR Products Installed:",
    "6) ZOR ODBC Driver Info:",
]


def record(env, *options):
    code, output = env.run("ZORRecordEvent", *options)
    expect_equal((code, output), (0, ""), f"result and console output of {options[0]}")


def log_lines(env, *folders):
    path = env.store.joinpath(*folders, EVENT, "ZORInstallEvent.Log")
    text = path.read_bytes().decode("latin-1")
    return text[: -len(env.eol)].split(env.eol)


def value_of(lines, label):
    """The text behind the first line that begins with `label`."""
    for line in lines:
        if line.startswith(label):
            return line[len(label):]
    raise AssertionError(f"no line begins with {label!r}")


def windows_variable(env, name):
    """What the Windows side reports for an environment variable, through its own cmd.exe."""
    result = subprocess.run(env.runner + ["cmd.exe", "/c", "echo", f"%{name}%"],
                            stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, timeout=120)
    return result.stdout.decode("latin-1").strip()


def rows_of_process_table(lines, start):
    """The (id, name) rows of the process report that follows `start`."""
    header = lines.index("Process ID         Process Name                     ", start)
    end = lines.index("---------- Process List ( end )-------------------- ", header)
    rows = []
    for line in lines[header + 2:end]:
        rows.append((line[:19].strip(), line[19:]))
    return rows


def test_both_snapshots_number_their_six_sections_from_one(env):
    record(env, "-start", EVENT, "-Action", "Install")
    record(env, "-end", EVENT, "-CopyName", "C1")
    headings = [line for line in log_lines(env, "C1") if line[:2] in {f"{n})" for n in range(1, 10)}]
    expect_equal(headings, SIX_HEADINGS + SIX_HEADINGS, "section headings")


def test_computer_report_shows_this_machine(env):
    record(env, "-start", EVENT)
    lines = log_lines(env)
    if env.native:
        name = socket.gethostname().split(".")[0].upper()
        expect_equal(value_of(lines, "Computer Name       :"), name if len(name) < 15 else "",
                     "computer name")
        expect_equal(value_of(lines, "Number of processors:"),
                     str(os.sysconf("SC_NPROCESSORS_ONLN")), "processors")
        expect_equal(value_of(lines, "OS                  :"),
                     platform.freedesktop_os_release()["PRETTY_NAME"], "OS: the distribution")
        expect_equal(value_of(lines, "Type                :"), os.uname().release,
                     "type: the kernel's release")
        expect_equal(value_of(lines, "Service Pack        :"), "", "no service pack")
    else:
        expect_equal(value_of(lines, "Computer Name       :"), windows_variable(env, "COMPUTERNAME"),
                     "computer name")
        expect_equal(value_of(lines, "Number of processors:"),
                     windows_variable(env, "NUMBER_OF_PROCESSORS"), "processors")
    expect_equal(value_of(lines, "CPU                 :"), expected_cpu(env), "CPU of an x86-64 machine")


def expected_cpu(env):
    """What the CPU line derives from GetSystemInfo on this x86-64 machine. A
    32-bit program on 64-bit Windows is told of an Intel architecture (0),
    level 6 and processor type 586, which names "Intel Pentium"; a 64-bit one
    of AMD64 (9) and type 8664, and so does the Linux build."""
    return "Intel Pentium" if not env.native and env.arch == "x86" else "AMD64"


def test_a_32_bit_build_lists_no_64_bit_process(env):
    """On 64-bit Windows a 32-bit program can't enumerate the modules of a
    64-bit process (EnumProcessModules fails), so the x86 build, by the
    process list's rule for a process whose modules can't be read, leaves
    64-bit processes out; the x64 build lists processes of both bitnesses."""
    if env.native:
        skip("the Windows builds only")
    with Probe(env, bits=32, tag="x32-") as probe32, Probe(env, bits=64, tag="x64-") as probe64:
        record(env, "-start", EVENT)
    names = [name.strip() for _, name in rows_of_process_table(log_lines(env), 0)]
    listed = {probe.name: probe.name in names for probe in (probe32, probe64)}
    expected = {probe32.name: True, probe64.name: env.arch == "x64"}
    expect_equal(listed, expected, f"{env.arch} build: probes listed in\n{names}")


def test_logged_on_user_is_the_user_running_the_recorder(env):
    record(env, "-start", EVENT)
    user = value_of(log_lines(env), "Logged on User:")
    if env.native:
        expect_equal(user, pwd.getpwuid(os.geteuid()).pw_name, "logged-on user")
    else:
        expect_equal(user, windows_variable(env, "USERNAME"), "logged-on user")


def test_local_groups_are_the_group_database_natively(env):
    if not env.native:
        skip("the Linux build only")
    record(env, "-start", EVENT)
    lines = log_lines(env)
    first = lines.index("Local Group List:")
    listed = lines[first + 4:lines.index("-" * 35, first + 4)]
    expect_equal(listed, [group.gr_name for group in grp.getgrall()], "local groups")


def test_recorder_never_lists_its_own_process_and_lists_a_running_one(env):
    probe = None
    if env.native:
        program = env.work / "zorprobe"
        shutil.copy(shutil.which("sleep"), program)
        probe = subprocess.Popen([str(program), "60"])
    try:
        record(env, "-start", EVENT)
    finally:
        if probe:
            probe.kill()
            probe.wait()
    lines = log_lines(env)
    rows = rows_of_process_table(lines, 0)
    count = int(value_of(lines, "Processes:"))
    expect_equal(len(rows), count, "rows against the count")
    names = [name for _, name in rows]
    assert not any(name.lower().startswith("zorrecordevent") for name in names), names
    if probe:
        assert (str(probe.pid), "zorprobe") in rows, rows


if __name__ == "__main__":
    main(globals())
