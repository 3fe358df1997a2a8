"""ZORHistoryReport over damaged archives: an archive cut off in the middle of
an entry, or with an entry whose bytes were changed, says which entry is
damaged and reports the rest; an event whose log is not in the archive still
appears with what History.ini says of it. The page says so as the browser
shows it."""
import random
import re
import zipfile
import zlib

from e2e_support import expect_equal, main, profile_bytes
from test_report import collect, error_lines, event_of, make_report, read_json, record, run_report
from test_report_page import COUNTS, MACHINE_TIMELINE, event_section, rendered_page, table_after, under_heading, words

EVENTS = ["Dmg-1", "Dmg-2", "Dmg-3"]
# Each event's result, and what the report makes of it.
RESULTS = {"Dmg-1": "0", "Dmg-2": "1603", "Dmg-3": "3010"}
OUTCOMES = {"Dmg-1": "succeeded", "Dmg-2": "failed", "Dmg-3": "succeeded, restart needed"}
# What an event of a damaged History.ini says that no log confirms: past the
# damage, inflating may piece together a section of a name that no event has.
GARBLED = "History.ini is damaged: what it says of this event may be cut or garbled, and no event log confirms it"
# What an event says whose end History.ini doesn't hold but its log does.
END_FROM_THE_LOG = ("History.ini doesn't hold this event whole: "
                    "how it ended is read from the result block of its event log")
COPY = "DmgCopy"
# The bytes of an installer log that the page shows.
SHOWN = 16 * 1024


def recorded_archive(env):
    """An archive of three completed events, written by ZORGetInstallLog -f;
    the infos of its event logs, in the order in which they stand."""
    for event in EVENTS:
        installer_log = env.work / f"{event}.log"
        installer_log.write_bytes(f"setup of {event}\r\n".encode())
        record(env, "-start", event, "-Action", "Install", "-l", env.program_path(installer_log))
        record(env, "-logmessage", event, "-message", "installing " + event)
        record(env, "-end", event, "-CopyName", COPY, "-Result", RESULTS[event])
    archive = collect(env, "x.zip")
    with zipfile.ZipFile(archive) as z:
        infos = z.infolist()
    history = [info for info in infos if info.filename == "History.ini"]
    logs = sorted((info for info in infos if info.filename.endswith("ZORInstallEvent.Log")),
                  key=lambda info: info.header_offset)
    expect_equal(len(history), 1, "History.ini entries in the archive")
    expect_equal(len(logs), len(EVENTS), "event logs in the archive")
    return archive, history[0], logs


def data_offset(archive, info):
    """Where the entry's data begins: behind its local header, name and extra field."""
    with open(archive, "rb") as f:
        f.seek(info.header_offset + 26)
        header = f.read(4)
    return info.header_offset + 30 + int.from_bytes(header[:2], "little") + int.from_bytes(header[2:], "little")


def event_of_entry(info):
    """The EventID of an event log's entry: the name of its folder."""
    return info.filename.replace("/", "\\").split("\\")[-2]


def expect_whole_events(document, logs, notes=()):
    for info in logs:
        event = event_of_entry(info)
        reported = event_of(document, COPY, event)
        expect_equal(reported["notes"], list(notes), f"notes on {event}")
        expect_equal(reported["result"], OUTCOMES[event], f"result of {event}")
        assert reported["changes"] is not None, f"{event} was not compared"
        expect_equal(reported["messages"], ["installing " + event], f"messages of {event}")


def test_an_archive_cut_off_in_an_event_log_names_it_and_reports_the_rest(env):
    """ZORGetInstallLog writes History.ini last: an archive cut off in an
    event log has lost it, and the events are those whose logs it holds."""
    archive, history, logs = recorded_archive(env)
    last = logs[-1]
    assert last.header_offset < history.header_offset, "History.ini stands ahead of the last event log"
    cut_at = data_offset(archive, last) + last.compress_size // 2
    archive.write_bytes(archive.read_bytes()[:cut_at])

    out = make_report(env, archive, "-json", "r.json", "-o", "r.html")
    document = read_json(env.work / "r.json")
    expect_equal(document["eventCount"], len(EVENTS), "events in the report")
    notes = document["notes"]
    assert any("directory of entries is missing or damaged" in note for note in notes), notes
    assert f"the archive's entry {last.filename} is cut off: what stands of it is read" in notes, notes
    assert any(note.startswith("History.ini is not in the damaged archive") for note in notes), notes
    assert f"Note: the archive's entry {last.filename} is cut off" in out, out
    # The whole logs tell how their events ended; the one cut off can't.
    expect_whole_events(document, logs[:-1], [END_FROM_THE_LOG])
    damaged = event_of(document, COPY, event_of_entry(last))
    expect_equal(damaged["notes"][0], f"the archive's entry {damaged['eventLog']} is damaged: "
                                      "what could be read of it is shown", "first note on the cut-off event")
    expect_equal(damaged["snapshotBefore"], True, "the cut-off event's snapshot before the install")
    expect_equal(damaged["result"], "unknown", "result of the event whose log is cut off")
    # The page, as the browser shows it: the archive's notes above all, the
    # cut-off event with what could be read of it, the others whole.
    dom = rendered_page(env.work / "r.html")
    head = words(dom[dom.index("<body"):dom.index('<nav class="contents">')])
    assert f"Note: the archive's entry {last.filename} is cut off: what stands of it is read." in head, head
    timeline = {cells[2]: cells for _, cells in table_after(dom, MACHINE_TIMELINE)[1:]}
    expect_equal(sorted(timeline), sorted(EVENTS), "events in the machine's timeline")
    damaged_section = event_section(dom, damaged["eventId"])
    expect_equal(words(re.findall(r'<p class="note">(.*?)</p>', damaged_section)[0]),
                 f"Note: the archive's entry {damaged['eventLog']} is damaged: what could be read of it is shown.",
                 "the cut-off event's first note on the page")
    expect_equal(words(under_heading(damaged_section, "What the install changed")[1]),
                 "Not compared: no snapshot after the install.", "what the cut-off event changed, on the page")
    expect_equal(timeline[damaged["eventId"]][8], "no snapshot after the install", "the cut-off event's changes")
    for info in logs[:-1]:
        event = event_of_entry(info)
        section = event_section(dom, event)
        expect_equal([words(note) for note in re.findall(r'<p class="note">(.*?)</p>', section)],
                     [f"Note: {END_FROM_THE_LOG}."], f"notes on {event} on the page")
        assert OUTCOMES[event] in timeline[event][7], f"{event}'s result in the machine's timeline: {timeline[event]}"
        assert f"<li>installing {event}</li>" in section, f"{event}'s message is not on the page:\n{section}"
        assert "not compared" not in section.lower(), f"{event} is not compared on the page:\n{section}"
        assert COUNTS.fullmatch(timeline[event][8]), f"{event}'s changes in the machine's timeline: {timeline[event]}"


def test_an_archive_cut_off_in_history_ini_reports_what_stands_of_it(env):
    archive, history, logs = recorded_archive(env)
    cut_at = data_offset(archive, history) + history.compress_size - 4
    archive.write_bytes(archive.read_bytes()[:cut_at])

    make_report(env, archive, "-json", "r.json")
    document = read_json(env.work / "r.json")
    notes = document["notes"]
    assert "the archive's entry History.ini is cut off: what stands of it is read" in notes, notes
    assert "History.ini is damaged: the events that could be read of it are shown" in notes, notes
    assert document["eventCount"] >= 1, "no event read of what stands of History.ini"
    first = event_of(document, COPY, EVENTS[0])
    expect_equal(first["result"], "succeeded", f"result of {EVENTS[0]}")
    assert first["changes"] is not None, f"{EVENTS[0]} was not compared"


def test_events_past_the_cut_in_history_ini_are_known_by_their_logs(env):
    archive, history, logs = recorded_archive(env)
    cut_at = data_offset(archive, history) + history.compress_size // 4
    assert all(data_offset(archive, log) + log.compress_size <= cut_at for log in logs), \
        "the logs stand behind History.ini in the archive"
    archive.write_bytes(archive.read_bytes()[:cut_at])
    make_report(env, archive, "-json", "r.json")
    document = read_json(env.work / "r.json")
    events = {event["eventId"]: event for copy in document["copies"] for event in copy["events"]}
    expect_equal(sorted(events), sorted(EVENTS), "events of History.ini cut off and of the logs")
    for event in events.values():
        expect_equal((event["snapshotBefore"], event["snapshotAfter"]), (True, True),
                     f"snapshots of {event['eventId']}")


def test_an_archive_whose_history_ini_cant_be_inflated_gives_the_events_of_its_logs(env):
    archive, history, logs = recorded_archive(env)
    data = bytearray(archive.read_bytes())
    start = data_offset(archive, history)
    for at in range(start, start + history.compress_size):
        data[at] ^= 0x5A
    archive.write_bytes(bytes(data))
    make_report(env, archive, "-json", "r.json")
    document = read_json(env.work / "r.json")
    events = [event["eventId"] for copy in document["copies"] for event in copy["events"]]
    expect_equal(sorted(events), sorted(EVENTS), "events of the archive whose History.ini is damaged")
    assert any(note.startswith("History.ini") for note in document["notes"]), document["notes"]


def test_events_of_a_history_ini_damaged_in_their_sections_are_whole_with_their_logs(env):
    """Bytes changed in History.ini's data, early and near its end: what
    inflates before them is read, and each event whose section they cut or
    garble, or that stands past them, has its copy, its log, and its times
    and end as the log's result block gives them."""
    archive, history, logs = recorded_archive(env)
    whole = archive.read_bytes()
    for at in (history.compress_size // 3, history.compress_size - 12):
        data = bytearray(whole)
        start = data_offset(archive, history) + at
        for place in range(start, start + 8):
            data[place] ^= 0x5A
        archive.write_bytes(bytes(data))
        out = make_report(env, archive, "-json", "r.json", "-o", "r.html")
        document = read_json(env.work / "r.json")
        expect_the_events_of_their_logs(document, logs)
        assert "never ended" not in out, out
    # Near the end, the sections in front of the damage are read whole.
    assert "History.ini is damaged: the events that could be read of it are shown" in document["notes"], \
        document["notes"]
    for name in EVENTS[:-1]:
        expect_equal(event_of(document, COPY, name)["notes"], [], f"notes on {name}, read whole in front of the damage")


def expect_the_events_of_their_logs(document, logs):
    events = sorted(event["eventId"] for copy in document["copies"] for event in copy["events"]
                    if GARBLED not in event["notes"])
    expect_equal(events, sorted(EVENTS), "events of the damaged History.ini and of the logs")
    for info in logs:
        event = event_of(document, COPY, event_of_entry(info))
        name = event["eventId"]
        assert event["eventLog"] is not None, f"{name} is not joined with its log"
        expect_equal(event["result"], OUTCOMES[name], f"result of {name}")
        expect_equal((event["snapshotBefore"], event["snapshotAfter"]), (True, True), f"snapshots of {name}")
        expect_equal(event["messages"], ["installing " + name], f"messages of {name}")
        assert re.fullmatch(r"\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d", event["start"] or ""), \
            f"start of {name}: {event['start']!r}"
        expect_equal([(log["name"], log["inSource"]) for log in event["installerLogs"]], [(f"{name}.log", True)],
                     f"installer logs of {name}")


def test_an_install_that_never_ended_is_told_by_its_whole_log_without_history_ini(env):
    """History.ini emptied: an event whose log, read whole, has its snapshot
    before the install and no result block never ended; one whose log ends
    with the block ended as the block says."""
    record(env, "-start", "Done-1", "-Action", "Install")
    record(env, "-end", "Done-1", "-CopyName", COPY, "-Result", "1603")
    record(env, "-start", "Open-1", "-Action", "Repair")
    archive = collect(env, "x.zip")
    with zipfile.ZipFile(archive) as z:
        entries = [(info, z.read(info)) for info in z.infolist() if info.filename != "History.ini"]
    with zipfile.ZipFile(archive, "w", zipfile.ZIP_DEFLATED) as z:
        for info, data in entries:
            z.writestr(info, data)
        z.writestr("History.ini", b"")
    out = make_report(env, archive, "-json", "r.json")
    document = read_json(env.work / "r.json")
    events = {event["eventId"]: event for copy in document["copies"] for event in copy["events"]}
    expect_equal((events["Done-1"]["result"], events["Done-1"]["notes"]), ("failed", [END_FROM_THE_LOG]),
                 "the install that ended")
    expect_equal((events["Open-1"]["result"], events["Open-1"]["notes"]),
                 ("never ended", ["History.ini doesn't hold this event whole: its event log, read whole, has no "
                                  "result block, so the install never ended"]), "the install that never ended")
    assert "| Open-1 | | never ended |" in " ".join(out.split()).replace("|  |", "| |"), out


def test_events_whose_logs_a_history_ini_without_their_sections_lacks_are_known_by_their_logs(env):
    """History.ini emptied, or replaced by text that holds no section of the
    events, in an archive that holds their logs."""
    archive, _, logs = recorded_archive(env)
    with zipfile.ZipFile(archive) as z:
        entries = [(info, z.read(info)) for info in z.infolist() if info.filename != "History.ini"]
    for replaced in (b"", b"garbage\r\nno=section\r\n", b"[History]\r\nCount=3\r\n[Other]\r\nAction=x\r\n"):
        with zipfile.ZipFile(archive, "w", zipfile.ZIP_DEFLATED) as z:
            for info, data in entries:
                z.writestr(info, data)
            z.writestr("History.ini", replaced)
        out = make_report(env, archive, "-json", "r.json")
        document = read_json(env.work / "r.json")
        note = f"History.ini has no section of {len(EVENTS)} events whose logs the archive holds: " \
               "they are known by their logs alone"
        assert note in document["notes"], document["notes"]
        assert f"Note: {note}" in out, out
        expect_whole_events(document, logs, [END_FROM_THE_LOG])


def test_an_entry_whose_bytes_were_changed_is_named_and_the_rest_reported(env):
    archive, _, logs = recorded_archive(env)
    # The first event's log, wherever the archive holds it: the events after
    # it are compared with what could be read of its snapshots.
    hurt = next(info for info in logs if event_of_entry(info) == EVENTS[0])
    whole = [info for info in logs if info is not hurt]
    data = bytearray(archive.read_bytes())
    start = data_offset(archive, hurt)
    for at in range(start + hurt.compress_size // 3, start + hurt.compress_size // 3 + 64):
        data[at] ^= 0x5A
    archive.write_bytes(bytes(data))

    make_report(env, archive, "-json", "r.json", "-o", "r.html")
    document = read_json(env.work / "r.json")
    expect_equal(document["notes"], [], "notes on the archive")
    damaged = event_of(document, COPY, event_of_entry(hurt))
    note = f"the archive's entry {damaged['eventLog']} is damaged: what could be read of it is shown"
    assert note in damaged["notes"], damaged["notes"]
    expect_whole_events(document, whole)
    dom = rendered_page(env.work / "r.html")
    assert f"Note: {note}." in words(event_section(dom, damaged["eventId"])), "the page doesn't name the damaged entry"
    # The whole events are shown whole: no note, and what each install changed
    # compared. What changed since the damaged event's snapshot can't be.
    for info in whole:
        section = event_section(dom, event_of_entry(info))
        _, own_changes = under_heading(section, "What the install changed")
        assert '<p class="note">' not in section and "not compared" not in own_changes.lower(), section


def test_an_installer_log_of_an_archive_cut_off_in_it_is_counted_as_far_as_it_inflates(env):
    """An archive cut off in an installer log that stands behind History.ini:
    the page shows the log's first 16 KB and counts the bytes behind them as
    far as they can be inflated, not as the entry's header declares them."""
    words_of = random.Random(5)
    text = "".join(f"{line:05d} {words_of.choice(['copy', 'set', 'start', 'check'])} "
                   f"{words_of.randrange(10 ** 6)}\r\n" for line in range(4000)).encode()
    history = ("[History]\r\nCount=1\r\n[E1]\r\nAction=Install\r\nCopy_Name=C1\r\nComplete_Flag=TRUE\r\n"
               "Result=0\r\nStart_Time=20240105 10:00:00\r\nEnd_Time=20240105 10:01:00\r\n"
               "Log_File_Name=D:\\logs\\setup.log\r\n"
               "Event_Log_File=C:\\ProgramData\\TAQ\\ZORHistory\\C1\\E1\\ZORInstallEvent.Log\r\n")
    archive = env.work / "cut.zip"
    with zipfile.ZipFile(archive, "w", zipfile.ZIP_DEFLATED) as z:
        z.writestr("History.ini", history)
        z.writestr("C1\\E1\\ZORInstallEvent.Log", "some log\r\n")
        z.writestr("C1\\E1\\setup.log", text)
    with zipfile.ZipFile(archive) as z:
        log = z.getinfo("C1\\E1\\setup.log")
    start = data_offset(archive, log)
    cut_at = start + log.compress_size * 3 // 4
    data = archive.read_bytes()[:cut_at]
    archive.write_bytes(data)
    inflatable = len(zlib.decompressobj(-15).decompress(data[start:]))
    assert SHOWN < inflatable < len(text), (inflatable, len(text))

    make_report(env, archive, "-o", "r.html")
    section = event_section(rendered_page(env.work / "r.html"), "E1")
    counted = re.findall(r"\.\.\. and (\d+) more bytes, not shown", words(section))
    expect_equal(counted, [str(inflatable - SHOWN)], "the bytes of the installer log counted behind its text")


def declare_larger(archive, info, more):
    """The entry's size, in its local header and in the central directory,
    made `more` bytes larger than its deflated data holds."""
    data = bytearray(archive.read_bytes())
    size = (info.file_size + more).to_bytes(4, "little")
    if not info.flag_bits & 0x08:
        data[info.header_offset + 22:info.header_offset + 26] = size
    raw_name = info.orig_filename.encode("utf-8" if info.flag_bits & 0x800 else "cp437")
    at = data.find(b"PK\x01\x02")
    while at != -1:
        name_size = int.from_bytes(data[at + 28:at + 30], "little")
        if data[at + 46:at + 46 + name_size] == raw_name:
            data[at + 24:at + 28] = size
            break
        at = data.find(b"PK\x01\x02", at + 4)
    assert at != -1, f"no central header of {info.filename}"
    archive.write_bytes(bytes(data))


def test_an_entry_whose_deflated_data_ends_before_its_size_is_damaged(env):
    """Damaged deflated data may end as if the entry were whole, short of the
    size that the archive gives it: that is damage, not the whole entry."""
    archive, _, logs = recorded_archive(env)
    hurt = logs[0]
    declare_larger(archive, hurt, 1000)
    make_report(env, archive, "-json", "r.json")
    document = read_json(env.work / "r.json")
    damaged = event_of(document, COPY, event_of_entry(hurt))
    assert f"the archive's entry {damaged['eventLog']} is damaged: what could be read of it is shown" \
        in damaged["notes"], damaged["notes"]
    expect_whole_events(document, logs[1:])


def test_a_file_that_holds_no_entry_at_all_is_still_refused(env):
    junk = env.work / "junk.zip"
    junk.write_bytes(b"PK\x05\x06" + b"\0" * 10)
    code, out, err = run_report(env, junk)
    expect_equal(code, 1, f"exit code over a file that is no archive; stdout:\n{out}")


def test_an_archive_cut_off_before_anything_can_be_read_is_refused_as_cut_off(env):
    archive, _, _ = recorded_archive(env)
    archive.write_bytes(archive.read_bytes()[:200])
    code, out, err = run_report(env, archive.name)
    expect_equal(code, 1, f"exit code over an archive cut at 200 bytes; stdout:\n{out}")
    expect_equal(error_lines(env, err), [f"{archive.name}: the archive is cut off or damaged, and "
                                         "holds neither a History.ini nor an event log that can be read"],
                 "error over an archive cut at 200 bytes")


def test_an_event_whose_log_is_missing_appears_with_what_history_ini_says(env):
    history = profile_bytes([
        ("History", {"Count": "1"}),
        ("Lost-1", {"Event_ID": "Lost-1", "Copy_Name": "LostCopy", "Action": "Upgrade", "Product": "ZOR Server",
                    "Service_Level": "SP2", "Start_Time": "20240105 10:00:00", "End_Time": "20240105 10:02:03",
                    "Complete_Flag": "TRUE", "Result": "1603",
                    "Event_Log_File": "C:\\ProgramData\\TAQ\\ZORHistory\\LostCopy\\Lost-1\\ZORInstallEvent.Log"}),
    ])
    archive = env.work / "lost.zip"
    with zipfile.ZipFile(archive, "w", zipfile.ZIP_DEFLATED) as z:
        z.writestr("History.ini", history)
    out = make_report(env, archive, "-json", "r.json", "-o", "r.html")
    event = event_of(read_json(env.work / "r.json"), "LostCopy", "Lost-1")
    expect_equal((event["action"], event["product"], event["serviceLevel"], event["start"], event["end"],
                  event["result"], event["resultText"], event["durationSeconds"]),
                 ("Upgrade", "ZOR Server", "SP2", "2024-01-05T10:00:00", "2024-01-05T10:02:03", "failed", "1603", 123),
                 "what History.ini says of the event")
    expect_equal(event["notes"], ["the event log is not in the source"], "notes on the event")
    expect_equal((event["eventLog"], event["snapshotBefore"], event["snapshotAfter"], event["changes"]),
                 (None, False, False, None), "the event's log and snapshots")
    assert "LostCopy | Lost-1 | Upgrade | failed (1603) | the event log is not in the source" in out, out
    # The page, as the browser shows it: the event in the timeline with what
    # History.ini says of it, and under its heading, why nothing is compared.
    dom = rendered_page(env.work / "r.html")
    expect_equal(table_after(dom, MACHINE_TIMELINE)[1:],
                 [('<tr class="stands-out">', ["20240105 10:00:00", "LostCopy", "Lost-1", "Upgrade", "ZOR Server",
                                               "20240105 10:02:03", "2 min 03 s", "failed (1603)",
                                               "the event log is not in the source", ""])],
                 "the event in the machine's timeline")
    expect_equal(words(event_section(dom, "Lost-1")),
                 "Lost-1: Upgrade, failed (1603) Note: the event log is not in the source. Event log: not in the "
                 "source What the install changed Not compared: no snapshot before or after the install.",
                 "the event's section")


if __name__ == "__main__":
    main(globals())
