"""Makes an installer package (MSI) of the folder of a package."""
import hashlib
import re
import struct
import subprocess
import uuid
from pathlib import Path
from xml.sax.saxutils import quoteattr

from contents import PackageError

NAME = "kvBandscope"
MAKER = "Korvane"
# All identifiers are derived from this one, so that they are the same in every build.
FAMILY = uuid.UUID("60171e94-10b7-47ad-9591-5f3ed04d8924")
ROOTS = {"machine": "HKLM", "user": "HKCU"}
ROOT_NUMBERS = {"machine": 2, "user": 1}
BITS = {"x64": "64 bit", "x86": "32 bit"}
FILE_TIME_START = 11644473600  # seconds from 1601 to 1970


def guid(*parts):
    return "{" + str(uuid.uuid5(FAMILY, "/".join(parts))).upper() + "}"


def name_of(prefix, path):
    """An identifier in the tables of the package."""
    return prefix + hashlib.sha256(str(path).encode()).hexdigest()[:20]


def file_version(path):
    """The version in the resource of a program; None for another file."""
    data = path.read_bytes() if path.suffix in (".ocx", ".exe") else b""
    place = data.find(struct.pack("<II", 0xFEEF04BD, 0x10000))
    if place < 0:
        return None
    high, low = struct.unpack_from("<II", data, place + 8)
    return f"{high >> 16}.{high & 0xFFFF}.{low >> 16}.{low & 0xFFFF}"


def read_entries(listing):
    """The lines of kv_registration_list: (scope, key, value's name, value)."""
    entries = [tuple(line.rstrip("\r\n").split("\t")) for line in listing.read_text().splitlines() if line]
    if not entries or any(len(entry) != 4 for entry in entries):
        raise PackageError(f"{listing}: this is no list of registry entries")
    return entries


def with_short(name, taken):
    """The name in the form that the tables want: before it a name of eight and three characters, if it is longer."""
    if re.fullmatch(r"[A-Za-z0-9_-]{1,8}(\.[A-Za-z0-9_-]{1,3})?", name):
        return name
    stem, _, ending = name.rpartition(".") if "." in name else (name, "", "")
    start = re.sub(r"[^A-Z0-9]", "", stem.upper())[:5]
    ending = "." + ending[:3].upper() if ending else ""
    short = next(f"{start}~{number}{ending}" for number in range(1, 99) if f"{start}~{number}{ending}" not in taken)
    taken.add(short)
    return f"{short}|{name}"


class Installer:
    def __init__(self, arch, scope, version, folder, entries):
        self.arch, self.scope, self.version, self.folder = arch, scope, version, folder
        self.entries = entries
        self.files = sorted(path.relative_to(folder) for path in folder.rglob("*") if path.is_file())
        self.components = []
        self.queries = []

    def component(self, name, code, inner):
        bits = "yes" if self.arch == "x64" else "no"
        self.components.append(name)
        return (f"<Component Id={quoteattr(name)} Guid={quoteattr(code)} Win64={quoteattr(bits)}>"
                f"{inner}</Component>\n")

    def registry(self, kind):
        """The values of the entries of one kind. Keys without values need a row that is added later."""
        component = "module" if kind == "own" else "shared"
        texts = []
        parents = {entry[1].rpartition("\\")[0] for entry in self.entries}
        for index, (scope, key, name, value) in enumerate(self.entries):
            path = "Software\\Classes\\" + key
            if scope != kind:
                continue
            if name == "-":
                if key not in parents:
                    # "*" creates the key, and removes it at the end.
                    self.queries.append("INSERT INTO `Registry` (`Registry`, `Root`, `Key`, `Name`, `Component_`) "
                                        f"VALUES ('key{index}', {ROOT_NUMBERS[self.scope]}, '{path}', '*', "
                                        f"'{component}')")
                continue
            named = "" if name == "@" else f" Name={quoteattr(name)}"
            is_key = ' KeyPath="yes"' if kind == "shared" and not texts else ""
            texts.append(f'<RegistryValue Id="value{index}" Root="{ROOTS[self.scope]}" Key={quoteattr(path)}{named} '
                         f'Type="string" Value={quoteattr(value)}{is_key}/>')
        return "".join(texts)

    def update(self, table, key, column, value):
        self.queries.append(f"UPDATE `{table}` SET `{column}` = '{value}' WHERE `{table}` = '{key}'")

    def file(self, path, taken):
        key = name_of("f", path)
        self.update("File", key, "FileName", with_short(path.name, taken))
        version = file_version(self.folder / path)
        if version:
            # Without it an installed file of any version would be kept.
            self.update("File", key, "Version", version)
            self.update("File", key, "Language", "1033")
            self.queries.append(f"DELETE FROM `MsiFileHash` WHERE `File_` = '{key}'")
        return (f"<File Id={quoteattr(key)} Name={quoteattr(path.name)} Source={quoteattr(path.as_posix())} "
                'KeyPath="yes"/>')

    def tree(self, folder):
        """The components of a folder of the package and of the folders in it."""
        text, taken = "", set()
        for path in (file for file in self.files if file.parent == folder):
            if path.name == NAME + ".ocx":
                text += self.component("module", self.code("module"), self.file(path, taken) + self.registry("own"))
            else:
                text += self.component(name_of("c", path), self.code(path.as_posix()), self.file(path, taken))
        below = sorted({file.parents[len(file.parents) - len(folder.parts) - 2] for file in self.files
                        if folder in file.parents and file.parent != folder})
        for inner in below:
            text += f"<Directory Id={quoteattr(name_of('d', inner))} Name={quoteattr(inner.name)}>\n"
            text += self.tree(inner) + "</Directory>\n"
        return text

    def code(self, what):
        return guid("component", self.scope, self.arch, what)

    def folder_name(self):
        # One user's programs of both architectures have the same folder, unlike those of the machine.
        return f"{NAME} (x86)" if self.scope == "user" and self.arch == "x86" else NAME

    def directories(self):
        inner = self.tree(Path())
        # The same in the packages of both architectures, so that the entries stay until the last one is removed.
        inner += self.component("shared", guid("component", self.scope, "shared"), self.registry("shared"))
        self.update("Directory", "INSTALLDIR", "DefaultDir", with_short(self.folder_name(), set()))
        # The control writes this log into the folder of the program that it runs in.
        self.queries.append("INSERT INTO `RemoveFile` "
                            "(`FileKey`, `Component_`, `FileName`, `DirProperty`, `InstallMode`) "
                            "VALUES ('log', 'module', 'KVTecSup.Txt', 'INSTALLDIR', 2)")
        inner = f'<Directory Id="INSTALLDIR" Name="{self.folder_name()}">\n{inner}</Directory>'
        if self.scope == "machine":
            folder = "ProgramFiles64Folder" if self.arch == "x64" else "ProgramFilesFolder"
            return f'<Directory Id="{folder}">{inner}</Directory>'
        return ('<Directory Id="LocalAppDataFolder"><Directory Id="USERPROGRAMS" Name="Programs">'
                f"{inner}</Directory></Directory>")

    def source(self):
        scope = "perMachine" if self.scope == "machine" else "perUser"
        title = f"{NAME} ({BITS[self.arch]})" + ("" if self.scope == "machine" else " for this user")
        directories = self.directories()
        references = "".join(f"<ComponentRef Id={quoteattr(name)}/>" for name in self.components)
        return f"""<?xml version="1.0" encoding="utf-8"?>
<Wix xmlns="http://schemas.microsoft.com/wix/2006/wi">
<Product Id="{guid('product', self.scope, self.arch, self.version)}" Name="{title}" Version="{self.version}"
 Manufacturer="{MAKER}" Language="1033" UpgradeCode="{guid('upgrade', self.scope, self.arch)}">
<Package InstallerVersion="500" Compressed="yes" InstallScope="{scope}"/>
<MajorUpgrade DowngradeErrorMessage="A newer version of {NAME} is already installed."/>
<Media Id="1" Cabinet="files.cab" EmbedCab="yes"/>
<Property Id="ARPNOMODIFY" Value="1"/>
<Property Id="REINSTALLMODE" Value="amus"/>
<Directory Id="TARGETDIR" Name="SourceDir">
{directories}
</Directory>
<Feature Id="Complete" Level="1">{references}</Feature>
</Product>
</Wix>
"""

    def build(self, target, epoch):
        source = target.with_suffix(".wxs")
        source.write_text(self.source(), encoding="utf-8")
        # wixl accepts no absolute path of a file, so it runs in the folder.
        run(self.folder, "wixl", "-a", self.arch, "-o", target.resolve(), source.resolve())
        run(self.folder, "msibuild", target.resolve(), *[part for query in self.queries for part in ("-q", query)])
        source.unlink()
        elevation = 0 if self.scope == "machine" else 8
        fix_summary(target, epoch, elevation)


def run(folder, *command):
    done = subprocess.run([str(part) for part in command], cwd=folder, capture_output=True, text=True, check=False)
    if done.returncode != 0 or "CRITICAL" in done.stderr:
        raise PackageError(f"{command[0]} failed: {done.stdout}{done.stderr}")


def fix_summary(package, epoch, word_bits):
    """Replaces the random package code and the times in the summary, so that equal contents give equal packages."""
    data = bytearray(package.read_bytes())
    format_id = uuid.UUID("f29f85e0-4ff9-1068-ab91-08002b27b3d9").bytes_le
    if data.count(format_id) != 1:
        raise PackageError(f"{package}: one summary is expected")
    place = data.index(format_id)
    start = place - 28 + struct.unpack_from("<I", data, place + 16)[0]
    count = struct.unpack_from("<I", data, start + 4)[0]
    properties = dict(struct.unpack_from("<II", data, start + 8 + 8 * index) for index in range(count))
    moment = struct.pack("<Q", (epoch + FILE_TIME_START) * 10_000_000)
    for number in (12, 13):
        expect_type(package, data, start + properties[number], 64)
        data[start + properties[number] + 4:start + properties[number] + 12] = moment
    words = start + properties[15]
    expect_type(package, data, words, 3)
    struct.pack_into("<I", data, words + 4, struct.unpack_from("<I", data, words + 4)[0] | word_bits)
    code = start + properties[9]
    expect_type(package, data, code, 30)
    if not re.fullmatch(rb"\{[0-9A-F-]{36}\}", bytes(data[code + 8:code + 46])):
        raise PackageError(f"{package}: no package code")
    data[code + 8:code + 46] = b"{00000000-0000-0000-0000-000000000000}"
    contents = hashlib.sha256(data).hexdigest()
    data[code + 8:code + 46] = guid("package", contents).encode()
    package.write_bytes(data)


def expect_type(package, data, place, kind):
    if struct.unpack_from("<I", data, place)[0] != kind:
        raise PackageError(f"{package}: the summary is not stored in one piece")
