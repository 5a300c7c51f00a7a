"""Compares schemas/ with what the library writes and reads, by a validator that knows nothing of the library.

Usage: check_schemas.py REQUIRED-KEYS-FILE TEXTS-FILE...
The program required-keys writes the first file, the tests of the messages write the others.
"""

import functools
import json
import pathlib
import re
import subprocess
import sys
import threading
import unittest

import jsonschema

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
SCHEMAS = {path.name: json.loads(path.read_text()) for path in (ROOT / "schemas").glob("*.schema.json")}
RECORDED = sorted((ROOT / "tests" / "golden" / "texts").glob("*.json"))
ANSWERS = sorted((ROOT / "examples" / "answers").glob("*.json"))
REQUIRED = {}
WRITTEN = {}  # the texts that the tests wrote, by the names of their schemas


@functools.cache
def validator(name):
    schema = SCHEMAS[name + ".schema.json"]
    resolver = jsonschema.RefResolver(base_uri=schema["$id"], referrer=schema, store=SCHEMAS)
    return jsonschema.Draft202012Validator(schema, resolver=resolver)


def message_of(recorded):
    """The name of the message whose text a recorded file holds."""
    return re.sub(r"\.(default|filled)\.json$", "", recorded.name)


@functools.cache
def schema_of(writer):
    """The name of the schema of what a writer writes: the name itself, or that of a class and its wire name."""
    writing_class, separator, wire_name = writer.partition("/")
    if not separator:
        return writer
    names = [schema["title"] for schema in SCHEMAS.values() if schema.get("x-class") == writing_class]
    return names[0] if len(names) == 1 else next(n for n in names if n == wire_name or n.startswith(wire_name + "-"))


def texts_in(path):
    """The texts of a file with their schemas, each once. What is no UTF-8 stays as it is, as in cJSON."""
    parts = path.read_bytes().decode("utf-8", "surrogateescape").split("\0")
    return {(schema_of(writer), text) for writer, text in zip(parts[0::2], parts[1::2])}


def once_each(value):
    """The value with each different element of its long lists once: a long list is valid when all its elements are."""
    if isinstance(value, dict):
        return {key: once_each(member) for key, member in value.items()}
    if not isinstance(value, list):
        return value
    elements = [once_each(element) for element in value]
    return elements if len(elements) <= 10 else list({json.dumps(element): element for element in elements}.values())


def properties_of(schema, prefix=""):
    for key, value in schema.get("properties", {}).items():
        yield prefix + key
        yield from properties_of(value, f"{prefix}{key}.")


def examples_of_requests(schema):
    """The request of the example exchange, where it is not the example of the message itself."""
    return [schema["x-request"]["example"]] if "example" in schema.get("x-request", {}) else []


def misses_keys_alone(error):
    """Whether an error is only about keys that are absent; of several possibilities one is enough."""
    return error.validator == "required" or any(misses_keys_alone(inner) for inner in error.context)


def keys_of(value, prefix=""):
    if isinstance(value, dict):
        for key, member in value.items():
            yield prefix + key
            yield from keys_of(member, f"{prefix}{key}.")


class Schemas(unittest.TestCase):
    def test_each_is_a_schema(self):
        for schema in SCHEMAS.values():
            with self.subTest(schema["title"]):
                jsonschema.Draft202012Validator.check_schema(schema)

    def test_accept_every_recorded_text(self):
        for path in RECORDED:
            with self.subTest(path.name):
                validator(message_of(path)).validate(json.loads(path.read_text()))

    def test_accept_every_text_that_the_tests_write(self):
        for name, texts in WRITTEN.items():
            for text in texts:
                with self.subTest(name, text=text[:1000]):
                    validator(name).validate(once_each(json.loads(text)))

    def test_have_a_text_of_each_that_the_tests_write(self):
        unwritten = {schema["title"] for schema in SCHEMAS.values()} - WRITTEN.keys()
        self.assertEqual(NEVER_WRITTEN, unwritten - WRITTEN_BY_ITS_FAMILY)

    def test_accept_every_answer_of_the_examples(self):
        for path in ANSWERS:
            with self.subTest(path.name):
                answer = json.loads(path.read_text())
                validator(answer["HEADER"]).validate(answer)
                self.assertEqual(path.read_text(), path.read_text().strip())  # as the library writes it

    def test_accept_their_examples(self):
        """But for keys that the examples leave out."""
        for schema in SCHEMAS.values():
            self.assertEqual(len(schema["examples"]), 1, schema["title"])
            for example in [*schema["examples"], *examples_of_requests(schema)]:
                with self.subTest(schema["title"], example=example):
                    errors = validator(schema["title"]).iter_errors(example)
                    self.assertEqual([], [error.message for error in errors if not misses_keys_alone(error)])

    def test_ask_with_keys_that_they_read(self):
        for schema in SCHEMAS.values():
            known = schema["properties"].keys() | schema.get("x-alsoRead", {}).keys()
            with self.subTest(schema["title"]):
                self.assertLessEqual(set(schema.get("x-request", {}).get("matters", [])), known)

    def test_expect_answers_of_the_catalogue(self):
        results = {schema["title"] for schema in SCHEMAS.values() if schema["x-family"] == "results"}
        for schema in SCHEMAS.values():
            if "x-request" in schema:
                with self.subTest(schema["title"]):
                    self.assertLessEqual(set(schema["x-request"]["answers"]), {s["title"] for s in SCHEMAS.values()})
                    self.assertLessEqual(set(schema["x-request"]["errors"]), results)

    def test_expect_the_answers_of_the_examples(self):
        expected = {s["title"]: s["x-request"] for s in SCHEMAS.values() if "x-request" in s}
        self.assertEqual(expected.keys(), {path.stem for path in ANSWERS})
        for path in ANSWERS:
            request = expected[path.stem]
            with self.subTest(path.name):
                self.assertIn(json.loads(path.read_text())["HEADER"], request["answers"] + request["errors"])

    def test_accept_a_text_without_a_key_that_may_be_left_out(self):
        for path in RECORDED:
            text = json.loads(path.read_text())
            for key, value in SCHEMAS[message_of(path) + ".schema.json"]["properties"].items():
                if "left out" in value.get("description", ""):
                    with self.subTest(path.name, key=key):
                        validator(message_of(path)).validate({k: v for k, v in text.items() if k != key})

    def test_reject_a_text_of_another_type(self):
        texts = [json.loads(path.read_text()) for path in RECORDED]
        texts += [once_each(json.loads(max(of_one, key=len))) for of_one in WRITTEN.values()]
        with_header = [text for text in texts if isinstance(text, dict) and "HEADER" in text]
        for schema in SCHEMAS.values():
            if "HEADER" not in schema["properties"]:
                continue
            for text in with_header:
                if text["HEADER"] != schema["title"]:
                    with self.subTest(schema["title"], text=text["HEADER"]):
                        self.assertFalse(validator(schema["title"]).is_valid(text))

    def test_name_no_key_that_is_never_written(self):
        for name, schema in SCHEMAS.items():
            texts = [json.loads(p.read_text()) for p in RECORDED if message_of(p) == schema["title"]]
            written = {key for text in texts for key in keys_of(text)}
            unwritten = set(properties_of(schema)) - written - ELSEWHERE.get(schema["title"], set())
            with self.subTest(name):
                self.assertTrue(not texts or not unwritten, unwritten)

    def test_name_the_keys_that_reading_requires(self):
        for name, required in REQUIRED.items():
            with self.subTest(name):
                self.assertEqual(SCHEMAS[name + ".schema.json"].get("x-requiredToRead", []), required)

    def test_stand_in_the_catalogue_for_people(self):
        subprocess.run([sys.executable, ROOT / "scripts" / "messages-doc", "--check"], check=True)

    def test_stand_there_under_headings_that_links_find(self):
        page = (ROOT / "docs" / "messages.md").read_text()
        headings = [re.sub(r"[^\w -]", "", h.lower()).replace(" ", "-") for h in re.findall("^#+ (.*)$", page, re.M)]
        self.assertEqual(len(headings), len(set(headings)))
        self.assertEqual(set(), set(re.findall(r"\]\(#([^)]*)\)", page)) - set(headings))


# Keys that neither recorded text has, since another one excludes them.
ELSEWHERE = {
    "screenItem": {"content"},
    "serviceComponent": {"ISO639languageCode"},
    "serviceBindTokens": {"serviceContextId"},
    "targetAppAction": {"url"},
}

# Types that are only read.
NEVER_WRITTEN = {"persistentVariableValue"}
# scripts/try-a-message runs the tests of one family alone, and the recorded texts have this inside another message.
WRITTEN_BY_ITS_FAMILY = {"binaryDataMultipart-part"}


def main():
    REQUIRED.update(json.loads(pathlib.Path(sys.argv[1]).read_text()))
    for path in sys.argv[2:]:
        for name, text in texts_in(pathlib.Path(path)):
            WRITTEN.setdefault(name, set()).add(text)
    result = unittest.main(argv=sys.argv[:1], exit=False).result
    SUCCESS.append(result.wasSuccessful())


if __name__ == "__main__":
    SUCCESS = []
    sys.setrecursionlimit(1_000_000)  # messages nest a thousand levels
    threading.stack_size(512 << 20)
    thread = threading.Thread(target=main)
    thread.start()
    thread.join()
    sys.exit(SUCCESS != [True])
