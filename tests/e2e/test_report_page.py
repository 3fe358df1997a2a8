"""The HTML page of ZORHistoryReport as a real browser renders it: Debian's
chromium, headless, reads the page that the report writes over a recorded
install, and the test checks the text it rendered. An installer message that
holds a script is shown as text and never runs."""
import html
import pathlib
import re
import shutil
import subprocess
import tempfile

from e2e_support import main, expect_equal

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
    dom = chromium("--dump-dom", page.as_uri())
    expect_equal(re.findall(r"<title>(.*?)</title>", dom), [TITLE], "title after the page has loaded")
    expect_equal(re.findall(r"<script", dom, re.IGNORECASE), [], "script elements in the rendered page")
    text = rendered_text(dom)
    expect_equal(HOSTILE_MESSAGE in text, True, "the message shown as text")


def test_the_rendered_page_tells_the_machine_and_the_event(env):
    page = write_page(env)
    text = " ".join(rendered_text(chromium("--dump-dom", page.as_uri())).split())
    for expected in ("ZOR installation history report", "Copy C1", "E1: Install, succeeded",
                     "What the install changed", "User Group & User Information:",
                     "ZOR ODBC Driver Info: no change."):
        expect_equal(expected in text, True, f"{expected!r} in the rendered text")


def test_the_page_renders_to_a_picture(env):
    page = write_page(env)
    picture = env.work / "report.png"
    chromium("--hide-scrollbars", "--window-size=1100,1400", f"--screenshot={picture}", page.as_uri())
    expect_equal(picture.read_bytes()[:8], b"\x89PNG\r\n\x1a\n", "the screenshot is a PNG")


if __name__ == "__main__":
    main(globals())
