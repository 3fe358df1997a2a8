"""ZORHistoryReport over entries made to be huge: what one message, one
section and one thing may put on the page and in the JSON form is bounded,
and the report says what was cut and how much, also on the page as the
browser shows it. The archives hold logs of real events with their contents
swollen by hand."""
import re
import zipfile

from e2e_support import expect_equal, main, profile_bytes
from test_report import PROCESS_HEADING, event_of, make_report, products_section, read_json, record, replace_section
from test_report_page import event_section, rendered_page, under_heading, words

STORE = "C:\\ProgramData\\TAQ\\ZORHistory\\"
MESSAGE_LIMIT = 1000
MESSAGE_TEXT_LIMIT = 4096
LIST_LIMIT = 1000
DETAIL_LIMIT = 100
ITEM_TEXT_LIMIT = 1024
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
    # The page, as the browser shows it: each long message to its limit and
    # what was cut of it, and how many more messages there were.
    section = event_section(rendered_page(env.work / "r.html"), "Huge-1")
    messages = re.search(r'<ul class="mono">(.*?)</ul>', section, re.DOTALL).group(1)
    shown = [words(item) for item in re.findall(r"<li>(.*?)</li>", messages, re.DOTALL)]
    expect_equal(len(shown), MESSAGE_LIMIT + 1, "messages on the page, with the line of those left out")
    expect_equal(shown[:3] + shown[-2:],
                 ["A" * MESSAGE_TEXT_LIMIT + " (%d bytes cut)" % (len(huge) - MESSAGE_TEXT_LIMIT),
                  "B" * MESSAGE_TEXT_LIMIT + " (%d bytes cut)" % (5000 - MESSAGE_TEXT_LIMIT), "line 0",
                  "line %d" % (MESSAGE_LIMIT - 3), "... and %d more" % (1502 - MESSAGE_LIMIT)],
                 "the long messages and the count of those left out, on the page")
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
    # The page, as the browser shows it: the list to its limit and how many
    # more there were; the bomb not compared, and why.
    dom = rendered_page(env.work / "r.html")
    _, listed = under_heading(event_section(dom, "Many-1"), "What the install changed")
    summary = re.search(r'<summary>Current Running Processes: (.*?)</summary>\s*<ul class="changes">(.*?)</ul>',
                        listed, re.DOTALL)
    assert summary, f"the added processes are not listed on the page:\n{listed[:2000]}"
    # Other processes of the machine may come and go during the real event.
    expect_equal(summary.group(1).split(", ")[0], "%d added" % (len(processes["added"]) + processes["addedLeftOut"]),
                 "the count of the added processes on the page")
    items = re.findall(r'<li class="([^"]+)">(.*?)</li>', summary.group(2))
    expect_equal(len(items), LIST_LIMIT + 1, "processes on the page, with the line of those left out")
    expect_equal(items[-1], ("cut", "... and %d more added, not shown" % processes["addedLeftOut"]),
                 "the line of the processes left out, on the page")

    bombed = event_of(document, "C1", "Bomb-1")
    expect_equal(bombed["changes"]["processes"], None, "the process list bomb compared")
    expect_equal(bombed["changes"]["services"] is not None, True, "the services behind the bomb compared")
    notes = [note for note in bombed["notes"] if "Current Running Processes" in note]
    expect_equal(len(notes), 1, f"notes on the bomb: {bombed['notes']!r}")
    assert "more than the recorder writes, so it is not compared" in notes[0], notes[0]
    section = words(event_section(dom, "Bomb-1"))
    assert f"Note: {notes[0]}." in section, f"the page doesn't say why the bomb is not compared:\n{section}"
    assert "Current Running Processes: not compared, the section is missing or cut off." in section, section
    assert "Services & Service Status: no change." in section, section


def test_a_huge_thing_and_a_copy_of_many_products_are_cut_and_say_how_much(env):
    """A process whose name is longer than a thing's text may be, and a copy
    that comes with more products than a thing's details may be."""
    lines = real_log(env, "Item-1")
    long_name = "P" * 3000 + ".exe"
    heading = [number for number, line in enumerate(lines) if line == PROCESS_HEADING][1]
    lines.insert(heading + 6, "%-19d%s" % (71000, long_name))
    products = [f"{'ZOR Product %03d' % i:<40}{'{P%03d}' % i:<40}{'9.1.0':<10}{'SL2':<20}{'20240105':<20}"
                for i in range(DETAIL_LIMIT + 20)]
    lines = replace_section(lines, 5, 1, products_section("C1", products))
    archive = archive_of(env, "item.zip", {"Item-1": "\r\n".join(lines).encode("latin-1")})
    make_report(env, archive, "-o", "r.html", "-json", "r.json")
    changes = event_of(read_json(env.work / "r.json"), "C1", "Item-1")["changes"]
    cut = [item for item in changes["processes"]["added"] if item["image"].startswith("PPP")]
    expect_equal([(item["image"], item.get("bytesCut")) for item in cut],
                 [(long_name[:ITEM_TEXT_LIMIT], len(long_name) - ITEM_TEXT_LIMIT)], "the long process")
    copies = changes["zorProducts"]["added"]
    expect_equal([(item["copy"], len(item["details"]), item.get("detailsLeftOut")) for item in copies],
                 [("C1", DETAIL_LIMIT, 20)], "the copy and its products")

    # The page, as the browser shows it.
    _, listed = under_heading(event_section(rendered_page(env.work / "r.html"), "Item-1"), "What the install changed")
    shown = [words(item) for item in re.findall(r'<li class="added">(P+.*?)</li>', listed)]
    expect_equal(shown, [long_name[:ITEM_TEXT_LIMIT] + ": 1 (%d bytes cut)" % (len(long_name) - ITEM_TEXT_LIMIT)],
                 "the long process on the page")
    details = re.search(r'<li class="added">copy C1\s*<ul class="details">(.*?)</ul>', listed, re.DOTALL)
    assert details, f"the copy is not shown with its products:\n{listed}"
    rows = re.findall(r'<li( class="cut")?>(.*?)</li>', details.group(1))
    expect_equal(len(rows), DETAIL_LIMIT + 1, "the copy's products on the page, with the line of those left out")
    expect_equal(words(rows[0][1]), "product ZOR Product 000: version 9.1.0, service level SL2, code {P000}, "
                 "last modified 20240105", "the copy's first product")
    expect_equal(rows[-1], (' class="cut"', "... and 20 more details, not shown"), "the products left out")


if __name__ == "__main__":
    main(globals())
