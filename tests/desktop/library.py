"""A library folder as the program stores it: one file for each collection and a metadata file."""
import contextlib
import datetime
import json
import os

METADATA = "_metadata.json"
DEVICE = "another-machine"


def date_text(moment):
    return moment.strftime("%Y-%m-%dT%H:%M:%S.") + f"{moment.microsecond // 1000:03}Z"


def now():
    return datetime.datetime.now(datetime.timezone.utc)


def snippet(title, content, variables=None, keywords=(), age_days=1):
    """A stored snippet, never used, last edited `age_days` ago; its id is made from the title."""
    edited = date_text(now() - datetime.timedelta(days=age_days))
    return {"id": f"ID-{title}", "title": title, "subtitle": "", "content": content,
            "keywords": list(keywords), "createdAt": edited, "updatedAt": edited, "usageCount": 0,
            "variables": variables or {}}


class Library:
    """The library in a home folder, written and read without the program."""

    def __init__(self, home, folder=None):
        self.folder = folder or os.path.join(home, "Documents", "Apps", "Vellumry")

    def write(self, collections):
        """collections: name -> list of snippets. The file of a collection is `<name>.json`."""
        os.makedirs(self.folder, exist_ok=True)
        for name, snippets in collections.items():
            self.write_collection(name, snippets)
        self._save(METADATA, {"version": "3.1", "collectionOrder": [f"ID-{n}" for n in collections]})

    def write_collection(self, name, snippets):
        self._save(f"{name}.json", {
            "version": "1.0",
            "collection": {"id": f"ID-{name}", "name": name, "createdAt": date_text(now())},
            "snippets": [{**record, "collection": name} for record in snippets]})

    def remove_collection(self, name):
        os.remove(os.path.join(self.folder, f"{name}.json"))

    def _save(self, file_name, record):
        """Writes the whole file atomically, as every program that shares the folder does."""
        part = self.folder + ".part"  # beside the folder, where nobody hears of it
        with open(part, "w", encoding="utf-8") as file:
            json.dump({**record, "lastModified": date_text(now()), "deviceId": DEVICE}, file,
                      indent=2, sort_keys=True, ensure_ascii=False)
        os.replace(part, os.path.join(self.folder, file_name))

    def file_bytes(self, name):
        with open(os.path.join(self.folder, f"{name}.json"), "rb") as file:
            return file.read()

    def exists(self):
        return os.path.exists(os.path.join(self.folder, METADATA))

    def collection(self, name):
        """The record in the file of that collection."""
        return json.loads(self.file_bytes(name))

    def snippets(self):
        """All snippets on disk, by title."""
        return {record["title"]: record for file in self._files() for record in file["snippets"]}

    def titles(self):
        """The titles on disk by their collections, which are in their order; so are the titles."""
        with open(os.path.join(self.folder, METADATA), encoding="utf-8") as file:
            order = json.load(file)["collectionOrder"]

        def place(file):
            known = file["collection"]["id"] in order
            return order.index(file["collection"]["id"]) if known else len(order)
        return {file["collection"]["name"]: [record["title"] for record in sorted(
            file["snippets"], key=lambda record: record.get("displayOrder", 0))]
                for file in sorted(self._files(), key=place)}

    def _files(self):
        """Without those that go away while they are read."""
        files = []
        for name in sorted(os.listdir(self.folder)):
            if name.endswith(".json") and name != METADATA:
                with contextlib.suppress(FileNotFoundError):
                    files.append(self.collection(name.removesuffix(".json")))
        return files
