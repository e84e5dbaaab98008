"""Makes the shell completions and the options of the manual page from what the program's own help
says, so that they all come from one table of options.

    options.py PROGRAM ROOT     writes ROOT/completion/* and the marked part of ROOT/docs/proportions.1
"""

import os
import pathlib
import re
import subprocess
import sys

FILES = {"FILE", "DATA"}
BEGIN, END = '.\\" made by script/docs\n', '.\\" end\n'


OPTION = re.compile(r"(?:(-\w), )?(--[\w-]+)(?: (\S+))?(?:  +(.*))?$")
LIMITS = re.compile(r" \(([^()]*)\)$")


class Option:
    """One option: its names, what its value is called, the values it can have, what it says."""

    def __init__(self, line):
        letter, name, value, text = OPTION.match(line).groups()
        self.names = [letter, name] if letter else [name]
        self.value, self.text = value or "", text
        self.choices = self.value.split("|") if "|" in self.value else []
        limits = LIMITS.search(text)
        first = limits.group(1).split("; ")[0] if limits else ""
        if re.fullmatch(r"[\w-]+(, [\w-]+)+", first):
            self.choices = first.split(", ")
            rest = limits.group(1)[len(first) :].removeprefix("; ")
            self.text = text[: limits.start()] + (f" ({rest})" if rest else "")


class Command:
    """A subcommand: its name, what it does, and its options."""

    def __init__(self, name, text, positional, options):
        self.name, self.text, self.positional, self.options = name, text, positional, options


def answer(program, *words):
    return subprocess.run(
        [program, *words], check=True, capture_output=True, text=True, env={**os.environ, "COLUMNS": "100"}
    ).stdout


def section(text, title):
    """The lines of a part of the help, those that continue one joined to it."""
    found = re.search(rf"^{title}:\n((?:  .*\n)+)", text, re.M)
    lines = []
    for line in found.group(1).splitlines() if found else []:
        if line.startswith(" " * 20) and lines:
            joint = " " if re.search(r"\S  +\S", lines[-1]) else "  "
            lines[-1] += joint + line.strip()
        else:
            lines.append(line.strip())
    return lines


def options_of(text):
    return [Option(line) for line in section(text, "Options")]


def read(program):
    top = answer(program, "--help")
    commands = []
    for line in section(top, "Subcommands"):
        name, text = re.split("  +", line)
        own = answer(program, name, "--help")
        positional = [line.split()[0] for line in section(own, "Arguments")]
        commands.append(Command(name, text, positional, options_of(own)))
    return options_of(top), commands


def keywords(program):
    """The keywords of all tests, and of all intervals."""
    listed = re.findall(r"^([A-Z]\w*)\n  design .*, (\w+)", answer(program, "methods"), re.M)
    return [sorted({word for word, kind in listed if kind == one}) for one in ("test", "interval")]


def add_choices(program, commands):
    """Values that the help does not list: methods. Returns the keywords of all of them."""
    tests, intervals = keywords(program)
    for command in commands:
        for option in command.options:
            if "--tests" in option.names:
                option.choices = tests + ["ALL", "NONE"]
            if "--intervals" in option.names:
                option.choices = intervals + ["ALL", "NONE"]
    return sorted({*tests, *intervals})


def bash(top, commands, methods):
    def reply(what):
        return f'mapfile -t COMPREPLY < <(compgen {what} -- "$word")'

    def cases(options):
        names = {}  # by what follows them
        for option in options:
            if option.choices:
                action = reply(f'-W "{" ".join(option.choices)}"')
            elif option.value in FILES:
                action = reply("-f")
            elif option.value:
                action = "COMPREPLY=()"
            else:
                continue
            names.setdefault(action, []).extend(option.names)
        lines = [f"        {'|'.join(words)}) {action}; return ;;\n" for action, words in names.items()]
        return f"      case $before in\n{''.join(lines)}      esac\n" if lines else ""

    def names(options):
        return " ".join(name for option in options for name in option.names)

    parts = []
    for command in commands:
        plain = reply("-f")
        if command.positional == ["KEYWORD"]:
            plain = reply(f'-W "{" ".join(methods)}"')
        options = reply(f'-W "{names(command.options)}"')
        parts.append(
            f"    {command.name})\n{cases(command.options)}"
            f'      case $word in\n'
            f"        -*) {options} ;;\n"
            f"        *) {plain} ;;\n      esac ;;"
        )
    subcommands = " ".join(command.name for command in commands)
    return f"""# Completion of proportions for bash. Made by script/docs.
# shellcheck shell=bash
_proportions() {{
  local word=${{COMP_WORDS[COMP_CWORD]}} before=${{COMP_WORDS[COMP_CWORD-1]}} command=''
  local i
  for ((i = 1; i < COMP_CWORD; i++)); do
    case ${{COMP_WORDS[i]}} in
      {subcommands.replace(" ", "|")}) command=${{COMP_WORDS[i]}}; break ;;
    esac
  done
  case $command in
{chr(10).join(parts)}
    *)
{cases(top)}      {reply(f"-W '{subcommands} {names(top)}'")} ;;
  esac
}}
complete -o filenames -F _proportions proportions
"""


def zsh(top, commands, methods):
    def quoted(text):
        return re.sub(r"([\[\]:])", r"\\\1", text).replace("'", "'\\''")

    def spec(option):
        value = ""
        if option.choices:
            value = f":{option.value}:({' '.join(option.choices)})"
        elif option.value in FILES:
            value = f":{option.value}:_files"
        elif option.value:
            value = f":{option.value}: "
        names = option.names
        first = f"'({' '.join(names)})'" if len(names) > 1 else ""
        braces = "{" + ",".join(names) + "}" if len(names) > 1 else ""
        if braces:
            return f"{first}{braces}'[{quoted(option.text)}]{value}'"
        return f"'{names[0]}[{quoted(option.text)}]{value}'"

    parts = []
    for command in commands:
        rest = "'*:file:_files'"
        if command.positional == ["KEYWORD"]:
            rest = f"'1:KEYWORD:({' '.join(methods)})'"
        specs = " \\\n        ".join([spec(option) for option in command.options] + [rest])
        parts.append(f"      {command.name})\n        _arguments \\\n        {specs} ;;")
    described = "\n    ".join(f"'{c.name}:{quoted(c.text)}'" for c in commands)
    specs = " \\\n    ".join(spec(option) for option in top)
    return f"""#compdef proportions
# Completion of proportions for zsh. Made by script/docs.
_proportions() {{
  local state line
  local -a commands
  commands=(
    {described}
  )
  _arguments -C \\
    {specs} \\
    '1:command:->command' '*::argument:->argument'
  case $state in
    command) _describe command commands ;;
    argument)
      case $line[1] in
{chr(10).join(parts)}
      esac ;;
  esac
}}
_proportions "$@"
"""


def fish(top, commands, methods):
    def line(option, condition):
        words = [f"complete -c proportions -n '{condition}'"]
        for name in option.names:
            words.append(f"-l {name[2:]}" if name.startswith("--") else f"-s {name[1:]}")
        if option.choices:
            words.append(f"-x -a '{' '.join(option.choices)}'")
        elif option.value in FILES:
            words.append("-r -F")
        elif option.value:
            words.append("-x")
        text = option.text.replace("'", "\\'")
        return " ".join(words) + f" -d '{text}'"

    lines = ["# Completion of proportions for fish. Made by script/docs."]
    lines += [line(option, "__fish_use_subcommand") for option in top]
    for command in commands:
        lines.append(
            "complete -c proportions -n __fish_use_subcommand -f"
            f" -a {command.name} -d '{command.text}'"
        )
        seen = f"__fish_seen_subcommand_from {command.name}"
        lines += [line(option, seen) for option in command.options]
        if command.positional == ["KEYWORD"]:
            lines.append(f"complete -c proportions -n '{seen}' -f -a '{' '.join(methods)}'")
    return "\n".join(lines) + "\n"


def roff(text):
    text = text.replace("\\", "\\e").replace("-", "\\-")
    return "\\&" + text if text.startswith((".", "'")) else text


def manual(top, commands):
    lines = []
    for title, options in [("", top)] + [(c.name, c.options) for c in commands]:
        lines.append(f'.SS "Options of {title}"' if title else '.SS "Options of every use"')
        for option in options:
            names = ", ".join(f"\\fB{roff(name)}\\fR" for name in option.names)
            value = f" \\fI{roff(option.value)}\\fR" if option.value else ""
            lines += [".TP", names + value]
            text = roff(option.text) + "."
            if option.choices and "|" not in option.value:
                text += " One of: " + roff(", ".join(option.choices)) + "."
            lines.append(text)
    return "\n".join(lines) + "\n"


def main(program, root):
    top, commands = read(program)
    methods = add_choices(program, commands)
    folder = root / "completion"
    folder.mkdir(exist_ok=True)
    (folder / "proportions.bash").write_text(bash(top, commands, methods))
    (folder / "_proportions").write_text(zsh(top, commands, methods))
    (folder / "proportions.fish").write_text(fish(top, commands, methods))
    page = root / "docs/proportions.1"
    text = page.read_text()
    before, after = text.split(BEGIN)[0], text.split(END)[-1]
    page.write_text(before + BEGIN + manual(top, commands) + END + after)


main(sys.argv[1], pathlib.Path(sys.argv[2]))
