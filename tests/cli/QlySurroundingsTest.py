#!/usr/bin/env python3
"""qly at a terminal, and beside another qly.   QlySurroundingsTest.py QLY"""
import json, os, pty, subprocess, sys, tempfile, time

qly = os.path.abspath(sys.argv[1])


def at_terminal(*arguments, stream="stdout", meanwhile=lambda: None):
    leader, terminal = pty.openpty()
    with subprocess.Popen([qly, *arguments], **{stream: terminal}) as process:
        os.close(terminal)
        meanwhile()
        shown = b""
        try:
            while piece := os.read(leader, 4096):
                shown += piece
        except OSError:
            pass  # how a terminal that all others closed ends
    os.close(leader)
    return process.returncode, shown.decode().replace("\r", "")  # the terminal adds one to each line


def run(*arguments, **options):
    return subprocess.run([qly, *arguments], capture_output=True, text=True, **options)


def lock(name):
    with open(name, "r+b") as file:
        image = file.read()
        file.seek(int.from_bytes(image[52:56], "big") + 278)  # the hash of the password
        file.write(int(run("hash", "--database", input="secret").stdout).to_bytes(4, "big"))


def give_password_late():
    with open("password", "w") as password:
        time.sleep(0.6)
        password.write("secret\n")


with tempfile.TemporaryDirectory() as folder:
    os.chdir(folder)
    os.environ.update(HOME=folder, XDG_STATE_HOME=folder, XDG_CONFIG_HOME=folder, LC_ALL="C.UTF-8")
    os.environ.pop("QLY_PASSWORD", None)

    # What a terminal would obey is shown, and only there.
    hostile = "\x1b[2J\x7f\x9dx\ttab"
    run("import", "-", "t.pdb", input=f"A\n{hostile}\n", check=True)
    visible = hostile.replace("\x1b", "U+001B").replace("\x7f", "U+007F").replace("\x9d", "U+009D")
    for options, shown in ((), visible), (("--format", "tsv"), visible.replace("\t", "\\t")):
        assert at_terminal("list", "t.pdb", *options) == (0, f"A\n{shown}\n"), options
    status, shown = at_terminal("list", "t.pdb", "--format", "json")
    assert status == 0 and shown.isascii() and "\x1b" not in shown and "\x7f" not in shown, shown
    assert json.loads(shown)["records"] == [[hostile]]
    assert run("list", "t.pdb").stdout == f"A\n{hostile}\n"

    # Nobody waits for a file because qly waits for a password.
    lock("t.pdb")
    os.mkfifo("password")
    waiting = subprocess.Popen([qly, "record", "t.pdb", "add", "A=last", "--password-file", "password"])
    with open("password", "w") as password:  # once it has begun to read
        os.environ["QLY_PASSWORD"] = "secret"
        assert run("record", "t.pdb", "add", "A=first").returncode == 0
        password.write("secret\n")
    assert waiting.wait() == 0
    assert run("list", "t.pdb", "--format", "jsonl").stdout.splitlines()[1:] == ['["first"]', '["last"]']

    # Half a second after its beginning a command shows how far reading and writing have come, and takes it away again.
    run("import", "-", "long.pdb", input="A\n" + ("x" * 9999 + "\n") * 900, check=True)
    lock("long.pdb")
    add = ["record", "long.pdb", "add", "A=last", "--password-file", "password"]
    status, shown = at_terminal(*add, stream="stderr", meanwhile=give_password_late)
    assert status == 0 and "Reading 4" in shown and "Writing 100 %" in shown and shown.endswith("%" + 13 * " "), shown
    assert at_terminal(*add, "--quiet", stream="stderr", meanwhile=give_password_late) == (0, "")
