// On records: edited in the form, changed by another program, and what cannot be saved.
#include "db/FieldValue.h"
#include "tests/soak/Soak.h"

namespace quillary::soak {

namespace {

/// As the file has it; nothing when it cannot be read.
std::optional<std::string> StoredAs(FieldType type, const QString& shown) {
    if (type == FieldType::Phone) return NormalizePhone(Stored(shown), AnsiText::Windows1252());
    if (type != FieldType::Date && type != FieldType::Time) return Stored(shown);
    if (shown.isEmpty()) return std::string();
    if (type == FieldType::Date) {
        const QDate date = QDate::fromString(shown, shown.contains('/') ? "MM/dd/yyyy" : "yyyy-MM-dd");
        return date.isValid() ? std::optional(std::to_string(QDate(1904, 1, 1).daysTo(date))) : std::nullopt;
    }
    const char* const format = !shown.endsWith('m') ? "hh:mm" : shown.contains(' ') ? "hh:mm ap" : "hh:mmap";
    const QTime time = QTime::fromString(shown, format);
    return time.isValid() ? std::optional(std::to_string(QTime(0, 0).secsTo(time))) : std::nullopt;
}

/// The form on a row or, with -1, on a new record.
struct Form {
    Soak& s;
    CQuillaryDialog& page;
    bool& hasCommitted;
    int row = -1;
    Row loaded = {};
    std::vector<QString> shown = {};  // at the last loading or commit

    void Load(int which) {
        row = which;
        loaded = row < 0 ? s.mem.NewRecord() : s.mem.shown[At(row)];
        shown.clear();
        for (int k = 0; At(k) < loaded.size(); ++k) {
            shown.push_back(Shown(page, 100 + k));
            const FieldType type = s.mem.fields[At(k)].type;
            if (type == FieldType::Date || type == FieldType::Time) continue;
            s.Expect(Stored(shown.back()) == s.mem.Display(loaded[At(k)], k),
                     "the form shows field " + std::to_string(k));
        }
    }

    void Enter() {
        const auto name = [this](int k) { return "editor " + std::string(InfoOf(s.mem.fields[At(k)].type).name); };
        const int field = s.Rarest(loaded.size(), name);
        s.Cover(name(field));
        s.Fill(page, 100, 100 + field);
        s.Log("field " + std::to_string(field) + ": " + Shown(page, 100 + field).toStdString());
    }

    /// What a commit stores; nothing when one of the texts is refused.
    std::optional<Row> Entered() {
        page.Control<QWidget>(kOkButton)->setFocus();  // which numbers are cleaned up at
        Row entered = loaded;
        for (int k = 0; At(k) < loaded.size(); ++k) {
            const QString now = Shown(page, 100 + k);
            if (now == shown[At(k)]) continue;
            const auto stored = StoredAs(s.mem.fields[At(k)].type, now);
            if (!stored) return std::nullopt;
            if (s.mem.Display(*stored, k) != s.mem.Display(loaded[At(k)], k)) entered[At(k)] = *stored;
            const auto hides = [&](unsigned char c) { return c > k && c < loaded.size(); };
            if (std::ranges::any_of(entered[At(k)], hides)) return std::nullopt;
        }
        return entered;
    }

    void Commit(const Row& entered) {
        if (row >= 0 && entered == loaded) return;
        row < 0 ? s.mem.Append(entered) : (void)(s.mem.shown[At(row)] = entered);
        if (row < 0) row = static_cast<int>(s.mem.shown.size()) - 1;
        hasCommitted = true;
    }

    /// One thing that can be done in it.
    void Act() {
        const auto last = [this] { return static_cast<int>(s.mem.shown.size()) - 1; };
        const int command = s.Of<int>({0, 0, 0, 0, ID_FORM_PREVIOUS, ID_FORM_NEXT, ID_FORM_NEXT, ID_FORM_NEW,
                                       ID_FORM_DUPLICATE, ID_FILE_SAVE, ID_FORM_DIAL, ID_FORM_DELETE});
        if (command == 0) return s.IsReadOnly() ? void() : Enter();
        const bool adds = command == ID_FORM_NEW || command == ID_FORM_DUPLICATE;
        if (command == ID_FILE_SAVE ? s.IsReadOnly() : !page.Control<QWidget>(command)->isEnabled()) return;
        if (adds ? s.mem.shown.size() > kMostRecords : command == ID_FORM_DELETE && s.mem.shown.size() < 3) return;
        const bool goesOn = s.Percent(60);
        s.Answer("Commit current record?", {goesOn ? "OK" : "Cancel"});
        s.Answer("Are you sure that you want to delete this record?", {goesOn ? "Yes" : "No"});
        const bool isAsked = command == ID_FORM_NEW ? row < 0
                                                    : command == ID_FORM_DELETE &&
                                                          s.desktop.settings.ReadInt(kConfirmRecordDelete, 1) != 0;
        const auto entered = Entered();
        command == ID_FILE_SAVE ? s.Key(s.Focus(), Qt::Key_S, Qt::ControlModifier) : s.Press(page, command);
        if (command == ID_FORM_DIAL || (isAsked && !goesOn)) return;
        if (command == ID_FORM_DELETE) {
            s.mem.shown.erase(s.mem.shown.begin() + row);
            hasCommitted = true;
            return;
        }
        if (!entered) return;  // refused
        Commit(*entered);
        if (command == ID_FORM_DUPLICATE) s.mem.shown.push_back(s.mem.shown[At(row)]), hasCommitted = true;
        s.Saved();
        Load(command == ID_FORM_NEW         ? -1
             : command == ID_FORM_DUPLICATE ? last()
                                            : row + (command == ID_FORM_NEXT) - (command == ID_FORM_PREVIOUS));
    }
};

/// Opens it on a row by click or key, or on a new record, and does `act` in it.
void InForm(Soak& s, int row, const std::function<void(Form&)>& act) {
    bool hasCommitted = false;
    s.On(173, [&](CQuillaryDialog& page) {
        Form form{s, page, hasCommitted};
        if (row >= 0 && !s.mem.editOnSelect) s.Key(s.Focus(), Qt::Key_F2);
        form.Load(row);
        act(form);
    });
    s.On(216, [&s](CQuillaryDialog& page) { (void)s.Finish(page, Soak::Ends::Here); });
    for (const char* part :
         {"No Phone columns", "No program answers", "would hide the field", "is no date.", "is no time."})
        s.Answer(part);
    if (row < 0) {
        s.Command(ID_FILE_NEW);
    } else if (const QModelIndex cell = s.View()->model()->index(row, 0);
               s.Percent(50) || (s.mem.editOnSelect && s.mem.fields[0].type == FieldType::Checkbox)) {
        s.View()->setFocus();
        s.View()->setCurrentIndex(cell);
        s.Key(s.View(), Qt::Key_Return);
    } else {
        s.View()->scrollTo(cell);
        s.Click(s.View()->viewport(), s.View()->visualRect(cell).center());
    }
    if (!hasCommitted) return;
    s.mem.Sort();
    if (!s.isUnsaved) s.Saved();
}

void EditRecord(Soak& s) {
    const bool isNew = !s.IsReadOnly() && s.mem.shown.size() < kMostRecords && (s.mem.shown.empty() || s.Percent(30));
    if (s.mem.shown.empty() && !isNew) return;
    InForm(s, isNew ? -1 : s.Pick(s.mem.shown.size()), [&s](Form& form) {
        for (int k = s.Pick(9); k > 0 && form.page.isVisible(); --k) form.Act();
        if (form.page.isHidden()) return;
        const auto entered = form.Entered();
        if (!s.Finish(form.page, entered ? Soak::Ends::Any : Soak::Ends::Here)) return;
        s.Expect(entered.has_value(), "what cannot be stored is refused");
        form.Commit(*entered);
    });
}

void WriteAsAnother(Soak& s, const Path& path) {
    s.Log("another writes " + path.string());
    const Row row = s.disk[path].NewRecord();
    s.Expect(AppendByAnother(s.others, path, row), "another program can write");
    s.disk[path].Append(row);
}

/// The window has read the file again.
void Follow(Soak& s) {
    s.mem = s.disk[*s.open];
    s.WaitFor([&s] { return s.WindowDifference().empty(); }, "the window follows the file");
}

void AnotherWrites(Soak& s) {
    const Path path = s.open && s.Percent(80) ? *s.open : s.AnyPath();
    if (s.disk[path].shown.size() > kMostRecords) return;
    WriteAsAnother(s, path);
    if (path == s.open) Follow(s);
}

/// A change that cannot be saved, and what becomes of it.
void Unsaved(Soak& s) {
    const Path path = *s.open;
    const bool isFull = s.Percent(50);
    const char* const kChanged = "Another program has changed this database";
    if (s.mem.shown.empty() || s.mem.shown.size() > kMostRecords) return;
    s.Answer("could not be written (No space left on device)");
    s.Answer(kChanged, {"Cancel"});
    InForm(s, s.Pick(s.mem.shown.size()), [&](Form& form) {
        for (int k = 0; k < 4; ++k) form.Enter();
        const auto entered = form.Entered();
        if (!entered || *entered == form.loaded) return s.Press(form.page, kCancelButton);
        s.isUnsaved = true;
        s.files.isFull = isFull;
        if (!isFull) WriteAsAnother(s, path);
        s.Press(form.page, kOkButton);
        form.Commit(*entered);
    });
    if (!s.isUnsaved) return;
    s.Check(false);
    // It stays unsaved, until there is room or a decision.
    const Path elsewhere = s.root / "Documents" / ("Saved " + std::to_string(s.Pick(1000)) + ".pdb");
    s.chosenFile = QString::fromStdString(elsewhere.string());
    QStringList ways = {"Discard the Changes", isFull ? "" : "Reload", isFull ? "" : "Overwrite"};
    if (!isFull && !s.disk.contains(elsewhere) && !s.HasManyFiles()) ways << "Save Elsewhere...";
    const QString way = ways[s.Pick(ways.size())];
    const bool leaves = way == ways[0] || (way == "Save Elsewhere..." && s.Percent(50));
    s.files.isFull = isFull && leaves;
    s.isUnsaved = false;
    if (way == "Save Elsewhere...") {
        s.mem.name = elsewhere.stem().string();
        s.disk[elsewhere] = s.mem.InFile();
        s.open = elsewhere;
    }
    s.Answer("are not saved.", {way});
    s.Answer(kChanged, {way});
    s.Command(leaves ? ID_FILE_OPEN : ID_FILE_SAVE);
    s.files.isFull = false;
    if (way == "Reload") return Follow(s);
    if (way != ways[0]) s.Saved();
    if (leaves) s.Closed();
}

}  // namespace

const std::vector<Action> kRecordActions = {
    {"edits records", Action::Open, 30, EditRecord},
    {"another program writes", Action::Any, 5, AnotherWrites},
    {"changes what cannot be saved", Action::Writing, 5, Unsaved},
};

}  // namespace quillary::soak
