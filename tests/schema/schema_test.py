"""Holds docs/schema against the program: what it writes is valid, and schema and program agree on
what is readable, whatever is taken out of a file or put in a wrong form."""
import copy
import glob
import json
import os
import subprocess
import sys
import tempfile
import unittest

try:
    from jsonschema import Draft202012Validator
except ImportError as missing:
    print(f"skipped: {missing}: scripts/install-packages test")
    sys.exit(77)

ROOT = os.path.realpath(os.path.join(os.path.dirname(__file__), "..", ".."))
PROGRAM = os.environ["VELLUMRY_LIBRARY_FILES"]
KINDS = ("collection", "metadata", "backup", "default-snippets")
ODD_VALUES = (None, True, 0, 7, 7.0, 1.5, -1, 2 ** 63 - 1, 2 ** 63, "", "text", [], ["a"], [1],
              {}, {"a": "b"}, {"a": 1})
ODD_DATES = ("2026-03-09T14:05:07Z", "2026-03-09T14:05:07.1Z", "2026-03-09T14:05:07.123456Z",
             "2026-03-09T14:05:07+05:30", "2026-03-09T14:05:07.5-23:59", "2026-03-09T14:05:07",
             "2026-03-09 14:05:07Z", "2026-03-09T14:05:07.Z", "2026-13-09T14:05:07Z",
             "2026-03-00T14:05:07Z", "2026-03-09T24:00:00Z", "2026-03-09T14:60:07Z",
             "2026-03-09T14:05:60Z", "2026-03-09T14:05:07+24:00", "2026-03-09T14:05:07z",
             "2026-03-09", "")


def schema(kind):
    with open(os.path.join(ROOT, "docs/schema", kind + ".schema.json"), encoding="utf-8") as file:
        return json.load(file)


def places(value, path=()):
    """The paths of everything inside."""
    inside = value.items() if isinstance(value, dict) else \
        enumerate(value) if isinstance(value, list) else ()
    for key, member in inside:
        yield (*path, key)
        yield from places(member, (*path, key))


def changed(document, path, new=None, removed=False):
    result = copy.deepcopy(document)
    holder = result
    for key in path[:-1]:
        holder = holder[key]
    if removed:
        del holder[path[-1]]
    else:
        holder[path[-1]] = new
    return result


def variants(document):
    yield document
    yield from ODD_VALUES
    for path in places(document):
        yield changed(document, path, removed=True)
        for value in ODD_VALUES:
            yield changed(document, path, value)
        if str(path[-1]).endswith(("At", "lastModified")):
            for value in ODD_DATES:
                yield changed(document, path, value)


class Schema(unittest.TestCase):

    @classmethod
    def setUpClass(cls):
        folder = cls.enterClassContext(tempfile.TemporaryDirectory(prefix="vellumry-schema."))
        subprocess.run([PROGRAM, "write", folder], check=True)
        cls.documents = {kind: {} for kind in KINDS}
        for path in (*glob.glob(os.path.join(folder, "*.json")),
                     os.path.join(ROOT, "resources/DefaultSnippets.json")):
            name = os.path.basename(path)
            kind = "default-snippets" if name == "DefaultSnippets.json" else name.split("-")[0]
            with open(path, encoding="utf-8") as file:
                cls.documents[kind][name] = json.load(file)

    def test_every_schema_is_one(self):
        names = {os.path.basename(path) for path in glob.glob(os.path.join(ROOT, "docs/schema/*"))}
        self.assertEqual(names, {kind + ".schema.json" for kind in KINDS})
        for kind in KINDS:
            self.assertEqual(schema(kind)["$schema"],
                             "https://json-schema.org/draft/2020-12/schema")
            Draft202012Validator.check_schema(schema(kind))

    def test_written_files_are_valid(self):
        """They have no key, either, of which the schema says nothing."""
        for kind in KINDS:
            strict = self.closed(schema(kind))
            self.assertGreaterEqual(len(self.documents[kind]), 1)
            for name, document in self.documents[kind].items():
                errors = [error.message for error in Draft202012Validator(strict).iter_errors(document)]
                self.assertEqual(errors, [], name)

    def closed(self, part):
        """The schema with no further keys allowed."""
        if isinstance(part, list):
            return [self.closed(each) for each in part]
        if not isinstance(part, dict):
            return part
        result = {key: self.closed(value) for key, value in part.items()}
        if isinstance(part.get("properties"), dict):
            result.setdefault("additionalProperties", False)
        return result

    def test_schema_and_program_agree(self):
        """Each value of each file in turn goes missing or takes another form."""
        for kind in KINDS:
            validator = Draft202012Validator(schema(kind))
            samples = [self.shortened(document) for document in self.documents[kind].values()]
            tried = [variant for sample in samples for variant in variants(sample)]
            lines = "".join(f"{kind} {json.dumps(variant)}\n" for variant in tried)
            answers = subprocess.run([PROGRAM, "read"], input=lines, check=True, encoding="utf-8",
                                     stdout=subprocess.PIPE).stdout.split()
            self.assertEqual(len(answers), len(tried))
            self.assertLessEqual({"yes", "no"}, set(answers))
            for variant, read in zip(tried, answers):
                if validator.is_valid(variant) != (read == "yes"):
                    self.fail(f"{kind}: the program says {read}, the schema does not: "
                              f"{json.dumps(variant)}")
            print(f"{kind}: agreed on {len(tried)} texts, {answers.count('no')} of them unreadable",
                  file=sys.stderr)

    @staticmethod
    def shortened(document):
        """One of a kind is enough of the default library."""
        collections = document.get("collections") if isinstance(document, dict) else None
        if not collections or "displayOrder" in collections[0]:
            return document
        first = collections[0]
        return {"collections": [{**first, "snippets": first["snippets"][:1]}]}


if __name__ == "__main__":
    unittest.main(verbosity=2)
