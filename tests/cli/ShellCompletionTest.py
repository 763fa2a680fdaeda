#!/usr/bin/env python3
"""The shells complete qly's command line, with whatever stands in the names.   ShellCompletionTest.py QLY BASH ZSH FISH
BASH and FISH are qly's scripts, ZSH is the folder with _qly. A shell that is not installed is left out."""
import os, pty, select, shutil, subprocess, sys, tempfile, time

qly, bash, zsh, fish = (os.path.abspath(path) for path in sys.argv[1:])
FIELDS = ["Name", "Time zone:list:north east;it's", 'Time "of" day:time', "a=b:checkbox", "R&D $HOME", "back\\slash"]
CASES = {  # what is typed before a tab, behind "qly " or as it stands, and what the program is to get
    "quillary --pi": ["--picture"],
    "im": ["import"],
    "list t.pdb --form": ["list", "t.pdb", "--format"],
    "list t.pdb --format=js": ["list", "t.pdb", "--format=json"],  # as far as json and jsonl go
    'list "my t': ["list", "my table.pdb"],
    "find t.pdb x --field 'Time \"": ["find", "t.pdb", "x", "--field", 'Time "of" day'],
    'find "my table.pdb" x --field "R': ["find", "my table.pdb", "x", "--field", "R&D $HOME"],
    "sort ~/t.pdb Name:d": ["sort", os.path.expanduser("~/t.pdb"), "Name:desc"],
    "record t.pdb add Time\\ zone=it": ["record", "t.pdb", "add", "Time zone=it's"],
    "contacts t.pdb --map Last\\ Name=back": ["contacts", "t.pdb", "--map", "Last Name=back\\slash"],
    "filter t.pdb --where a=b is t": ["filter", "t.pdb", "--where", "a=b", "is", "true"],
    "sort locked.pdb N": ["sort", "locked.pdb", "N"],
}
SHELLS = {
    "bash": (["bash", "--noprofile", "--norc", "-i"], f"source '{bash}'; PS1='read''y>'\n"),
    "zsh": (["zsh", "-f", "-i"], f"fpath=('{zsh}' $fpath); autoload -U compinit; compinit -D -u; PS1='read''y>'\n"),
    "fish": (["fish", "--no-config", "-i"], f"source '{fish}'; function fish_prompt; echo -n read''y'>'; end\n"),
}


class Terminal:
    def __init__(self, command):
        child, self.file = pty.fork()
        if child == 0:
            os.execvp(command[0], command)
        self.child, self.shown = child, b""

    def type(self, text):
        os.write(self.file, text.encode())

    def wait(self, done, what):
        end = time.monotonic() + 30
        while not done():
            if time.monotonic() > end:
                sys.exit(f"{what}: nothing came of it\n{self.shown[-2000:].decode(errors='replace')}")
            if select.select([self.file], [], [], 0.05)[0]:
                self.shown += os.read(self.file, 65536)

    def end(self):
        os.close(self.file)
        os.kill(self.child, 9)
        os.waitpid(self.child, 0)


with tempfile.TemporaryDirectory() as folder:
    CASES = {typed: [word.replace(os.path.expanduser("~"), folder) for word in got] for typed, got in CASES.items()}
    os.chdir(folder)
    os.environ.update(HOME=folder, XDG_CONFIG_HOME=folder, XDG_DATA_HOME=folder, XDG_STATE_HOME=folder, TERM="xterm",
                      XDG_CACHE_HOME=folder, LC_ALL="C.UTF-8", PATH=f"{folder}/bin:{os.environ['PATH']}", COLUMNS="200")
    os.environ.pop("QLY_PASSWORD", None)
    new = ["--name", "T", *(word for field in FIELDS for word in ("--field", field if ":" in field else field + ":text"))]
    for name in ("t.pdb", "my table.pdb", "locked.pdb"):
        subprocess.run([qly, "new", name, *new], check=True)
    subprocess.run([qly, "password", "locked.pdb", "set", "--new-password-file", "-"], input=b"secret", check=True)
    os.mkdir("bin")
    with open("bin/qly", "w", opener=lambda path, flags: os.open(path, flags, 0o755)) as fake:
        fake.write(f'#!/bin/sh\n[ "$1" != __complete ] || exec "{qly}" "$@"\n'
                   f'printf "%s\\n" "$@" >"{folder}/.got" && mv "{folder}/.got" "{folder}/got"\n')
    with open("bin/quillary", "w", opener=lambda path, flags: os.open(path, flags, 0o755)) as fake:
        fake.write('#!/bin/sh\n[ "$1" != --help ] || { echo "  -h, --help  shows this"; echo "  --picture P.png  saves"; exit; }\n'
                   f'printf "%s\\n" "$@" >"{folder}/.got" && mv "{folder}/.got" "{folder}/got"\n')
    before = {name: open(name, "rb").read() for name in os.listdir(".") if name.endswith(".pdb")}

    failed = False
    for shell, (command, setting) in SHELLS.items():
        if not shutil.which(shell):
            continue
        terminal = Terminal(command)
        terminal.type(setting)
        for typed, expected in CASES.items():
            prompts = terminal.shown.count(b"ready>")
            terminal.wait(lambda: b"ready>" in terminal.shown, shell)
            terminal.type(f"{typed if typed.startswith('quillary') else 'qly ' + typed}\t\n")
            terminal.wait(lambda: os.path.exists("got"), f"{shell}: {typed}")
            got = open("got").read().splitlines()
            os.remove("got")
            if got != expected:
                print(f"{shell}: qly {typed}: {got}, not {expected}")
                failed = True
            terminal.wait(lambda: terminal.shown.count(b"ready>") > prompts, shell)
        if b"qly: " in terminal.shown:
            print(f"{shell} shows a message of qly's")
            failed = True
        terminal.end()
    assert before == {name: open(name, "rb").read() for name in os.listdir(".") if name.endswith(".pdb")}
    sys.exit(failed)
