"""Builds a Windows Installer package from one of the WiX examples, as their
comments tell an author to: wixl, then msibuild for the rollback actions.

wixl 0.101 knows only Execute="deferred" and writes an action declared with
Execute="rollback" as an immediate one; the WiX toolset marks it in-script
(1024) and rollback (256). The second step sets those bits on every action
that the source declares so."""
import pathlib
import re
import shutil
import subprocess

IN_SCRIPT_ROLLBACK = 1024 | 256


def rollback_actions(source):
    """The Ids of the CustomAction elements with Execute="rollback"."""
    text = pathlib.Path(source).read_text()
    return [m.group(1) for m in re.finditer(r'<CustomAction\s+Id="([^"]+)"[^>]*Execute="rollback"', text)]


def action_types(package):
    text = subprocess.run(["msiinfo", "export", str(package), "CustomAction"], check=True,
                          capture_output=True, text=True).stdout
    return {row[0]: int(row[1]) for row in (line.split("\t") for line in text.splitlines()[3:])}


def build(source, stage, binaries, arch, defines=(), extra=None):
    """The package of `source`, built in the fresh folder `stage` that holds
    copies of `binaries` and a readme.txt. `defines` are NAME=VALUE pairs for
    wixl's -D; `extra`, if given, turns the source text into the text built
    (for a test's additions). Returns the package's path."""
    stage = pathlib.Path(stage)
    shutil.rmtree(stage, ignore_errors=True)
    stage.mkdir(parents=True)
    for binary in binaries:
        shutil.copy(binary, stage / pathlib.Path(binary).name)
    (stage / "readme.txt").write_text("ZOR Server\n")
    built = stage / pathlib.Path(source).name
    text = pathlib.Path(source).read_text()
    built.write_text(extra(text) if extra else text)
    package = stage / "product.msi"
    command = ["wixl", "-a", arch, "-D", f"Arch={arch}", "-o", str(package)]
    for define in defines:
        command += ["-D", define]
    result = subprocess.run(command + [str(built)], cwd=stage, capture_output=True, text=True)
    if result.returncode != 0:
        raise AssertionError(f"wixl on {built}: {result.stderr}")
    mark_rollback_actions(package, rollback_actions(built))
    return package


def mark_rollback_actions(package, names):
    types = action_types(package)
    for name in names:
        query = (f"UPDATE `CustomAction` SET `Type` = {types[name] | IN_SCRIPT_ROLLBACK} "
                 f"WHERE `Action` = '{name}'")
        subprocess.run(["msibuild", str(package), "-q", query], check=True, capture_output=True)
