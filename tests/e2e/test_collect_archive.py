"""ZORGetInstallLog -f packs the whole history folder into the zip file: which
entries, in which order, with which names, data, attributes and dates, and the
one console line on the outcome. The stores here have no History.ini, so that
no report is written and the archive holds exactly what the test laid down."""
import os
import random
import struct
import time
import zipfile
import zlib

from e2e_support import main, check_archive, expect_equal

NO_HISTORY = "There is no ZOR Installation History Log ( no ZOR V9 or Later is installed )"

# Local times are checked in a zone away from UTC, without daylight saving.
os.environ["TZ"] = "Asia/Kolkata"
time.tzset()

FILES = {
    "Readme.txt": b"top-level file\r\n",
    "Copy1/Summary.txt": b"copy summary\r\n",
    "Copy1/E1/ZORInstallEvent.Log": b"event log line\r\n" * 500,
    "Copy1/E1/setup.log": b"",
    "E2/ZORInstallEvent.Log": bytes(range(256)) * 20,
    ".hidden": b"never packed",
    ".dotted/inside.txt": b"never packed either",
    "Copy1/.sub/deep.txt": b"never packed",
}
FOLDERS = ["Copy1", "Copy1/E1", "E2", "Empty", ".dotted", "Copy1/.sub"]
EXPECTED_NAMES = sorted([
    "Readme.txt", "Copy1", "Copy1\\Summary.txt", "Copy1\\E1", "Copy1\\E1\\ZORInstallEvent.Log",
    "Copy1\\E1\\setup.log", "E2", "E2\\ZORInstallEvent.Log", "Empty",
])


def success(name):
    return f"The file '{name}' is created successfully"


def failure(name):
    return f" Failed to create file '{name}'"


def lay_down_store(env):
    env.store.mkdir(parents=True)
    for folder in FOLDERS:
        (env.store / folder).mkdir(parents=True, exist_ok=True)
    for name, data in FILES.items():
        (env.store / name).write_bytes(data)


def local_moment(index):
    """A distinct local time for each entry, on an odd second, to see the 2-second rounding."""
    return time.mktime((2021, 3, 14, 9 + index % 12, 7 + index, 1 + 2 * index, 0, 0, -1))


def date_every_entry(env):
    """Gives each entry of the store its own last-write time, folders after their contents."""
    moments = {}
    paths = sorted((p for p in env.store.rglob("*")), key=lambda p: len(p.parts), reverse=True)
    for index, path in enumerate(paths):
        moment = local_moment(index)
        os.utime(path, (moment, moment))
        moments[path.relative_to(env.store).as_posix().replace("/", "\\")] = moment
    return moments


def listing_order(env, folder):
    """A folder's names in the order in which the program's file system lists them: the
    host's own order natively; under Wine, which sorts a folder's names by their
    upper-case form, that order instead."""
    names = os.listdir(folder)
    return sorted(names, key=str.upper) if env.windows else names


def walk_in_listing_order(env, folder, prefix=""):
    """The entries a walk should give, folder before contents, in listing order."""
    names = []
    for name in listing_order(env, folder):
        if name.startswith("."):
            continue
        names.append(prefix + name)
        if (folder / name).is_dir():
            names.extend(walk_in_listing_order(env, folder / name, prefix + name + "\\"))
    return names


def collect(env, name, cwd=None):
    """Runs the tool on the file name; returns (exit code, stdout text) after
    checking that nothing went to the error stream."""
    code, out, err = env.run_full("ZORGetInstallLog", "-f", name, cwd=cwd)
    env.expect_no_error_output(err, f"of -f {name}")
    return code, out


def test_the_store_is_packed_entry_for_entry(env):
    lay_down_store(env)
    code, out = collect(env, "x.zip")
    expect_equal(out, env.lines(success("x.zip")))
    expect_equal(code, 0)
    infos = check_archive(env.work / "x.zip")
    expect_equal(sorted(info.filename for info in infos), EXPECTED_NAMES, "entries")


def test_entries_come_folder_first_then_contents_in_listing_order(env):
    lay_down_store(env)
    collect(env, "x.zip")
    infos = check_archive(env.work / "x.zip")
    expect_equal([info.filename for info in infos], walk_in_listing_order(env, env.store), "order of the walk")


def test_file_entries_hold_the_files_data(env):
    lay_down_store(env)
    collect(env, "x.zip")
    check_archive(env.work / "x.zip")
    with zipfile.ZipFile(env.work / "x.zip") as z:
        for name, data in FILES.items():
            if name.startswith(".") or "/." in name:
                continue
            entry = name.replace("/", "\\")
            expect_equal(z.read(entry), data, entry)
            expect_equal(z.getinfo(entry).compress_type, zipfile.ZIP_DEFLATED, entry)


def deflate_files():
    """Files of installer text, of bytes that don't compress, and of zeros, at and
    around the sizes at which a program might cut its reads, and across many of them."""
    rng = random.Random(9)
    text = b"".join(b"MSI (s) (7C:44) [10:22:%02d:%03d]: Executing op: FileCopy(DestName=zor%d.dll)\r\n"
                    % (n % 60, rng.randrange(1000), rng.randrange(4000)) for n in range(40000))
    noise = rng.randbytes(300000)
    files = {}
    for size in (0, 1, 2047, 2048, 2049, 65535, 65536, 65537, 262145, len(text)):
        files["text-%d.log" % size] = text[:size]
    for size in (2049, 65537, len(noise)):
        files["noise-%d.bin" % size] = noise[:size]
    files["zeros.bin"] = bytes(200003)
    return files


def raw_entry_data(archive_path, info):
    """The bytes that an entry's local header is followed by, as stored."""
    with open(archive_path, "rb") as archive:
        archive.seek(info.header_offset)
        header = archive.read(30)
        name_length, extra_length = struct.unpack("<HH", header[26:30])
        archive.seek(info.header_offset + 30 + name_length + extra_length)
        return archive.read(info.compress_size)


def test_each_entry_is_raw_deflate_at_the_default_level_of_the_whole_file(env):
    files = deflate_files()
    env.store.mkdir(parents=True)
    for name, data in files.items():
        (env.store / name).write_bytes(data)
    collect(env, "x.zip")
    infos = check_archive(env.work / "x.zip")
    expect_equal(sorted(info.filename for info in infos), sorted(files), "entries")
    for info in infos:
        data = files[info.filename]
        # What zlib makes of the whole file at once: level Z_DEFAULT_COMPRESSION,
        # no header (-15 window bits), memory level 8, the default strategy.
        deflater = zlib.compressobj(zlib.Z_DEFAULT_COMPRESSION, zlib.DEFLATED, -15, 8,
                                    zlib.Z_DEFAULT_STRATEGY)
        expected = deflater.compress(data) + deflater.flush()
        expect_equal(info.compress_type, zipfile.ZIP_DEFLATED, info.filename)
        expect_equal(info.file_size, len(data), info.filename)
        if raw_entry_data(env.work / "x.zip", info) != expected:
            raise AssertionError(f"{info.filename}: the stored data is not zlib's raw deflate "
                                 f"of the file ({info.compress_size} bytes stored, {len(expected)} expected)")


def test_folder_entries_have_no_data_and_no_trailing_separator(env):
    lay_down_store(env)
    collect(env, "x.zip")
    infos = {info.filename: info for info in check_archive(env.work / "x.zip")}
    for folder in ("Copy1", "Copy1\\E1", "E2", "Empty"):
        expect_equal(infos[folder].file_size, 0, folder)
        expect_equal(infos[folder].external_attr & 0xFF, 0x10, folder)
    for name in infos:
        assert not name.endswith("\\") and not name.endswith("/"), name
        assert "/" not in name, name


def test_file_entries_carry_the_archive_bit_without_read_only(env):
    lay_down_store(env)
    os.chmod(env.store / "Copy1" / "Summary.txt", 0o444)
    collect(env, "x.zip")
    os.chmod(env.store / "Copy1" / "Summary.txt", 0o644)
    infos = {info.filename: info for info in check_archive(env.work / "x.zip")}
    for name in ("Readme.txt", "Copy1\\Summary.txt", "Copy1\\E1\\setup.log"):
        expect_equal(infos[name].external_attr, 0x20, name)


def test_entries_are_dated_with_the_local_last_write_time(env):
    lay_down_store(env)
    moments = date_every_entry(env)
    collect(env, "x.zip")
    for info in check_archive(env.work / "x.zip"):
        local = time.localtime(moments[info.filename])
        expected = (local.tm_year, local.tm_mon, local.tm_mday, local.tm_hour, local.tm_min,
                    local.tm_sec - local.tm_sec % 2)
        expect_equal(info.date_time, expected, info.filename)


def test_a_relative_name_is_resolved_in_the_current_directory_and_told_as_typed(env):
    lay_down_store(env)
    (env.work / "out").mkdir()
    code, out = collect(env, "out\\x.zip")
    expect_equal(out, env.lines(success("out\\x.zip")))
    expect_equal(code, 0)
    infos = check_archive(env.work / "out" / "x.zip")
    expect_equal(len(infos), len(EXPECTED_NAMES))


def test_a_full_name_is_told_as_typed(env):
    lay_down_store(env)
    name = env.program_path(env.work / "full.zip")
    code, out = collect(env, name, cwd=env.appdata)
    expect_equal(out, env.lines(success(name)))
    expect_equal(code, 0)
    check_archive(env.work / "full.zip")


def test_an_existing_archive_is_replaced_not_extended(env):
    lay_down_store(env)
    with zipfile.ZipFile(env.work / "x.zip", "w") as z:
        z.writestr("old.txt", "from an earlier run")
    code, out = collect(env, "x.zip")
    expect_equal(code, 0)
    infos = check_archive(env.work / "x.zip")
    expect_equal(sorted(info.filename for info in infos), EXPECTED_NAMES)


def test_an_archive_inside_the_history_folder_leaves_itself_out(env):
    lay_down_store(env)
    name = env.store_as_program_sees_it + "\\inside.zip"
    code, out = collect(env, name)
    expect_equal(out, env.lines(success(name)))
    expect_equal(code, 0)
    infos = check_archive(env.store / "inside.zip")
    expect_equal(sorted(info.filename for info in infos), EXPECTED_NAMES)


def test_a_second_archive_inside_the_history_folder_leaves_out_the_one_it_replaces(env):
    lay_down_store(env)
    name = env.store_as_program_sees_it + "\\inside.zip"
    for run in ("first", "second"):
        code, out = collect(env, name)
        expect_equal((code, out), (0, env.lines(success(name))), f"{run} run")
        infos = check_archive(env.store / "inside.zip")
        expect_equal(sorted(info.filename for info in infos), EXPECTED_NAMES, f"{run} archive")


def test_an_empty_history_folder_gives_an_archive_without_entries(env):
    env.store.mkdir(parents=True)
    code, out = collect(env, "x.zip")
    expect_equal(out, env.lines(success("x.zip")))
    expect_equal(code, 0)
    expect_equal(check_archive(env.work / "x.zip"), [])


def test_without_a_history_folder_only_the_no_history_line_is_printed(env):
    code, out = collect(env, "x.zip")
    expect_equal(out, env.lines(NO_HISTORY))
    expect_equal(code, 1)
    expect_equal(os.listdir(env.work), [], "current directory")
    assert not env.store.exists(), "the history folder was made"


def test_an_archive_that_cannot_be_created_gives_the_failure_line(env):
    lay_down_store(env)
    code, out = collect(env, "missing\\x.zip")
    expect_equal(out, env.lines(failure("missing\\x.zip")))
    expect_equal(code, 1)
    expect_equal(os.listdir(env.work), [], "current directory")


main(globals())
