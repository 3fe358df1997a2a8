"""The store's lock with the real programs: installers that record at the same
moment, while collection runs pack the store again and again, lose nothing;
and a run that stops while it holds the store doesn't hold up the next call."""
import os
import threading

from e2e_support import check_archive, expect_equal, main

# Hundreds of runs of the programs: the leak check at each exit of the Linux build,
# which every other end-to-end test makes, is left out here to keep the run
# short; every memory access is still checked.
os.environ["ASAN_OPTIONS"] = "detect_leaks=0"

COPIES = ["CopyA", "CopyB", "CopyC"]
KEYS = ["Event_ID", "Command_Line", "Start_Time", "End_Time", "Action", "Type", "Product",
        "Version", "Service_Level", "Path", "Copy_Name", "Complete_Flag", "Log_File_Name",
        "Trace_File", "Response_File", "Event_Log_File", "Result"]
START_BANNER = "---------- ZOR Installation History Logger ( Start )----------"
END_BANNER = "---------- ZOR Installation History Logger ( End ) ----------"
# Seconds between two collection runs.
COLLECTION_PAUSE = 2.0
NO_HISTORY = "There is no ZOR Installation History Log ( no ZOR V9 or Later is installed )"


def sections(env):
    """The sections of History.ini: name -> list of (key, value), in file order."""
    found, current = {}, None
    for line in (env.store / "History.ini").read_bytes().decode("latin-1").split("\r\n"):
        if line.startswith("["):
            current = found.setdefault(line[1:-1], [])
        elif line:
            key, _, value = line.partition("=")
            current.append((key, value))
    return found


def record(env, *options, timeout=300):
    code, output, errors = env.run_full("ZORRecordEvent", *options, timeout=timeout)
    expect_equal((code, output), (0, ""),
                 f"result and console of {options[:2]} (error output: {errors!r})")
    env.expect_no_error_output(errors, f"of {options[:2]}")


def record_events(env, worker, events):
    """One installer: events one after another, each with two messages, ended
    under one of the copies in turn."""
    for number in range(events):
        event = f"W{worker}-E{number}"
        record(env, "-start", event, "-Product", "ZOR Server", "-Action", "Install")
        record(env, "-logmessage", event, "-message", f"{event} first message")
        record(env, "-logmessage", event, "-message", f"{event} second message")
        record(env, "-end", event, "-CopyName", COPIES[number % len(COPIES)], "-Result", "Success")


def collect_until(env, finished, archives):
    """Collection runs, one after another with a pause between them, until the
    installers are done. Until the first installer has set up the store, a run
    finds no history. A run holds the store for as long as it takes, so the
    pause lets the installers go on between two runs."""
    while not finished.wait(COLLECTION_PAUSE):
        archive = env.work / f"run{len(archives)}.zip"
        code, output = env.run("ZORGetInstallLog", "-f", env.program_path(archive))
        if (code, output) == (1, env.lines(NO_HISTORY)) and not archives:
            continue
        expect_equal((code, output), (0, env.lines(f"The file '{env.program_path(archive)}' "
                                                   "is created successfully")),
                     f"collection run {len(archives)}")
        archives.append(archive)


def run_at_once(env, workers, events):
    """The installers and the collection loop at the same time; returns the
    archives that the loop wrote. A failure in any thread fails the test."""
    failures, archives, finished = [], [], threading.Event()

    def guarded(work, *arguments):
        try:
            work(*arguments)
        except Exception as failure:  # reported by the main thread
            failures.append(failure)

    installers = [threading.Thread(target=guarded, args=(record_events, env, worker, events))
                  for worker in range(workers)]
    collector = threading.Thread(target=guarded, args=(collect_until, env, finished, archives))
    collector.start()
    for installer in installers:
        installer.start()
    for installer in installers:
        installer.join()
    finished.set()
    collector.join()
    if failures:
        raise failures[0]
    return archives


def check_event(env, event, keys, copy):
    expect_equal([key for key, _ in keys], KEYS, f"keys of {event}")
    values = dict(keys)
    expect_equal((values["Event_ID"], values["Copy_Name"], values["Complete_Flag"], values["Result"]),
                 (event, copy, "TRUE", "Success"), f"values of {event}")
    expect_equal(values["Event_Log_File"],
                 f"{env.store_as_program_sees_it}\\{copy}\\{event}\\ZORInstallEvent.Log",
                 f"Event_Log_File of {event}")
    log = (env.store / copy / event / "ZORInstallEvent.Log").read_bytes().decode("latin-1")
    lines = log.split(env.eol)
    assert lines[0].startswith(START_BANNER), f"{event}: log begins {lines[0]!r}"
    assert f"EventID       :{event}" in lines, f"{event}: no EventID line"
    first, second = lines.index(f"{event} first message"), lines.index(f"{event} second message")
    assert first < second, f"{event}: messages out of order"
    assert lines[-2].startswith(END_BANNER) and lines[-1] == "", f"{event}: log ends {lines[-2:]!r}"


def test_installers_and_collection_runs_at_once_lose_nothing(env):
    # Enough calls for every kind of overlap (starts, messages and ends of
    # several installers, and collection runs among them), few enough to keep
    # the suite short: a Windows program starts in a fifth of a second under Wine.
    workers, events = (6, 20) if env.native else (3, 10)
    archives = run_at_once(env, workers, events)
    found = sections(env)
    expect_equal(found.pop("History"), [("Count", str(workers * events))], "section History")
    expect_equal(len(found), workers * events, "number of event sections")
    for worker in range(workers):
        for number in range(events):
            event = f"W{worker}-E{number}"
            check_event(env, event, found[event], COPIES[number % len(COPIES)])
    assert archives, "no collection run finished"
    for archive in archives:
        check_archive(archive)
    names = [info.filename for info in check_archive(archives[-1])]
    assert "History.ini" in names, names


def test_a_run_that_stops_holding_the_store_leaves_it_free(env):
    env.store.mkdir(parents=True)
    (env.store / "History.ini").write_bytes(b"[EVT_1]\r\nEvent_ID=EVT_1\r\n[History]\r\nCount=1\r\n")
    code, output = env.run("ZORGetInstallLog", "-f", "x.zip")
    assert code not in (0, 1), f"the run didn't stop: exit code {code}, {output!r}"
    # A lock left held would keep this call waiting for good.
    record(env, "-start", "after-the-stop", timeout=60)
    expect_equal(sections(env)["History"], [("Count", "2")], "section History")


if __name__ == "__main__":
    main(globals())
