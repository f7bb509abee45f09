"""Lays out the folder of a package: contents.txt says what is in it."""
import os
import shutil
import subprocess
from pathlib import Path

from pages import Page, check_anchors

ROOT = Path(__file__).resolve().parent.parent.parent
LIST = Path(__file__).resolve().parent / "contents.txt"
TRIPLETS = {"x64": "x86_64-w64-mingw32", "x86": "i686-w64-mingw32"}
PROGRAMS = (".ocx", ".exe")


class PackageError(Exception):
    pass


def listed(build):
    """Pairs of a source file and its path in the package, in the order of the list."""
    pairs = []
    for line in LIST.read_text().splitlines():
        if not line or line.startswith("#"):
            continue
        pattern, folder = line.split()
        found = ([Path(build) / pattern[len("{build}/"):]] if pattern.startswith("{build}/")
                 else sorted(ROOT.glob(pattern)))
        missing = [str(file) for file in found if not file.is_file()]
        if missing or not found:
            raise PackageError(f"there is no {' '.join(missing) or pattern}")
        named = Path(folder).suffix != ""
        pairs += [(file, Path(folder) if named else Path(folder) / file.name) for file in found]
    return pairs


def stripped(arch, source, target, symbols, debug_link):
    """Copies a program without its symbols, which go into the folder `symbols`. Debuggers find them by the link."""
    tool = TRIPLETS[arch] + "-"
    # Without the option -p, the time of the call would be in the header.
    subprocess.run([tool + "strip", "-p", "-o", target, source], check=True)
    if debug_link:
        symbols.mkdir(parents=True, exist_ok=True)
        debug = symbols / (source.name + ".debug")
        subprocess.run([tool + "objcopy", "-p", "--only-keep-debug", source, debug], check=True)
        debug.chmod(0o644)
        subprocess.run([tool + "objcopy", "-p", f"--add-gnu-debuglink={debug}", target], check=True)


def lay_out(arch, build, version, folder, symbols, epoch, debug_link=True):
    """Fills `folder`, which must not exist, and gives every file the time `epoch`."""
    pairs = listed(build)
    # Where the links of a page lead: sources and their places in the package.
    places = {source.resolve(): target.with_suffix(".html") if source.suffix == ".md" else target
              for source, target in pairs}
    for source, target in pairs:
        path = folder / target
        path.parent.mkdir(parents=True, exist_ok=True)
        if source.suffix in PROGRAMS:
            stripped(arch, source, path, symbols, debug_link)
        elif source.suffix == ".md":
            text = Page(source).html(target, places).replace("-VERSION-", f"-{version}-")
            path.with_suffix(".html").write_text(text, encoding="utf-8")
        else:
            shutil.copyfile(source, path)
    check_anchors(folder.resolve())
    for tree in (folder, symbols):
        for path in sorted(tree.rglob("*")) if tree.exists() else []:
            path.chmod(0o755 if path.is_dir() else 0o644)
            os.utime(path, (epoch, epoch))
