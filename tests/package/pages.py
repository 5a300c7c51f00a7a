#!/usr/bin/env python3
"""pages.py FOLDER: whether every link of every page in the folder leads to something there: in Markdown files to
files, folders and headings, in HTML files and the modules beside them to files."""

import pathlib
import re
import sys
import tempfile

FENCED = re.compile(r"^ *(```|~~~).*?^ *\1", re.MULTILINE | re.DOTALL)
INLINE_CODE = re.compile(r"`[^`\n]*`")
LINKS = {
    ".md": re.compile(r"\]\(([^)\s]+)"),
    ".html": re.compile(r"""\b(?:href|src)=["']([^"']+)["']"""),
    ".js": re.compile(r"""^(?:import|export)\b.*\bfrom ["']([^"']+)["']""", re.MULTILINE),
}
ELSEWHERE = re.compile(r"^(https?|mailto|data):")


def without_code(text):
    return INLINE_CODE.sub("", FENCED.sub("", text))


def links(page):
    text = page.read_text()
    return LINKS[page.suffix].findall(without_code(text) if page.suffix == ".md" else text)


def anchors(page):
    """The names that GitHub and its like give to the headings of a page."""
    seen = {}
    for heading in re.findall(r"^#+ +(.*?) *$", FENCED.sub("", page.read_text()), re.MULTILINE):
        words = re.sub(r"\]\([^)]*\)", "]", heading).lower()
        name = re.sub(r"[^\w\- ]", "", words).replace(" ", "-")
        count = seen[name] = seen.get(name, -1) + 1
        yield f"{name}-{count}" if count else name


def fault(folder, page, link):
    """What is wrong with a link; None for a good one."""
    path, _, anchor = link.partition("#")
    target = (page.parent / path).resolve() if path else page
    if target != folder and folder not in target.parents:
        return "leads out of the installation"
    if not target.exists():
        return "leads nowhere"
    if anchor and (target.suffix != ".md" or anchor not in anchors(target)):
        return "names no heading"
    return None


def faults(folder):
    folder = folder.resolve()
    for page in sorted(path for path in folder.rglob("*") if path.suffix in LINKS):
        for link in links(page):
            what = None if ELSEWHERE.match(link) else fault(folder, page, link)
            if what:
                yield f"{page.relative_to(folder)}: {link} {what}"


def check_itself():
    """The search must find what there is to find, and nothing else."""
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        (folder / "a.md").write_text("# A *b* `c()`\n"
                                     "[1](b.md) `[2](no.md)` [3](#a-b-c) [4](#no)\n[5](b.md#b-1) [6](../)\n"
                                     "```\n# No\n[7](no.md)\n```\n[8](https://example.org/x) [9](no.html)\n")
        (folder / "b.md").write_text("# B\n## B\n")
        (folder / "c.html").write_text('<a href="a.md"></a><script src="no.js"></script>')
        (folder / "d.js").write_text('import { x } from "./no.js";\n')
        expected = ["a.md: #no names no heading", "a.md: ../ leads out of the installation",
                    "a.md: no.html leads nowhere", "c.html: no.js leads nowhere", "d.js: ./no.js leads nowhere"]
        found = list(faults(folder))
        assert found == expected, f"It finds {found}"


def main():
    check_itself()
    folder = pathlib.Path(sys.argv[1])
    pages = [path.name for path in folder.rglob("*.md")]
    missing = {"README.md", "design.md", "orvu-tool.md", "browser.md", "listener.md", "shutting-down.md"} - set(pages)
    if missing:
        sys.exit(f"Not installed: {', '.join(sorted(missing))}")
    found = list(faults(folder))
    if found:
        sys.exit("\n".join(found))
    print(f"{len(pages)} pages")


if __name__ == "__main__":
    main()
