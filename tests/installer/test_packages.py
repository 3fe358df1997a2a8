"""Real installers that record every run: each WiX example is built with wixl
(and msibuild for its rollback action, as its comment tells) and run by
Wine's msiexec in a private prefix, and the NSIS example is built with
makensis and run silently; then the store, the archive and the report are
checked.

- RecordWithDll.wxs calls ZORRecorder.dll from its Binary table, and
  RecordWithProgram.wxs installs ZORRecordEvent.exe and runs it: each
  records install, repair, upgrade to a later version (which removes the
  earlier one, an event of its own), an uninstall that fails and rolls back,
  uninstall (under an EventID that the command line gives) and an install
  that fails and rolls back, each one event with its action and result in
  History.ini, Summary.txt and the report; the uninstall's -start runs before
  RemoveFiles and its -end after it.
- RecordWithBrokenData.wxs calls ZORRecordEventAction also with no, a
  modeless and a broken CustomActionData; the install still succeeds.
- RecordEvent.nsi: install, a run over the same version (Repair) and over
  an earlier one (Upgrade), uninstall, and an install that fails, which
  .onInstFailed ends, each with its own log, which the archive holds; the
  report shows the failure.
- ZORRecordCheck.nsi: ZORRecord.nsh's function with quotes, apostrophes, "$",
  a long value and a line end, and every register kept.

Each run of msiexec has its log of its own (/l*v and ZOR_INSTALLER_LOG, one
absolute path), as the documentation asks; the install names it in a
stand-in for MsiLogFileLocation, which wins over another path in
ZOR_INSTALLER_LOG. The failures are forced by deferred actions that the test
adds to the package: they fail when the property ZOR_TEST_FAIL is 1.

Every package and installer is built for the architecture of the build under
test: the x86 build's as 32-bit packages, installed below "Program Files (x86)"
as on 64-bit Windows, the x64 build's as 64-bit ones."""
import contextlib
import pathlib
import re
import shutil
import subprocess
import sys
import zipfile

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "e2e"))
from e2e_support import expect_equal, file_lines, main, section_lines  # noqa: E402
import package_build  # noqa: E402

SOURCES = pathlib.Path(__file__).resolve().parent
COPY = "ZORCopy1"
EVENT_ID = r"ZORServer-20\d{6}-\d{6}-[0-9a-f]{4}"
GIVEN_EVENT = "Removal-Given-1"
DLL_PRODUCT = "ZOR Server (recorded by ZORRecorder.dll)"
PROGRAM_PRODUCT = "ZOR Server (recorded by ZORRecordEvent.exe)"

# Deferred actions that fail when ZOR_TEST_FAIL is 1: Wine's cmd.exe, named
# by a property, ends with exit code 1, which Return="check" makes the run's
# failure, so that it rolls back. An install fails behind the product's files
# and before -end (6598); an uninstall before RemoveFiles (3500), since Wine's
# msiexec can't put removed files back and stops the rollback there, before
# the rollback actions behind it.
# Wine's msiexec doesn't set MsiLogFileLocation, which Windows Installer's
# sets to the path of /l: ZOR_TEST_LOG_LOCATION stands in for it, set before
# the package reads it (1441).
TEST_ACTIONS = """
    <CustomAction Id="ZorTestFailureProgram" Property="ZOR_TEST_FAILURE" Value="[SystemFolder]cmd.exe"/>
    <CustomAction Id="ZorTestFailure" Property="ZOR_TEST_FAILURE" ExeCommand="/c exit 1"
                  Execute="deferred" Impersonate="no" Return="check"/>
    <CustomAction Id="ZorTestRemovalFailure" Property="ZOR_TEST_FAILURE" ExeCommand="/c exit 1"
                  Execute="deferred" Impersonate="no" Return="check"/>
    <CustomAction Id="ZorTestLogLocation" Property="MsiLogFileLocation" Value="[ZOR_TEST_LOG_LOCATION]"/>
    <InstallExecuteSequence>
      <Custom Action="ZorTestLogLocation" Sequence="1439">ZOR_TEST_LOG_LOCATION</Custom>
      <Custom Action="ZorTestFailureProgram" Sequence="1449"/>
      <Custom Action="ZorTestRemovalFailure" Sequence="3450">ZOR_TEST_FAIL = "1" AND REMOVE~="ALL"</Custom>
      <Custom Action="ZorTestFailure" Sequence="6590">ZOR_TEST_FAIL = "1" AND NOT (REMOVE~="ALL")</Custom>"""


# An installer log that the command line names where MsiLogFileLocation,
# which wins over it, names the run's own.
ELSEWHERE = "ZOR_INSTALLER_LOG=C:\\Logs\\not-this-one.log"

# A failed install ends msiexec with 1603 (ERROR_INSTALL_FAILURE) on Windows;
# Wine's msiexec ends it with 1627 (ERROR_FUNCTION_FAILED) when a custom
# action fails. A POSIX exit status keeps the low 8 bits of either.
FAILED = {1603 % 256, 1627 % 256}


def with_test_actions(text):
    return text.replace("\n    <InstallExecuteSequence>", TEST_ACTIONS, 1)


def program_files(env):
    """The folder of 32-bit programs on 64-bit Windows, or of 64-bit ones."""
    return "Program Files (x86)" if env.arch == "x86" else "Program Files"


def install_dir(env):
    return f"C:\\{program_files(env)}\\ZOR Server\\"


def installed_files(env):
    folder = env.appdata.parent / program_files(env) / "ZOR Server"
    return sorted(p.name for p in folder.iterdir()) if folder.exists() else []


def build_package(env, source, binaries, version="9.2.0"):
    return package_build.build(SOURCES / source, env.work / f"stage-{version}",
                               [env.bin_dir / b for b in binaries], env.arch,
                               [f"Version={version}"], with_test_actions)


def msiexec(env, name, *args):
    """msiexec with a log of this run's own, named in ZOR_INSTALLER_LOG too,
    or, where `args` give ZOR_INSTALLER_LOG another path, in the stand-in for
    MsiLogFileLocation, which wins over it; returns the exit code and the
    host path of the log."""
    log = env.work / f"{name}.log"
    named_in = "ZOR_TEST_LOG_LOCATION" if ELSEWHERE in args else "ZOR_INSTALLER_LOG"
    command = ["msiexec", *args, "/qn", "/l*v", env.program_path(log),
               f"{named_in}={env.program_path(log)}"]
    result = subprocess.run(env.runner + command, capture_output=True, timeout=600)
    return result.returncode, log


def expect_msiexec(env, name, code, *args):
    """msiexec, whose exit code must be `code`, or one of FAILED if it is FAILED."""
    actual, log = msiexec(env, name, *args)
    if code is FAILED and actual in FAILED:
        actual = FAILED
    expect_equal(actual, code, f"exit code of msiexec {' '.join(args[:1])} ({name})")
    return log


@contextlib.contextmanager
def removed_afterwards(env, *packages):
    """Whatever a failed test left installed is removed, so that it doesn't
    spoil the tests behind it in the same prefix."""
    try:
        yield
    finally:
        if installed_files(env):
            for package in packages:
                msiexec(env, "cleanup", "/x", env.program_path(package))
            shutil.rmtree(env.appdata.parent / program_files(env) / "ZOR Server", ignore_errors=True)


def recorded_events(env):
    """The EventIDs of History.ini's sections in file order, History left out."""
    text = (env.store / "History.ini").read_bytes().decode("latin-1")
    return [name for name in re.findall(r"^\[(.*)\]\r?$", text, re.M) if name != "History"]


def keys(env, event):
    return dict(line.split("=", 1) for line in section_lines(env, event))


def expect_event(env, event, action, result, version, log, product):
    """One whole event: its section, its log handed over below the copy, both
    snapshots where the run got that far."""
    assert re.fullmatch(EVENT_ID, event) or event == GIVEN_EVENT, f"EventID {event!r}"
    got = keys(env, event)
    wanted = {"Action": action, "Result": result, "Version": version, "Product": product,
              "Copy_Name": COPY, "Complete_Flag": "TRUE", "Type": "Silent",
              "Path": install_dir(env), "Log_File_Name": env.program_path(log) if log else "",
              "Event_Log_File": f"{env.store_as_program_sees_it}\\{COPY}\\{event}\\ZORInstallEvent.Log"}
    expect_equal({k: got.get(k) for k in wanted}, wanted, f"keys of {event}")
    lines = file_lines(env, env.store / COPY / event / "ZORInstallEvent.Log")
    snapshots = [line for line in lines if line.startswith("*  Snapshoot for EventID")]
    expect_equal(len(snapshots), 2, f"snapshots of {event}")


def collect_and_report(env, logs, results):
    """The archive holds each run's installer log below its event, and the
    copy's Summary.txt each event's result; the report's console line of each
    event shows its action and outcome."""
    archive = env.work / "history.zip"
    code, output = env.run("ZORGetInstallLog", "-f", env.program_path(archive))
    expect_equal(code, 0, f"exit code of ZORGetInstallLog, output {output!r}")
    with zipfile.ZipFile(archive) as z:
        for event, log in logs.items():
            expect_equal(z.read(f"{COPY}\\{event}\\{log.name}"), log.read_bytes(),
                         f"the installer's log of {event} in the archive")
        summary = z.read(f"{COPY}\\Summary.txt").decode("latin-1").splitlines()
    for event, result in results.items():
        block = summary[summary.index(f"Event ID        :{event}"):]
        expect_equal(next(line for line in block if line.startswith("Result ")), f"Result          :{result}",
                     f"result of {event} in the copy's Summary.txt")
    code, output = env.run("ZORHistoryReport", env.program_path(archive),
                           "-o", env.program_path(env.work / "report.html"))
    expect_equal(code, 0, f"exit code of ZORHistoryReport, output {output!r}")
    return output


def expect_report_line(report, event, action, outcome):
    lines = [line for line in report.splitlines() if f"| {event} |" in line]
    expect_equal(len(lines), 1, f"report lines of {event} in {report!r}")
    assert lines[0].startswith(f"{COPY} | {event} | {action} | {outcome}"), lines[0]


# Each run of a package: its name, msiexec's exit code, option, package
# (0 the first version, 1 the later one) and further arguments. The install
# names its log in MsiLogFileLocation's stand-in and another in
# ZOR_INSTALLER_LOG. A repair as Windows Installer's msiexec /fa makes it:
# Wine's msiexec gives /fa no package of an installed product (exit code 69).
# The uninstall is given its EventID on the command line, which
# ZORMakeEventIdAction leaves as it is.
RUNS = [("install", 0, "/i", 0, ELSEWHERE), ("repair", 0, "/i", 0, "REINSTALL=ALL", "REINSTALLMODE=vomus"),
        ("upgrade", 0, "/i", 1), ("failed-uninstall", FAILED, "/x", 1, "ZOR_TEST_FAIL=1"),
        ("uninstall", 0, "/x", 1, "ZOR_EVENT=" + GIVEN_EVENT), ("failure", FAILED, "/i", 0, "ZOR_TEST_FAIL=1")]
# The events of RUNS: action, result, version and the run whose log each
# names. The upgrade removes the earlier version in a session of its own,
# which has no log path of its own.
EVENTS = [("Install", "Success", "9.2.0", 0), ("Repair", "Success", "9.2.0", 1),
          ("Uninstall", "Success", "9.2.0", None), ("Upgrade", "Success", "9.3.0", 2),
          ("Uninstall", "1603", "9.3.0", 3), ("Uninstall", "Success", "9.3.0", 4),
          ("Install", "1603", "9.2.0", 5)]


def run_every_kind(env, source, binaries, after_install):
    """RUNS of the package built from `source`, `after_install` called after
    the install; returns the host paths of their logs."""
    packages = [build_package(env, source, binaries), build_package(env, source, binaries, "9.3.0")]
    logs = []
    with removed_afterwards(env, *packages):
        for name, code, option, package, *more in RUNS:
            logs.append(expect_msiexec(env, name, code, option, env.program_path(packages[package]), *more))
            if name == "install":
                after_install()
    expect_equal(installed_files(env), [], "files left after the removal and the failure")
    return logs


def expect_every_run_recorded(env, logs, product):
    """EVENTS in History.ini, Summary.txt and the report, each with a new
    EventID but the uninstall's, which the command line gave."""
    events = [e for e in recorded_events(env) if e != "Software-Check"]
    expect_equal(len(set(events)), len(EVENTS), f"distinct EventIDs: {events}")
    expect_equal(events[5], GIVEN_EVENT, "the EventID that the command line gave")
    named = [logs[run] if run is not None else None for *_, run in EVENTS]
    for event, (action, result, version, _), log in zip(events, EVENTS, named):
        expect_event(env, event, action, result, version, log, product)
    report = collect_and_report(env, {e: log for e, log in zip(events, named) if log},
                                {e: result for e, (_, result, _, _) in zip(events, EVENTS)})
    for event, (action, result, _, _) in zip(events, EVENTS):
        expect_report_line(report, event, action, "succeeded" if result == "Success" else "failed (1603)")


def expect_around_remove_files(log, start, end):
    """In the uninstall's log, the script runs `start` before RemoveFiles takes
    the product's files away and `end` after it, so that the event's
    snapshots show the machine before and after. Each action's last start in
    the log is the script's: the first is where the sequence schedules it."""
    text = log.read_text(errors="replace")
    runs = {action: text.rindex(f": {action}.\n") for action in (start, "RemoveFiles", end)}
    expect_equal(sorted(runs, key=runs.get), [start, "RemoveFiles", end], "order of the uninstall's actions")


def test_package_calling_the_dll_records_every_run(env):
    logs = run_every_kind(env, "RecordWithDll.wxs", ["ZORRecorder.dll"], lambda: None)
    expect_around_remove_files(logs[4], "RecordStart", "RecordEnd")
    expect_every_run_recorded(env, logs, DLL_PRODUCT)


def test_package_running_the_program_records_every_run(env):
    def after_install():
        expect_equal(installed_files(env), ["ZORRecordEvent.exe"], "installed files")
        expect_installed_software(env, PROGRAM_PRODUCT)

    logs = run_every_kind(env, "RecordWithProgram.wxs", ["ZORRecordEvent.exe", "ZORRecorder.dll"], after_install)
    expect_around_remove_files(logs[4], "RecordRemovalStart", "RecordRemovalEnd")
    expect_every_run_recorded(env, logs, PROGRAM_PRODUCT)


def expect_installed_software(env, product):
    """The installed package in the software section of a snapshot taken after
    the install. Windows Installer keeps its per-machine product data in the
    native (64-bit) view of the registry, for 32-bit packages too, as Wine's
    msiexec does: the x86 build reads it there, the x64 build in its own view."""
    code, output = env.run("ZORRecordEvent", "-start", "Software-Check")
    expect_equal((code, output), (0, ""), "result and console output of -start Software-Check")
    lines = file_lines(env, env.store / "Software-Check" / "ZORInstallEvent.Log")
    rows = [line for line in lines if line.startswith(f"{'TAQ':<30}{product}")]
    expect_equal(len(rows), 1, f"software rows of {product!r} in the snapshot after the install")
    assert rows[0][95:].startswith("9.2.0"), rows[0]


def test_broken_custom_action_data_records_nothing_and_the_install_succeeds(env):
    package = package_build.build(SOURCES / "RecordWithBrokenData.wxs", env.work / "stage",
                                  [env.bin_dir / "ZORRecorder.dll"], env.arch)
    with removed_afterwards(env, package):
        log = expect_msiexec(env, "install", 0, "/i", env.program_path(package))
        text = log.read_text(errors="replace")
        for action in ("RecordNoData", "RecordNoMode", "RecordOpenQuote"):
            assert f": {action}. Return value 1." in text, f"{action} didn't end in success"
        expect_equal(section_lines(env, "History"), ["Count=1"], "section History")
        expect_equal(keys(env, "Install-ZORServer").get("Result"), "Success", "result of the event")
        expect_msiexec(env, "uninstall", 0, "/x", env.program_path(package))
    expect_equal(installed_files(env), [], "files left after removal")


# -- NSIS -------------------------------------------------------------------

def makensis(env, source, *defines):
    amd64 = ["-DAMD64"] if env.arch == "x64" else []
    result = subprocess.run(["makensis", "-NOCD", "-V2", *amd64, *defines,
                             "-DRECORDER_DLL=" + str(env.bin_dir / "ZORRecorder.dll"),
                             str(SOURCES / source)],
                            cwd=env.work, capture_output=True, text=True)
    expect_equal(result.returncode, 0, f"makensis {source}: {result.stdout}{result.stderr}")


def run_windows_program(env, program, *args):
    result = subprocess.run(env.runner + [env.program_path(program), *args],
                            capture_output=True, timeout=600)
    return result.returncode


def test_nsis_installer_records_install_repair_upgrade_uninstall_and_failure(env):
    makensis(env, "RecordEvent.nsi")
    setup = env.work / "ZORServerSetup.exe"
    (env.work / "ZORServer.dat").write_text("the server's data\n")
    note = "/NOTE=" + "n" * 900
    expect_equal(run_windows_program(env, setup, "/S", note), 0, "exit code of the install")
    expect_equal(run_windows_program(env, setup, "/S"), 0, "exit code of the run over the same version")
    makensis(env, "RecordEvent.nsi", "-DVERSION=9.3")
    expect_equal(run_windows_program(env, setup, "/S"), 0, "exit code of the run over an earlier version")
    folder = env.appdata.parent / program_files(env) / "ZOR Server"
    expect_equal(installed_files(env), ["Uninstall.exe", "ZORServer.dat"], "installed files")
    uninstaller = folder / "Uninstall.exe"
    # _?= runs the uninstaller in place and waits for it.
    expect_equal(run_windows_program(env, uninstaller, "/S", "_?=" + install_dir(env).rstrip("\\")), 0,
                 "exit code of the uninstall")
    shutil.rmtree(folder, ignore_errors=True)
    (env.work / "ZORServer.dat").unlink()
    # Without its data beside it the install fails: NSIS's exit code 2.
    expect_equal(run_windows_program(env, setup, "/S"), 2, "exit code of the failed install")
    shutil.rmtree(folder, ignore_errors=True)
    events = recorded_events(env)
    expect_equal(len(set(events)), 5, f"distinct EventIDs: {events}")
    results = [(keys(env, e)["Action"], keys(env, e)["Result"], keys(env, e)["Complete_Flag"])
               for e in events]
    expect_equal(results, [("Install", "Success", "TRUE"), ("Repair", "Success", "TRUE"),
                           ("Upgrade", "Success", "TRUE"), ("Uninstall", "Success", "TRUE"),
                           ("Install", "Failed: ZORServer.dat isn't beside the setup", "TRUE")],
                 "actions and results")
    expect_equal([keys(env, e)["Version"] for e in events], ["9.2", "9.2", "9.3", "9.3", "9.3"], "versions")
    expect_equal(keys(env, events[0])["Command_Line"][-len(note):], note, "the long command line")
    messages = [line for line in file_lines(env, env.store / COPY / events[4] / "ZORInstallEvent.Log")
                if line.startswith("Don't")]
    expect_equal(messages, ["Don't panic: \"ZORServer.dat\" wasn't found, so 100$ of data is missing"],
                 "message of the failure")
    logs = {event: installer_log(env, event) for event in events}
    report = collect_and_report(env, logs, {event: keys(env, event)["Result"] for event in events})
    for event, (action, result, _) in zip(events, results):
        expect_report_line(report, event, action, "succeeded" if result == "Success" else f"failed ({result})")


def installer_log(env, event):
    """The host path of the installer's log that the event names: the run's
    own, in its EventID's name."""
    name = keys(env, event)["Log_File_Name"]
    assert re.fullmatch(r"C:\\users\\.*\\" + re.escape(event) + r"\.log", name, re.I), name
    return env.appdata.parent.joinpath(*name[3:].split("\\"))


def test_nsis_record_function_keeps_values_and_registers(env):
    makensis(env, "ZORRecordCheck.nsi")
    expect_equal(run_windows_program(env, env.work / "ZORRecordCheck.exe", "/S"), 0, "exit code")
    lines = (env.work / "check.txt").read_text(encoding="utf-16").splitlines()
    expect_equal(lines[0], "results 0 2 0, stack empty", "results of the three calls")
    expect_equal(lines[1], " ".join([f"r{i}" for i in range(10)] + [f"R{i}" for i in range(10)]),
                 "registers after the calls")
    got = keys(env, "Check-1")
    expect_equal(got["Product"], "It's a \"ZOR\" server for 100$ ('quoted')", "the product")
    expect_equal(got["Command_Line"], "0123456789" * 100, "the 1000 characters")
    expect_equal(got["Complete_Flag"], "TRUE", "the end of the event")
    lines = file_lines(env, env.store / "Check-1" / "ZORInstallEvent.Log")
    assert not [line for line in lines if line.startswith("two")], "a refused message was recorded"


if __name__ == "__main__":
    main(globals())
