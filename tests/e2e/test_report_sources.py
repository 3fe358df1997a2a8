"""ZORHistoryReport over several archives, as a support engineer gets them
from several machines of one customer: one report, grouped by computer. Two
archives of one machine taken apart merge into one history, in which an event
that both hold is one event, and the later archive tells how an event that
was still running in the first one ended; an archive of another computer is
a machine of its own, even where its EventIDs are the same. An event is
named SOURCE:EventID for -compare, and the page's contents lead to every
machine, copy and event."""
import copy
import json
import pathlib
import re
import zipfile

import jsonschema

from e2e_support import expect_equal, main, skip
from test_report import (JSON_SCHEMA, collect, error_lines, make_report, next_second, read_json, record,
                         run_report)
from test_report_page import rendered_page, rendered_text

COMPUTER_LABEL = "Computer Name       :"
OS_LABEL = "OS                  :"
OTHER_COMPUTER = "OTHERPC"
README = pathlib.Path(__file__).resolve().parents[2] / "README.md"


def record_two_weeks(env, events=("A1", "A2", "A3"), copies=("CopyA", "CopyB"), last_result="0"):
    """week1.zip: A1 of CopyA done, A2 still running; week2.zip: A2 ended as
    CopyA, and A3 of CopyB done (with `last_result`)."""
    first, second, third = events
    record(env, "-start", first, "-Action", "Install")
    record(env, "-end", first, "-CopyName", copies[0], "-Result", "0")
    next_second()
    record(env, "-start", second, "-Action", "Upgrade")
    collect(env, "week1.zip")
    record(env, "-end", second, "-CopyName", copies[0], "-Result", "0")
    next_second()
    record(env, "-start", third, "-Action", "Install")
    record(env, "-end", third, "-CopyName", copies[1], "-Result", last_result)
    collect(env, "week2.zip")


def as_another_computer(env, source, target, logs_of=("",), computer=OTHER_COMPUTER):
    """A copy of the archive whose event logs name another computer: all, or
    those of the events named."""
    with zipfile.ZipFile(env.work / source) as archive, zipfile.ZipFile(env.work / target, "w") as copy:
        for entry in archive.infolist():
            data = archive.read(entry)
            name = entry.filename.replace("\\", "/")
            if any(name.endswith(f"{event}/ZORInstallEvent.Log") for event in logs_of):
                data = re.sub(re.escape(COMPUTER_LABEL.encode()) + rb"[^\r\n]*",
                              (COMPUTER_LABEL + computer).encode(), data)
            copy.writestr(entry, data, compress_type=zipfile.ZIP_DEFLATED)


def machine_with(document, computer):
    found = [machine for machine in document["machines"] if machine["machine"]["computer"] == computer]
    expect_equal(len(found), 1, f"machines of computer {computer!r}")
    return found[0]


def events_of(machine):
    return {event["eventId"]: event for copy in machine["copies"] for event in copy["events"]}


def report_three_archives(env, *args):
    record_two_weeks(env)
    as_another_computer(env, "week1.zip", "other.zip")
    return make_report(env, "week1.zip", "other.zip", "week2.zip", "-o", "r.html", "-json", "r.json", *args)


def test_archives_of_one_machine_merge_and_another_computer_stands_apart(env):
    out = report_three_archives(env)
    document = read_json(env.work / "r.json")
    expect_equal((document["sources"], document["computerCount"]),
                 (["week1.zip", "other.zip", "week2.zip"], 2), "sources and computers of the report")
    here = document["machines"][0]
    expect_equal(here["sources"], ["week1.zip", "week2.zip"], "sources of this machine's history")
    events = events_of(here)
    expect_equal(sorted(events), ["A1", "A2", "A3"], "events of this machine, each once")
    expect_equal((events["A2"]["result"], events["A2"]["copy"], events["A2"]["sources"]),
                 ("succeeded", "CopyA", ["week2.zip", "week1.zip"]),
                 "A2, running in the first archive, as the second tells it")
    expect_equal(events["A1"]["sources"], ["week1.zip", "week2.zip"], "the archives that hold A1")
    expect_equal(events["A3"]["sources"], ["week2.zip"], "the archives that hold A3")
    other = machine_with(document, OTHER_COMPUTER)
    expect_equal(other["sources"], ["other.zip"], "sources of the other computer")
    expect_equal((sorted(events_of(other)), events_of(other)["A2"]["result"]), (["A1", "A2"], "never ended"),
                 "the other computer's events")
    lines = out.splitlines()
    expect_equal(lines[0], "2 computers in 3 sources", "the summary's first line")
    expect_equal([line for line in lines if " copies in " in line],
                 ["3 events of 2 copies in week1.zip, week2.zip", "2 events of 2 copies in other.zip"],
                 "each machine's line of events and sources")
    expect_equal(lines.index(f"Computer {OTHER_COMPUTER}, {other['machine']['os']}") >
                 lines.index("3 events of 2 copies in week1.zip, week2.zip"), True,
                 "the other computer's lines come after this machine's")


def readme_example(first):
    """The indented lines of the README that begin with `first`, without
    their indent: an example of console output."""
    lines = README.read_text(encoding="utf-8").splitlines()
    start = lines.index("    " + first)
    example = []
    for line in lines[start:]:
        if not line.startswith("    "):
            break
        example.append(line[4:])
    return example


def logged(env, log, label):
    """The value of a labelled line of an event log in the store."""
    for line in (env.store / log).read_bytes().decode("latin-1").splitlines():
        if line.startswith(label):
            return line[len(label):]
    raise AssertionError(f"no line {label!r} in {log}")


def test_the_readmes_example_of_several_sources_is_the_reports_own_output(env):
    """The README's lines for two archives of a Linux test machine a day apart
    and a copy of the first that names another computer, as printed for them,
    but for what is this machine's own: its name and system, and the
    processes, which other programs start and end while the test runs (their
    counts, and the comparison's lines of processes that came, went or
    changed in number)."""
    if not env.native:
        skip("the README's example is of the Linux build")
    record_two_weeks(env, ("E1", "E2", "E3"), ("C1", "C2"), last_result="1603")
    as_another_computer(env, "week1.zip", "shop-pc.zip", computer="SHOP-PC")
    computer = logged(env, "C1/E1/ZORInstallEvent.Log", COMPUTER_LABEL)
    system = logged(env, "C1/E1/ZORInstallEvent.Log", OS_LABEL)
    out = make_report(env, "week1.zip", "week2.zip", "shop-pc.zip", "-compare", "week2.zip:E3", "shop-pc.zip:E1")
    example = readme_example("2 computers in 3 sources")
    readme_system = example[1].split(", ", 1)[1]
    printed = [re.sub(r"processes \d+", "processes 0", line)
               .replace(f"Computer {computer}, {system}", f"Computer VM, {readme_system}")
               .replace(f"Computer SHOP-PC, {system}", f"Computer SHOP-PC, {readme_system}")
               .replace(f"computer ~ Computer Name: {computer} -> SHOP-PC", "computer ~ Computer Name: VM -> SHOP-PC")
               for line in out.splitlines() if not re.match(r"processes [-+~] ", line)]
    expect_equal(printed, example, "the console lines against the README's")


def test_the_schema_holds_each_form_to_its_own_fields(env):
    """An event over several sources names its sources, one over one source
    doesn't; the schema refuses either the other way."""
    report_three_archives(env, "-compare", "week2.zip:A3", "other.zip:A1")
    several = read_json(env.work / "r.json")
    make_report(env, "week2.zip", "-json", "one.json")
    one = read_json(env.work / "one.json")
    validator = jsonschema.Draft202012Validator(json.loads(JSON_SCHEMA.read_text(encoding="utf-8")))
    without_sources = copy.deepcopy(several)
    del without_sources["machines"][0]["copies"][0]["events"][0]["sources"]
    without_source = copy.deepcopy(several)
    del without_source["comparison"]["first"]["source"]
    with_sources = copy.deepcopy(one)
    with_sources["copies"][0]["events"][0]["sources"] = ["week2.zip"]
    for name, document in (("an event without its sources", without_sources),
                           ("a compared event without its source", without_source),
                           ("an event of one source with sources", with_sources)):
        assert not validator.is_valid(document), f"the schema takes {name}"


def test_events_of_several_sources_are_compared_by_source_and_eventid(env):
    out = report_three_archives(env, "-compare", "week2.zip:A3", "other.zip:A1")
    title = ("Compared the after snapshot of week2.zip:A3 (copy CopyB) against the after snapshot of "
             "other.zip:A1 (copy CopyA)")
    assert title in out.splitlines(), out
    comparison = read_json(env.work / "r.json")["comparison"]
    expect_equal((comparison["first"], comparison["second"]),
                 ({"eventId": "A3", "copy": "CopyB", "source": "week2.zip", "snapshot": "after"},
                  {"eventId": "A1", "copy": "CopyA", "source": "other.zip", "snapshot": "after"}),
                 "the compared events in the JSON form")
    # The computer reports of the two events' starts: the other names another computer.
    computer = logged(env, "CopyB/A3/ZORInstallEvent.Log", COMPUTER_LABEL)
    line = f"computer ~ Computer Name: {computer} -> {OTHER_COMPUTER}"
    assert line in out.splitlines()[out.splitlines().index(title):], out
    expect_equal(comparison["computerMissing"], None, "what kept the computer reports from being compared")
    expect_equal(comparison["computerChanges"]["changed"],
                 [{"kind": "computerLine", "label": "Computer Name", "before": {"text": computer},
                   "after": {"text": OTHER_COMPUTER}}], "the computer report's changes")
    page = " ".join(rendered_text(rendered_page(env.work / "r.html")).split())
    heading = "What changed in the computer report from the start of week2.zip:A3 to the start of other.zip:A1"
    assert heading in page, page
    assert f"Changed Before After Computer Name {computer} {OTHER_COMPUTER}" in page[page.index(heading):], page
    code, out, err = run_report(env, "week1.zip", "other.zip", "week2.zip", "-compare", "A1", "A3")
    expect_equal((code, error_lines(env, err)), (1, ["A1 names 2 events of the sources: name one as SOURCE:A1"]),
                 "exit code and error of a name that two computers' events have")
    # A1 is read from week1.zip; named by week2.zip, which holds it too, it is
    # shown as it was named.
    out = make_report(env, "week1.zip", "other.zip", "week2.zip", "-compare", "WEEK2.zip:A1", "other.zip:A1",
                      "-json", "r.json")
    title = ("Compared the after snapshot of week2.zip:A1 (copy CopyA) against the after snapshot of "
             "other.zip:A1 (copy CopyA)")
    assert title in out.splitlines(), out
    expect_equal(read_json(env.work / "r.json")["comparison"]["first"]["source"], "week2.zip",
                 "the source of the first compared event in the JSON form")


def test_the_page_leads_to_every_machine_copy_and_event(env):
    report_three_archives(env)
    dom = rendered_page(env.work / "r.html")
    contents = dom[dom.index('<nav class="contents">'):dom.index("</nav>")]
    links = re.findall(r'<a href="#([^"]+)">(.*?)</a>', contents)
    ids = re.findall(r'\sid="([^"]+)"', dom)
    expect_equal(len(ids), len(set(ids)), "anchors named twice on the page")
    for anchor, text in links:
        assert anchor in ids, f"the link to {text} leads to no anchor ({anchor!r})"
    texts = [text for _, text in links]
    assert texts[0].startswith("Computer ") and f"Computer {OTHER_COMPUTER}" in texts, texts
    expect_equal(texts.count("What happened on the machine, in order"), 2, "timelines in the contents")
    expect_equal(texts.count("A1"), 2, "links to the two computers' A1")
    text = " ".join(rendered_text(dom).split())
    assert "Read from week2.zip; also in week1.zip." in text, "A2 doesn't say which archives hold it"
    assert "Sources week1.zip, other.zip, week2.zip" in text, "the page doesn't name its sources"


def without_entry(env, source, target, ending):
    """A copy of the archive without the entry whose name ends so."""
    with zipfile.ZipFile(env.work / source) as archive, zipfile.ZipFile(env.work / target, "w") as copy_:
        for entry in archive.infolist():
            if not entry.filename.replace("\\", "/").endswith(ending):
                copy_.writestr(entry, archive.read(entry), compress_type=zipfile.ZIP_DEFLATED)


def with_entry_damaged(env, source, target, ending):
    """A copy of the archive with bytes inside the deflated data of the entry
    whose name ends so changed."""
    data = bytearray((env.work / source).read_bytes())
    with zipfile.ZipFile(env.work / source) as archive:
        entry = next(e for e in archive.infolist() if e.filename.replace("\\", "/").endswith(ending))
    header = entry.header_offset
    name_size, extra_size = int.from_bytes(data[header + 26:header + 28], "little"), \
        int.from_bytes(data[header + 28:header + 30], "little")
    middle = header + 30 + name_size + extra_size + entry.compress_size // 2
    for at in range(middle, middle + 8):
        data[at] ^= 0x5A
    (env.work / target).write_bytes(bytes(data))


def test_an_event_is_read_from_the_archive_that_holds_its_log_whole(env):
    """An archive that lacks the log yields to one that holds it; one that holds
    it damaged is passed over, and the note says so: the engineer must not
    take that archive for whole."""
    record_two_weeks(env)
    without_entry(env, "week1.zip", "nolog.zip", "CopyA/A1/ZORInstallEvent.Log")
    with_entry_damaged(env, "week1.zip", "bad.zip", "CopyA/A1/ZORInstallEvent.Log")
    for first, notes in (("nolog.zip", []),
                         ("bad.zip", ["bad.zip: the archive's entry {log} is damaged; "
                                      "the event log is read from week2.zip"])):
        make_report(env, first, "week2.zip", "-json", "r.json")
        a1 = events_of(read_json(env.work / "r.json")["machines"][0])["A1"]
        expect_equal((a1["snapshotBefore"], a1["snapshotAfter"], a1["notes"], a1["sources"]),
                     (True, True, [note.format(log=a1["eventLog"]) for note in notes], ["week2.zip", first]),
                     f"A1, whose log {first} lacks whole: read from week2.zip, named first")
    # The archive that holds the event in its History.ini comes first, and it
    # lacks the log: the log is read from the one that has no History.ini.
    without_entry(env, "week2.zip", "noini.zip", "History.ini")
    make_report(env, "nolog.zip", "noini.zip", "-json", "r.json")
    a1 = events_of(read_json(env.work / "r.json")["machines"][0])["A1"]
    expect_equal((a1["snapshotBefore"], a1["snapshotAfter"], a1["notes"]),
                 (True, True, ["nolog.zip: the event log is not in the source; the event log is read from noini.zip"]),
                 "A1, whose log is only in the archive without History.ini")
    # Damaged in both: the second is read as far as it goes, and says so (with
    # what its damage cut off, which depends on the recorded bytes).
    with_entry_damaged(env, "week2.zip", "bad2.zip", "CopyA/A1/ZORInstallEvent.Log")
    make_report(env, "bad.zip", "bad2.zip", "-json", "r.json")
    a1 = events_of(read_json(env.work / "r.json")["machines"][0])["A1"]
    expected = [f"bad2.zip: the archive's entry {a1['eventLog']} is damaged: what could be read of it is shown",
                f"bad.zip: the archive's entry {a1['eventLog']} is damaged; the event log is read from bad2.zip"]
    expect_equal([note for note in a1["notes"] if note in expected], expected, "A1, damaged in both")


def test_a_machine_cloned_and_renamed_is_a_machine_of_its_own_under_its_name(env):
    """A clone of this machine's image, history and all, named SHOP-PC
    before its latest event: its archive shares the events before."""
    record_two_weeks(env)
    as_another_computer(env, "week2.zip", "clone.zip", logs_of=("A3",))
    make_report(env, "week1.zip", "clone.zip", "-json", "r.json")
    document = read_json(env.work / "r.json")
    expect_equal([(machine["machine"]["computer"] == OTHER_COMPUTER, machine["sources"])
                  for machine in document["machines"]],
                 [(False, ["week1.zip"]), (True, ["clone.zip"])], "machines and their sources")


def test_a_source_named_as_given_wins_over_one_of_the_same_file_name(env):
    record_two_weeks(env)
    (env.work / "y").mkdir()
    as_another_computer(env, "week1.zip", "y/week1.zip")
    out = make_report(env, "week1.zip", "y/week1.zip", "-compare", "week1.zip:A1", "y/week1.zip:A1")
    assert ("Compared the after snapshot of week1.zip:A1 (copy CopyA) against the after snapshot of "
            "y/week1.zip:A1 (copy CopyA)") in out.splitlines(), out


def test_an_archive_cut_off_anywhere_adds_no_event_twice(env):
    """week2.zip cut off at many places, each reported with week1.zip: no
    event of the machine stands twice, whatever the cut left of
    History.ini and of the logs that name the computer."""
    record_two_weeks(env)
    whole = (env.work / "week2.zip").read_bytes()
    reported = 0
    for cut in range(len(whole) // 8, len(whole), len(whole) // 8):
        (env.work / "cut.zip").write_bytes(whole[:cut])
        code, out, err = run_report(env, "week1.zip", "cut.zip", "-json", "r.json")
        if code != 0:
            expect_equal(error_lines(env, err), ["cut.zip: the archive is cut off or damaged, and holds neither a "
                                                 "History.ini nor an event log that can be read"],
                         f"error of the archive cut at {cut}")
            continue
        reported += 1
        document = read_json(env.work / "r.json")
        ids = [event["eventId"] for copy_ in document["machines"][0]["copies"] for event in copy_["events"]]
        expect_equal(sorted(ids), sorted(set(ids)), f"events of the machine with the archive cut at {cut}")
        assert {"A1", "A2"} <= set(ids), f"events of week1.zip with the archive cut at {cut}: {ids}"
    assert reported >= 4, f"only {reported} cuts could be reported"


def test_each_source_must_be_readable_and_no_output_overwrites_any(env):
    record_two_weeks(env)
    week2 = (env.work / "week2.zip").read_bytes()
    code, out, err = run_report(env, "week1.zip", "missing.zip", "week2.zip")
    expect_equal(code, 1, "exit code of a report with a source that isn't there")
    expect_equal(len(error_lines(env, err)), 1, f"error lines: {err!r}")
    assert "missing.zip" in error_lines(env, err)[0], err
    code, out, err = run_report(env, "week1.zip", "week2.zip", "-json", "week2.zip")
    expect_equal((code, error_lines(env, err)), (1, ["week2.zip: the report can't be written over its source"]),
                 "exit code and error of an output over the second source")
    expect_equal((env.work / "week2.zip").read_bytes(), week2, "the second source after the refused run")
    code, out, err = run_report(env, "week1.zip", "week2.zip", "./week1.zip")
    expect_equal((code, error_lines(env, err)), (1, ["./week1.zip: the source is given twice"]),
                 "exit code and error of a source given twice")
    assert not (env.work / "report.html").exists(), "a refused run wrote the page"


if __name__ == "__main__":
    main(globals())
