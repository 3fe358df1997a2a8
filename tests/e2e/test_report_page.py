"""The HTML page of ZORHistoryReport as a real browser renders it: Debian's
chromium, headless, reads the page that the report writes over recorded
installs, and the test checks the text it rendered. An installer message that
holds a script is shown as text and never runs; the machine's timeline shows
every event of every copy in order, with its changes per section, and a failed
event and drift stand out by a word and by colour."""
import html
import pathlib
import re
import shutil
import subprocess
import tempfile

from e2e_support import Probe, main, expect_equal
from test_report import next_second

HOSTILE_MESSAGE = "<script>document.title='x'</script>"
TITLE = "ZOR installation history report"


def chromium(*args):
    """Runs headless chromium with a profile of its own; returns its stdout."""
    with tempfile.TemporaryDirectory() as profile:
        result = subprocess.run(
            ["chromium", "--headless", "--no-sandbox", "--disable-gpu", "--no-first-run",
             f"--user-data-dir={profile}", *args],
            capture_output=True, text=True, timeout=180)
    if result.returncode != 0:
        raise AssertionError(f"chromium failed ({result.returncode}): {result.stderr[-2000:]}")
    return result.stdout


def record_install(env):
    """One install with a hostile message, collected into an archive."""
    for args in (("-start", "E1", "-Action", "Install", "-Product", "ZOR 9.1"),
                 ("-logmessage", "E1", "-message", HOSTILE_MESSAGE),
                 ("-end", "E1", "-CopyName", "C1", "-Result", "Success")):
        code, _ = env.run("ZORRecordEvent", *args)
        expect_equal(code, 0, f"exit code of the recorder's {args[0]}")
    code, _ = env.run("ZORGetInstallLog", "-f", env.program_path(env.work / "x.zip"))
    expect_equal(code, 0, "exit code of the archive run")


def write_page(env):
    record_install(env)
    page = env.work / "report.html"
    code, _, err = env.run_full("ZORHistoryReport", env.program_path(env.work / "x.zip"), "-o",
                                env.program_path(page))
    expect_equal(code, 0, f"exit code of the report (stderr {err!r})")
    return page


def rendered_text(dom):
    """The text of the body as the browser holds it, tags taken out."""
    body = dom[dom.index("<body"):]
    return html.unescape(re.sub(r"<[^>]*>", " ", body))


def test_a_message_with_a_script_is_shown_as_text_and_the_title_stays(env):
    page = write_page(env)
    dom = rendered_page(page)
    expect_equal(re.findall(r"<title>(.*?)</title>", dom), [TITLE], "title after the page has loaded")
    expect_equal(re.findall(r"<script", dom, re.IGNORECASE), [], "script elements in the rendered page")
    text = rendered_text(dom)
    expect_equal(HOSTILE_MESSAGE in text, True, "the message shown as text")


def test_the_rendered_page_tells_the_machine_and_the_event(env):
    page = write_page(env)
    text = " ".join(rendered_text(rendered_page(page)).split())
    for expected in ("ZOR installation history report", "Copy C1", "E1: Install, succeeded",
                     "What the install changed", "User Group & User Information:",
                     "ZOR ODBC Driver Info: no change."):
        expect_equal(expected in text, True, f"{expected!r} in the rendered text")


def test_the_page_renders_to_a_picture(env):
    page = write_page(env)
    picture = env.work / "report.png"
    chromium("--hide-scrollbars", "--window-size=1100,1400", f"--screenshot={picture}", page.as_uri())
    expect_equal(picture.read_bytes()[:8], b"\x89PNG\r\n\x1a\n", "the screenshot is a PNG")


def record_event(env, event, copy, result):
    for args in (("-start", event, "-Action", "Install"), ("-end", event, "-CopyName", copy, "-Result", result)):
        code, _ = env.run("ZORRecordEvent", *args)
        expect_equal(code, 0, f"exit code of the recorder's {args[0]} {event}")


def record_three_events_with_drift(env):
    """A1 of copy A; then, outside any install, a process starts; B1 of copy
    B fails; A2 of copy A follows."""
    record_event(env, "A1", "CopyA", "0")
    next_second()
    with Probe(env) as probe:
        record_event(env, "B1", "CopyB", "1603")
        next_second()
        record_event(env, "A2", "CopyA", "0")
    code, _ = env.run("ZORGetInstallLog", "-f", env.program_path(env.work / "x.zip"))
    expect_equal(code, 0, "exit code of the archive run")
    return probe


def rendered_dom(env):
    page = env.work / "report.html"
    code, _, err = env.run_full("ZORHistoryReport", env.program_path(env.work / "x.zip"), "-o",
                                env.program_path(page))
    expect_equal(code, 0, f"exit code of the report (stderr {err!r})")
    return rendered_page(page)


def table_after(dom, heading):
    """The rows of the first table behind the heading: each row's tag and its cells' texts."""
    table = dom[dom.index(heading):]
    table = table[table.index("<table"):table.index("</table>")]
    rows = []
    for row in re.findall(r"(<tr[^>]*>)(.*?)</tr>", table, re.DOTALL):
        cells = [" ".join(html.unescape(re.sub(r"<[^>]*>", "", cell)).split())
                 for cell in re.findall(r"<t[dh][^>]*>(.*?)</t[dh]>", row[1], re.DOTALL)]
        rows.append((row[0], cells))
    return rows


def rendered_page(path):
    """The page that the report wrote to `path`, as the browser holds it once loaded."""
    return chromium("--dump-dom", pathlib.Path(path).as_uri())


def words(part):
    """The text of a part of the rendered page as it reads: the tags of text
    within a line taken out, every other tag a blank, one blank between words."""
    inline = re.sub(r"</?(?:span|a|code)\b[^>]*>", "", part)
    return " ".join(html.unescape(re.sub(r"<[^>]*>", " ", inline)).split())


def event_section(dom, event_id):
    """The one section of the rendered page on this event, from its heading to its end."""
    sections = [section for section in re.findall(r'<section class="event"[^>]*>.*?</section>', dom, re.DOTALL)
                if re.search(r"<h3>" + re.escape(html.escape(event_id, quote=False)) + ":", section)]
    expect_equal(len(sections), 1, f"sections of {event_id} on the page")
    return sections[0]


def under_heading(section, begins):
    """The h4 heading of an event's section whose text begins with `begins`,
    and what stands below it up to the next one: (heading, below), as markup."""
    for match in re.finditer(r"<h4>(.*?)</h4>", section, re.DOTALL):
        if words(match.group(1)).startswith(begins):
            following = section.find("<h4>", match.end())
            return match.group(1), section[match.end():following if following != -1 else len(section)]
    raise AssertionError(f"no heading that begins with {begins!r} in:\n{section}")


MACHINE_TIMELINE = "What happened on the machine, in order"
COUNTS = re.compile(r"users \d+ software \d+ processes \d+ services \d+ zorProducts \d+ odbcDrivers \d+")


def test_the_machines_timeline_shows_every_copys_events_in_order_with_their_changes(env):
    record_three_events_with_drift(env)
    rows = table_after(rendered_dom(env), MACHINE_TIMELINE)
    header, events = rows[0][1], [cells for _, cells in rows[1:]]
    expect_equal(header, ["Start", "Copy", "Event", "Action", "Product", "End", "Duration", "Result",
                          "Changes by the install", "Drift before it"], "columns of the machine's timeline")
    expect_equal([(cells[1], cells[2]) for cells in events], [("CopyA", "A1"), ("CopyB", "B1"), ("CopyA", "A2")],
                 "copies and events in the order of their starts")
    for cells in events:
        assert COUNTS.fullmatch(cells[8]), f"changes per section of {cells[2]}: {cells[8]!r}"


def test_a_failed_event_and_drift_stand_out_by_a_word_and_by_colour(env):
    probe = record_three_events_with_drift(env)
    dom = rendered_dom(env)
    rows = {cells[2]: (tag, cells) for tag, cells in table_after(dom, MACHINE_TIMELINE)[1:]}
    failed_tag, failed = rows["B1"]
    expect_equal((failed[7], failed_tag), ("failed (1603)", '<tr class="stands-out">'), "B1's result and row")
    assert re.fullmatch(r"drift: (1 change|[2-9]\d* changes|1\d+ changes)", failed[9]), \
        f"drift before B1: {failed[9]!r}"
    # The machine's first event has nothing before it; other processes of
    # the machine may come and go between any two later ones.
    expect_equal((rows["A1"][0], rows["A1"][1][7], rows["A1"][1][9]), ("<tr>", "succeeded", ""), "A1's row")
    assert '<td class="failed">failed (1603)</td>' in dom, "the failed result has no colour of its own"
    assert '<span class="drift">drift</span>' in dom, "the drift has no colour of its own"
    for rule in ("tr.stands-out td { background:", ".failed { color: #a00;", ".drift { color: #a00;"):
        assert rule in dom, f"the page's style lacks {rule!r}"
    text = " ".join(rendered_text(dom).split())
    assert f"{probe.name}: 1" in text, "the process that started outside any install is not on the page"


LOG_TEXT_LIMIT = 16 * 1024
FAILED_MESSAGES = [f"step {number} of the install" for number in range(1, 13)]


def record_a_failed_install_with_its_log(env, log_bytes):
    """F1 of copy C1 fails with twelve messages and its installer's log; G1 of
    copy C2 follows."""
    log = env.work / "setup.log"
    log.write_bytes(log_bytes)
    recorded = [("-start", "F1", "-Action", "Install", "-l", env.program_path(log))]
    recorded += [("-logmessage", "F1", "-message", message) for message in FAILED_MESSAGES]
    recorded += [("-end", "F1", "-CopyName", "C1", "-Result", "1603")]
    for args in recorded:
        code, _ = env.run("ZORRecordEvent", *args)
        expect_equal(code, 0, f"exit code of the recorder's {args[0]}")
    next_second()
    record_event(env, "G1", "C2", "0")
    code, _ = env.run("ZORGetInstallLog", "-f", env.program_path(env.work / "x.zip"))
    expect_equal(code, 0, "exit code of the archive run")


def test_the_contents_lead_to_every_copy_and_event(env):
    record_a_failed_install_with_its_log(env, b"setup log\n")
    dom = rendered_dom(env)
    contents = dom[dom.index('<nav class="contents">'):dom.index("</nav>")]
    links = re.findall(r'<a href="#([^"]+)">(.*?)</a>', contents)
    expect_equal([text for _, text in links],
                 ["What happened on the machine, in order", "Copy C1", "F1", "Copy C2", "G1"],
                 "the links of the contents")
    ids = set(re.findall(r'\sid="([^"]+)"', dom))
    for anchor, text in links:
        assert anchor in ids, f"the link to {text} leads to no anchor ({anchor!r})"
    text = " ".join(rendered_text("<body>" + contents).split())
    assert "F1 : Install, failed (1603)" in text, text
    timeline = dom[dom.index(MACHINE_TIMELINE):]
    for anchor, event in links[2::2]:
        assert f'<a href="#{anchor}">{event}</a>' in timeline, f"the machine's timeline doesn't link {event}"


def test_a_failed_installs_messages_stand_open(env):
    record_a_failed_install_with_its_log(env, b"setup log\n")
    dom = rendered_dom(env)
    opened = re.search(r'<details open="">\s*<summary>Messages \(12\)</summary>(.*?)</details>', dom, re.DOTALL)
    assert opened, "the failed install's messages are folded"
    expect_equal(re.findall(r"<li>(.*?)</li>", opened.group(1)), FAILED_MESSAGES, "the failed install's messages")


def test_the_installer_log_is_named_whole_and_its_text_is_on_the_page(env):
    record_a_failed_install_with_its_log(env, b"MSI (s) (7C:40) Product: ZOR Server -- Installation failed.\r\n"
                                              b"<error code=1603>\r\n")
    dom = rendered_dom(env)
    text = " ".join(rendered_text(dom).split())
    staged = env.store_as_program_sees_it + "\\C1\\F1\\setup.log"
    assert f"installer log: {staged} , in the source as C1\\F1\\setup.log" in text, text
    folded = re.search(r'<details>\s*<summary>Text of setup.log</summary>\s*<pre class="log">(.*?)</pre>', dom,
                       re.DOTALL)
    assert folded, "the installer log's text is not folded below it"
    expect_equal(html.unescape(folded.group(1)),
                 "MSI (s) (7C:40) Product: ZOR Server -- Installation failed.\n<error code=1603>\n",
                 "the installer log's text")


def test_an_installer_log_past_its_limit_is_cut_and_says_how_much(env):
    record_a_failed_install_with_its_log(env, b"x" * (LOG_TEXT_LIMIT + 100))
    dom = rendered_dom(env)
    folded = re.search(r'<pre class="log">(x*)\n</pre>\s*<p class="cut">(.*?)</p>', dom)
    assert folded, "the cut installer log doesn't say what was cut"
    expect_equal((len(folded.group(1)), folded.group(2)), (LOG_TEXT_LIMIT, "... and 100 more bytes, not shown"),
                 "the installer log's text and what was cut")


if __name__ == "__main__":
    main(globals())
