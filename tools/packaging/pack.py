"""Makes the archives and installers of one architecture.
  pack.py --arch x64|x86 --build FOLDER --registration LIST --version V --epoch SECONDS --out FOLDER
    --build         the folder of the build
    --registration  the output of kv_registration_list
    --epoch         the time of everything in the packages, in seconds from 1970
    --old           for tests of upgrades: the programs may have another version than V, and there is one file more
    --tested        the build has no debug information, so no archive of symbols is made
"""
import argparse
import shutil
import sys
import tempfile
from pathlib import Path

import archive
import contents
import installer
import pages


def parse():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--arch", choices=("x64", "x86"), required=True)
    for name in ("--build", "--registration", "--out"):
        parser.add_argument(name, type=Path, required=True)
    parser.add_argument("--version", required=True)
    parser.add_argument("--epoch", type=int, required=True)
    parser.add_argument("--old", action="store_true")
    parser.add_argument("--tested", action="store_true")
    return parser.parse_args()


def check_versions(folder, version):
    for path in sorted(folder.rglob("*")):
        found = installer.file_version(path) if path.is_file() else None
        if path.suffix in contents.PROGRAMS and found != version + ".0":
            raise contents.PackageError(f"{path.name} has the version {found}, not {version}")


def pack(options, scratch):
    name = f"kvBandscope-{options.version}-{options.arch}"
    folder, symbols = scratch / name, scratch / "symbols"
    contents.lay_out(options.arch, options.build, options.version, folder, symbols, options.epoch, not options.tested)
    if options.old:
        (folder / "old.txt").write_text("Later versions do not have this file.\n")
    else:
        check_versions(folder, options.version)
    archive.write_zip(options.out / f"{name}.zip", folder, name, options.epoch)
    if not options.tested:
        archive.write_zip(options.out / f"{name}-symbols.zip", symbols, name + "-symbols", options.epoch)
    entries = installer.read_entries(options.registration)
    for scope, suffix in (("machine", ""), ("user", "-user")):
        package = installer.Installer(options.arch, scope, options.version, folder, entries)
        package.build(options.out / f"{name}{suffix}.msi", options.epoch)


def main():
    options = parse()
    options.out.mkdir(parents=True, exist_ok=True)
    scratch = Path(tempfile.mkdtemp(prefix="package-", dir=options.out))
    try:
        pack(options, scratch)
    except (contents.PackageError, pages.PageError) as error:
        sys.exit(f"package: {error}")
    finally:
        shutil.rmtree(scratch)


if __name__ == "__main__":
    main()
