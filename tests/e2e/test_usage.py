"""ZORGetInstallLog's command line: when it prints the usage text and stops
with exit code 1, and which argument it takes for the file name."""
import os

from e2e_support import main, check_archive, expect_equal

USAGE = (
    "Get and Compress installation history log into a zip file: ",
    "ZORGetInstallLog -f [ZipFileName]",
    " -- ZipFileName : Full Qualified File Name",
    " e.g. ZORGetInstallLog -f d:\\HistoryLog.zip",
)


def run_tool(env, *args):
    """Runs the tool; returns (exit code, stdout text) after checking that
    nothing went to the error stream."""
    code, out, err = env.run_full("ZORGetInstallLog", *args)
    env.expect_no_error_output(err, f"of {args!r}")
    return code, out


def lay_down_store(env):
    """A store with an index, so that a run that wrongly goes on would leave a Summary.txt."""
    env.store.mkdir(parents=True)
    (env.store / "History.ini").write_bytes(b"[History]\r\nCount=0\r\n")
    (env.store / "a.txt").write_bytes(b"a")


def expect_usage_and_nothing_touched(env, *args):
    lay_down_store(env)
    before = (env.store / "History.ini").stat().st_mtime_ns
    code, out = run_tool(env, *args)
    expect_equal(out, env.lines(*USAGE), f"console of {args!r}")
    expect_equal(code, 1, f"exit code of {args!r}")
    expect_equal(sorted(os.listdir(env.store)), ["History.ini", "a.txt"], "store after a usage error")
    expect_equal((env.store / "History.ini").stat().st_mtime_ns, before, "History.ini after a usage error")
    expect_equal(os.listdir(env.work), [], "current directory after a usage error")


def test_no_arguments_print_the_usage_text(env):
    expect_usage_and_nothing_touched(env)


def test_one_argument_prints_the_usage_text(env):
    expect_usage_and_nothing_touched(env, "x.zip")


def test_the_option_alone_prints_the_usage_text(env):
    expect_usage_and_nothing_touched(env, "-f")


def test_the_option_as_last_of_three_words_prints_the_usage_text(env):
    expect_usage_and_nothing_touched(env, "a", "-f")


def test_no_option_prints_the_usage_text(env):
    expect_usage_and_nothing_touched(env, "a", "b")


def test_an_empty_file_name_prints_the_usage_text(env):
    expect_usage_and_nothing_touched(env, "-f", "")


def test_a_similar_option_is_no_option(env):
    expect_usage_and_nothing_touched(env, "-fx", "x.zip")


def test_the_option_in_capitals_names_the_file(env):
    env.store.mkdir(parents=True)
    (env.store / "a.txt").write_bytes(b"a")
    code, out = run_tool(env, "-F", "x.zip")
    expect_equal(out, env.lines("The file 'x.zip' is created successfully"))
    expect_equal(code, 0)
    names = [info.filename for info in check_archive(env.work / "x.zip")]
    expect_equal(names, ["a.txt"])


def expect_only_archive_made(env, name, *args):
    """Runs the tool over an empty store; exactly the archive `name` comes into being."""
    env.store.mkdir(parents=True)
    code, out = run_tool(env, *args)
    expect_equal(out, env.lines(f"The file '{name}' is created successfully"))
    expect_equal(code, 0)
    expect_equal(sorted(os.listdir(env.work)), [name])
    check_archive(env.work / name)


def test_only_the_first_option_counts_and_the_rest_is_ignored(env):
    expect_only_archive_made(env, "x.zip", "a", "-f", "x.zip", "b", "-f", "y.zip")


def test_an_option_behind_the_option_is_the_file_name(env):
    expect_only_archive_made(env, "-f", "-f", "-f")


def test_a_name_without_ending_gets_none(env):
    expect_only_archive_made(env, "x", "-f", "x")


main(globals())
