#!/usr/bin/env python3
"""What qly holds in memory follows a file's size, whatever the file claims.   QlyMemoryTest.py QLY"""
import os, shutil, subprocess, sys, tempfile

qly = os.path.abspath(sys.argv[1])
MB = 1 << 20


def peak(*arguments):  # as long as it is more than what this process holds itself
    process = subprocess.Popen([qly, *arguments], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    _, status, usage = os.wait4(process.pid, 0)
    process.returncode = os.waitstatus_to_exitcode(status)
    assert process.returncode in (0, 1), (arguments, process.returncode)
    return usage.ru_maxrss * 1024


with tempfile.TemporaryDirectory() as folder:
    os.chdir(folder)
    os.environ.update(HOME=folder, XDG_STATE_HOME=folder, XDG_CONFIG_HOME=folder)
    with open("table.csv", "w") as table:
        table.write("A,B\n")
        for row in range(60_000):
            table.write(f"{row:0520},x\n")
    subprocess.run([qly, "import", "table.csv", "whole.pdb", "--field", "A:text", "--field", "B:text"], check=True)
    size = os.path.getsize("whole.pdb")
    with open("whole.pdb", "rb") as whole, open("bogus.pdb", "wb") as bogus:
        head = whole.read(78 + 5 * 8)
        offsets = [int.from_bytes(head[at : at + 4], "big") for at in range(78, len(head), 8)]
        whole.seek(offsets[0])
        schema = whole.read(offsets[4] - offsets[0])
        begin = 78 + 65_535 * 8
        # As many records as can be, each second one as long as the file.
        places = [at - offsets[0] + begin for at in offsets] + [size - 9, begin + len(schema)] * 32_765
        bogus.write(head[:52] + bytes(4) + head[56:76] + b"\xff\xff")
        for place, kind in zip(places, b"\5\1\6\4" + b"\2" * 65_531):
            bogus.write(place.to_bytes(4, "big") + bytes([kind, 0, 0, 0]))
        bogus.write(schema)
        bogus.truncate(size)
    # A record of nothing but NULs, and three sort keys on the long field.
    shutil.copy("whole.pdb", "keys.pdb")
    with open("keys.pdb", "r+b") as keys:
        keys.seek(int.from_bytes(head[52:56], "big") + 416)
        keys.write(bytes(12))
    shutil.copy("whole.pdb", "nuls.pdb")
    with open("nuls.pdb", "r+b") as nuls:
        nuls.truncate(offsets[4] + 6)
        nuls.truncate(size)
        nuls.seek(76)
        nuls.write(b"\0\5")
    for name in "nuls.pdb", "keys.pdb":
        held = peak("record", name, "set", "1", "B=q")
        assert held <= 2 * size + 64 * MB, f"record set in {name}: {held // MB} MB of {size // MB}"
    # A page of several bytes a character, and texts that begin alike.
    held = peak("sort", "whole.pdb", "A", "B:desc", "--code-page", "shift_jis")
    assert held <= 2 * size + 64 * MB, f"sort in shift_jis: {held // MB} MB of {size // MB}"
    for name, most in ("whole.pdb", size * 1.3 + 20 * MB), ("bogus.pdb", 2 * size):
        for arguments in ["info"], ["list"], ["check"], ["find", "absent"]:
            held = peak(arguments[0], name, *arguments[1:])
            assert held <= most, f"{arguments[0]} {name}: {held // MB} MB of {most // MB}"
