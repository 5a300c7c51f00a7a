"""Holds schemas/ against what the library writes and reads, with a validator that knows nothing of the library.

Usage: check_schemas.py REQUIRED-KEYS-FILE (as the program required-keys writes it)
"""

import json
import pathlib
import re
import subprocess
import sys
import unittest

import jsonschema

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
SCHEMAS = {path.name: json.loads(path.read_text()) for path in (ROOT / "schemas").glob("*.schema.json")}
RECORDED = sorted((ROOT / "tests" / "golden" / "texts").glob("*.json"))
ANSWERS = sorted((ROOT / "examples" / "answers").glob("*.json"))
REQUIRED = {}


def validator(name):
    schema = SCHEMAS[name + ".schema.json"]
    resolver = jsonschema.RefResolver(base_uri=schema["$id"], referrer=schema, store=SCHEMAS)
    return jsonschema.Draft202012Validator(schema, resolver=resolver)


def message_of(recorded):
    """The name of the message whose text a recorded file holds."""
    return re.sub(r"\.(default|filled)\.json$", "", recorded.name)


def properties_of(schema, prefix=""):
    for key, value in schema.get("properties", {}).items():
        yield prefix + key
        yield from properties_of(value, f"{prefix}{key}.")


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

    def test_accept_every_answer_of_the_examples(self):
        for path in ANSWERS:
            with self.subTest(path.name):
                answer = json.loads(path.read_text())
                validator(answer["HEADER"]).validate(answer)

    def test_accept_a_text_without_a_key_that_may_be_left_out(self):
        for path in RECORDED:
            text = json.loads(path.read_text())
            for key, value in SCHEMAS[message_of(path) + ".schema.json"]["properties"].items():
                if "left out" in value.get("description", ""):
                    with self.subTest(path.name, key=key):
                        validator(message_of(path)).validate({k: v for k, v in text.items() if k != key})

    def test_reject_a_text_of_another_type(self):
        texts = [json.loads(path.read_text()) for path in RECORDED]
        with_header = [text for text in texts if "HEADER" in text]
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


# Keys that neither recorded text has, since another one excludes them.
ELSEWHERE = {
    "screenItem": {"content"},
    "serviceComponent": {"ISO639languageCode"},
    "serviceBindTokens": {"serviceContextId"},
    "targetAppAction": {"url"},
}

if __name__ == "__main__":
    REQUIRED = json.loads(pathlib.Path(sys.argv.pop()).read_text())
    unittest.main()
