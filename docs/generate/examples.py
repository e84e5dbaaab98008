"""Runs the examples of the documents and compares, or replaces, what the documents show.

    examples.py PROGRAM ROOT            exit status 1 and the differences, if an answer is another
    examples.py --update PROGRAM ROOT   writes the program's answers into the documents

An example is a fenced block whose first line begins with "$ proportions"; lines that end
in a backslash are continued. What follows in the block is the answer, standard output and then
standard error. "..." on a line of its own stands for lines that are left out.
"""

import difflib
import os
import pathlib
import re
import subprocess
import sys
import tempfile

BLOCK = re.compile(
    r"^(`{3,}\w*)\n(\$ proportions (?:[^\n]*\\\n)*[^\n]*\n)(.*?)^(`{3,})$", re.M | re.S
)


def documents(root):
    return sorted([*root.glob("docs/guide/*.md"), *root.glob("docs/methods/*.md")])


def answer(command, program, root):
    """What the program answers, run where the examples lie, in a folder for what it writes."""
    with tempfile.TemporaryDirectory() as folder:
        for name in ("examples",):
            os.symlink(root / name, pathlib.Path(folder) / name)
        environment = {**os.environ, "PATH": f"{program.parent}:{os.environ['PATH']}"}
        environment |= {"COLUMNS": "100", "LC_ALL": "C.UTF-8"}
        done = subprocess.run(
            ["sh", "-c", command], cwd=folder, env=environment, capture_output=True, text=True
        )
        return done.stdout + done.stderr


def agrees(shown, given):
    """Whether the answer is what the document shows, whose "..." stands for any lines."""
    parts = [re.escape(part) for part in re.split(r"^\.\.\.\n", shown, flags=re.M)]
    return re.fullmatch(r"(?:.*\n)*?".join(parts), given) is not None


def main(words):
    update = words[0] == "--update"
    program, root = (pathlib.Path(word).resolve() for word in words[-2:])
    wrong = run = 0
    for document in documents(root):
        text = document.read_text()

        def replaced(block):
            nonlocal wrong, run
            run += 1
            fence, command, shown, end = block.groups()
            given = answer(command[2:], program, root)
            if agrees(shown, given):
                return block.group(0)
            wrong += 1
            if not update:
                name = str(document.relative_to(root))
                sys.stdout.writelines(
                    difflib.unified_diff(
                        shown.splitlines(True), given.splitlines(True), name, "the program"
                    )
                )
            return f"{fence}\n{command}{given}{end}"

        new = BLOCK.sub(replaced, text)
        if update and new != text:
            document.write_text(new)
    print(f"{run} examples, {wrong} {'replaced' if update else 'that answer otherwise'}")
    return 0 if run > 0 and (update or wrong == 0) else 1


sys.exit(main(sys.argv[1:]))
