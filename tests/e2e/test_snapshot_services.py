"""Sections 2 and 4 of the snapshot, the software installed through the Windows
Installer and the services, through ZORRecordEvent -start. Under Wine the real
service control manager and registry answer: two services and three products
are put into the prefix for the run and taken out again afterwards. Natively
there is neither, and both reports are their frames alone."""
import subprocess

from e2e_support import expect_equal, main, skip

EVENT = "E1"
PRODUCTS = "HKLM\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Installer\\UserData\\S-1-5-18\\Products"

PRODUCT_RULE = "-" * 185
PRODUCT_HEADER = ("Publisher                     Product Name                                                     "
                  "Version             InstallDate   Language   Location")
SERVICE_RULE = "-------------------------------------------------------------------- "
SERVICE_HEADER = "Service Name                                                Status   "


def log_lines(env):
    path = env.store / EVENT / "ZORInstallEvent.Log"
    return path.read_bytes().decode("latin-1").split(env.eol)


def section(lines, heading, next_heading):
    """The report of one section: the lines after its heading, up to the empty
    line ahead of the next heading."""
    start = lines.index(heading)
    end = lines.index(next_heading)
    return lines[start + 1:end - 1]


def software(lines):
    return section(lines, "2) Software Installed on the machine:", "3) Current Running Processes:")


def services(lines):
    return section(lines, "4) Services & Service Status:", "5) ZOR Products Installed:")


def wine(env, *args):
    """A Wine tool (sc, reg) in the prefix of the programs under test."""
    result = subprocess.run(env.runner + list(args), stdout=subprocess.PIPE,
                            stderr=subprocess.PIPE, timeout=300)
    return result.returncode


def add_value(env, product, name, data, kind="REG_SZ"):
    key = PRODUCTS + "\\" + product + "\\InstallProperties"
    assert wine(env, "reg", "add", key, "/v", name, "/t", kind, "/d", data, "/f") == 0, \
        f"reg add {name}"


def seed_machine(env):
    assert wine(env, "sc", "create", "ZORTestSvc", "binPath=", "C:\\x.exe",
                "DisplayName=", "ZOR Test Service") == 0, "sc create ZORTestSvc"
    assert wine(env, "sc", "create", "ZorLowerSvc", "binPath=", "C:\\x.exe",
                "DisplayName=", "zor lower case service") == 0, "sc create ZorLowerSvc"
    add_value(env, "ABC", "Publisher", "TAQ Corp")
    add_value(env, "ABC", "DisplayName", "ZOR Server 9")
    add_value(env, "ABC", "DisplayVersion", "9.1.0")
    add_value(env, "ABC", "InstallDate", "20260105")
    add_value(env, "ABC", "InstallLocation", "C:\\Program Files\\TAQ\\ZOR")
    add_value(env, "ABC", "Language", "1033", "REG_DWORD")
    add_value(env, "DEF", "Publisher", "Contoso")
    add_value(env, "DEF", "DisplayName", "Not Listed")
    add_value(env, "GHI", "Publisher", "Tessaly Software")
    add_value(env, "GHI", "DisplayName", "Tools")
    add_value(env, "GHI", "Language", "-1")


def clean_machine(env):
    wine(env, "sc", "delete", "ZORTestSvc")
    wine(env, "sc", "delete", "ZorLowerSvc")
    for product in ("ABC", "DEF", "GHI"):
        wine(env, "reg", "delete", PRODUCTS + "\\" + product, "/f")


def test_reports_are_frames_alone_without_registry_or_service_manager(env):
    if not env.native:
        skip("the Linux build only")
    code, _ = env.run("ZORRecordEvent", "-start", EVENT)
    expect_equal(code, 0, "exit code")
    lines = log_lines(env)
    expect_equal(software(lines), ["", PRODUCT_RULE, PRODUCT_HEADER, PRODUCT_RULE, PRODUCT_RULE],
                 "software section")
    expect_equal(services(lines), ["", SERVICE_RULE, SERVICE_HEADER, SERVICE_RULE, SERVICE_RULE],
                 "services section")


def test_real_products_and_services_under_wine(env):
    if env.native:
        skip("the Windows builds only")
    try:
        seed_machine(env)
        code, _ = env.run("ZORRecordEvent", "-start", EVENT)
        expect_equal(code, 0, "exit code")
        lines = log_lines(env)
    finally:
        clean_machine(env)
    expect_equal(software(lines), [
        "", PRODUCT_RULE, PRODUCT_HEADER, PRODUCT_RULE,
        "TAQ Corp" + " " * 22 + "ZOR Server 9" + " " * 53 + "9.1.0" + " " * 15
        + "20260105" + " " * 6 + "1033" + " " * 7 + "C:\\Program Files\\TAQ\\ZOR",
        "Tessaly Software" + " " * 14 + "Tools" + " " * 60 + " " * 20 + " " * 14
        + "4294967295" + " ",
        PRODUCT_RULE], "software section")
    # The lower-case "zor" service is in the manager, and not in the report.
    expect_equal(services(lines), [
        "", SERVICE_RULE, SERVICE_HEADER, SERVICE_RULE,
        "ZOR Test Service" + " " * 44 + "Stopped" + " " * 8,
        SERVICE_RULE], "services section")


if __name__ == "__main__":
    main(globals())
