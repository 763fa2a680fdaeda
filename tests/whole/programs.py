"""The real programs on a database of their own: qly, the window with a user's hand at it, and what goes wrong below them."""
import json
import os
import shutil
import subprocess
import time

PATIENCE = 60  # seconds; only what is wrong takes as long
QLY, WINDOW, SERVER = "cli/qly", "app/quillary", "catalogue-server/quillary-catalogue"
failures = []


def check(holds, what):
    if not holds:
        failures.append(what)
        print("FAILED:", what, flush=True)


def until(condition, what):
    end = time.monotonic() + PATIENCE
    while not condition():
        assert time.monotonic() < end, what
        time.sleep(0.01)


def can_disturb():
    """Whether system calls can be counted and failed here."""
    return shutil.which("strace") and subprocess.run(["strace", "-o", "/dev/null", "true"]).returncode == 0


class Shop:
    """A database, a state folder for recovery files, and the programs."""

    def __init__(self, folder, build):
        self.folder, self.build = folder, build
        self.qly, self.quillary = os.path.join(build, QLY), os.path.join(build, WINDOW)
        self.file = os.path.join(folder, "films.pdb")
        self.state = os.path.join(folder, "state")
        home = os.path.join(folder, "home")
        os.mkdir(home, 0o700)
        self.environment = dict(os.environ, XDG_STATE_HOME=self.state, LC_ALL="C.UTF-8", HOME=home, XDG_RUNTIME_DIR=home,
                                XDG_DATA_HOME=home, XDG_CONFIG_HOME=home, QT_QPA_PLATFORM="offscreen",
                                QT_QPA_GENERIC_PLUGINS="hand", QT_PLUGIN_PATH=os.path.join(build, "tests/whole/plugins"),
                                ASAN_OPTIONS="detect_leaks=0")  # which does not work in a traced process

    def table(self, count, notes=""):
        path = os.path.join(self.folder, "films.csv")
        with open(path, "w") as table:
            table.write("Title,Notes,Seen\n")
            table.writelines(f"Film {i},{notes}{i},false\n" for i in range(count))
        return path

    def run(self, *arguments, inject=None):
        command = [self.qly, *arguments]
        if inject:
            command = ["strace", "-f", "-qq", "-o", "/dev/null", *inject, *command]
        return subprocess.run(command, env=self.environment, capture_output=True)

    def records(self):
        """What a reader is shown; reading must not write."""
        before = self.bytes()
        listed = self.run("list", self.file)
        check(self.bytes() == before, "list wrote the file")
        return listed.stdout if listed.returncode == 0 else b"status %d: " % listed.returncode + listed.stderr

    def bytes(self):
        with open(self.file, "rb") as file:
            return file.read()

    def reset(self, content):
        shutil.rmtree(self.state, ignore_errors=True)
        if os.path.exists(self.file):
            os.remove(self.file)
        if content is not None:
            with open(self.file, "wb") as file:
                file.write(content)

    def recovery_files(self):
        return [os.path.join(folder, name) for folder, _, names in os.walk(self.state) for name in names]


class Window:
    """A running window program. It does one thing after the other: what `look` tells is from behind all that came before."""

    def __init__(self, shop):
        self.process = subprocess.Popen([shop.quillary, shop.file], env=shop.environment, stdin=subprocess.PIPE,
                                        stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.process.kill()
        self.process.communicate()

    def do(self, *commands):
        """Goes on at once, and with a process that has ended too."""
        try:
            self.process.stdin.write("".join(command + "\n" for command in commands).encode())
            self.process.stdin.flush()
        except BrokenPipeError:
            pass
        return self

    def look(self, *commands):
        """None when the process has ended."""
        line = self.do(*commands, "look").process.stdout.readline()
        return json.loads(line) if line else None

    def opens(self):
        until(lambda: self.look()["title"] != "Quillary", "the window does not open its database")

    def ends(self):
        check(self.process.wait(PATIENCE) == 0, f"the window ended with {self.process.returncode}")


class Disturbance:
    """System calls of a running process that are made to fail, or to kill it, until this ends."""

    def __init__(self, window, inject):
        self.tracer = subprocess.Popen(["strace", "-f", "-o", "/dev/null", *inject, "-p", str(window.process.pid)],
                                       stderr=subprocess.PIPE)
        line = self.tracer.stderr.readline()
        assert b"attached" in line, line

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.tracer.kill()  # asked to end, it can wait for ever for a process that was killed
        self.tracer.communicate()


def injection(step, effect, *paths):
    """For strace: what becomes of the calls named `step`, on these paths alone when there are any."""
    return ["-e", "trace=" + step, "-e", f"inject={step}:{effect}", *(word for path in paths for word in ("-P", path))]
