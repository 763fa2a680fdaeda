"""Exports with qly into files, and reads them with a reader that has nothing of ours or libical's in it.

ExportedFilesTest.py QLY
"""
import csv, datetime, glob, os, subprocess, sys, tempfile, vobject

qly = sys.argv[1]
folder = tempfile.TemporaryDirectory()
os.chdir(folder.name)
environment = {"PATH": os.environ["PATH"], "HOME": folder.name, "LC_ALL": "C.UTF-8"}


def run(*arguments):
    result = subprocess.run([qly, *arguments], env=environment, capture_output=True, text=True)
    assert result.returncode == 0 and result.stderr == "", (arguments, result)
    return result.stdout


def make(name, header, rows, *fields):
    with open("table.csv", "w", newline="") as file:
        csv.writer(file).writerows([header, *rows])
    run("import", "table.csv", name, *(f"--field={field}" for field in fields))


def read(kind):
    items = []
    for path in glob.glob(f".local/share/quillary/{kind}/*"):
        with open(path, newline="") as file:
            text = file.read()
        assert text.endswith("\r\n") and "\n" not in text.replace("\r\n", ""), path
        assert all(len(line.encode()) <= 75 for line in text.split("\r\n")), path
        item = vobject.readOne(text)
        uid = item.uid.value if kind == "contacts" else item.vevent.uid.value
        assert os.path.basename(path).startswith(uid + "."), path
        items.append(item)
    return items


def expect(wanted, found):
    assert wanted == found, f"\nwanted {wanted}\nfound  {found}"


# ---- A contact with everything. A field serves several properties, as a database has twenty at most.
properties = (
    "Last Name,First Name,Middle Name,Job Title,Department,Company,Work Tel,Work Fax,Work Addr,Work City,Work State,"
    "Work Zip,Work Country,E-Mail,Mobile Tel,Web Page,Office Loc,Home Tel,Home Addr,Home City,Home State,Home Zip,"
    "Home Country,Category,Other Addr,Other City,Other State,Other Zip,Other Country,Pager,Car Tel,Home Fax,Work2 Tel,"
    "Home2 Tel,Radio Tel,E-Mail2,E-Mail3,Assistant,Assistant Tel,Spouse,Children,Notes").split(",")
assert len(properties) == 42
TEXTS = 18


def value(name):
    k = properties.index(name) % TEXTS
    return f"{k}é; x,y\\z: \"q\"='n' " + "ü€" * (10 * k) + "!"


day = datetime.date(1968, 2, 29).isoformat()
make("people.pdb", [f"F{k}" for k in range(TEXTS)] + ["Day"], [[value(name) for name in properties[:TEXTS]] + [day]],
     *(f"F{k}:text" for k in range(TEXTS)), "Day:date")
export = ["contacts", "people.pdb", *(f"--map={name}=F{k % TEXTS}" for k, name in enumerate(properties)),
          "--map=Birthday=Day", "--map=Anniversary=Day"]
for _ in range(2):
    expect(f"1 contact in {folder.name}/.local/share/quillary/contacts\n", run(*export))
[card] = read("contacts")

expect([value(name) for name in ("Last Name", "First Name", "Middle Name")],
       [card.n.value.family, card.n.value.given, card.n.value.additional])
expect(" ".join(value(name) for name in ("First Name", "Middle Name", "Last Name")), card.fn.value)
expect([value("Company"), value("Department"), value("Office Loc")], card.org.value)
expect([part.strip() for part in value("Category").replace(";", ",").split(",")], card.categories.value)
for contents, wanted in {
        "title": ["Job Title"], "url": ["Web Page"], "note": ["Notes"], "email": ["E-Mail", "E-Mail2", "E-Mail3"],
        "x-evolution-assistant": ["Assistant"], "x-evolution-spouse": ["Spouse"], "x-children": ["Children"]}.items():
    expect([value(name) for name in wanted], [line.value for line in card.contents[contents]])
for contents in ("bday", "x-evolution-anniversary"):
    expect([day], [line.value for line in card.contents[contents]])

telephones = {"WORK,VOICE": ["Work Tel", "Work2 Tel"], "WORK,FAX": ["Work Fax"], "HOME,VOICE": ["Home Tel", "Home2 Tel"],
              "HOME,FAX": ["Home Fax"], "CELL": ["Mobile Tel"], "PAGER": ["Pager"], "CAR": ["Car Tel"],
              "X-EVOLUTION-RADIO": ["Radio Tel"], "X-EVOLUTION-ASSISTANT": ["Assistant Tel"]}
found = {}
for line in card.tel_list:
    found.setdefault(",".join(line.params["TYPE"]), []).append(line.value)
expect({types: [value(name) for name in names] for types, names in telephones.items()}, found)
expect({place.upper(): [value(f"{place} {part}") for part in ("Addr", "City", "State", "Zip", "Country")]
        for place in ("Work", "Home", "Other")},
       {line.params["TYPE"][0]: [line.value.street, line.value.city, line.value.region, line.value.code,
                                 line.value.country] for line in card.adr_list})

# ---- Appointments
body = "first; x,y\\z\nEND:VEVENT\n" + "ü€" * 50
make("trips.pdb", ["Day", "From", "Until", "What"],
     [["2026-05-20", "09:00", "17:30", body], ["2026-05-21", "", "", "rest"], ["2026-05-21", "", "", "rest"]],
     "Day:date", "From:time", "Until:time", "What:text")
for _ in range(2):
    out = run("calendar", "trips.pdb", "--date=Day", "--start=From", "--end=Until", "--field=What", "--field=Until")
    expect(f"3 appointments in {folder.name}/.local/share/quillary/calendar\n", out)
found = sorted((str(item.vevent.dtstart.value), str(item.vevent.dtend.value), item.vevent.summary.value,
                item.vevent.description.value) for item in read("calendar"))
rest = ("2026-05-21", "2026-05-22", "trips", "What: rest\nUntil: No Time")
expect([("2026-05-20 09:00:00", "2026-05-20 17:30:00", "trips", f"What: {body}\nUntil: 05:30 pm"), rest, rest], found)
