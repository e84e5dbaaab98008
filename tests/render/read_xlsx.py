"""Reads a workbook with nothing but zip and XML, and prints it as JSON: for each sheet its name,
its frozen rows and columns, its merged ranges, and its cells with value, type and number format.
Fails when a part is no well-formed XML, or when a cell is a formula or a link."""

import json
import sys
import zipfile
from xml.etree import ElementTree

MAIN = "{http://schemas.openxmlformats.org/spreadsheetml/2006/main}"
PLACE = "{http://schemas.openxmlformats.org/officeDocument/2006/relationships}id"


def shared_texts(book):
    if "xl/sharedStrings.xml" not in book.namelist():
        return []
    root = ElementTree.fromstring(book.read("xl/sharedStrings.xml"))
    return ["".join(t.text or "" for t in item.iter(MAIN + "t")) for item in root]


def number_formats(book):
    root = ElementTree.fromstring(book.read("xl/styles.xml"))
    codes = {"0": "General", "1": "0", "2": "0.00", "49": "@"}
    for entry in root.iter(MAIN + "numFmt"):
        codes[entry.get("numFmtId")] = entry.get("formatCode")
    return [codes.get(xf.get("numFmtId"), "?") for xf in root.find(MAIN + "cellXfs")]


def cell_of(cell, texts, formats):
    assert cell.find(MAIN + "f") is None, "a formula"
    value = cell.find(MAIN + "v")
    kind = cell.get("t", "n")
    if value is None:
        return None
    found = texts[int(value.text)] if kind == "s" else float(value.text)
    return {"value": found, "type": kind, "format": formats[int(cell.get("s", "0"))]}


def sheet_of(book, name, path, texts, formats):
    root = ElementTree.fromstring(book.read(path))
    assert root.find(MAIN + "hyperlinks") is None, "a link"
    pane = root.find(f".//{MAIN}pane")
    cells = {c.get("r"): cell_of(c, texts, formats) for c in root.iter(MAIN + "c")}
    return {
        "name": name,
        "frozen": [int(pane.get("ySplit", 0)), int(pane.get("xSplit", 0))] if pane is not None else None,
        "merged": [m.get("ref") for m in root.iter(MAIN + "mergeCell")],
        "cells": {place: cell for place, cell in cells.items() if cell},
    }


def main(path):
    with zipfile.ZipFile(path) as book:
        assert book.testzip() is None
        for part in book.namelist():
            if part.endswith((".xml", ".rels")):
                ElementTree.fromstring(book.read(part))
        targets = {
            relation.get("Id"): "xl/" + relation.get("Target")
            for relation in ElementTree.fromstring(book.read("xl/_rels/workbook.xml.rels"))
        }
        texts = shared_texts(book)
        formats = number_formats(book)
        root = ElementTree.fromstring(book.read("xl/workbook.xml"))
        sheets = [
            sheet_of(book, s.get("name"), targets[s.get(PLACE)], texts, formats)
            for s in root.iter(MAIN + "sheet")
        ]
    json.dump(sheets, sys.stdout)


main(sys.argv[1])
