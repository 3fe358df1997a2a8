"""ZORHistoryReport over entries made to be huge: what one message, one
section and one thing may put on the page and in the JSON form is bounded,
and the report says what was cut and how much. The archives hold logs of
real events with their contents swollen by hand."""
import zipfile

from e2e_support import expect_equal, main, profile_bytes
from test_report import PROCESS_HEADING, event_of, make_report, read_json, record

STORE = "C:\\ProgramData\\TAQ\\ZORHistory\\"
MESSAGE_LIMIT = 1000
MESSAGE_TEXT_LIMIT = 4096
LIST_LIMIT = 1000
SECTION_LINE_LIMIT = 100000


def real_log(env, event):
    """The lines of a real event's log, with a marker message between its snapshots."""
    record(env, "-start", event, "-Action", "Install")
    record(env, "-logmessage", event, "-message", "MARKER-MESSAGE")
    record(env, "-end", event, "-Result", "0")
    return (env.store / event / "ZORInstallEvent.Log").read_bytes().decode("latin-1").split(env.eol)


def with_process_rows(lines, count):
    """The log with `count` more processes in its snapshot after the install."""
    heading = [number for number, line in enumerate(lines) if line == PROCESS_HEADING][1]
    rows = ["%-19d%s" % (70000 + i, "bomb%06d.exe" % i) for i in range(count)]
    return lines[:heading + 6] + rows + lines[heading + 6:]


def archive_of(env, name, logs):
    """An archive of one copy whose events have the given logs, by EventID."""
    sections = [("History", {"Count": str(len(logs))})]
    for event in logs:
        sections.append((event, {"Event_ID": event, "Copy_Name": "C1", "Complete_Flag": "TRUE", "Result": "0",
                                 "Event_Log_File": STORE + "C1\\" + event + "\\ZORInstallEvent.Log"}))
    path = env.work / name
    with zipfile.ZipFile(path, "w", zipfile.ZIP_DEFLATED) as z:
        z.writestr("History.ini", profile_bytes(sections))
        for event, text in logs.items():
            z.writestr("C1\\" + event + "\\ZORInstallEvent.Log", text)
    return path


def test_a_huge_message_is_cut_to_its_limit_and_the_rest_counted(env):
    lines = real_log(env, "Huge-1")
    huge = "A" * 3000000
    many = ["line %d" % i for i in range(1500)]
    swollen = []
    for line in lines:
        swollen += [huge, "B" * 5000] + many if line == "MARKER-MESSAGE" else [line]
    archive = archive_of(env, "huge.zip", {"Huge-1": "\r\n".join(swollen).encode("latin-1")})
    make_report(env, archive, "-o", "r.html", "-json", "r.json")

    event = event_of(read_json(env.work / "r.json"), "C1", "Huge-1")
    expect_equal(len(event["messages"]), MESSAGE_LIMIT, "messages kept")
    expect_equal(event["messagesLeftOut"], 1502 - MESSAGE_LIMIT, "messages left out")
    expect_equal(event["messages"][:2], ["A" * MESSAGE_TEXT_LIMIT, "B" * MESSAGE_TEXT_LIMIT], "the long messages")
    expect_equal(event["messagesCut"], [{"index": 0, "bytesCut": len(huge) - MESSAGE_TEXT_LIMIT},
                                        {"index": 1, "bytesCut": 5000 - MESSAGE_TEXT_LIMIT}], "what was cut")
    assert event["changes"] is not None and event["changes"]["processes"] is not None, \
        "the snapshot after the huge message wasn't compared"
    html = (env.work / "r.html").read_bytes().decode("utf-8")
    assert "(%d bytes cut)" % (len(huge) - MESSAGE_TEXT_LIMIT) in html, "the page doesn't say what was cut"
    assert "... and %d more</li>" % (1502 - MESSAGE_LIMIT) in html, "the page doesn't count the messages left out"
    for output in ("r.html", "r.json"):
        size = (env.work / output).stat().st_size
        assert size < 8000000, f"{output} holds {size} bytes"


def test_a_process_list_bomb_is_listed_to_its_limit_or_not_compared(env):
    lines = real_log(env, "Many-1")
    many = with_process_rows(lines, 3000)
    bomb = with_process_rows(lines, SECTION_LINE_LIMIT + 1)
    archive = archive_of(env, "bomb.zip", {"Many-1": "\r\n".join(many).encode("latin-1"),
                                           "Bomb-1": "\r\n".join(bomb).encode("latin-1")})
    make_report(env, archive, "-o", "r.html", "-json", "r.json")
    document = read_json(env.work / "r.json")

    processes = event_of(document, "C1", "Many-1")["changes"]["processes"]
    bombs = [item for item in processes["added"] if item["image"].startswith("bomb")]
    expect_equal(len(processes["added"]), LIST_LIMIT, "processes listed as added")
    expect_equal(len(bombs) + processes["addedLeftOut"], 3000, "added processes listed and left out")
    html = (env.work / "r.html").read_bytes().decode("utf-8")
    assert "... and %d more added, not shown" % processes["addedLeftOut"] in html, \
        "the page doesn't count the processes left out"

    bombed = event_of(document, "C1", "Bomb-1")
    expect_equal(bombed["changes"]["processes"], None, "the process list bomb compared")
    expect_equal(bombed["changes"]["services"] is not None, True, "the services behind the bomb compared")
    notes = [note for note in bombed["notes"] if "Current Running Processes" in note]
    expect_equal(len(notes), 1, f"notes on the bomb: {bombed['notes']!r}")
    assert "more than the recorder writes, so it is not compared" in notes[0], notes[0]


if __name__ == "__main__":
    main(globals())
