"""zor_event_id, the POSIX shell function that gives a shell installer a new
EventID in the form of ZORRecorder.dll's ZORMakeEventIdAction, run by dash as
/bin/sh runs it on Debian; and an event recorded under its EventID. Natively
only: the function is for Linux installers."""
import pathlib
import re
import subprocess

from e2e_support import expect_equal, main, section_lines, skip

FUNCTION = pathlib.Path(__file__).resolve().parents[2] / "docs" / "examples" / "zor-event-id.sh"


def event_id(*names):
    script = '. "$1"; shift; zor_event_id "$@"'
    result = subprocess.run(["dash", "-c", script, "sh", str(FUNCTION), *names],
                            capture_output=True, text=True, check=True)
    expect_equal(result.stderr, "", "standard error of zor_event_id")
    assert result.stdout.endswith("\n"), result.stdout
    return result.stdout[:-1]


def expect_form(event, name):
    pattern = re.escape(name) + r"-20\d{6}-\d{6}-[0-9a-f]{4}"
    assert re.fullmatch(pattern, event), f"{event!r} is not {pattern}"


def test_the_event_id_joins_the_name_time_and_random_digits(env):
    if not env.native:
        skip("the Linux build only")
    expect_form(event_id("ZORServer"), "ZORServer")


def test_the_name_keeps_letters_digits_dashes_and_underscores_cut_to_16(env):
    if not env.native:
        skip("the Linux build only")
    expect_form(event_id("ZOR Server (9) 'x' $y \"z\""), "ZORServer9xyz")
    expect_form(event_id("ZOR-Server_of_the_north"), "ZOR-Server_of_th")


def test_the_first_name_that_keeps_a_character_counts_else_zor(env):
    if not env.native:
        skip("the Linux build only")
    expect_form(event_id("", "()", "ZOR Server"), "ZORServer")
    expect_form(event_id(), "ZOR")


def test_ids_made_in_one_second_differ(env):
    if not env.native:
        skip("the Linux build only")
    ids = {event_id("Z") for _ in range(6)}
    assert len(ids) > 1, f"six EventIDs alike: {ids}"


def test_an_event_recorded_under_the_id_is_whole(env):
    if not env.native:
        skip("the Linux build only")
    event = event_id("ZORServer")
    for options in (["-start", event, "-Action", "Install"],
                    ["-end", event, "-CopyName", "ZORCopy1", "-Result", "Success"]):
        expect_equal(env.run("ZORRecordEvent", *options), (0, ""), f"{options[0]} {event}")
    keys = section_lines(env, event)
    assert "Complete_Flag=TRUE" in keys and "Result=Success" in keys, keys


if __name__ == "__main__":
    main(globals())
