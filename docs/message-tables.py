#!/usr/bin/env python3
"""message-tables.py PAGE: writes the first page of the API reference, docs/reference.md with its tables of the families
and of the messages. They are made from the public headers, one for each family, the catalogue and the schemas."""

import json
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
ROW = re.compile(r'^ORVU_ROW(?:_AS)?\((?:DataType\w+, )?(\w+), "(\w+)"', re.MULTILINE)
CLASS = re.compile(r"^class ORVU_EXPORT (\w+) : public Serializable", re.MULTILINE)


def families():
    """The classes of the messages by their headers."""
    found = {path.name: CLASS.findall(path.read_text()) for path in sorted((ROOT / "include" / "orvu").glob("*.h"))}
    return {header: classes for header, classes in found.items() if classes}


def messages():
    """The wire names with their classes, as the catalogue has them."""
    return [(word, name) for name, word in ROW.findall((ROOT / "include" / "orvu" / "Catalogue.def").read_text())]


def link(name):
    return f"[{name}](@ref Orvu::{name})"


def in_words(header):
    words = re.sub(r"(?<=[a-z])(?=[A-Z])", " ", header.removesuffix(".h"))
    return words.upper() if len(words) <= 3 else words.capitalize()


def meaning(word):
    """The first sentence of the schema's description."""
    description = json.loads((ROOT / "schemas" / f"{word}.schema.json").read_text())["description"]
    return re.split(r"(?<=\.) ", description)[0].replace("|", "\\|")


def family_table():
    rows = [f"| {in_words(header)} | `orvu/{header}` | {', '.join(map(link, classes))} |"
            for header, classes in families().items()]
    return "\n".join(["| family | header | messages |", "| --- | --- | --- |", *rows])


def message_table():
    by_word = sorted(messages(), key=lambda message: message[0].lower())
    rows = [f"| `{word}` | {link(name)} | {meaning(word)} |" for word, name in by_word]
    return "\n".join(["| \"HEADER\" | class | what it is |", "| --- | --- | --- |", *rows])


def main():
    declared = {name for classes in families().values() for name in classes}
    strange = {name for _, name in messages()} - declared
    assert not strange, f"no header declares {', '.join(sorted(strange))}"
    page = (ROOT / "docs" / "reference.md").read_text()
    for mark, table in {"FAMILIES": family_table(), "MESSAGES": message_table()}.items():
        assert page.count(f"@{mark}@") == 1, f"docs/reference.md has no place for {mark}"
        page = page.replace(f"@{mark}@", table)
    pathlib.Path(sys.argv[1]).write_text(page)


if __name__ == "__main__":
    main()
