"""Makes the files that widl generates fit for a package.
  SelfContained.py HEADER INCLUDED    puts the text of the header INCLUDED in the place of its #include in HEADER
  SelfContained.py LIBRARY.tlb        replaces the time of the build in a type library
"""
import re
import sys
from pathlib import Path

# widl writes the time as a text and as a number into a type library. With a fixed one, builds can be compared.
TIMED = re.compile(rb"(Created by WIDL version \S+ at )(\w{3} \w{3} [ \d]\d \d\d:\d\d:\d\d \d{4})(\nWW\x13\0)(.{4})",
                   re.DOTALL)
FIXED_TEXT = b"Thu Jan  1 00:00:00 1970"


def without_time(library):
    data, count = TIMED.subn(lambda found: found[1] + FIXED_TEXT + found[3] + bytes(4), library.read_bytes())
    if count != 1:
        sys.exit(f"{library}: one time of the build is expected, {count} were found")
    library.write_bytes(data)


def with_included(header, included):
    text, name = header.read_text(), f"#include <{included.name}>\n"
    if text.count(name) != 1:
        sys.exit(f"{header}: one {name.strip()} is expected")
    lines = [line for line in included.read_text().splitlines() if line.startswith("#include")]
    text = text.replace(name, "\n".join(lines) + "\n")
    # The folder of the source says nothing to a host author and differs from machine to machine.
    text = re.sub(r" from \S*/(\S+) ", r" from \1 ", text, count=1)
    header.write_text(text)


if __name__ == "__main__":
    if len(sys.argv) == 2:
        without_time(Path(sys.argv[1]))
    else:
        with_included(Path(sys.argv[1]), Path(sys.argv[2]))
