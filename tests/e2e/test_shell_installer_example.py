"""The Linux installer examples of docs/examples, run by dash as /bin/sh runs
them on Debian, as an author copies them: the plain shell installer and the
Debian maintainer scripts (postinst, prerm, postrm). Every run is an event of
its own with a log of its own, and a run that fails is a failed event whose
log the collection stages. The postinst records a first install as Install,
a reinstall of the same version as Repair and another version as Upgrade.
Natively only: the examples are for Linux installers."""
import os
import pathlib
import subprocess
import zipfile

from e2e_support import expect_equal, main, section_lines, skip

EXAMPLES = pathlib.Path(__file__).resolve().parents[2] / "docs" / "examples"
INSTALLER = EXAMPLES / "install-zorserver.sh"
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


def package_script(env, name, *args, conf_dir=None):
    """Runs the maintainer script zorserver.`name` with `args` as dpkg would,
    the recorder on the PATH, its logs and configuration in the work folder;
    returns its exit code."""
    variables = {"PATH": f"{env.bin_dir}:{os.environ['PATH']}",
                 "ZOR_EVENT_ID_SH": str(EXAMPLES / "zor-event-id.sh"),
                 "ZOR_LOG_DIR": str(env.work / "logs"),
                 "ZORSERVER_CONF_DIR": str(conf_dir or env.work / "etc")}
    result = subprocess.run(["dash", str(EXAMPLES / f"zorserver.{name}"), *args],
                            env=dict(os.environ, **variables), capture_output=True, text=True, timeout=300)
    expect_equal(result.stderr, "", f"standard error of {name} {' '.join(args)}")
    return result.returncode


def events_in_order(env):
    """The examples' EventIDs in the order of History.ini's sections."""
    text = (env.store / "History.ini").read_bytes().decode("latin-1")
    return [line[1:-1] for line in text.splitlines() if line.startswith("[ZORServer-")]


def collect(env):
    """Collects the history; returns the archive's entry names."""
    archive = env.work / "history.zip"
    code, output = env.run("ZORGetInstallLog", "-f", str(archive))
    expect_equal(code, 0, f"exit code of ZORGetInstallLog, output {output!r}")
    with zipfile.ZipFile(archive) as z:
        return {name: z.read(name) for name in z.namelist()}


def test_package_scripts_record_install_reinstall_upgrade_and_removal(env):
    if not env.native:
        skip("the maintainer scripts are Linux examples")
    expect_equal(package_script(env, "postinst", "configure", ""), 0, "exit code of the first configure")
    expect_equal(package_script(env, "postinst", "configure", "9.2"), 0, "exit code of the reinstall")
    expect_equal(package_script(env, "postinst", "configure", "9.1"), 0, "exit code of the upgrade")
    expect_equal(package_script(env, "prerm", "remove"), 0, "exit code of prerm remove")
    events = events_in_order(env)
    expect_equal(keys(env, events[3])["Complete_Flag"], "FALSE", "the uninstall's end before the files go")
    expect_equal(package_script(env, "postrm", "remove"), 0, "exit code of postrm remove")
    expect_equal((env.work / "logs" / "removal-event").exists(), False, "the uninstall's note after postrm")

    got = [(keys(env, e)["Action"], keys(env, e)["Result"], keys(env, e)["Complete_Flag"]) for e in events]
    expect_equal(got, [("Install", "Success", "TRUE"), ("Repair", "Success", "TRUE"),
                       ("Upgrade", "Success", "TRUE"), ("Uninstall", "Success", "TRUE")],
                 "actions, results and ends of the four runs")
    staged = collect(env)
    for event in events:
        log = env.work / "logs" / f"{event}.log"
        expect_equal(staged.get(f"{COPY}\\{event}\\{log.name}"), log.read_bytes(), f"the log of {event} staged")


def test_a_failed_package_configuration_is_a_failed_event_with_its_own_log(env):
    if not env.native:
        skip("the maintainer scripts are Linux examples")
    # A file where the configuration's folder must be made: configuring fails.
    blocker = env.work / "blocker"
    blocker.parent.mkdir(parents=True, exist_ok=True)
    blocker.write_text("a file, not a folder\n")
    expect_equal(package_script(env, "postinst", "configure", "", conf_dir=blocker / "etc"), 1,
                 "exit code of the failed configure")
    [event] = events_in_order(env)
    log = env.work / "logs" / f"{event}.log"
    got = keys(env, event)
    expect_equal((got["Action"], got["Result"], got["Complete_Flag"], got["Copy_Name"], got["Log_File_Name"]),
                 ("Install", "Failed", "TRUE", COPY, str(log)), f"the failed event {event}")
    assert "failed" in log.read_text(), log.read_text()
    expect_equal(collect(env).get(f"{COPY}\\{event}\\{log.name}"), log.read_bytes(), "the failed run's log staged")


def test_a_failed_package_clean_up_is_a_failed_uninstall_that_postrm_leaves_alone(env):
    if not env.native:
        skip("the maintainer scripts are Linux examples")
    # A folder where the configuration file is: removing it fails.
    (env.work / "etc" / "zorserver.conf").mkdir(parents=True)
    expect_equal(package_script(env, "prerm", "remove"), 1, "exit code of the failed prerm")
    expect_equal(package_script(env, "postrm", "remove"), 0, "exit code of postrm")
    [event] = events_in_order(env)
    got = keys(env, event)
    expect_equal((got["Action"], got["Result"], got["Complete_Flag"]), ("Uninstall", "Failed", "TRUE"),
                 f"the failed uninstall {event}")
    log = env.work / "logs" / f"{event}.log"
    expect_equal(collect(env).get(f"{COPY}\\{event}\\{log.name}"), log.read_bytes(), "the failed run's log staged")


def test_a_failed_shell_install_is_a_failed_event_with_its_own_log(env):
    if not env.native:
        skip("the shell installer is a Linux example")
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
