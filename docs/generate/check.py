"""Checks that pages, pictures, completions and the manual page are what would be made now.

    check.py PAGES PROGRAM ROOT     PAGES is docs_pages; exit status 1 and what differs, if anything

All is made again in a copy, which must come out as it was. The source of each method must be in the
list of sources.
"""

import filecmp
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile


def files(folder):
    return {path.relative_to(folder) for path in folder.rglob("*") if path.is_file()}


def differences(kept, made):
    for path in sorted(files(kept) | files(made)):
        if not (kept / path).exists() or not (made / path).exists():
            yield path
        elif not filecmp.cmp(kept / path, made / path, shallow=False):
            yield path


def unknown_sources(program, root):
    """The sources of methods that the list of sources does not have."""
    listed = set(re.findall(r"^- \*\*(.*?)\*\*:", (root / "docs/methods/sources.md").read_text(), re.M))
    told = subprocess.run([program, "methods"], check=True, capture_output=True, text=True).stdout
    named = re.findall(r"^  source +(.*)", told, re.M)
    # Several sources of a method are parted after their years.
    return {one for line in named for one in re.split(r"(?<=\d), ", line)} - listed


def main(pages, program, root):
    here = root / "docs/generate"
    with tempfile.TemporaryDirectory() as folder:
        copy = pathlib.Path(folder)
        skip = shutil.ignore_patterns("__pycache__")
        for part in ("docs", "completion"):
            shutil.copytree(root / part, copy / part, ignore=skip)
        subprocess.run([pages, copy / "docs/methods"], check=True)
        subprocess.run([sys.executable, here / "options.py", program, copy], check=True)
        stale = [
            f"{part}/{path}"
            for part in ("docs", "completion")
            for path in differences(root / part, copy / part)
            if "__pycache__" not in str(path)
        ]
    for path in stale:
        print(f"stale: {path}; script/docs makes it anew")
    unknown = unknown_sources(program, root)
    for source in sorted(unknown):
        print(f"docs/methods/sources.md does not have {source}")
    return 1 if stale or unknown else 0


sys.exit(main(*(pathlib.Path(word).resolve() for word in sys.argv[1:])))
