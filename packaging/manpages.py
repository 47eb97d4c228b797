#!/usr/bin/env python3
"""Writes the man pages of a build's programs from what stands elsewhere already: their --help, and docs/control.md.

    packaging/manpages.py BUILD OUT
"""
import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
ITEM = re.compile(r"( *)(\S.*?) {2,}(\S.*)$")
VERBATIM = {"SYNOPSIS", "EXAMPLE", "EXAMPLES"}


def escaped(text):
    return re.sub(r"([^\w\s]|_)", r"\\\1", text)


def depth(line):
    return len(line) - len(line.lstrip())


def markdown_of_block(lines):
    """A paragraph, or a list of terms that stand two blanks and more in front of what they mean."""
    result = []
    for line in lines:
        item = ITEM.match(line)
        if item and not (result and result[-1][0] is not None and depth(line) > result[-1][2]):
            result.append([item[2], item[3], len(item[1])])
        elif result and depth(line) > result[-1][2]:
            if result[-1][0] is None:  # a term with a line of its own
                result[-1][0], result[-1][1] = result[-1][1], line.strip()
            else:
                result[-1][1] += " " + line.strip()
        elif result and result[-1][0] is None:
            result[-1][1] += " " + line.strip()
        else:
            result.append([None, line.strip(), depth(line)])
    return "\n".join(f"**{escaped(term)}**\n:   {escaped(text)}\n" if term else escaped(text) + "\n"
                     for term, text, _ in result)


def sections_of(page):
    """The sections of a page, by their titles; what stands at its margin is of a title that the page leaves out."""
    sections = {}
    title = None
    for block in page.strip("\n").split("\n\n"):
        lines = block.split("\n")
        if re.fullmatch("[A-Z][A-Z ]*", lines[0]):
            title = {"USAGE": "SYNOPSIS"}.get(lines[0], lines[0])
            lines = lines[1:]
        elif depth(lines[0]) == 0:
            title = "NAME" if title is None else "DESCRIPTION" if "DESCRIPTION" not in sections else "NOTES"
        sections.setdefault(title, []).append(lines)
    return sections


def markdown_of(page, level="#", without=()):
    text = ""
    for title, blocks in sections_of(page).items():
        if title in without:
            continue
        text += f"{level} {title}\n\n"
        for lines in blocks:
            if title in VERBATIM:
                text += "".join(f"    {line.strip()}\n" for line in lines) + "\n"
            else:
                text += markdown_of_block(lines) + "\n"
    return text


def help_of(build, program, *command):
    return subprocess.run([build / program, *command, "--help"], check=True, capture_output=True, text=True).stdout


def page_of_program(build, program):
    return markdown_of(help_of(build, program))


def page_of_zenqayctl(build):
    main = help_of(build, "zenqayctl")
    text = markdown_of(main, without=("SEE ALSO",))
    commands = [line.split()[0] for block in sections_of(main)["COMMANDS"] for line in block if ITEM.match(line)]
    for command in commands:
        page = help_of(build, "zenqayctl", command)
        text += f"# {sections_of(page)['NAME'][0][0].strip()}\n\n" + markdown_of(page, "##", without=("NAME",))
    return text + "# SEE ALSO\n\n**zenqay.toml**(5), **zenqay-dbsync**(8), **zenqay-dbsync-check**(8)\n"


def page_of_job_file():
    control = (ROOT / "docs/control.md").read_text()
    section = re.search(r"^## The job file\n(.*?)^## ", control, re.MULTILINE | re.DOTALL)[1]
    section = re.sub(r"^### (.*)$", lambda title: "# " + title[1].upper(), section, flags=re.MULTILINE)
    example = "".join(f"    {line}\n" for line in (ROOT / "share/zenqay.toml").read_text().split("\n"))
    return (f"# NAME\n\nzenqay.toml - the jobs of zenqayctl\n\n# DESCRIPTION\n\n{section}\n# EXAMPLE\n\n{example}\n"
            "# SEE ALSO\n\n**zenqayctl**(8)\n")


def write(out, name, section, version, markdown):
    subprocess.run(["pandoc", "--standalone", "--from=markdown-smart", "--to=man", f"--output={out}/{name}.{section}",
                    f"--metadata=title:{name}", f"--metadata=section:{section}", f"--metadata=footer:{version}"],
                   input=markdown, check=True, text=True)


def main():
    build, out = (pathlib.Path(argument) for argument in sys.argv[1:])
    version = subprocess.run([build / "zenqay-dbsync", "--version"], check=True, capture_output=True,
                             text=True).stdout.strip()
    out.mkdir(parents=True, exist_ok=True)
    for program in ("zenqay-dbsync", "zenqay-dbsync-check"):
        write(out, program, 8, version, page_of_program(build, program))
    write(out, "zenqayctl", 8, version, page_of_zenqayctl(build))
    write(out, "zenqay.toml", 5, version, page_of_job_file())


main()
