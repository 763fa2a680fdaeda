#!/usr/bin/env python3
"""The real catalogue server over loopback.   CatalogueServerTest.py QUILLARY-CATALOGUE QLY SAMPLES-FOLDER"""
import fcntl, json, os, re, shutil, signal, socket, subprocess, sys, tempfile, threading, time, zipfile

server, qly, samples = map(os.path.abspath, sys.argv[1:4])
PATIENCE = 2


def run(*arguments, **options):
    return subprocess.run(arguments, check=True, capture_output=True, **options).stdout


def start(*options):
    process = subprocess.Popen([server, "--port", "0", *options], stdout=subprocess.PIPE, text=True)
    line = process.stdout.readline()
    return process, int(re.search(r":(\d+)/$", line)[1])


def connect():
    return socket.create_connection(("127.0.0.1", port), timeout=20)


def read(stream):
    """Status, headers and body of the next response; every one has a length."""
    status = int(stream.readline().split()[1])
    headers = dict(line.decode().rstrip().split(": ", 1) for line in iter(stream.readline, b"\r\n"))
    return status, headers, stream.read(int(headers["Content-Length"]))


def get(target):
    with connect() as client:
        client.sendall(b"GET " + target.encode("latin-1") + b" HTTP/1.1\r\nHost: x\r\n\r\n")
        return read(client.makefile("rb"))


def results(query="", screen="qly_search&start=0&size=100"):
    status, _, body = get(f"/wireless/?screen={screen}{query}")
    assert status == 200, status
    first, last, total, rest = body.decode("cp1252").split(":", 3)
    fields = rest.split("^!")[:-1]
    rows = [dict(zip(("name", "doc", "file", "kind", "size"), fields[i : i + 5])) for i in range(0, len(fields), 5)]
    assert len(rows) == int(last) - int(first) + 1, body
    return rows


def names():
    return [row["name"] for row in results()]


def details(row):
    return get(f"/wireless/?screen=qly_detail&one_file=1&doc_id={row['doc']}&file_id={row['file']}")[2].split(b"^!")


def download(row):
    status, _, body = get(f"/?global_op=download_file&file_id={row['file']}")
    return body if status == 200 else status


def until(condition, what):
    deadline = time.monotonic() + 20
    while not condition():
        assert time.monotonic() < deadline, what
        time.sleep(0.02)


def bytes_of(name):
    with open(name, "rb") as file:
        return file.read()


def publishing():
    planets, secret = bytes_of("pub/planets.pdb"), results("&title=SECRET")[0]
    row = results("&title=plan&category=science")[0]
    assert (row["kind"], row["size"]) == ("pdb", "%.1f" % (len(planets) / 1024)), row
    assert download(row) == planets
    assert details(row)[:3] == [b"Ann", b"Science", b"Round"]
    assert details(results("&title=noted")[0])[2] == "Größe\r\n2".encode("cp1252")
    assert not any(details(secret)[:4]) and b"hush" not in get("/")[2], "a password guards more than the name"
    assert {"Planets", "noted", "secret", "bundle"} == set(names()), names()
    assert get("/wireless/?screen=qly_search&start=1&size=1")[2].startswith(b"1:1:4:")
    for text in (row["doc"], row["file"]):
        assert re.fullmatch("[0-9a-z]+", text), text


def packages():
    bundle = results("&title=bundle")[0]
    assert bundle["kind"] == "zip"
    inside = results(f"&doc_id={bundle['doc']}&file_id={bundle['file']}", "qly_view_zip")
    assert [row["name"] for row in inside] == ["films.pdb", "etc-passwd"], inside
    for row, content in zip(inside, (bytes_of("pub/planets.pdb"), b"innocent")):
        status, headers, body = get(row["doc"])
        assert (status, body) == (200, content) and "/" not in headers["Content-Disposition"], row
        assert details(row) == details(bundle), "a file in a package has the package's details"
    assert get(inside[0]["doc"][:-1])[0] == 404
    assert get(f"/wireless/?screen=qly_detail&one_file=1&doc_id={inside[0]['doc']}0&file_id=x")[0] == 404
    with zipfile.ZipFile("many.zip", "w") as archive:
        for i in range(1001):
            archive.writestr(f"{i}", "")
    with zipfile.ZipFile("bomb.zip", "w", zipfile.ZIP_DEFLATED) as archive:
        archive.writestr("zeros", bytes(8 << 20))
    with zipfile.ZipFile("damaged.zip", "w") as archive:
        archive.writestr("first", "sound")
        archive.writestr("second", "also sound")
    damaged = bytes_of("damaged.zip").replace(b"also", b"ALSO")  # so that its checksum is wrong
    with open("damaged.zip", "wb") as file:
        file.write(damaged)
    for name in ("many", "bomb", "damaged"):
        shutil.move(name + ".zip", "pub/" + name + ".zip")
    until(lambda: "damaged" in names(), "new package")
    assert not {"many", "bomb"} & set(names()), names()
    row = results("&title=damaged")[0]
    inside = results(f"&doc_id={row['doc']}&file_id={row['file']}", "qly_view_zip")
    assert [get(file["doc"])[0] for file in inside] == [200, 404]
    for name in ("many", "bomb", "damaged"):
        os.remove("pub/" + name + ".zip")
    until(lambda: len(names()) == 4, "packages gone")


def by_script():
    def catalogue(*arguments):
        return run(qly, "catalogue", *arguments, "--server", f"127.0.0.1:{port}", text=True)

    name, size, kind, doc, file = catalogue("search", "--title", "bundle").rstrip("\n").split("\t")
    assert (name, kind) == ("bundle", "zip"), (name, kind)
    listed = catalogue("package", doc, file).splitlines()
    assert [line.split("\t")[0] for line in listed[:-1]] == [row["name"] for row in
            results(f"&doc_id={doc}&file_id={file}", "qly_view_zip")], listed
    assert float(listed[-1]) > 0, listed
    planets = json.loads(catalogue("search", "--title", "plan", "--category", "Science", "--json", "--pages", "all"))
    found = planets["results"][0]
    assert planets["total"] == 1 and "Author: Ann" in catalogue("details", found["docId"], found["fileId"])
    os.mkdir("got")
    for where, target, options in (
        ("got/Planets.pdb", "got", ("--name", "Planets")),
        ("got/Planets (2).pdb", "got", ("--name", "Planets.pdb")),
        ("mine.pdb", "mine.pdb", ()),
    ):
        assert catalogue("download", found["fileId"], target, *options) == where + "\n", where
        assert bytes_of(where) == bytes_of("pub/planets.pdb"), where
    inside = listed[0].split("\t")[3]
    assert catalogue("download", inside, "got", "--in-package", "--name", "../x") == "got/__-x\n"
    # Ended in the midst of a transfer it leaves nothing.
    with socket.create_server(("127.0.0.1", 0)) as stuck:
        place = f"127.0.0.1:{stuck.getsockname()[1]}"
        process = subprocess.Popen([qly, "catalogue", "download", "1", "got", "--server", place], stderr=subprocess.PIPE)
        client = stuck.accept()[0]
        client.recv(4096)
        client.sendall(b"HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\nhalf")
        until(lambda: len(os.listdir("got")) == 4, "the beginning of a file")
        process.send_signal(signal.SIGTERM)
        assert process.wait(20) == -signal.SIGTERM
        process.stderr.close()
        client.close()
    assert sorted(os.listdir("got")) == ["Planets (2).pdb", "Planets.pdb", "__-x"]


def ways_out():
    """Nothing outside the folder, nor through a link, nor what is hidden."""
    for target in ("/../outside.pdb", "/%2e%2e/outside.pdb", "/?global_op=download_file&file_id=../outside.pdb", "//etc/passwd",
                   "/package/../../etc/passwd", "/planets.pdb", "/?global_op=download_file&file_id=f0000000000000000"):
        assert get(target)[0] == 404, target
    # The name that was a file when it was listed leads elsewhere when it is asked for.
    shutil.copy("pub/planets.pdb", "pub/sub/turning.pdb")
    run(qly, "new", "outside.pdb", "--name", "outside", "--field", "A:text")
    until(lambda: len(names()) == 5, "copy")
    row = [row for row in results("&title=planets") if download(row)][1]
    os.rename("pub/sub", "sub-outside")
    os.symlink("../sub-outside", "pub/sub")
    assert download(row) == 404
    until(lambda: len(names()) == 2, "gone with their folder")
    os.remove("pub/sub")
    os.rename("sub-outside", "pub/sub")
    os.remove("pub/sub/turning.pdb")
    until(lambda: len(names()) == 4, "gone again")


def coming_and_going():
    run(qly, "new", "pub/new.pdb", "--name", "Brand new", "--field", "A:text")
    until(lambda: "Brand new" in names(), "new file")
    with open("pub/catalogue.json", "w") as texts:
        json.dump({"files": {"new.pdb": {"title": "Renamed"}}}, texts)
    until(lambda: "Renamed" in names() and "noted" in names(), "new texts")
    row = results("&title=renamed")[0]
    time.sleep(0.1)  # older than that, a copy of it is kept
    before = [download(row) for _ in range(2)]
    run(qly, "record", "pub/new.pdb", "add", "A=more")
    assert download(row) == bytes_of("pub/new.pdb") != before[1] == before[0]
    os.remove("pub/new.pdb")
    until(lambda: "Renamed" not in names(), "removed")


def whole_states():
    for letter in "AB":
        table = "Text\n" + (letter * 60 + "\n") * 30000
        run(qly, "import", "-", f"{letter}.pdb", "--name", "state", "--quiet", input=table.encode())
        with zipfile.ZipFile(f"{letter}.zip", "w") as archive:
            archive.write(f"{letter}.pdb", "state.pdb")
    for ending in ("pdb", "zip"):
        show_whole_states(f"pub/state.{ending}", [bytes_of(f"{letter}.{ending}") for letter in "AB"])


def show_whole_states(path, images):
    """A writer that holds the lock is half way most of the time; downloads show only whole states."""
    with open(path, "wb") as file:
        file.write(images[0])
    until(lambda: "state" in names(), "state")
    row, done, seen = results("&title=state")[0], threading.Event(), []

    def write():
        for turn in range(40):
            image = images[(turn + 1) % 2]
            with open(path, "r+b") as file:
                fcntl.flock(file, fcntl.LOCK_EX)
                file.write(image[: len(image) // 2])
                file.flush()
                time.sleep(0.03)
                file.write(image[len(image) // 2 :])
            time.sleep(0.005)
        done.set()

    writer = threading.Thread(target=write)
    writer.start()
    while not done.is_set():
        seen.append(download(row))
    writer.join()
    assert all(body in images for body in seen), [body if isinstance(body, int) else len(body) for body in seen]
    assert set(seen) == set(images), "only one state was seen"
    os.remove(path)
    until(lambda: len(names()) == 4, "state gone")


def slow_readers():
    """A steady one gets all, though the system's buffers take so much that the server writes nothing for long."""
    content = os.urandom(12 << 20)
    with zipfile.ZipFile("pub/large.zip", "w") as archive:
        archive.writestr("content", content)
    until(lambda: "large" in names(), "large")
    request = f"GET /?global_op=download_file&file_id={results('&title=large')[0]['file']} HTTP/1.1\r\nHost: x\r\n\r\n".encode()
    steady, still = connect(), connect()
    for client in (steady, still):
        client.sendall(request)
    stream, end = steady.makefile("rb", buffering=0), time.monotonic() + PATIENCE + 4
    begun = b""
    while time.monotonic() < end:
        begun += stream.read(25 << 10)
        time.sleep(0.5)
    rest = b"".join(iter(lambda: stream.read(1 << 20), b""))  # to the end of the connection, which is idle then
    assert (begun + rest).endswith(b"\r\n\r\n" + bytes_of("pub/large.zip")), len(begun + rest)
    assert sum(map(len, iter(lambda: still.recv(1 << 20), b""))) < len(content), "one that reads nothing stays"
    for client in (stream, steady, still):
        client.close()
    os.remove("pub/large.zip")
    until(lambda: len(names()) == 4, "large gone")


def hostile_requests():
    """Nobody is kept from being served; the peculiar get an answer or are left."""
    slow, idle, half, reader = (connect() for _ in range(4))
    slow.sendall(b"GET / HT")
    half.sendall(b"GET / HTTP/1.1\r\nHost: x\r\n\r\n")
    half.shutdown(socket.SHUT_WR)
    reader.sendall(b"GET / HTTP/1.1\r\nHost: x\r\n\r\n" * 50)  # and reads nothing
    begun = time.monotonic()

    def trickle():
        try:
            while True:
                slow.sendall(b"x")
                time.sleep(0.1)
        except OSError:
            return

    trickler = threading.Thread(target=trickle)
    trickler.start()
    for request in (b"\0\1\2\3\r\n\r\n", b"GET\r\n\r\n", b"G" * 100000, b"GET /" + b"a" * 100000 + b" HTTP/1.1\r\n\r\n",
                    b"GET / HTTP/1.1\r\n" + b"X: y\r\n" * 20000 + b"\r\n", b"GET / HTTP/7.3\r\n\r\n", b"\x16\x03\x01\x02\0",
                    b"POST / HTTP/1.1\r\nHost: x\r\nContent-Length: 99999999999999999999\r\n\r\n",
                    b"GET / HTTP/1.1\r\nHost: x\r\nTransfer-Encoding: chunked\r\n\r\nffffffffffffffff\r\n"):
        with connect() as client:
            try:
                client.sendall(request)
                client.shutdown(socket.SHUT_WR)
                answer = client.recv(64)
                assert not answer.startswith(b"HTTP/1.1 200"), request[:40]
            except OSError:
                pass
        assert len(names()) == 4, request[:40]
    for request, status in ((b"GET / HTTP/1.1\r\nHost: x\r\nContent-Length: 5\r\n\r\nabcde", 413), (b"DELETE / HTTP/1.1\r\nHost: x\r\n\r\n", 405)):
        with connect() as client:
            client.sendall(request)
            assert read(client.makefile("rb"))[0] == status, request
    with connect() as client:
        client.sendall(b"".join(b"GET /wireless/?screen=qly_search&start=%d&size=1 HTTP/1.1\r\nHost: x\r\n\r\n" % i for i in range(4)))
        stream = client.makefile("rb")
        assert [read(stream)[2][:6] for _ in range(4)] == [b"%d:%d:4:" % (i, i) for i in range(4)], "pipelined"
    trickler.join(20)
    assert not trickler.is_alive() and time.monotonic() - begun < PATIENCE + 5, "a trickling client stays"
    idle.settimeout(PATIENCE + 5)
    assert idle.recv(1) == b"", "an idle client stays"
    for client in (slow, idle, half, reader):
        client.close()


def limits():
    clients = [connect() for _ in range(9)]
    time.sleep(0.2)
    for client in clients:
        try:
            client.sendall(b"GET / HTTP/1.1\r\nHost: x\r\n\r\n")
        except OSError:
            pass

    def is_served(client):
        try:
            return client.recv(12) == b"HTTP/1.1 200"
        except ConnectionError:
            return False

    assert sum(map(is_served, clients)) == 6
    for client in clients:
        client.close()

    def is_open_again():
        try:
            return len(names()) == 4
        except (OSError, IndexError):  # it has not noticed yet
            return False

    until(is_open_again, "served again")


with tempfile.TemporaryDirectory() as folder:
    os.chdir(folder)
    os.environ.update(HOME=folder, XDG_STATE_HOME=folder, LC_ALL="C.UTF-8")
    # ThreadSanitizer sees neither the lock around the C library's time zone nor which descriptors openat has made anew.
    with open("suppressions", "w") as known:
        known.writelines(f"race:{name}\n" for name in ("tzset_internal", "fstat", "closedir", "^close$", "pread", "^read$", "flock"))
    os.environ["TSAN_OPTIONS"] = f"suppressions={folder}/suppressions"
    os.makedirs("pub/sub")
    os.makedirs("pub/.hidden")
    for name in ("noted", "secret"):
        run(qly, "new", f"pub/sub/{name}.pdb", "--name", name, "--field", "A:text")
        run(qly, "text", f"pub/sub/{name}.pdb", "--set", "-", input="Größe\n2\n".encode() if name == "noted" else b"hush\n")
    with open("password", "w") as password:
        password.write("hush\n")
    run(qly, "password", "pub/sub/secret.pdb", "set", "--new-password-file", "password")
    shutil.copy(f"{samples}/planets.pdb", "pub")
    shutil.copy(f"{samples}/books.pdb", "pub/.hidden.pdb")
    shutil.copy(f"{samples}/books.pdb", "pub/.hidden/books.pdb")
    shutil.copy(f"{samples}/books.pdb", "linked.pdb")
    os.symlink("../linked.pdb", "pub/linked.pdb")
    os.symlink(samples, "pub/samples")
    os.mkfifo("pub/pipe.pdb")
    with open("pub/protein.pdb", "w") as file:
        file.write("HEADER    no database of ours" + " " * 100)
    with zipfile.ZipFile("pub/bundle.zip", "w", zipfile.ZIP_DEFLATED) as archive:
        archive.write("pub/planets.pdb", "films.pdb")
        archive.writestr("../../etc/passwd", "innocent")
    with open("pub/catalogue.json", "w") as texts:
        json.dump({"files": {"planets.pdb": {"author": "Ann", "category": "Science", "description": "Round"}}}, texts)

    process, port = start("--folder", "pub", "--patience", str(PATIENCE))
    try:
        until(lambda: len(names()) == 4, "what is published at the start")
        for part in (publishing, packages, by_script, ways_out, coming_and_going, whole_states, slow_readers, hostile_requests):
            part()
            assert process.poll() is None, part.__name__
        taken = subprocess.run([server, "--folder", "pub", "--port", str(port)], capture_output=True, text=True)
        assert taken.returncode == 1 and f"port {port}" in taken.stderr, taken
    finally:
        process.send_signal(signal.SIGTERM)
        assert process.wait(20) == 0
    process, port = start("--folder", "pub", "--connections-per-address", "6")
    try:
        limits()
    finally:
        process.send_signal(signal.SIGINT)
        assert process.wait(20) == 0
    for arguments, status in ((("--folder", "none"), 1), ((), 2), (("--folder", "pub", "--port", "99999"), 2),
                              (("--folder", "pub", "--listen", "nowhere"), 1), (("--help",), 0), (("--version",), 0)):
        told = subprocess.run([server, *arguments], capture_output=True, text=True)
        assert told.returncode == status and bool(told.stderr) == (status != 0), (arguments, told)
