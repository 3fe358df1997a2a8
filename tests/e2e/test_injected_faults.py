"""Faults that no file of the store can be made to show on its own, injected
into the real ZORGetInstallLog of the Linux build (tests/tools/fault_shim.cpp,
loaded with LD_PRELOAD): a file whose read fails part-way, and a file whose
last-write time can't be turned into calendar fields. Elsewhere (under Wine)
there is nothing to inject, and the tests pass over."""
import os
import zipfile

from e2e_support import check_archive, expect_equal, main, skip

SUCCESS = "The file 'x.zip' is created successfully"


def lay_down(env, log):
    env.store.mkdir(parents=True, exist_ok=True)
    (env.store / "History.ini").write_bytes(
        b"[History]\r\nCount=1\r\n[EVT_1]\r\nEvent_ID=EVT_1\r\nCopy_Name=C1\r\n")
    folder = env.store / "C1" / "EVT_1"
    folder.mkdir(parents=True)
    (folder / "ZORInstallEvent.Log").write_bytes(log)
    return folder / "ZORInstallEvent.Log"


def collect_with_faults(env, **faults):
    shim = os.environ["ZOR_FAULT_SHIM"]
    environment = {"LD_PRELOAD": shim, "ASAN_OPTIONS": "verify_asan_link_order=0"}
    environment.update(faults)
    code, out, _ = env.run_full("ZORGetInstallLog", "-f", "x.zip", environment=environment)
    expect_equal((code, out), (0, env.lines(SUCCESS)), "result and console")
    return {info.filename: info for info in check_archive(env.work / "x.zip")}


def injectable(env):
    return env.native and "ZOR_FAULT_SHIM" in os.environ


def test_a_read_that_fails_part_way_leaves_a_short_entry(env):
    if not injectable(env):
        skip("needs the Linux build and the fault shim")
    log = bytes(range(256)) * 40
    lay_down(env, log)
    entries = collect_with_faults(env, ZOR_FAULT_READ_FILE="ZORInstallEvent.Log",
                                  ZOR_FAULT_READ_AFTER="5000")
    with zipfile.ZipFile(env.work / "x.zip") as archive:
        expect_equal(archive.read("C1\\EVT_1\\ZORInstallEvent.Log"), log[:5000], "the short entry")
    assert "History.ini" in entries, list(entries)


def test_an_entry_whose_time_cannot_be_read_gets_the_all_zero_date(env):
    if not injectable(env):
        skip("needs the Linux build and the fault shim")
    log = lay_down(env, b"event log\r\n")
    refused = 1_000_000_007
    os.utime(log, (refused, refused))
    entries = collect_with_faults(env, ZOR_FAULT_TIME=str(refused))
    # A DOS date and time of 0 read back as month 0, day 0 of 1980.
    expect_equal(entries["C1\\EVT_1\\ZORInstallEvent.Log"].date_time, (1980, 0, 0, 0, 0, 0),
                 "date of the entry")
    assert entries["History.ini"].date_time[0] > 2000, "the other entries keep their dates"


if __name__ == "__main__":
    main(globals())
