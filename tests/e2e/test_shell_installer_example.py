"""The plain shell installer of docs/examples, run by dash as /bin/sh runs it
on Debian, as an author copies it: every run is an event of its own with a
log of its own, and a run that fails is a failed event whose log the
collection stages. Natively only: the example is for Linux installers."""
import os
import pathlib
import subprocess
import zipfile

from e2e_support import expect_equal, main, section_lines

INSTALLER = pathlib.Path(__file__).resolve().parents[2] / "docs" / "examples" / "install-zorserver.sh"
COPY = "ZORCopy1"


def install(env, target):
    """Runs the example into `target`; returns its exit code."""
    variables = {"ZOR_RECORD_EVENT": str(env.bin_dir / "ZORRecordEvent"),
                 "ZOR_LOG_DIR": str(env.work / "logs")}
    result = subprocess.run(["dash", str(INSTALLER), str(target)], env=dict(os.environ, **variables),
                            capture_output=True, text=True, timeout=300)
    expect_equal(result.stderr, "", f"standard error of the install into {target}")
    return result.returncode


def keys(env, event):
    return dict(line.split("=", 1) for line in section_lines(env, event))


def test_a_failed_shell_install_is_a_failed_event_with_its_own_log(env):
    if not env.native:
        return
    expect_equal(install(env, env.work / "zorserver"), 0, "exit code of the install")
    # A file where the target's folder must be made: copying the files fails.
    blocker = env.work / "blocker"
    blocker.write_text("a file, not a folder\n")
    expect_equal(install(env, blocker / "zorserver"), 1, "exit code of the failed install")

    logs = {log.stem: log for log in (env.work / "logs").iterdir()}
    expect_equal(len(logs), 2, f"one log for each run: {sorted(logs)}")
    outcomes = {}
    for event, log in logs.items():
        got = keys(env, event)
        expect_equal((got["Complete_Flag"], got["Copy_Name"], got["Log_File_Name"]), ("TRUE", COPY, str(log)),
                     f"end, copy and log of {event}")
        outcomes[got["Path"]] = (event, got["Result"])
    expect_equal({path: result for path, (_, result) in outcomes.items()},
                 {str(env.work / "zorserver"): "Success", str(blocker / "zorserver"): "Failed"},
                 "results of the two runs")

    archive = env.work / "history.zip"
    code, output = env.run("ZORGetInstallLog", "-f", str(archive))
    expect_equal(code, 0, f"exit code of ZORGetInstallLog, output {output!r}")
    with zipfile.ZipFile(archive) as z:
        for event, log in logs.items():
            expect_equal(z.read(f"{COPY}\\{event}\\{log.name}"), log.read_bytes(), f"the log of {event} staged")
    code, report = env.run("ZORHistoryReport", str(archive), "-o", str(env.work / "report.html"))
    expect_equal(code, 0, f"exit code of ZORHistoryReport, output {report!r}")
    failed_event = outcomes[str(blocker / "zorserver")][0]
    lines = [line for line in report.splitlines() if f"| {failed_event} |" in line]
    expect_equal(len(lines), 1, f"report lines of {failed_event} in {report!r}")
    assert lines[0].startswith(f"{COPY} | {failed_event} | Install | failed (Failed) |"), lines[0]


if __name__ == "__main__":
    main(globals())
