"""run_documents.py BUILD_FOLDER [--update] DOCUMENT...: runs the commands of documents as a reader would, in a copy of
the sources where BUILD_FOLDER stands as the build of this machine, and compares what they print with what is shown.

Blocks of a document:
  ```sh       commands, one a line, indented lines and } being of the one before; each has to end with status 0
  ```console  commands behind `$ `, each with what it prints; a status other than 0 is shown as [status N]
Both are run, a document's from first to last in one shell, unless a comment right before the block says why not:
  <!-- not run: why -->
A line `...` of the output stands for any number of lines. Addresses, process numbers, times, and the widths of gaps may
differ. With --update the output is written into the document anew, but for blocks with such a line.

Commands may end in a backslash, and go on in the next line. Links to files have to lead to some. Ends with status 77
where the build is not complete.
"""

import os
import re
import shutil
import subprocess
import sys
import tempfile

SOURCE = os.path.realpath(os.path.join(os.path.dirname(__file__), "../.."))
NOT_RUN = re.compile(r"<!-- not run: \S.* -->$")
LINK = re.compile(r"\]\(([^)#:]+)[^):]*\)")
# What an indented block that ought to be one of the above begins with.
COMMAND = re.compile(r" {4}(\$ |scripts/|quern |cmake |ctest |cpack |ninja |git |build/|python3 )")


class Command:
    def __init__(self, words, line):
        self.words, self.line, self.output = words, line, []

    def shown(self):
        return "\n".join(self.output)


class Block:
    """Commands of one fenced block. `begin` and `end` are the lines of the document between its fences."""

    def __init__(self, kind, begin):
        self.kind, self.begin, self.end, self.commands = kind, begin, begin, []

    def read(self, lines):
        continued = False
        for number in range(self.begin, self.end):
            line = lines[number]
            is_command = line.startswith("$ ") if self.kind == "console" else line.strip() and line[0] not in "#"
            if continued or (self.kind == "sh" and self.commands and line[:1] in (" ", "}")):
                self.commands[-1].words += "\n" + line
            elif is_command:
                self.commands.append(Command(line.removeprefix("$ "), number + 1))
            elif self.kind == "console" and self.commands:
                self.commands[-1].output.append(line)
            elif line.strip() and line[0] != "#":
                raise SystemExit(f"line {number + 1}: a block of console begins with a command, as in `$ true`")
            continued = (continued or is_command) and line.endswith("\\")


def blocks_of(name, lines):
    """The blocks that are to be run, and complaints about others."""
    blocks, complaints, fence = [], [], None
    for number, line in enumerate(lines):
        if line.startswith("```"):
            if fence is not None:
                fence.end = number
                if fence.kind:
                    fence.read(lines)
                    blocks.append(fence)
                fence = None
            else:
                kind = line[3:] if line[3:] in ("sh", "console") else ""
                if kind and number and NOT_RUN.match(lines[number - 1]):
                    kind = ""
                fence = Block(kind, number + 1)
        elif fence is None:
            where = f"{name}:{number + 1}"
            if COMMAND.match(line):
                complaints.append(f"{where}: commands belong between ```sh or ```console and ```")
            for link in LINK.findall(line):
                if not os.path.exists(os.path.join(SOURCE, os.path.dirname(name), link)):
                    complaints.append(f"{where}: there is no {link}")
    return blocks, complaints


def plain(text):
    """What has to be the same."""
    text = re.sub(r"\b0x[0-9a-f]+\b", "ADDRESS", text)
    text = re.sub(r"\b\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\b", "TIME", text)
    text = re.sub(r"^(process +)\d+ \(parent \d+\)", r"\1N (parent N)", text, flags=re.M)
    text = re.sub(r"[ \t]+", " ", text)
    return [line.rstrip() for line in text.strip("\n").split("\n")]


def is_as_shown(printed, shown):
    pattern = ["(.*\n)*" if line == "..." else re.escape(line) + "\n" for line in plain(shown)]
    return re.fullmatch("".join(pattern), "\n".join(plain(printed)) + "\n") is not None


def prepare(build, folder):
    """Copies the sources as git has them, and puts what is built where the documents say that it is. Answers the
    shell's environment."""
    names = subprocess.run(["git", "-C", SOURCE, "ls-files", "-co", "--exclude-standard", "-z"], check=True,
                           stdout=subprocess.PIPE).stdout.decode().split("\0")
    for name in filter(None, names):
        if os.path.exists(os.path.join(SOURCE, name)):
            os.makedirs(os.path.dirname(os.path.join(folder, name)), exist_ok=True)
            shutil.copy2(os.path.join(SOURCE, name), os.path.join(folder, name))
    target = build if os.uname().machine == "aarch64" else os.path.join(os.path.dirname(build), "aarch64")
    for preset, parts in (("native", {"bin": build}), ("aarch64", {"lib": target, "examples": target})):
        os.makedirs(os.path.join(folder, "build", preset))
        for part, where in parts.items():
            if not os.path.isdir(os.path.join(where, part)):
                print(f"skipped: {where}/{part} is not built")
                sys.exit(77)
            os.symlink(os.path.join(where, part), os.path.join(folder, "build", preset, part))
    kept = {name: value for name, value in os.environ.items() if not name.startswith(("QUERN_", "LD_PRELOAD"))}
    return {**kept, "TZ": "UTC", "LC_ALL": "C.UTF-8"}


def run(commands, folder, environment):
    """Runs the commands in one shell. Answers (status, output) of each."""
    mark = "@@ends with@@"
    script = "".join(f"{{ {command.words}\n}} 2>&1\nprintf '\\n{mark}%s\\n' $?\n" for command in commands)
    shell = subprocess.run(["bash"], cwd=folder, env=environment, input=script, stdout=subprocess.PIPE,
                           stderr=subprocess.STDOUT, text=True, timeout=240)
    parts = re.split(rf"\n{mark}(\d+)\n", shell.stdout)
    results = [(int(status), output) for output, status in zip(parts[::2], parts[1::2])]
    if len(results) != len(commands):
        raise SystemExit(f"the shell ended early:\n{shell.stdout[-2000:]}")
    return results


def result_text(status, output):
    return output.rstrip("\n") + (f"\n[status {status}]" if status else "")


def check(name, blocks, folder, environment, update, lines):
    failures = []
    commands = [command for block in blocks for command in block.commands]
    results = dict(zip(commands, run(commands, folder, environment)))
    for block in reversed(blocks):
        is_stale = False
        for command in block.commands:
            status, output = results[command]
            if block.kind == "sh":
                bad = status != 0
            else:
                bad = not is_as_shown(result_text(status, output), command.shown())
                is_stale |= bad
            if bad and not (update and block.kind == "console"):
                failures.append(f"{name}:{command.line}: $ {command.words}\n-- status {status}, printed:\n{output}"
                                f"-- shown:\n{command.shown()}\n")
        if update and is_stale and not any("..." in command.output for command in block.commands):
            fresh = []
            for command in block.commands:
                text = result_text(*results[command]).strip("\n")
                fresh += ["$ " + command.words.split("\n")[0], *command.words.split("\n")[1:]]
                fresh += text.split("\n") if text else []
                fresh += [""] if command.output[-1:] == [""] else []
            lines[block.begin:block.end] = fresh
    return failures, len(commands)


def main():
    arguments = sys.argv[1:]
    update = "--update" in arguments
    build, *names = [argument for argument in arguments if argument != "--update"]
    failures = 0
    with tempfile.TemporaryDirectory() as scratch:
        folder = os.path.join(scratch, "quern")
        environment = prepare(os.path.realpath(build), folder)
        for name in names:
            with open(os.path.join(SOURCE, name), encoding="utf-8") as file:
                lines = file.read().split("\n")
            blocks, complaints = blocks_of(name, lines)
            wrong, count = check(name, blocks, folder, environment, update, lines)
            print(f"{name}: {count} commands run, {len(wrong)} not as shown")
            print("\n".join(complaints + wrong), end="")
            failures += len(complaints) + len(wrong)
            if update:
                with open(os.path.join(SOURCE, name), "w", encoding="utf-8") as file:
                    file.write("\n".join(lines))
    sys.exit(failures != 0)


if __name__ == "__main__":
    main()
