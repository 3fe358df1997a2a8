"""ZORHistoryReport on histories that the real recorder and collector wrote:
what an install changed on the machine (a process started during it; under
Wine also a service created and a copy of the product put into the registry),
what changed since the machine's snapshot before each event, drift only where
no recorded event ran meanwhile, the same report from the history
folder as from its archive, the command line's exit codes, and an archive put
together to mislead its reader."""
import json
import os
import pathlib
import re
import shutil
import subprocess
import time
import zipfile

import jsonschema

from e2e_support import Probe, expect_equal, main, profile_bytes, skip

TESTS = pathlib.Path(__file__).resolve().parents[1]
JSON_SCHEMA = TESTS.parent / "docs" / "report-json.schema.json"
COPY_FIXTURE = TESTS / "fixtures" / "report" / "one_v9_copy.reg"
# The copy that the fixture adds, as the report names it.
FIXTURE_COPY = "ReportCopy"
# The fixture writes below this key; a fresh prefix has none of it.
FIXTURE_ROOT = "HKLM\\SOFTWARE\\TAQ"

SERVICE = "ZORReportSvc"
SERVICE_DISPLAY_NAME = "ZOR Report Test Service"

USAGE_LINE = "Usage: ZORHistoryReport SOURCE [SOURCE...] [-o report.html] [-json report.json]"
SECTION_KEYS = ["users", "software", "processes", "services", "zorProducts", "odbcDrivers"]
NO_CHANGE = {"added": [], "removed": [], "changed": [], "addedLeftOut": 0, "removedLeftOut": 0, "changedLeftOut": 0}
PROCESS_HEADING = "3) Current Running Processes:"


# -- running the programs --------------------------------------------------
def record(env, *options):
    code, output = env.run("ZORRecordEvent", *options)
    expect_equal((code, output), (0, ""), f"result and console output of {options[:2]}")


def collect(env, name="x.zip"):
    """Packs the store into work/name with ZORGetInstallLog -f."""
    code, output = env.run("ZORGetInstallLog", "-f", name)
    expect_equal(code, 0, f"exit code of ZORGetInstallLog -f {name}; console:\n{output}")
    return env.work / name


def run_report(env, *args, cwd=None):
    """ZORHistoryReport with args; (exit code, stdout, stderr)."""
    return env.run_full("ZORHistoryReport", *args, cwd=cwd)


def make_report(env, *args, cwd=None):
    """A run of ZORHistoryReport that must write its report; its stdout. The
    JSON form, where the run writes one, is checked against its schema."""
    code, out, err = run_report(env, *args, cwd=cwd)
    expect_equal(code, 0, f"exit code of ZORHistoryReport {args!r}; stdout:\n{out}\nstderr:\n{err}")
    env.expect_no_error_output(err, f"of ZORHistoryReport {args!r}")
    if "-json" in args:
        read_json(pathlib.Path(cwd or env.work) / host_path(args[args.index("-json") + 1]))
    return out


def host_path(program_path):
    """A path as the program took it, on the host: "Z:\\x\\r.json" is /x/r.json."""
    path = str(program_path)
    return path[2:].replace("\\", "/") if path.startswith("Z:") else path


def wine(env, *args):
    """A Wine tool (cmd, sc, reg, regedit) in the prefix of the programs under test."""
    result = subprocess.run(env.runner + list(args), stdout=subprocess.PIPE,
                            stderr=subprocess.PIPE, timeout=300)
    return result.returncode, result.stdout.decode("latin-1")


def error_lines(env, err):
    """The lines of the error stream that the program wrote. Under Wine the
    stream may also carry Wine's own diagnostics, which are left out."""
    lines = err.splitlines()
    if not env.native:
        lines = [line for line in lines
                 if not line.startswith(("wine:", "fixme:", "err:", "warn:", "trace:"))]
    return lines


# -- reading the report ----------------------------------------------------
def read_json(path):
    """The report's JSON form, checked against its published schema."""
    document = json.loads(path.read_bytes().decode("utf-8"))
    schema = json.loads(JSON_SCHEMA.read_text(encoding="utf-8"))
    jsonschema.Draft202012Validator(schema).validate(document)
    return document


def event_of(document, copy, event_id):
    for listed in document["copies"]:
        if listed["copy"] != copy:
            continue
        for event in listed["events"]:
            if event["eventId"] == event_id:
                return event
    present = [(c["copy"], [e["eventId"] for e in c["events"]]) for c in document["copies"]]
    raise AssertionError(f"no event {event_id!r} of copy {copy!r} in the report: {present!r}")


def event_copy(document, copy):
    found = [listed for listed in document["copies"] if listed["copy"] == copy]
    expect_equal(len(found), 1, f"copies named {copy!r}")
    return found[0]


def summary_line(out, copy, event_id):
    """The one line of the text summary on this event."""
    lines = [line for line in out.splitlines() if line.startswith(f"{copy} | {event_id} | ")]
    expect_equal(len(lines), 1, f"summary lines on {copy} | {event_id} in:\n{out}")
    return lines[0]


def summary_fields(line):
    """(copy, event, action, result, {section: count}) of a summary line."""
    fields = line.split(" | ")
    expect_equal(len(fields), 5, f"fields of the summary line {line!r}")
    words = fields[4].split()
    counts = dict(zip(words[0::2], words[1::2]))
    expect_equal(list(counts), SECTION_KEYS, f"sections of the summary line {line!r}")
    return fields[0], fields[1], fields[2], fields[3], counts


def names_of(items, field):
    """One field of each thing that came or went in a section of the JSON form."""
    return [item[field] for item in items]


def listing(folder):
    return sorted(os.listdir(folder))


# -- 1: a process started during the install -------------------------------
def test_process_started_during_the_install_is_listed_as_added(env):
    event, copy = "Proc-1", "ProcCopy"
    record(env, "-start", event, "-Action", "Install")
    with Probe(env) as probe:
        record(env, "-end", event, "-CopyName", copy)
    collect(env, "x.zip")
    out = make_report(env, "x.zip", "-json", "r.json", "-o", "r.html")

    changes = event_of(read_json(env.work / "r.json"), copy, event)["changes"]
    assert changes is not None, "no changes for an event with both snapshots"
    added = {item["image"]: item["count"] for item in changes["processes"]["added"]}
    expect_equal(added.get(probe.name), 1, f"{probe.name} among the added processes, with its count")
    html = (env.work / "r.html").read_bytes().decode("utf-8")
    assert probe.name in html, f"{probe.name} is not in the HTML report"
    listed_copy, listed_event, action, result, counts = summary_fields(summary_line(out, copy, event))
    expect_equal((listed_copy, listed_event, action, result), (copy, event, "Install", "no result"),
                 "copy, event, action and result of the summary line")
    assert int(counts["processes"]) >= 1, f"processes count in the summary: {counts!r}"


ISO_TIME = re.compile(r"\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d")


def test_the_json_form_has_its_schema_version_iso_times_the_copy_on_each_event_and_things_as_fields(env):
    record(env, "-start", "Json-1", "-Action", "Install")
    with Probe(env) as probe:
        record(env, "-end", "Json-1", "-CopyName", "JsonCopy", "-Result", "0")
    record(env, "-start", "Json-2", "-Action", "Repair")
    record(env, "-end", "Json-2", "-Result", "0")
    collect(env, "x.zip")
    make_report(env, "x.zip", "-json", "r.json")
    document = read_json(env.work / "r.json")
    expect_equal(document["schemaVersion"], 1, "schema version")
    for key in ("firstTime", "lastTime"):
        assert ISO_TIME.fullmatch(document[key]), f"{key} {document[key]!r} is no ISO 8601 time"
    first = event_of(document, "JsonCopy", "Json-1")
    second = event_of(document, "Json-2", "Json-2")
    expect_equal((first["copy"], second["copy"]), ("JsonCopy", None), "the copies of the events")
    for event in (first, second):
        for key in ("start", "end"):
            assert ISO_TIME.fullmatch(event[key]), f"{key} {event[key]!r} is no ISO 8601 time"
    added = [item for item in first["changes"]["processes"]["added"] if item["image"] == probe.name]
    expect_equal(added, [{"kind": "process", "image": probe.name, "count": 1, "details": []}],
                 "the process started during the install, in its fields")


def test_windows_installers_restart_results_read_as_success_that_needs_a_restart(env):
    results = {"R-0": ("0", "succeeded"), "R-3010": ("3010", "succeeded, restart needed"),
               "R-1641": ("1641", "succeeded, restart needed"), "R-1603": ("1603", "failed (1603)")}
    for event, (result, _) in results.items():
        record(env, "-start", event, "-Action", "Install")
        record(env, "-end", event, "-CopyName", "RestartCopy", "-Result", result)
    collect(env, "x.zip")
    out = make_report(env, "x.zip", "-json", "r.json", "-o", "r.html")
    document = read_json(env.work / "r.json")
    for event, (_, word) in results.items():
        expect_equal(summary_fields(summary_line(out, "RestartCopy", event))[3], word,
                     f"result of {event} in the summary")
        expect_equal(event_of(document, "RestartCopy", event)["result"], word.split(" (")[0],
                     f"result of {event} in the JSON form")
    # On the page as the browser shows it, each in the contents, the machine's
    # timeline, its copy's timeline and its own heading, in the colour of its
    # word; a restart is no failure, so its row doesn't stand out.
    from test_report_page import MACHINE_TIMELINE, event_section, rendered_page, words
    dom = rendered_page(env.work / "r.html")
    contents = dom[dom.index('<nav class="contents">'):dom.index("</nav>")]
    machine_timeline = dom[dom.index(MACHINE_TIMELINE):dom.index('<h2 id="copy-0">')]
    copy_timeline = dom[dom.index('<h2 id="copy-0">'):dom.index('<section class="event"')]
    marks = {"R-0": "succeeded", "R-3010": "restart-needed", "R-1641": "restart-needed", "R-1603": "failed"}
    for event, (_, word) in results.items():
        mark = marks[event]
        shown = f'<span class="{mark}">{word}</span>'
        assert re.search(f">{event}</a>: Install, {re.escape(shown)}</li>", contents), \
            f"{event} in the contents:\n{contents}"
        heading = re.search(r"<h3>(.*?)</h3>", event_section(dom, event)).group(1)
        expect_equal(words(heading), f"{event}: Install, {word}", f"{event}'s heading as the browser shows it")
        assert shown in heading, f"{event}'s result in its heading: {heading!r}"
        for name, timeline in (("the machine's", machine_timeline), ("its copy's", copy_timeline)):
            row = re.search(f"<tr( [^>]*)?><td>[^<]*</td>(?:<td>RestartCopy</td>)?<td><a [^>]*>{event}</a>.*?</tr>",
                            timeline, re.DOTALL)
            assert row, f"no row of {event} in {name} timeline"
            assert f'<td class="{mark}">{word}</td>' in row.group(0), f"{event}'s result in {name} timeline: {row[0]}"
            # Other processes of the machine may come and go between two events.
            expect_equal(row.group(1) == ' class="stands-out"', mark == "failed" or '"drift"' in row.group(0),
                         f"whether {event}'s row stands out in {name} timeline: {row.group(0)}")


# Each line head that the recorder writes in an event log.
LOOK_ALIKES = [
    "---------- ZOR Installation History Logger ( Start )----------20061012 10:00:00",
    "EventID       :E9",
    "System Information: ",
    "=" * 45,
    "*" * 94,
    "*  Snapshoot for EventID: Look-1 -- After Install Completed ",
    "*  Snapshoot for EventID: Look-1 -- Before Install Starts ",
    "*" + " " * 93,
    "1) User Group & User Information:",
    "3) Current Running Processes:",
    "* End of Snapshoot for EventID: Look-1 Before Install Starts  ",
    "*End of Snapshoot for EventID: Look-1 -- After Install Completed ",
    "Result of Install:",
    "=" * 69,
    "---------- ZOR Installation History Logger ( End ) ----------20061012 10:05:00",
]


def test_messages_that_read_like_the_recorders_lines_are_messages_and_the_log_stays_whole(env):
    """Each line head as a one-line message between the snapshots: two of them
    make a title and its rule, which open a block only where the recorder
    puts one."""
    event, copy = "Look-1", "LookCopy"
    record(env, "-start", event, "-Action", "Install")
    for line in LOOK_ALIKES:
        record(env, "-logmessage", event, "-message", line)
    with Probe(env) as probe:
        record(env, "-end", event, "-CopyName", copy, "-Result", "0")
    collect(env, "x.zip")
    make_report(env, "x.zip", "-json", "r.json")
    reported = event_of(read_json(env.work / "r.json"), copy, event)
    expect_equal(reported["messages"], LOOK_ALIKES, "messages of the event")
    expect_equal(reported["notes"], [], "notes on the event")
    assert reported["changes"] is not None, "no changes for an event with both snapshots"
    assert probe.name in names_of(reported["changes"]["processes"]["added"], "image"), \
        f"{probe.name} is not among the added processes: {reported['changes']['processes']!r}"


def copied_snapshot_after(env, copy, event, new_event):
    """The snapshot after the install of a recorded event, as its log holds
    it, named for another event and with a process of its own among its rows."""
    log = (env.store / copy / event / "ZORInstallEvent.Log").read_bytes().decode("latin-1").splitlines()
    title = next(n for n, line in enumerate(log)
                 if line.startswith(f"*  Snapshoot for EventID: {event} -- After "))
    closing = next(n for n, line in enumerate(log)
                   if line.startswith(f"*End of Snapshoot for EventID: {event} -- After "))
    block = [line.replace(event, new_event) for line in log[title - 2:closing + 2]]
    heading = block.index(PROCESS_HEADING)
    first_row = next(n for n in range(heading + 1, len(block)) if block[n][:1].isdigit())
    block.insert(first_row, "99999".ljust(19) + "FAKEPROC.exe")
    return block


def test_a_message_that_copies_a_whole_snapshot_is_a_message_and_the_real_snapshot_is_compared(env):
    """A -logmessage of many lines copies the snapshot after an earlier install,
    with a process of its own: the install's own snapshot is compared and the
    copy is shown among the messages, in its place, with a note. An install
    that never ends, with such a message, has no snapshot after it."""
    record(env, "-start", "Src-1", "-Action", "Install")
    record(env, "-end", "Src-1", "-CopyName", "LookCopy", "-Result", "0")
    next_second()
    look_alike = copied_snapshot_after(env, "LookCopy", "Src-1", "Look-2")
    record(env, "-start", "Look-2", "-Action", "Install")
    record(env, "-logmessage", "Look-2", "-message", "\n".join(look_alike))
    record(env, "-logmessage", "Look-2", "-message", "Done")
    record(env, "-end", "Look-2", "-CopyName", "LookCopy", "-Result", "1603")
    next_second()
    never_ended = [line.replace("Look-2", "Look-3") for line in look_alike]
    record(env, "-start", "Look-3", "-Action", "Install")
    record(env, "-logmessage", "Look-3", "-message", "\n".join(never_ended))
    collect(env, "x.zip")
    make_report(env, "x.zip", "-json", "r.json", "-o", "r.html")
    document = read_json(env.work / "r.json")

    shown = [line for line in look_alike if line]
    reported = event_of(document, "LookCopy", "Look-2")
    expect_equal(reported["messages"], shown + ["Done"], "messages of Look-2")
    note = (f"the messages hold {len(shown)} lines that read like a snapshot after the install: "
            "the one that stands where the recorder writes it is compared")
    expect_equal(reported["notes"], [note], "notes on Look-2")
    assert reported["snapshotAfter"], "Look-2's own snapshot after the install is not read"
    assert "FAKEPROC.exe" not in names_of(reported["changes"]["processes"]["added"], "image"), \
        reported["changes"]["processes"]

    reported = event_of(document, "(Unknown)", "Look-3")
    expect_equal(reported["messages"], [line for line in never_ended if line], "messages of Look-3")
    expect_equal(reported["notes"], [f"the messages hold {len(shown)} lines that read like a snapshot after the "
                                     "install, which an install that never ended has not written"],
                 "notes on Look-3")
    expect_equal((reported["snapshotAfter"], reported["changes"]), (False, None), "Look-3's snapshot after")
    from test_report_page import rendered_page, rendered_text
    text = " ".join(rendered_text(rendered_page(env.work / "r.html")).split())
    assert f"Note: {note}." in text, "the page doesn't note the look-alike"
    assert "FAKEPROC.exe" in text, "the page doesn't show the copied lines among the messages"


def next_second():
    """Waits for the clock's next second: the recorder's times have seconds."""
    time.sleep(1.1)


def test_changes_since_the_machines_last_snapshot_name_the_events_that_ran_meanwhile(env):
    """A1 and A2 of one copy with B1 of another between them, then N, which
    never ends, then A3: each event is compared with the machine's last
    snapshot before it, and only where no event ran meanwhile is it drift."""
    record(env, "-start", "A1", "-Action", "Install")
    record(env, "-end", "A1", "-CopyName", "CopyA", "-Result", "0")
    next_second()
    record(env, "-start", "B1", "-Action", "Install")
    with Probe(env, tag="b") as during_b:
        record(env, "-end", "B1", "-CopyName", "CopyB", "-Result", "0")
        next_second()
        record(env, "-start", "A2", "-Action", "Repair")
        record(env, "-end", "A2", "-CopyName", "CopyA", "-Result", "0")
        next_second()
        record(env, "-start", "N1", "-Action", "Install")
        with Probe(env, tag="n") as during_n:
            next_second()
            record(env, "-start", "A3", "-Action", "Repair")
            record(env, "-end", "A3", "-CopyName", "CopyA", "-Result", "0")
    collect(env, "x.zip")
    make_report(env, "x.zip", "-json", "r.json", "-o", "r.html")
    document = read_json(env.work / "r.json")

    first = event_of(document, "CopyA", "A1")
    expect_equal(first["sincePrevious"], None, "changes before the machine's first event")
    # A2 starts where B1 of the other copy ended; B1's process is no drift.
    since = event_of(document, "CopyA", "A2")["sincePrevious"]
    drifted = any(section[kind] for section in since["changes"].values() if section
                  for kind in ("added", "removed", "changed"))
    expect_equal((since["since"], since["eventsBetween"], since["drift"]),
                 ({"eventId": "B1", "copy": "CopyB", "snapshot": "after"}, [], drifted), "A2's comparison")
    assert during_b.name not in names_of(since["changes"]["processes"]["added"], "image"), \
        since["changes"]["processes"]
    # N1 never ended: it ran from its start until A3's, and what came meanwhile
    # is told with it, not as drift.
    since = event_of(document, "CopyA", "A3")["sincePrevious"]
    expect_equal((since["since"], since["eventsBetween"], since["drift"]),
                 ({"eventId": "N1", "copy": "(Unknown)", "snapshot": "before"},
                  [{"eventId": "N1", "copy": "(Unknown)"}], False), "A3's comparison")
    assert during_n.name in names_of(since["changes"]["processes"]["added"], "image"), \
        since["changes"]["processes"]
    # The page, as the browser shows it: under each event, the machine's last
    # snapshot before it, whichever copy's it is, and drift by its word and
    # colour only where no event ran meanwhile.
    from test_report_page import MACHINE_TIMELINE, event_section, rendered_page, table_after, under_heading, words
    dom = rendered_page(env.work / "r.html")
    heading, below = under_heading(event_section(dom, "A2"), "What changed since")
    # Drift only where something changed (other programs of the test machine
    # may start or end meanwhile).
    expect_equal(words(heading), "What changed since the after snapshot of B1 (copy CopyB)" +
                 (": drift," if drifted else ",") + " outside any recorded install", "A2's heading as the browser shows it")
    expect_equal('<span class="drift">drift</span>' in heading, drifted, f"A2's drift in its colour: {heading!r}")
    assert during_b.name not in below, f"B1's process is shown as drift before A2:\n{below}"
    heading, below = under_heading(event_section(dom, "A3"), "What changed since")
    expect_equal(words(heading), "What changed since the before snapshot of N1 (copy (Unknown)), while these "
                 "recorded events ran: N1 (copy (Unknown))", "A3's heading as the browser shows it")
    assert f'<li class="added">{during_n.name}: 1</li>' in below, \
        f"the process that came while N1 ran is not shown under A3's heading:\n{below}"
    timeline = {cells[2]: cells for _, cells in table_after(dom, MACHINE_TIMELINE)[1:]}
    expect_equal(list(timeline), ["A1", "B1", "A2", "N1", "A3"], "the machine's timeline, in order")
    expect_equal((timeline["N1"][7], timeline["A3"][9]), ("never ended", ""),
                 "N1's result, and the drift before A3 in the machine's timeline")


def record_two_events_with_a_process_between(env):
    """Cmp-1 of CopyA; a process starts; Cmp-2 of CopyB; Open-1 never ends."""
    record(env, "-start", "Cmp-1", "-Action", "Install")
    record(env, "-end", "Cmp-1", "-CopyName", "CopyA", "-Result", "0")
    next_second()
    with Probe(env) as probe:
        record(env, "-start", "Cmp-2", "-Action", "Upgrade")
        record(env, "-end", "Cmp-2", "-CopyName", "CopyB", "-Result", "0")
        next_second()
        record(env, "-start", "Open-1", "-Action", "Repair")
    collect(env, "x.zip")
    return probe


COUNTS_LINE = re.compile(r"users \d+ software \d+ processes \d+ services \d+ zorProducts \d+ odbcDrivers \d+")


def test_two_events_compared_by_their_after_snapshots_on_the_console_and_the_page(env):
    probe = record_two_events_with_a_process_between(env)
    out = make_report(env, "x.zip", "-o", "r.html", "-json", "r.json", "-compare", "Cmp-1", "Cmp-2")
    lines = out.splitlines()
    title = "Compared the after snapshot of Cmp-1 (copy CopyA) against the after snapshot of Cmp-2 (copy CopyB)"
    assert title in lines, out
    assert COUNTS_LINE.fullmatch(lines[lines.index(title) + 1]), out
    assert f"processes + {probe.name}: 1" in lines[lines.index(title):], out
    html = (env.work / "r.html").read_bytes().decode("utf-8")
    compared = html[html.index('<h2 id="comparison">Comparison of Cmp-1 and Cmp-2</h2>'):
                    html.index('<h2 id="copy-0">')]
    assert ("<h4>What changed from the after snapshot of Cmp-1 (copy CopyA) against the after snapshot of "
            "Cmp-2 (copy CopyB)</h4>") in compared, compared
    assert f'<li class="added">{probe.name}: 1</li>' in compared, compared
    assert '<a href="#comparison">Comparison of Cmp-1 and Cmp-2</a>' in html, "the contents don't lead to it"
    from test_report_page import rendered_page, rendered_text
    text = " ".join(rendered_text(rendered_page(env.work / "r.html")).split())
    assert ("Comparison of Cmp-1 and Cmp-2 What changed from the after snapshot of Cmp-1 (copy CopyA) against the "
            "after snapshot of Cmp-2 (copy CopyB)") in text, "the browser doesn't show the comparison's headings"
    assert f"{probe.name}: 1" in text, "the browser doesn't show the process that came"
    comparison = read_json(env.work / "r.json")["comparison"]
    expect_equal((comparison["first"], comparison["second"], comparison["missing"]),
                 ({"eventId": "Cmp-1", "copy": "CopyA", "snapshot": "after"},
                  {"eventId": "Cmp-2", "copy": "CopyB", "snapshot": "after"}, None), "the comparison in the JSON form")
    assert {"kind": "process", "image": probe.name, "count": 1, "details": []} in \
        comparison["changes"]["processes"]["added"], comparison["changes"]["processes"]


def test_an_events_before_snapshot_against_its_after_snapshot_is_what_the_install_changed(env):
    record_two_events_with_a_process_between(env)
    out = make_report(env, "x.zip", "-compare", "Cmp-2", "Cmp-2", "-before")
    lines = out.splitlines()
    title = "Compared the before snapshot of Cmp-2 (copy CopyB) against the after snapshot of Cmp-2 (copy CopyB)"
    assert title in lines, out
    expect_equal(lines[lines.index(title) + 1], summary_line(out, "CopyB", "Cmp-2").split(" | ")[4],
                 "the comparison's counts and the install's own")


def test_a_compared_event_without_its_snapshot_or_missing_from_the_history_is_said(env):
    record_two_events_with_a_process_between(env)
    out = make_report(env, "x.zip", "-compare", "Cmp-1", "Open-1")
    assert "Not compared: Open-1 has no snapshot after the install" in out.splitlines(), out
    code, out, err = run_report(env, "x.zip", "-compare", "Cmp-1", "Nope-1")
    expect_equal((code, error_lines(env, err)), (1, ["x.zip: no event Nope-1 to compare in it"]),
                 "exit code and error of a comparison with an event that isn't there")
    code, out, err = run_report(env, "x.zip", "-before")
    expect_equal(code, 2, "exit code of -before without -compare")
    assert "ZORHistoryReport: the option -before goes with -compare" in error_lines(env, err), err


# The recorder's texts, written by hand for the sections that a Linux machine
# leaves empty.
SOFTWARE_HEADER = ("Publisher                     Product Name                                                     "
                   "Version             InstallDate   Language   Location")
PRODUCT_HEADER = ("Product Name                            Product Code                            "
                  "Version   Service Level       Last Modified Date")
USER_HEADER = "Group                                   user   "
SERVICE_RULE = "-" * 68 + " "
SERVICE_HEADER = "Service Name                                                Status   "
BANNER_RULE = "*" * 93
PART_A = "*  PART A --ZOR Installed Copies Information -- Prior to V9                                 *"
PART_B = "*  PART B --ZOR Installed Copies Information -- V9 & Later                                  *"


def copy_lines(name_line, products):
    """A copy's block as the inventory writes it, with product rows."""
    lines = ["", *name_line, "-" * 48, f"Total Products     :{len(products)}", "Total ZOR Instances:0", "-" * 48,
             "", "Global Profiles:", "-" * 120, "-" * 120, "", "ZOR Products installed:", "-" * 128,
             PRODUCT_HEADER, "-" * 128, *products, "-" * 128, "", "ZOR Instances:", "-" * 33,
             "Instance Name                    ", "-" * 33, "-" * 33, ""]
    return lines


def products_section(copy, products):
    """The body of a snapshot's section 5 with one copy from V9 on and its
    product rows, as the inventory writes it."""
    return (["", BANNER_RULE, PART_A, BANNER_RULE] + copy_lines([], [])[:-1] +
            ["", BANNER_RULE, PART_B, BANNER_RULE, "", "Total ZOR Copies:1", "-" * 45, "ZOR Copy Name", "-" * 45,
             copy, "-" * 45] + copy_lines([f"ZOR Installation Copy Name:{copy}"], products))


def replace_section(lines, number, occurrence, body):
    """The lines with the body of a snapshot's section replaced: its
    `occurrence`-th heading of that number, up to the empty line ahead of the
    next heading."""
    title = {2: "2) Software Installed on the machine:", 4: "4) Services & Service Status:",
             5: "5) ZOR Products Installed:"}[number]
    headings = [i for i, line in enumerate(lines) if line == title]
    start = headings[occurrence] + 1
    end = start
    while not lines[end + 1].startswith(f"{number + 1}) "):
        end += 1
    return lines[:start] + body + lines[end:]


def edit_log(env, copy, event, edit):
    path = env.store / copy / event / "ZORInstallEvent.Log"
    lines = path.read_bytes().decode("latin-1").split(env.eol)
    path.write_bytes(env.eol.join(edit(lines)).encode("latin-1"))


# Each line of the computer report, by its label, with a value that differs
# from any machine's.
COMPUTER_LINES = {
    "Computer Name       :": "ZORTEST2",
    "OS                  :": "Windows Server 2003 for the test",
    "Type                :": "Domain Controller",
    "Service Pack        :": "Service Pack 3",
    "Number of processors:": "64",
    "CPU                 :": "Test CPU of 9000 MHz",
}


def test_values_long_fields_copies_users_and_the_computer_report_as_recorded(env):
    """Two events whose logs the Linux recorder wrote, with sections that a
    Linux machine leaves empty written in by hand as the Windows collectors
    write them: a product name of 66 characters in a column of 65, a copy's
    product of 41 in a column of 40, the V9 copies' parent key among the
    copies before V9; a service that the first install adds and the second
    removes; a user who joins a first group before the second install and
    is in none after it; every line of the computer report changed between
    the two starts; each with its values on the page as the browser shows
    it."""
    if not env.native:
        skip("the Linux build only; in the logs of the Windows builds a user who joins a group shows as a user added")
    record(env, "-start", "E1", "-Action", "Install")
    next_second()
    record(env, "-end", "E1", "-CopyName", "C1", "-Result", "0")
    next_second()
    record(env, "-start", "E2", "-Action", "Repair")
    record(env, "-end", "E2", "-CopyName", "C1", "-Result", "0")

    software = "ZOR Client Tools with a name longer than its column of sixty-five!"
    product = "ZOR Server Components of forty-one letter"
    assert (len(software), len(product)) == (66, 41)
    software_row = (f"{'TAQ Inc.':<30}{software:<65}{'9.1.0':<20}{'20240105':<14}{'1033':<11}/opt/zor")
    product_row = f"{product:<40}{'{C1}':<40}{'9.1.0':<10}{'SL2':<20}{'20240105':<20}"
    software_body = ["", "-" * 185, SOFTWARE_HEADER, "-" * 185, software_row, "-" * 185, ""]
    service = "ZOR Values Test Service"
    services_body = ["", SERVICE_RULE, SERVICE_HEADER, SERVICE_RULE, f"{service:<60}{'Stopped':<15}", SERVICE_RULE]
    products_body = products_section("C1", [product_row])

    def after_install(lines):
        lines = replace_section(lines, 4, 1, services_body)
        return replace_section(replace_section(lines, 2, 1, software_body), 5, 1, products_body)

    def joined_and_updated(lines):
        lines = replace_section(replace_section(lines, 2, 0, software_body), 5, 0, products_body)
        lines = replace_section(replace_section(lines, 2, 1, software_body), 5, 1, products_body)
        lines = replace_section(lines, 4, 0, services_body)
        table = lines.index("Local User List:") + 4
        assert lines[table - 1] == "-" * 74 and lines[table - 2] == USER_HEADER, lines[table - 3:table + 1]
        lines.insert(table, f"{'zorgroup':<30}          VM\\zorjoiner")
        for at, line in enumerate(lines):
            label = next((label for label in COMPUTER_LINES if line.startswith(label)), None)
            if label is not None:
                lines[at] = label + COMPUTER_LINES[label]
        return lines

    edit_log(env, "C1", "E1", after_install)
    edit_log(env, "C1", "E2", joined_and_updated)
    first_log = (env.store / "C1" / "E1" / "ZORInstallEvent.Log").read_bytes().decode("latin-1").split(env.eol)
    before = {label: next(line[len(label):] for line in first_log if line.startswith(label)) for label in COMPUTER_LINES}
    collect(env, "x.zip")
    make_report(env, "x.zip", "-json", "r.json", "-o", "r.html")
    document = read_json(env.work / "r.json")

    changes = event_of(document, "C1", "E1")["changes"]
    expect_equal(changes["software"]["added"],
                 [{"kind": "software", "name": software, "version": "9.1.0", "details": []}],
                 "software added by E1")
    expect_equal(changes["zorProducts"]["added"],
                 [{"kind": "copy", "copy": "C1",
                   "details": [{"kind": "product", "copy": "C1", "product": product, "version": "9.1.0",
                                "serviceLevel": "SL2", "code": "{C1}", "lastModified": "20240105"}]}],
                 "copies added by E1")
    service_fields = {"kind": "service", "displayName": service, "state": "Stopped", "details": []}
    expect_equal(changes["services"]["added"], [service_fields], "services added by E1")
    second = event_of(document, "C1", "E2")
    expect_equal(second["changes"]["services"]["removed"], [service_fields], "services removed by E2")
    since = second["sincePrevious"]
    expect_equal((since["drift"], since["changes"]["software"], since["changes"]["services"],
                  since["changes"]["zorProducts"]), (True, NO_CHANGE, NO_CHANGE, NO_CHANGE),
                 "E2 against E1's after snapshot")
    users = since["changes"]["users"]
    expect_equal((users["added"], users["removed"]), ([], []), "users added or removed before E2")
    assert {"kind": "user", "name": "VM\\zorjoiner", "before": {"groups": []},
            "after": {"groups": ["zorgroup"]}} in users["changed"], users
    computer = second["computerChanges"]
    expect_equal((computer["since"], computer["eventsBetween"], computer["drift"]),
                 ({"eventId": "E1", "copy": "C1"}, [{"eventId": "E1", "copy": "C1"}], False),
                 "E2's computer report against E1's")
    changed = {change["label"]: (change["before"]["text"], change["after"]["text"])
               for change in computer["changes"]["changed"]}
    expect_equal(changed, {label.rstrip(" :"): (before[label], after) for label, after in COMPUTER_LINES.items()},
                 "changes of the computer report")

    # The page, as the browser shows it: what came or went with its values,
    # the copy with its product's, a user's groups before and after.
    from test_report_page import event_section, rendered_page, table_after, under_heading, words
    dom = rendered_page(env.work / "r.html")
    _, installed = under_heading(event_section(dom, "E1"), "What the install changed")
    for shown in (f"{software}: 9.1.0", f"{service}: Stopped"):
        assert f'<li class="added">{shown}</li>' in installed, f"{shown!r} is not shown as added by E1:\n{installed}"
    copy = re.search(r'<li class="added">copy C1\s*<ul class="details">\s*<li>(.*?)</li>\s*</ul>', installed)
    assert copy, f"the copy added by E1 is not shown with its product:\n{installed}"
    expect_equal(words(copy.group(1)), f"product {product}: version 9.1.0, service level SL2, code {{C1}}, "
                 "last modified 20240105", "the product of the copy added by E1")
    second_section = event_section(dom, "E2")
    _, installed = under_heading(second_section, "What the install changed")
    assert f'<li class="removed">{service}: Stopped</li>' in installed, \
        f"the service is not shown as removed by E2 with its state:\n{installed}"
    expect_equal(table_after(installed, "User Group &amp; User Information")[1][1],
                 ["user VM\\zorjoiner", "member of zorgroup", "in no group's member list"],
                 "the user who left the group during E2")
    _, since_first = under_heading(second_section, "What changed since the after snapshot of E1")
    expect_equal(table_after(since_first, "User Group &amp; User Information")[1][1],
                 ["user VM\\zorjoiner", "in no group's member list", "member of zorgroup"],
                 "the user who joined the group before E2")
    text = words(dom[dom.index("<body"):])
    assert "The computer report since the start of E1 (copy C1)" in text, "the computer's changes have no heading"
    for label, after in COMPUTER_LINES.items():
        row = " ".join(f"{label.rstrip(' :')} {before[label]} {after}".split())
        assert row in text, f"the page doesn't show {row!r}"


# -- 2: a service and a copy of the product, under Wine --------------------
def own_view(env):
    return f"/reg:{env.registry_bits}"


def import_copy_fixture(env):
    code, _ = wine(env, "reg", "import", env.program_path(COPY_FIXTURE), own_view(env))
    expect_equal(code, 0, f"reg import {COPY_FIXTURE.name} {own_view(env)}")


def clean_machine(env):
    wine(env, "sc", "delete", SERVICE)
    wine(env, "reg", "delete", FIXTURE_ROOT, "/f", own_view(env))


def test_service_and_copy_added_then_service_deleted_between_events(env):
    if env.native:
        skip("the Windows builds only")
    assert wine(env, "reg", "query", FIXTURE_ROOT, own_view(env))[0] != 0, \
        f"{FIXTURE_ROOT} exists in the prefix already"
    assert wine(env, "sc", "query", SERVICE)[0] != 0, f"{SERVICE} exists in the prefix already"
    try:
        record(env, "-start", "Svc-1", "-Action", "Install")
        code, _ = wine(env, "sc", "create", SERVICE, "binPath=", "C:\\x.exe",
                       "DisplayName=", SERVICE_DISPLAY_NAME)
        expect_equal(code, 0, f"sc create {SERVICE}")
        import_copy_fixture(env)
        record(env, "-end", "Svc-1", "-CopyName", FIXTURE_COPY, "-Result", "Success")
        code, _ = wine(env, "sc", "delete", SERVICE)
        expect_equal(code, 0, f"sc delete {SERVICE}")
        record(env, "-start", "Svc-2", "-Action", "Upgrade")
        record(env, "-end", "Svc-2", "-CopyName", FIXTURE_COPY, "-Result", "Success")
    finally:
        clean_machine(env)
    collect(env, "x.zip")
    out = make_report(env, "x.zip", "-json", "r.json")

    document = read_json(env.work / "r.json")
    first = event_of(document, FIXTURE_COPY, "Svc-1")
    second = event_of(document, FIXTURE_COPY, "Svc-2")
    drift = second["sincePrevious"]
    assert first["changes"] is not None and drift is not None and drift["drift"], (first, second)
    added_services = {item["displayName"]: item["state"] for item in first["changes"]["services"]["added"]}
    expect_equal(added_services.get(SERVICE_DISPLAY_NAME), "Stopped", "state of the added service")
    # The copy once, in its own layout: the parent key of the V9 copies is no
    # copy before V9.
    expect_equal([(item["kind"], item.get("copy")) for item in first["changes"]["zorProducts"]["added"]],
                 [("copy", FIXTURE_COPY)], "copies added by the first event")
    expect_equal(first["sincePrevious"], None, "changes before the machine's first event")
    assert SERVICE_DISPLAY_NAME in names_of(drift["changes"]["services"]["removed"], "displayName"), \
        drift["changes"]["services"]
    # Nothing happened to the copy between the two events, nor during the second.
    expect_equal(drift["changes"]["zorProducts"], NO_CHANGE, "drift of the products")
    expect_equal(second["changes"]["zorProducts"], NO_CHANGE, "products changed by the second event")
    expect_equal(second["changes"]["services"], NO_CHANGE, "services changed by the second event")
    for event, action in (("Svc-1", "Install"), ("Svc-2", "Upgrade")):
        fields = summary_fields(summary_line(out, FIXTURE_COPY, event))
        expect_equal(fields[2:4], (action, "succeeded"), f"action and result of {event}")
    assert int(summary_fields(summary_line(out, FIXTURE_COPY, "Svc-1"))[4]["services"]) >= 1


# -- 3: the folder against the archive, and the command line -----------------
def record_two_events(env):
    record(env, "-start", "Same-1", "-Action", "Install", "-Product", "ZOR Server")
    record(env, "-end", "Same-1", "-CopyName", "SameCopy", "-Result", "Success")
    record(env, "-start", "Same-2", "-Action", "Repair")
    record(env, "-end", "Same-2", "-CopyName", "SameCopy", "-Result", "1603")
    record(env, "-start", "Open-1", "-Action", "Install")


def test_history_folder_gives_the_same_events_as_its_archive(env):
    record_two_events(env)
    collect(env, "x.zip")
    from_archive = make_report(env, "x.zip", "-json", "archive.json")
    from_folder = make_report(env, env.program_path(env.store), "-json", "folder.json")
    archive = read_json(env.work / "archive.json")
    folder = read_json(env.work / "folder.json")
    expect_equal(archive["source"], "x.zip", "source of the archive's report")
    expect_equal(folder["source"], env.program_path(env.store), "source of the folder's report")
    expect_equal(folder["eventCount"], 3, "events of the folder")
    results = {e["eventId"]: (c["copy"], e["result"]) for c in folder["copies"] for e in c["events"]}
    expect_equal(sorted(results), ["Open-1", "Same-1", "Same-2"], "events")
    expect_equal(results["Same-1"], ("SameCopy", "succeeded"), "copy and result of Same-1")
    expect_equal(results["Same-2"], ("SameCopy", "failed"), "copy and result of Same-2")
    expect_equal(results["Open-1"][1], "never ended", "result of Open-1")
    expect_equal([e["eventId"] for e in event_copy(folder, "SameCopy")["events"]], ["Same-1", "Same-2"],
                 "events of SameCopy, in their order")
    del archive["source"], folder["source"]
    expect_equal(folder, archive, "report of the folder against that of the archive")
    # The summaries differ in the line that names the source alone.
    expect_equal([line for line in from_folder.splitlines() if "folder.json" not in line
                  and env.program_path(env.store) not in line],
                 [line for line in from_archive.splitlines() if "archive.json" not in line
                  and "x.zip" not in line], "summaries")


def test_help_prints_the_usage_and_writes_nothing(env):
    code, out, err = run_report(env, "-h")
    expect_equal(code, 0, "exit code of -h")
    assert USAGE_LINE in out.splitlines(), f"no usage line in:\n{out}"
    env.expect_no_error_output(err, "of -h")
    expect_equal(listing(env.work), [], "current folder after -h")


def test_no_arguments_is_a_usage_error(env):
    code, out, err = run_report(env)
    expect_equal(code, 2, "exit code without arguments")
    assert USAGE_LINE in (out + err).splitlines(), f"no usage line in:\n{out}{err}"
    expect_equal(listing(env.work), [], "current folder after a usage error")


def expect_source_refused(env, source, what):
    code, out, err = run_report(env, source)
    expect_equal(code, 1, f"exit code on {what}")
    lines = error_lines(env, err)
    expect_equal(len(lines), 1, f"lines on the error stream on {what}: {lines!r}")
    assert source in lines[0], f"the error line on {what} doesn't name {source!r}: {lines[0]!r}"
    assert not (env.work / "report.html").exists(), f"report.html written on {what}"


def test_missing_source_is_named_on_one_error_line(env):
    expect_source_refused(env, "missing.zip", "a missing source")


def test_file_that_is_not_a_zip_is_refused(env):
    (env.work / "text.zip").write_bytes(b"[History]\r\nCount=0\r\n" * 100)
    expect_source_refused(env, "text.zip", "a file that is not a zip")


def test_folder_without_history_ini_is_refused(env):
    folder = env.work / "Looks Like History"
    (folder / "E1").mkdir(parents=True)
    (folder / "E1" / "ZORInstallEvent.Log").write_bytes(b"a log\r\n")
    (folder / "Summary.txt").write_bytes(b"a summary\r\n")
    expect_source_refused(env, "Looks Like History", "a folder without History.ini")


def test_a_folder_source_is_read_inside_it_without_following_a_link(env):
    """A copy of the store as a folder source, in which an installer log and
    an event log are links to files outside it: neither is followed, both
    count as missing, and nothing of the files they lead to is on the page
    or in the JSON form."""
    if not env.native:
        skip("links of the host's file system are tried on the native build")
    secret = env.work / "secret.txt"
    secret.write_bytes(b"TOP-SECRET-LINE\r\n")
    record(env, "-start", "Ln-1", "-Action", "Install", "-l", str(env.work / "setup.log"))
    record(env, "-end", "Ln-1", "-CopyName", "LinkCopy", "-Result", "0")
    record(env, "-start", "Ln-2", "-Action", "Repair")
    record(env, "-end", "Ln-2", "-CopyName", "LinkCopy", "-Result", "0")
    folder = env.work / "history"
    shutil.copytree(env.store, folder, symlinks=True)
    os.symlink(secret, folder / "LinkCopy" / "Ln-1" / "setup.log")
    outside = env.work / "outside.Log"
    shutil.move(folder / "LinkCopy" / "Ln-2" / "ZORInstallEvent.Log", outside)
    outside.write_bytes(outside.read_bytes() + b"TOP-SECRET-LINE\r\n")
    os.symlink(outside, folder / "LinkCopy" / "Ln-2" / "ZORInstallEvent.Log")
    make_report(env, "history", "-json", "r.json", "-o", "r.html")
    document = read_json(env.work / "r.json")
    logs = event_of(document, "LinkCopy", "Ln-1")["installerLogs"]
    expect_equal([(log["name"], log["inSource"], log["entry"]) for log in logs], [("setup.log", False, None)],
                 "the installer log that is a link")
    linked = event_of(document, "LinkCopy", "Ln-2")
    expect_equal((linked["eventLog"], linked["snapshotBefore"], linked["notes"]),
                 (None, False, ["the event log is not in the source"]), "the event whose log is a link")
    for output in ("r.json", "r.html"):
        assert b"TOP-SECRET-LINE" not in (env.work / output).read_bytes(), f"{output} holds the linked file's text"


def expect_outputs_refused(env, args, named, error, kept):
    """A run whose outputs are refused: exit code 1, one error line that names
    the refused output, nothing written, and the files `kept` (path -> bytes)
    as they were."""
    code, out, err = run_report(env, *args)
    expect_equal(code, 1, f"exit code of ZORHistoryReport {args!r}")
    expect_equal(error_lines(env, err), [f"{named}: {error}"], f"error lines of {args!r}")
    for path, content in kept.items():
        assert path.read_bytes() == content, f"{path.name} changed by ZORHistoryReport {args!r}"


def test_an_output_never_overwrites_the_source_archive_however_it_is_named(env):
    record_two_events(env)
    archive = collect(env, "x.zip")
    content = archive.read_bytes()
    spellings = ["x.zip", env.program_path(archive), "scratch/../x.zip" if env.native else "scratch\\..\\x.zip"]
    (env.work / "scratch").mkdir()
    if env.native:
        os.symlink("x.zip", env.work / "link.zip")
        spellings.append("link.zip")
    else:
        spellings.append("X.ZIP")
    for spelling in spellings:
        for option in ("-o", "-json"):
            expect_outputs_refused(env, ["x.zip", option, spelling], spelling,
                                   "the report can't be written over its source", {archive: content})
    expect_equal(sorted(listing(env.work)), sorted(["x.zip", "scratch"] + (["link.zip"] if env.native else [])),
                 "work folder after the refused runs")


def test_no_output_is_written_into_the_source_folder(env):
    record_two_events(env)
    ini = env.store / "History.ini"
    content = ini.read_bytes()
    inside = env.program_path(ini)
    expect_outputs_refused(env, [env.program_path(env.store), "-o", inside], inside,
                           "the report can't be written over its source", {ini: content})
    new_file = env.program_path(env.store / "report.html")
    expect_outputs_refused(env, [env.program_path(env.store), "-json", new_file], new_file,
                           "the report can't be written over its source", {ini: content})
    assert not (env.store / "report.html").exists(), "report.html written into the store"
    if env.native:
        # A link in the folder that leads out of it is the folder's own entry.
        outside = env.work / "outside.json"
        outside.write_text("kept")
        os.symlink(outside, env.store / "out.json")
        link = env.program_path(env.store / "out.json")
        expect_outputs_refused(env, [env.program_path(env.store), "-json", link], link,
                               "the report can't be written over its source", {ini: content, outside: b"kept"})
        assert (env.store / "out.json").is_symlink(), "the link in the store was replaced"


def test_the_two_outputs_never_name_one_file(env):
    record_two_events(env)
    collect(env, "x.zip")
    other = "R.HTML" if not env.native else "scratch/../r.html"
    (env.work / "scratch").mkdir()
    for html, json_path in (("r.html", "r.html"), ("r.html", other)):
        expect_outputs_refused(env, ["x.zip", "-o", html, "-json", json_path], json_path,
                               "-o and -json name the same file", {})
        assert not (env.work / "r.html").exists(), f"r.html written with -o {html} -json {json_path}"
    make_report(env, "x.zip", "-o", "r.html", "-json", "r.json")


def test_without_outputs_report_html_is_written_to_the_current_folder_alone(env):
    record_two_events(env)
    archive = collect(env, "x.zip")
    scratch = env.work / "scratch"
    scratch.mkdir()
    make_report(env, env.program_path(archive), cwd=scratch)
    expect_equal(listing(scratch), ["report.html"], "current folder after the run")
    html = (scratch / "report.html").read_bytes().decode("utf-8")
    for event in ("Same-1", "Same-2", "Open-1"):
        assert event in html, f"{event} is not in report.html"


# -- 4: an archive put together to mislead ---------------------------------
def real_event_log(env):
    """The log of a real event, with a marker message between its snapshots."""
    record(env, "-start", "Real-1", "-Action", "Install")
    record(env, "-logmessage", "Real-1", "-message", "MARKER-MESSAGE")
    record(env, "-end", "Real-1")
    text = (env.store / "Real-1" / "ZORInstallEvent.Log").read_bytes().decode("latin-1")
    return text.split(env.eol)


def test_archive_made_to_mislead_is_read_without_harm(env):
    lines = real_event_log(env)
    eol = "\r\n"
    long_line = "L" + "0123456789" * 9999 + "LONG-LINE"
    assert len(long_line) == 100000
    # The whole log, with the marker message 100 000 characters long.
    whole = eol.join(long_line if line == "MARKER-MESSAGE" else line for line in lines)
    # The log cut off in the middle of the first row of the process report
    # after the install: its heading, a blank line, the count, the rule, the
    # header and the rule are kept.
    headings = [number for number, line in enumerate(lines) if line == PROCESS_HEADING]
    expect_equal(len(headings), 2, "process reports in the real log")
    kept = lines[:headings[1] + 6]
    cut_line = lines[headings[1] + 6]
    assert len(cut_line) > 2, f"the line to cut is too short: {cut_line!r}"
    cut = eol.join(kept) + eol + cut_line[:len(cut_line) // 2]

    store = "C:\\ProgramData\\TAQ\\ZORHistory\\"
    climbing_event, climbing_copy = "..\\..\\evil", "..\\.."
    # Names that would be markup, were the page to take them as they stand.
    markup_event, markup_copy = "<script>alert(1)</script>", "<b>Copy & Co</b>"
    history = profile_bytes([
        ("History", {"Count": "4"}),
        ("Whole-1", {"Event_ID": "Whole-1", "Copy_Name": "Copy1", "Complete_Flag": "TRUE",
                     "Result": "Success", "Event_Log_File": store + "Copy1\\Whole-1\\ZORInstallEvent.Log"}),
        ("Cut-1", {"Event_ID": "Cut-1", "Copy_Name": "Copy1", "Complete_Flag": "TRUE",
                   "Event_Log_File": store + "Copy1\\Cut-1\\ZORInstallEvent.Log"}),
        (climbing_event, {"Event_ID": climbing_event, "Copy_Name": climbing_copy, "Complete_Flag": "TRUE",
                          "Product": long_line,
                          "Event_Log_File": store + "..\\evil.txt",
                          "Log_File_Name": "C:\\..\\..\\abs.txt"}),
        (markup_event, {"Event_ID": markup_event, "Copy_Name": markup_copy, "Action": "<i>Install</i>"}),
    ])
    hostile = env.work / "hostile.zip"
    with zipfile.ZipFile(hostile, "w", zipfile.ZIP_DEFLATED) as z:
        z.writestr("History.ini", history)
        z.writestr("Copy1\\Whole-1\\ZORInstallEvent.Log", whole.encode("latin-1"))
        z.writestr("Copy1\\Cut-1\\ZORInstallEvent.Log", cut.encode("latin-1"))
        # Logs of the climbing event where its names would lead, were they followed.
        z.writestr("../evil.txt", whole.encode("latin-1"))
        z.writestr("/abs.txt", whole.encode("latin-1"))
        z.writestr("..\\..\\..\\..\\evil\\ZORInstallEvent.Log", whole.encode("latin-1"))
    with zipfile.ZipFile(hostile) as z:
        assert "../evil.txt" in z.namelist() and "/abs.txt" in z.namelist(), z.namelist()

    scratch = env.work / "scratch"
    scratch.mkdir()
    absolute = pathlib.Path("/abs.txt")
    absolute_before = absolute.exists()
    around_before = listing(env.work)
    make_report(env, env.program_path(hostile), "-o", "r.html", "-json", "r.json", cwd=scratch)
    expect_equal(listing(scratch), ["r.html", "r.json"], "scratch folder after the run")
    expect_equal(listing(env.work), around_before, "folder around the scratch folder after the run")
    expect_equal(absolute.exists(), absolute_before, "/abs.txt")

    document = read_json(scratch / "r.json")
    html = (scratch / "r.html").read_bytes().decode("utf-8")
    assert "</html>" in html.lower(), "the HTML report ends early"
    for markup in ("<script>", "<b>", "<i>"):
        assert markup not in html, f"{markup} stands in the HTML report as markup"
    expect_equal(document["eventCount"], 4, "events")
    expect_equal(event_of(document, markup_copy, markup_event)["action"], "<i>Install</i>",
                 "action of the event with markup in its names")
    whole_event = event_of(document, "Copy1", "Whole-1")
    cut_event = event_of(document, "Copy1", "Cut-1")
    climbing = event_of(document, climbing_copy, climbing_event)

    expect_equal(whole_event["notes"], [], "notes on the whole log")
    assert any(message.startswith(long_line[:1000]) for message in whole_event["messages"]), \
        "the long message is not in the report"
    assert whole_event["changes"] is not None and whole_event["changes"]["processes"] is not None, \
        "the snapshot after the long message wasn't compared"

    assert cut_event["notes"], "no note on the log cut off in a snapshot"
    expect_equal((cut_event["snapshotBefore"], cut_event["snapshotAfter"]), (True, True),
                 "snapshots of the cut-off log")
    changes = cut_event["changes"]
    assert changes is not None, "no changes of the cut-off log"
    # The sections ahead of the cut are compared, the cut one and those behind it are not.
    expect_equal([key for key in SECTION_KEYS if changes[key] is not None], ["users", "software"],
                 "sections compared in the cut-off log")

    # Names that lead out of the history are not followed.
    expect_equal(climbing["eventLog"], None, "event log of the climbing event")
    expect_equal((climbing["snapshotBefore"], climbing["snapshotAfter"], climbing["changes"]),
                 (False, False, None), "snapshots of the climbing event")
    expect_equal(climbing["product"], long_line, "product of the climbing event")
    expect_equal([log["inSource"] for log in climbing["installerLogs"]], [False],
                 "installer log of the climbing event")


if __name__ == "__main__":
    main(globals())
