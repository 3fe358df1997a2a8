"""ZORRecordEvent's own voice: the usage text on the standard error, with exit
code 2, for no arguments, a request for help, or options that don't suffice;
silence otherwise. And the exit codes that an installer author reads: 0 also
when the event folder can't be made (the call goes on), 1 when the store
can't be set up."""
import os

from e2e_support import expect_equal, main, section_lines

USAGE_FIRST = "Records one installation event in the ZOR installation history:"
USAGE_LAST = "2 this text (no -start, -end or -logmessage, or an empty EventID)."


def run(env, *args):
    return env.run_full("ZORRecordEvent", *args)


def expect_usage(env, args, store_set_up):
    code, out, err = run(env, *args)
    expect_equal((code, out), (2, ""), f"exit code and standard output of {args!r}")
    lines = err.replace("\r\n", "\n").split("\n")
    # Under Wine the stream may carry Wine's own lines before the program's.
    assert USAGE_FIRST in lines and lines[-2:] == [USAGE_LAST, ""], f"usage of {args!r}: {err!r}"
    if env.native:
        expect_equal(lines[0], USAGE_FIRST, f"first line of the error stream of {args!r}")
    expect_equal(env.store.exists(), store_set_up, f"store set up after {args!r}")


def test_no_arguments_print_the_usage_and_touch_no_store(env):
    expect_usage(env, [], store_set_up=False)


def test_a_request_for_help_prints_the_usage_and_touches_no_store(env):
    for request in ("-h", "-?", "--help", "/?"):
        expect_usage(env, [request], store_set_up=False)


def test_options_that_dont_suffice_print_the_usage_and_record_nothing(env):
    for args in (["-strat", "E1"], ["-start", ""], ["-Product", "P"]):
        expect_usage(env, args, store_set_up=True)
    expect_equal(section_lines(env, "History"), ["Count=0"], "section History")


def test_a_call_that_records_prints_nothing(env):
    for args in (["-start", "E1", "-h", "x"], ["-logmessage", "E1", "-message", "m"],
                 ["-end", "E1", "-Result", "Success"]):
        code, out, err = run(env, *args)
        expect_equal((code, out), (0, ""), f"exit code and standard output of {args!r}")
        env.expect_no_error_output(err, f"of {args!r}")
    expect_equal(section_lines(env, "E1")[-1], "Result=Success", "last key of the event")


def test_an_event_folder_that_cant_be_made_is_told_and_exits_0(env):
    # A file where the event's folder would go: the folder can't be made, the
    # section is written all the same.
    run(env, "-start", "E0")
    (env.store / "E1").write_bytes(b"in the way")
    code, out, err = run(env, "-start", "E1")
    expect_equal((code, out), (0, " Failed to create path:" + env.store_as_program_sees_it + "\\E1"),
                 "exit code and standard output")
    env.expect_no_error_output(err)
    expect_equal(section_lines(env, "History"), ["Count=2"], "section History")
    expect_equal(section_lines(env, "E1")[0], "Event_ID=E1", "first key of the event")


def test_a_store_that_cant_be_set_up_exits_1(env):
    # A file in place of the history folder's parent.
    env.store.parent.parent.mkdir(parents=True, exist_ok=True)
    env.store.parent.write_bytes(b"in the way")
    try:
        code, out, err = run(env, "-start", "E1")
    finally:
        os.unlink(env.store.parent)
    expect_equal(code, 1, "exit code")
    assert out.endswith("Initialiation Failed:" + env.eol), f"standard output {out!r}"
    env.expect_no_error_output(err)


if __name__ == "__main__":
    main(globals())
