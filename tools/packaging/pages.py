"""Makes an HTML page that needs no other program and no network of a Markdown page."""
import html
import os
import re
import unicodedata
from pathlib import Path, PurePosixPath

import markdown

STYLE = """\
body { font: 16px/1.5 "Segoe UI", sans-serif; color: #1f2328; max-width: 60em; margin: 2em auto; padding: 0 1em; }
code, pre { font-family: Consolas, monospace; font-size: 14px; background: #f3f4f6; }
pre { padding: 0.8em; overflow-x: auto; }
table { border-collapse: collapse; }
th, td { border: 1px solid #d0d7de; padding: 0.3em 0.7em; text-align: left; vertical-align: top; }
img { max-width: 100%; }
a { color: #0550ae; }
"""
FRAME = """\
<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<title>{title}</title>
<style>
{style}</style>
</head>
<body>
{body}
</body>
</html>
"""


class PageError(Exception):
    pass


def slug(text, separator="-"):
    """The anchor of a heading, as source code hosts make it: the links in the pages are written for those."""
    text = unicodedata.normalize("NFC", text).lower()
    return re.sub(r"[^\w\- ]", "", text).replace(" ", separator)


def prepared(text):
    """The text in the form that the converter reads in the same way as source code hosts."""
    parts = re.split(r"(?ms)(^```.*?^```$)", text)
    for index in range(0, len(parts), 2):
        # The items of inner lists are indented by two blanks, which would make code of what is indented by four.
        parts[index] = re.sub(r"(?m)(?<=\n\n)((?:^ {4}.*\n|^\n(?= {4}))+)",
                              lambda found: "```\n" + re.sub(r"(?m)^ {4}", "", found[1]) + "```\n", parts[index])
        # A list may begin directly below a line of text.
        parts[index] = re.sub(r"(?m)^((?![-*>|#\s]|\d+\.).+)\n(?=(- |1\. ))", r"\1\n\n", parts[index])
    return "".join(parts)


class Page:
    def __init__(self, source):
        self.source = Path(source)
        self.text = prepared(self.source.read_text())

    def html(self, target, places):
        """`target` is the place of this page in the package, `places` those of all sources."""
        body = markdown.markdown(self.text, output_format="html", tab_length=2,
                                 extensions=["tables", "fenced_code", "sane_lists", "toc"],
                                 extension_configs={"toc": {"slugify": slug}})
        body = re.sub(r'(href|src)="([^"]*)"', lambda found: self.link(found, target, places), body)
        title = re.search(r"<h1[^>]*>(.*?)</h1>", body)
        if not title:
            raise PageError(f"{self.source}: the page has no heading")
        return FRAME.format(title=html.escape(re.sub(r"<[^>]*>", "", title[1])), style=STYLE, body=body)

    def link(self, found, target, places):
        path, mark, anchor = html.unescape(found[2]).partition("#")
        if not path:
            return found[0]
        if re.match(r"[a-z]+:", path):
            raise PageError(f"{self.source}: {path} needs a network")
        linked = (self.source.parent / path).resolve()
        place = places.get(linked) or self.folder(linked, places)
        if place is None:
            raise PageError(f"{self.source}: {path} is not in the package")
        relative = os.path.relpath(place, target.parent)
        return f'{found[1]}="{html.escape(str(PurePosixPath(relative)) + mark + anchor)}"'

    @staticmethod
    def folder(linked, places):
        """The place of a folder: that of the files that are directly in it."""
        return next((place.parent for source, place in places.items() if source.parent == linked), None)


def check_anchors(folder):
    """Fails when a link leads to a heading that its page does not have."""
    texts = {path: path.read_text(encoding="utf-8") for path in folder.rglob("*.html")}
    anchors = {path: set(re.findall(r' id="([^"]+)"', text)) for path, text in texts.items()}
    for page, text in texts.items():
        for path, anchor in re.findall(r'href="([^"#]*)#([^"]+)"', text):
            target = (page.parent / html.unescape(path)).resolve() if path else page
            if html.unescape(anchor) not in anchors.get(target, ()):
                raise PageError(f"{page.name}: {path} has no heading for #{anchor}")
