"""Validates documents against the JSON Schema of the json output, and the schema against its own.

usage: check_schema.py SCHEMA DOCUMENT...

A document that the schema must refuse is made from each accepted one by spoiling it in several
ways, so that a schema that accepts everything fails too.
"""
import copy
import json
import sys

from jsonschema import Draft202012Validator


def spoiled(document):
    """Copies of the document, each with one thing wrong."""
    def changed(change):
        other = copy.deepcopy(document)
        change(other)
        return other

    yield "no messages", changed(lambda d: d.pop("messages"))
    yield "an unknown key", changed(lambda d: d.update(extra=1))
    yield "a seed that is text", changed(lambda d: d["data"].update(seed="1"))
    for table in range(len(document["tables"])):
        if document["tables"][table]["cells"]:
            def cell(d):
                return d["tables"][table]["cells"][0]
            yield "an unknown state", changed(lambda d: cell(d).update(state="maybe"))
            yield "a value that is missing", changed(
                lambda d: cell(d).update(state="missing", value=1))
            yield "a label without text", changed(lambda d: cell(d)["path"][0][0].pop("text"))
            break


def main(schema_path, *paths):
    with open(schema_path, encoding="utf-8") as file:
        schema = json.load(file)
    Draft202012Validator.check_schema(schema)
    validator = Draft202012Validator(schema)
    problems = 0
    for path in paths:
        with open(path, encoding="utf-8") as file:
            document = json.load(file)
        for error in validator.iter_errors(document):
            print(f"{path}: {error.json_path}: {error.message}")
            problems += 1
        for what, other in spoiled(document):
            if validator.is_valid(other):
                print(f"{path}: the schema accepts {what}")
                problems += 1
    print(f"{len(paths)} documents, {problems} problems")
    return 1 if problems or not paths else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
