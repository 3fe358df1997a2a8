"""ZORHistoryReport reads the history's texts in the code page that wrote
them: UTF-8 for an archive of the Linux build, whose Event_Log_File paths
begin with "/"; the Windows system's ANSI code page for any other,
Windows-1252 unless -codepage names another. Control and escape bytes of
the history never reach the console or the page raw."""
import zipfile

from e2e_support import expect_equal, main, profile_bytes, skip
from test_report import event_of, make_report, read_json, record, collect, run_report
from test_report_page import rendered_page, words

WINDOWS_LOG = "C:\\ProgramData\\TAQ\\ZORHistory\\C1\\E1\\ZORInstallEvent.Log"
LINUX_LOG = "/var/lib/TAQ/ZORHistory/C1/E1/ZORInstallEvent.Log"


def archive_with_product(env, product_bytes, event_log_file):
    """An archive whose one event has this product name, in bytes, and no log."""
    history = profile_bytes([("History", {"Count": "1"})])
    history += b"[E1]\r\nCopy_Name=C1\r\nComplete_Flag=TRUE\r\nResult=0\r\nProduct=" + product_bytes + \
        b"\r\nEvent_Log_File=" + event_log_file.encode("ascii") + b"\r\n"
    archive = env.work / "text.zip"
    with zipfile.ZipFile(archive, "w", zipfile.ZIP_DEFLATED) as z:
        z.writestr("History.ini", history)
    return archive


def product_and_encoding(env, *options):
    make_report(env, "text.zip", "-json", "r.json", *options)
    document = read_json(env.work / "r.json")
    return event_of(document, "C1", "E1")["product"], document["textEncoding"]


def test_a_history_written_on_windows_reads_in_windows_1252_or_the_code_page_named(env):
    archive_with_product(env, b"Caf\xe9 \x80 \xc0", WINDOWS_LOG)
    expect_equal(product_and_encoding(env), ("Caf\u00e9 \u20ac \u00c0", "windows-1252"), "read as Windows-1252")
    expect_equal(product_and_encoding(env, "-codepage", "1251"), ("Caf\u0439 \u0402 \u0410", "windows-1251"),
                 "read as Windows-1251")
    expect_equal(product_and_encoding(env, "-codepage", "1250"), ("Caf\u00e9 \u20ac \u0154", "windows-1250"),
                 "read as Windows-1250")
    expect_equal(product_and_encoding(env, "-codepage", "437"), ("Caf\u0398 \u00c7 \u2514", "ibm437"),
                 "read as code page 437")


def test_a_history_written_on_linux_reads_in_utf8_whatever_the_code_page(env):
    archive_with_product(env, "Caf\u00e9 \u20ac".encode("utf-8") + b" \xe9", LINUX_LOG)
    expect_equal(product_and_encoding(env), ("Caf\u00e9 \u20ac \ufffd", "utf-8"), "read as UTF-8")
    expect_equal(product_and_encoding(env, "-codepage", "1251"), ("Caf\u00e9 \u20ac \ufffd", "utf-8"),
                 "read as UTF-8 with -codepage 1251")


def test_a_message_recorded_by_the_linux_build_reads_as_written(env):
    if not env.native:
        skip("the Linux build only")
    message = "Gr\u00fc\u00dfe aus K\u00f6ln \u2013 \u20ac"
    record(env, "-start", "Txt-1", "-Action", "Install")
    record(env, "-logmessage", "Txt-1", "-message", message)
    record(env, "-end", "Txt-1", "-CopyName", "TxtCopy", "-Result", "0")
    collect(env, "x.zip")
    out = make_report(env, "x.zip", "-json", "r.json", "-o", "r.html")
    event = event_of(read_json(env.work / "r.json"), "TxtCopy", "Txt-1")
    expect_equal(event["messages"], [message], "the message as written")
    assert message in (env.work / "r.html").read_bytes().decode("utf-8"), "the page doesn't show the message"
    assert "TxtCopy | Txt-1 | Install | succeeded" in out, out


def test_an_unknown_code_page_is_a_usage_error(env):
    archive_with_product(env, b"x", WINDOWS_LOG)
    code, out, err = run_report(env, "text.zip", "-codepage", "932")
    expect_equal(code, 2, "exit code of -codepage 932")
    assert "the option -codepage needs one of the code pages 1252, 1250, 1251 and 437" in err, err
    assert "-codepage N" in err, err


def test_control_and_escape_bytes_reach_neither_the_console_nor_the_page_raw(env):
    """A terminal's escapes and a bell in the copy's name and the action show
    as "?" on the console and as U+FFFD on the page, as the browser shows it."""
    history = profile_bytes([("History", {"Count": "1"})])
    history += (b"[E1]\r\nCopy_Name=C\x1b[2J1\x07\r\nComplete_Flag=TRUE\r\nResult=0\r\n"
                b"Action=In\x1b]0;x\x07stall\r\nEvent_Log_File=" + WINDOWS_LOG.encode("ascii") + b"\r\n")
    with zipfile.ZipFile(env.work / "text.zip", "w", zipfile.ZIP_DEFLATED) as z:
        z.writestr("History.ini", history)
    out = make_report(env, "text.zip", "-o", "r.html")
    raw = sorted({c for c in out if ord(c) < 0x20 and c not in "\r\n"})
    expect_equal(raw, [], "control characters on the console")
    assert "C?[2J1? | E1 | In?]0;x?stall | succeeded" in out, out
    page = words(rendered_page(env.work / "r.html"))
    assert "Copy C\ufffd[2J1\ufffd" in page and "E1: In\ufffd]0;x\ufffdstall" in page, page


if __name__ == "__main__":
    main(globals())
