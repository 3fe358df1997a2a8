"""Sections 5 and 6 of both snapshots, the product's copies and its ODBC
drivers, through a whole -start/-end of ZORRecordEvent. Under Wine each
registry fixture of the unit tests is imported into the prefix with reg, into
the view of the registry that the build's programs see, and the reports must
equal the hand-written goldens that the scripted registry is held to. Natively
there is no registry, and both snapshots say that nothing is installed."""
import pathlib
import subprocess

from e2e_support import expect_equal, main, skip

TESTS = pathlib.Path(__file__).resolve().parents[1]
FIXTURES = TESTS / "fixtures" / "registry"
GOLDENS = TESTS / "golden" / "inventory"
FIXTURE_NAMES = ["nothing_installed", "pre_v9_only", "v9_only", "both_layouts"]

PRODUCTS_HEADING = "5) ZOR Products Installed:"
DRIVERS_HEADING = "6) ZOR ODBC Driver Info:"
SNAPSHOT_RULE = "*" * 94
# The keys that the fixtures write below HKEY_LOCAL_MACHINE; a fresh prefix has
# neither, and each test takes them out again.
FIXTURE_ROOTS = ["HKLM\\SOFTWARE\\TAQ", "HKLM\\SOFTWARE\\ODBC"]
INSTALLER_PRODUCT = ("HKLM\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Installer\\UserData"
                     "\\S-1-5-18\\Products\\E2EINV\\InstallProperties")


def golden(fixture, report, alignment):
    return (GOLDENS / f"{fixture}.{report}.{alignment}.txt").read_text().split("\n")[:-1]


def record_event(env, event):
    """A -start and an -end of one event; the lines of its event log."""
    for options in (["-start", event], ["-end", event]):
        code, output = env.run("ZORRecordEvent", *options)
        expect_equal((code, output), (0, ""), f"result and console output of {options[0]}")
    text = (env.store / event / "ZORInstallEvent.Log").read_bytes().decode("latin-1")
    return text.split(env.eol)


def inventory_sections(lines):
    """[(products, drivers)] for each snapshot of a log, in order."""
    sections = []
    for index, line in enumerate(lines):
        if line != PRODUCTS_HEADING:
            continue
        drivers = lines.index(DRIVERS_HEADING, index)
        closing = lines.index(SNAPSHOT_RULE, drivers)
        sections.append((lines[index + 1:drivers - 1], lines[drivers + 1:closing]))
    return sections


def expect_inventory(lines, fixture, alignment):
    sections = inventory_sections(lines)
    expect_equal(len(sections), 2, "snapshots with a product section")
    for when, (products, drivers) in zip(("before", "after"), sections):
        expect_equal(products, golden(fixture, "products", alignment),
                     f"{fixture}: products {when}, {alignment}-aligned")
        expect_equal(drivers, golden(fixture, "odbc", alignment),
                     f"{fixture}: ODBC drivers {when}, {alignment}-aligned")


def wine(env, *args):
    """A Wine tool (regedit, reg) in the prefix of the programs under test."""
    result = subprocess.run(env.runner + list(args), stdout=subprocess.PIPE,
                            stderr=subprocess.PIPE, timeout=300)
    return result.returncode


def fixture_file(env, fixture):
    """A fixture as Wine's tools read it. A 5.00 export goes in as real exports
    are written, UTF-16LE with its byte-order mark, since Wine's regedit reads
    the hex(2) and hex(7) data of an 8-bit file as ANSI text; a REGEDIT4 export
    is 8-bit by its nature and goes in as it stands."""
    source = FIXTURES / f"{fixture}.reg"
    text = source.read_text(encoding="latin-1")
    if not text.startswith("Windows Registry Editor Version 5.00"):
        return source
    target = env.work / f"{fixture}.utf16.reg"
    target.write_bytes(b"\xff\xfe" + text.replace("\n", "\r\n").encode("utf-16-le"))
    return target


def import_fixture_into_view(env, fixture, bits):
    """Imports a fixture into the 32-bit or the 64-bit view of the registry, as
    the installer of a 32-bit or a 64-bit product writes its keys."""
    target = fixture_file(env, fixture)
    assert wine(env, "reg", "import", env.program_path(target), f"/reg:{bits}") == 0, \
        f"reg import {fixture} /reg:{bits}"


def clean_registry(env):
    for key in FIXTURE_ROOTS + [INSTALLER_PRODUCT.rsplit("\\", 1)[0]]:
        for view in ("/reg:32", "/reg:64"):
            wine(env, "reg", "delete", key, "/f", view)


def test_no_registry_shows_no_copies_and_no_driver_in_both_snapshots(env):
    if not env.native:
        skip("the Linux build only")
    # These reports have no field with a width, so either alignment gives them.
    expect_inventory(record_event(env, "Inv-1"), "nothing_installed", "right")


def test_each_fixture_under_wine_equals_its_goldens(env):
    if env.native:
        skip("the Windows builds only")
    for root in FIXTURE_ROOTS:
        assert wine(env, "reg", "query", root) != 0, f"{root} exists in the prefix already"
    try:
        for number, fixture in enumerate(FIXTURE_NAMES):
            import_fixture_into_view(env, fixture, env.registry_bits)
            # No earlier section of a fresh prefix prints a row: right-aligned.
            expect_inventory(record_event(env, f"Inv-{number}-R"), fixture, "right")
            # A product of the software report turns the left-adjust bit on.
            assert wine(env, "reg", "add", INSTALLER_PRODUCT, "/v", "Publisher", "/t", "REG_SZ",
                        "/d", "TAQ Corp", "/f") == 0, "reg add Publisher"
            expect_inventory(record_event(env, f"Inv-{number}-L"), fixture, "left")
            clean_registry(env)
    finally:
        clean_registry(env)


def test_each_build_reads_the_registry_view_of_its_own_bitness(env):
    """64-bit Windows keeps the keys of 32-bit programs apart (Wow6432Node) and
    shows every 32-bit program that view unless it asks for the other. So the
    x86 build sees the copies and drivers of a 32-bit product and not those of
    a 64-bit one, and the x64 build the other way round."""
    if env.native:
        skip("the Windows builds only")
    try:
        for bits in (32, 64):
            import_fixture_into_view(env, "v9_only", bits)
            seen = "v9_only" if bits == env.registry_bits else "nothing_installed"
            expect_inventory(record_event(env, f"View-{bits}"), seen, "right")
            clean_registry(env)
    finally:
        clean_registry(env)


if __name__ == "__main__":
    main(globals())
