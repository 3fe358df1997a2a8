"""EventIDs and copy names that would lead out of the history folder: a ".."
component, a leading separator or a drive. The recorder refuses the event
folder as one it can't make (" Failed to create path:"), writes no log and
hands nothing over; the collection stages none of the event's files and
writes no copy report for it; the section in History.ini is written all the
same, and an honest event beside it is recorded and collected whole. Every
build alike: "\\" and "/" both separate for this test."""
import shutil
import zipfile

from e2e_support import main, check_archive, expect_equal, profile_bytes, section_lines

FAILED = " Failed to create path:"


def record(env, *options):
    return env.run("ZORRecordEvent", *options)


def collect(env, name="x.zip"):
    code, output = env.run("ZORGetInstallLog", "-f", name)
    expect_equal((code, output), (0, f"The file '{name}' is created successfully" + env.eol),
                 "collection run")
    return env.work / name


def outside_places(env):
    """Where the climbing names below would lead, on the host: beside TAQ, and
    in TAQ."""
    return env.appdata, env.appdata / "TAQ"


def record_honest_event(env):
    log = env.work / "honest.log"
    log.write_bytes(b"the honest installer's log\n")
    for options in (["-start", "HONEST", "-l", env.program_path(log).replace("/", "\\")],
                    ["-end", "HONEST", "-CopyName", "GOOD", "-Result", "Success"]):
        expect_equal(record(env, *options), (0, ""), f"honest {options[0]}")


def expect_honest_event_collected(env, archive):
    folder = env.store / "GOOD" / "HONEST"
    expect_equal(sorted(p.name for p in folder.iterdir()), ["ZORInstallEvent.Log", "honest.log"],
                 "honest event folder")
    with zipfile.ZipFile(archive) as z:
        for name in ("ZORInstallEvent.Log", "honest.log"):
            expect_equal(z.read(f"GOOD\\HONEST\\{name}"), (folder / name).read_bytes(), f"archived {name}")


CLIMBING_IDS = {
    # EventID: the host path that the event folder would have been
    "..\\..\\zor-climb-1": lambda env: outside_places(env)[0] / "zor-climb-1",
    "../../zor-climb-2": lambda env: outside_places(env)[0] / "zor-climb-2",
    "..": lambda env: outside_places(env)[1] / "ZORInstallEvent.Log",
    "x\\..\\..\\zor-climb-3": lambda env: outside_places(env)[1] / "zor-climb-3",
    # A leading separator or a drive is refused even where the system would
    # take the name below the history folder.
    "\\zor-climb-4": lambda env: env.store / "zor-climb-4",
    "/zor-climb-5": lambda env: env.store / "zor-climb-5",
    "c:zor-climb-6": lambda env: env.store / "c:zor-climb-6",
}


def remove_outside_places(env):
    for place in CLIMBING_IDS.values():
        path = place(env)
        if path.is_dir():
            shutil.rmtree(path, ignore_errors=True)
        elif path.exists():
            path.unlink()


def test_event_ids_that_climb_out_are_refused_as_paths_that_cant_be_made(env):
    remove_outside_places(env)
    try:
        record_honest_event(env)
        for event_id, place in CLIMBING_IDS.items():
            code, output = record(env, "-start", event_id, "-Product", "P")
            expect_equal((code, output), (0, FAILED + env.store_as_program_sees_it + "\\" + event_id),
                         f"-start {event_id}")
            for options in (["-logmessage", event_id, "-message", "m"],
                            ["-end", event_id, "-CopyName", "C9", "-Result", "0"]):
                expect_equal(record(env, *options), (0, ""), f"{options[0]} {event_id}")
            assert not place(env).exists(), f"{event_id} wrote {place(env)}"
            assert f"Event_ID={event_id}" in section_lines(env, event_id), f"section of {event_id}"
        archive = collect(env)
        for event_id, place in CLIMBING_IDS.items():
            assert not place(env).exists(), f"the collection wrote {place(env)}"
        expect_honest_event_collected(env, archive)
    finally:
        remove_outside_places(env)


def test_a_copy_name_that_climbs_out_hands_nothing_over(env):
    outside = env.appdata / "zor-climb-copy"
    shutil.rmtree(outside, ignore_errors=True)
    try:
        record_honest_event(env)
        expect_equal(record(env, "-start", "E2"), (0, ""), "-start E2")
        expect_equal(record(env, "-end", "E2", "-CopyName", "..\\..\\zor-climb-copy"), (0, ""), "-end E2")
        assert not outside.exists(), "the copy folder was made outside the history folder"
        assert (env.store / "E2" / "ZORInstallEvent.Log").is_file(), "the event left its folder"
        archive = collect(env)
        assert not outside.exists(), "the collection wrote outside the history folder"
        assert "E2\\ZORInstallEvent.Log" in [i.filename for i in check_archive(archive)]
        expect_honest_event_collected(env, archive)
    finally:
        shutil.rmtree(outside, ignore_errors=True)


def test_collection_stages_and_reports_nothing_outside_the_history_folder(env):
    """Folders that a neighbour made beside the store, named by climbing names
    in History.ini: no staged copy and no copy report lands in them."""
    planted = {name: env.appdata / name for name in ("zor-sum", "zor-stage", "zor-id")}
    for folder in planted.values():
        shutil.rmtree(folder, ignore_errors=True)
        folder.mkdir(parents=True)
    (planted["zor-stage"] / "E3").mkdir()
    log = env.work / "setup.log"
    log.write_bytes(b"an installer's log\n")
    log_key = env.program_path(log).replace("/", "\\")
    try:
        record_honest_event(env)
        ini = env.store / "History.ini"
        ini.write_bytes(ini.read_bytes() + profile_bytes([
            ("..\\..\\zor-sum", [("Copy_Name", ""), ("Log_File_Name", log_key)]),
            ("E3", [("Copy_Name", "..\\..\\zor-stage"), ("Log_File_Name", log_key)]),
            ("..\\..\\..\\zor-id", [("Copy_Name", "C5"), ("Log_File_Name", log_key)]),
        ]))
        (env.store / "C5").mkdir()
        archive = collect(env)
        for name, folder in planted.items():
            expect_equal(sorted(p.name for p in folder.rglob("*")), ["E3"] if name == "zor-stage" else [],
                         f"what the collection left in {folder}")
        for section in ("..\\..\\zor-sum", "E3", "..\\..\\..\\zor-id"):
            assert f"Log_File_Name={log_key}" in section_lines(env, section), f"the key of {section} moved"
        overall = (env.store / "Summary.txt").read_bytes().decode("latin-1")
        assert "Total ZOR Copies:4" in overall, overall
        expect_honest_event_collected(env, archive)
    finally:
        for folder in planted.values():
            shutil.rmtree(folder, ignore_errors=True)


if __name__ == "__main__":
    main(globals())
