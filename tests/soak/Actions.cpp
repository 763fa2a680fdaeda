// What the user of the soak does, and what every file must hold behind it.
#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QRadioButton>
#include <QTest>
#include <QTreeView>
#include <QTreeWidget>

#include "app/DocListModel.h"
#include "db/FieldValue.h"
#include "db/Password.h"
#include "tests/soak/Soak.h"
#include "ui/CommandIds.h"
#include "ui/RowListView.h"
#include "ui/TextEdit.h"
#include "ui/ValuePicker.h"
#include "views/QuillaryView.h"

namespace quillary::soak {

namespace {

constexpr std::size_t kMostRecords = 25;
constexpr std::size_t kMostFiles = 7;

std::string Stored(const QString& text) { return text.toLatin1().toStdString(); }

std::uint32_t Hash(auto kind, const QString& password) {
    return HashPassword(kind, password.toStdU16String(), AnsiText::Windows1252());
}

/// What a person sees in a control.
QString Shown(const CQuillaryDialog& page, int id) {
    const auto* widget = page.Control<QWidget>(id);
    if (const auto* text = dynamic_cast<const CTextEdit*>(widget)) return text->Text();
    if (const auto* line = qobject_cast<const QLineEdit*>(widget)) return line->text();
    if (const auto* list = qobject_cast<const QComboBox*>(widget)) return list->currentText();
    if (const auto* picker = dynamic_cast<const CValuePicker*>(widget)) return picker->Text();
    return page.Control<QCheckBox>(id)->isChecked() ? "true" : "false";
}

/// As the file has it; nothing when it cannot be read.
std::optional<std::string> StoredAs(FieldType type, const QString& shown) {
    if (type == FieldType::Phone) return NormalizePhone(Stored(shown), AnsiText::Windows1252());
    if (type != FieldType::Date && type != FieldType::Time) return Stored(shown);
    if (shown.isEmpty()) return std::string();
    for (const char* format : {"MM/dd/yyyy", "yyyy-MM-dd"}) {
        const QDate date = QDate::fromString(shown, format);
        if (type == FieldType::Date && date.isValid()) return std::to_string(QDate(1904, 1, 1).daysTo(date));
    }
    for (const char* format : {"hh:mm ap", "hh:mmap", "hh:mm"}) {
        const QTime time = QTime::fromString(shown, format);
        if (type == FieldType::Time && time.isValid()) return std::to_string(QTime(0, 0).secsTo(time));
    }
    return std::nullopt;
}

// ---- The list of databases

QTreeView* List(Soak& s) { return s.Frame().findChild<QTreeView*>("58378"); }

/// The place of the database's row, once it is there, which is then clicked.
QPoint RowOf(Soak& s, const Path& path) {
    s.Log("database " + path.string());
    auto* folders = s.Frame().findChild<QComboBox*>();
    if (folders->isEnabled()) s.Choose(folders, 0);
    const auto& rows = *static_cast<CDocListModel*>(List(s)->model());
    s.WaitFor([&] { return rows.IndexOf(path).isValid(); }, path.string() + " is in the list");
    List(s)->setFocus();
    List(s)->scrollTo(rows.IndexOf(path));
    const QPoint at = List(s)->visualRect(rows.IndexOf(path)).center();
    QTest::mouseClick(List(s)->viewport(), Qt::LeftButton, {}, at);
    return at;
}

void OpenFromList(Soak& s) {
    const Path path = s.AnyPath();
    if (s.Chance(12)) s.files.readOnly.insert(path);
    s.handedOver = path;
    s.chosenFile = QString::fromStdString(path.string());
    const QPoint at = RowOf(s, path);
    const bool isHidden = path.filename().string().starts_with('.');  // where the chooser does not offer it
    const std::function<void()> kWays[] = {
        [&] { s.Key(List(s), Qt::Key_Return); }, [&] { s.FromContextMenu(List(s)->viewport(), at, "Open"); },
        [&] { s.Click(List(s)->viewport(), at, true); },
        [&] {
            s.Click(s.Frame().findChild<QWidget*>("57601"), {9, 9});
        },  // "Open Other..."
    };
    kWays[s.Pick(isHidden ? 3 : 4)]();
}

void Rename(Soak& s) {
    const Path path = s.AnyPath();
    const QString name = s.Of<QString>({"Renamed", "two words", "with.dot"}) + QString::number(s.Pick(30));
    const Path renamed = path.parent_path() / (name.toStdString() + path.extension().string());
    if (s.disk.contains(renamed)) return;
    const QPoint at = RowOf(s, path);
    s.Chance(50) ? s.Key(List(s), Qt::Key_F2) : s.FromContextMenu(List(s)->viewport(), at, "Rename");
    auto* editor = qobject_cast<QLineEdit*>(s.Frame().focusWidget());
    s.Expect(editor, "the name can be edited");
    s.Type(editor, name);
    s.Key(editor, Qt::Key_Return);
    s.disk[renamed] = s.disk[path];
    s.disk.erase(path);
}

void Copy(Soak& s) {
    const std::size_t before = s.disk.size();
    if (before > kMostFiles) return;
    const Path path = s.AnyPath();
    s.FromContextMenu(List(s)->viewport(), RowOf(s, path), "Make a Copy");
    s.AdoptNewFiles();
    s.Expect(s.disk.size() == before + 1, "there is a copy");
}

void Delete(Soak& s) {
    const Path path = s.open ? *s.open : s.AnyPath();
    const bool isSure = s.disk.size() > 3 && s.Chance(60);
    s.Answer("is about to be deleted.  Are you sure?", {isSure ? "Yes" : "No"});
    if (s.open) {
        s.Command(ID_DATABASE_DELETE, !s.readOnly);
    } else {
        const QPoint at = RowOf(s, path);
        s.Chance(50) ? s.Key(List(s), Qt::Key_Delete) : s.FromContextMenu(List(s)->viewport(), at, "Delete...");
    }
    if (!isSure || s.readOnly) return;
    s.disk.erase(path);
    s.Closed();
}

// ---- Fields

/// The editor of a name in the list; none when no name is being edited.
QLineEdit* NameEditor(Soak& s, CRowListView& list) {
    auto* editor = qobject_cast<QLineEdit*>(s.Frame().focusWidget());
    return editor && list.isAncestorOf(editor) ? editor : nullptr;
}

/// In the dialog of a field's type. What is set beside the type is read from the file.
void ChooseType(Soak& s, CQuillaryDialog& page, Definition& definition) {
    const auto type = [](int k) { return "type " + std::string(AllFieldTypes()[At(k)].name); };
    const int chosen = s.Rarest(AllFieldTypes().size(), type);
    s.Choose(page.Control<QComboBox>(1011), chosen);
    s.Cover(type(chosen));
    for (const int id : {1018, 1019, 1020, 1021, 1022, 1023, 1024}) s.Fill(page, 60, id);
    const DateOrder order = static_cast<DateOrder>(page.Control<QComboBox>(1022)->currentIndex());
    auto* list = page.Control<CRowListView>(1004);
    for (int k = list->isVisible() ? s.Pick(6) : 0; k > 0; --k) {
        const int command =
            s.Of<int>({ID_ITEM_ADD, ID_ITEM_ADD, ID_ITEM_DELETE, ID_ITEM_UP, ID_ITEM_DOWN, ID_ITEM_RENAME});
        if (command != ID_ITEM_ADD && list->SelectedRow() < 0) continue;
        s.Cover("command " + std::to_string(command));
        command == ID_ITEM_RENAME
            ? s.FromContextMenu(list->viewport(), list->visualRect(list->currentIndex()).center(), "Rename")
            : s.Press(page, command);
        QLineEdit* editor = NameEditor(s, *list);
        if (editor) s.Type(editor, s.Of<QString>({"red", "grün", "", "blue 10"})), s.Key(editor, Qt::Key_Return);
    }
    if (!s.Finish(page, Soak::Ends::Here)) return;
    definition.field.type = static_cast<FieldType>(chosen);
    if (definition.field.type == FieldType::Date) definition.order = order;
}

/// In the editor of the fields. Whether it ended with OK.
bool DefineFields(Soak& s, CQuillaryDialog& page, std::vector<Definition>& fields) {
    auto* list = page.Control<CRowListView>(1017);
    const auto name = [&](int row) {
        const QString text = s.Word().simplified();
        QLineEdit* editor = NameEditor(s, *list);
        s.Expect(editor, "the name can be edited");
        s.Type(editor, text.isEmpty() ? "Field" : text);
        s.Key(editor, Qt::Key_Return);
        fields[At(row)].field.name = Stored(list->Text(row));
    };
    const auto tap = [&](int row, int column) {
        list->scrollTo(list->model()->index(row, column));
        s.Click(list->viewport(), list->visualRect(list->model()->index(row, column)).center());
    };
    if (fields.empty()) fields.emplace_back(), name(0);
    for (int k = 1 + s.Pick(4); k > 0; --k) {
        const int count = static_cast<int>(fields.size());
        const int row = std::max(list->SelectedRow(), 0);
        const int other = s.Pick(count);
        switch (s.Pick(8)) {
            case 0:
            case 1:
                s.Answer("A database has at most 20 fields.");
                s.Press(page, ID_FIELD_INSERT);
                if (count == 20) break;
                fields.emplace(fields.begin() + row + 1);
                name(row + 1);
                break;
            case 2:
                if (count > 1) s.Press(page, ID_FIELD_REMOVE), fields.erase(fields.begin() + row);
                break;
            case 3:
            case 4: {
                const int to = row + (s.Chance(50) ? -1 : 1);
                s.Press(page, to < row ? ID_FIELD_UP : ID_FIELD_DOWN);
                if (to >= 0 && to < count) std::swap(fields[At(row)], fields[At(to)]);
                break;
            }
            case 5:
                tap(other, 0);
                name(other);
                break;
            default:
                s.On(150, [&](CQuillaryDialog& typePage) { ChooseType(s, typePage, fields[At(other)]); });
                tap(other, 1);
        }
    }
    return s.Finish(page);
}

/// Reads from the file what was set beside the types.
void AdoptOptions(Soak& s, const Path& path, std::vector<Definition>& fields) {
    const auto stored = ReadFile(s.others, path);
    s.Expect(stored && stored->fields.size() == fields.size(), "the fields are stored");
    for (int k = 0; At(k) < fields.size(); ++k) fields[At(k)].field.options = stored->fields[At(k)].options;
}

void ChangeFields(Soak& s) {
    std::vector<Definition> fields;
    for (const Field& field : s.mem.fields) fields.push_back({field, static_cast<int>(fields.size())});
    bool isTaken = false;
    s.Answer("Change the fields all the same?", {s.Chance(75) ? "Change" : "Cancel"});
    s.Answer("would hide");
    s.On(136, [&](CQuillaryDialog& page) { isTaken = DefineFields(s, page, fields); });
    s.Command(ID_DATABASE_FIELDS, !s.readOnly);
    if (!isTaken) return;
    AdoptOptions(s, *s.open, fields);
    bool isSame = fields.size() == s.mem.fields.size();
    for (int k = 0; isSame && k < static_cast<int>(fields.size()); ++k) {
        isSame = fields[At(k)].from == k && fields[At(k)].field == s.mem.fields[At(k)];
    }
    if (isSame) return;
    s.mem.ChangeFields(fields);
    s.mem.Sort();
    s.Saved();
}

void Create(Soak& s) {
    if (s.disk.size() > kMostFiles) return;
    const QString name = s.Of<QString>({"Tea", "a b", "Lent.pdb"}) + QString::number(s.Pick(30));
    const Path folder = s.root / (s.settings.ReadInt(kLocationNdx, 0) == 1 ? "card" : "Documents");
    const Path path = folder / (name.toStdString() + ".pdb");
    std::vector<Definition> fields;
    bool isMade = false;
    s.Answer("A database with this name already exists at this location.");
    s.On(135, [&](CQuillaryDialog& page) {
        s.Type(page.Control<QWidget>(1010), name);
        (void)s.Finish(page);
    });
    s.On(136, [&](CQuillaryDialog& page) { isMade = DefineFields(s, page, fields); });
    s.Command(ID_FILE_NEW);
    if (!isMade) return;
    AdoptOptions(s, path, fields);
    Database& made = s.disk[path] = {};
    made.name = Stored(name);
    made.ChangeFields(fields);
    if (s.View() && !s.handedOver) s.Opened(path);
}

// ---- Records

Row NewRecord(const Database& database) {
    Row row;
    for (const Field& field : database.fields) {
        const FieldOptions& options = field.options;
        const bool isOn = field.type == FieldType::Date ? options.today : field.type == FieldType::Time && options.now;
        row.push_back(field.type == FieldType::Sequence   ? std::to_string(options.first)
                      : field.type == FieldType::Checkbox ? options.checked ? "true" : "false"
                      : !isOn                             ? ""
                      : field.type == FieldType::Date     ? "36591"
                                                          : "52200");
    }
    return row;
}

/// The form on a row or, with -1, on a new record.
struct Form {
    Soak& s;
    CQuillaryDialog& page;
    bool& hasCommitted;
    int row = -1;
    Row loaded = {};
    std::vector<QString> shown = {};  // at the last loading or commit

    [[nodiscard]] int Count() const { return static_cast<int>(s.mem.shown.size()); }
    void Load(int which) {
        row = which;
        loaded = row < 0 ? NewRecord(s.mem) : s.mem.shown[At(row)];
        shown.clear();
        for (int k = 0; k < static_cast<int>(loaded.size()); ++k) {
            shown.push_back(Shown(page, 100 + k));
            const FieldType type = s.mem.fields[At(k)].type;
            const bool isPicker = type == FieldType::Date || type == FieldType::Time;
            if (!isPicker)
                s.Expect(Stored(shown.back()) == s.mem.Display(loaded[At(k)], k),
                         "the form shows field " + std::to_string(k));
        }
    }
    void Enter() {
        const auto name = [this](int field) {
            return "editor " + std::string(InfoOf(s.mem.fields[At(field)].type).name);
        };
        const int field = s.Rarest(loaded.size(), name);
        s.Cover(name(field));
        s.Fill(page, 100, 100 + field);
        s.Log("field " + std::to_string(field) + ": " + Shown(page, 100 + field).toStdString());
    }
    /// What a commit stores; nothing when one of the texts is refused.
    [[nodiscard]] std::optional<Row> Entered() {
        page.Control<QWidget>(kOkButton)->setFocus();  // which numbers are cleaned up at
        Row entered = loaded;
        for (int k = 0; k < static_cast<int>(loaded.size()); ++k) {
            const QString now = Shown(page, 100 + k);
            if (now == shown[At(k)]) continue;
            const auto stored = StoredAs(s.mem.fields[At(k)].type, now);
            if (!stored) return std::nullopt;
            if (s.mem.Display(*stored, k) != s.mem.Display(loaded[At(k)], k)) entered[At(k)] = *stored;
            for (const char c : entered[At(k)]) {
                if (static_cast<unsigned char>(c) > k && static_cast<unsigned char>(c) < loaded.size())
                    return std::nullopt;
            }
        }
        return entered;
    }
    void Commit(const Row& entered) {
        if (row >= 0 && entered == loaded) return;
        row < 0 ? s.mem.Append(entered) : (void)(s.mem.shown[At(row)] = entered);
        if (row < 0) row = Count() - 1;
        hasCommitted = true;
    }
    /// One thing that can be done in it.
    void Act() {
        const int command = s.Of<int>({0, 0, 0, 0, ID_FORM_PREVIOUS, ID_FORM_NEXT, ID_FORM_NEXT, ID_FORM_NEW,
                                       ID_FORM_DUPLICATE, ID_FILE_SAVE, ID_FORM_DIAL, ID_FORM_DELETE});
        if (command == 0) return s.readOnly ? void() : Enter();
        const bool adds = command == ID_FORM_NEW || command == ID_FORM_DUPLICATE;
        if (command == ID_FILE_SAVE ? s.readOnly : !page.Control<QWidget>(command)->isEnabled()) return;
        if ((adds && s.mem.shown.size() > kMostRecords) || (command == ID_FORM_DELETE && Count() < 3)) return;
        const bool goesOn = s.Chance(60);
        s.Answer("Commit current record?", {goesOn ? "OK" : "Cancel"});
        s.Answer("Are you sure that you want to delete this record?", {goesOn ? "Yes" : "No"});
        const bool isAsked = command == ID_FORM_NEW
                                 ? row < 0
                                 : command == ID_FORM_DELETE && s.settings.ReadInt(kConfirmRecordDelete, 1) != 0;
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
             : command == ID_FORM_DUPLICATE ? Count() - 1
                                            : row + (command == ID_FORM_NEXT) - (command == ID_FORM_PREVIOUS));
    }
};

/// Opens the form on a row by click or key, or on a new record, and does `act` in it.
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
    } else if (s.Chance(50) || (s.mem.editOnSelect && s.mem.fields[0].type == FieldType::Checkbox)) {
        s.View()->setFocus();
        s.View()->setCurrentIndex(s.View()->model()->index(row, 0));
        s.Key(s.View(), Qt::Key_Return);
    } else {
        const QModelIndex cell = s.View()->model()->index(row, 0);
        s.View()->scrollTo(cell);
        s.Click(s.View()->viewport(), s.View()->visualRect(cell).center());
    }
    if (!hasCommitted) return;
    s.mem.Sort();
    if (!s.isUnsaved) s.Saved();
}

void EditRecord(Soak& s) {
    const bool isNew = !s.readOnly && s.mem.shown.size() < kMostRecords && (s.mem.shown.empty() || s.Chance(30));
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

// ---- Queries

void Sort(Soak& s) {
    s.On(139, [&s](CQuillaryDialog& page) {
        s.Fill(page, 60);
        SortSettings keys;
        const int kRows[][2] = {{1002, 1008}, {1003, 1010}, {1004, 1012}};  // field, descending
        for (const auto& [field, descending] : kRows) {
            const int chosen = page.Control<QComboBox>(field)->currentIndex();
            if (chosen > 0)
                keys.push_back(
                    {s.mem.fields[At(chosen - 1)].name, page.Control<QRadioButton>(descending)->isChecked()});
        }
        if (!s.Finish(page)) return;
        s.mem.sort = keys;
        s.mem.Sort();
        s.Saved();
    });
    s.Command(ID_RECORD_SORT);
}

void Filter(Soak& s) {
    s.On(140, [&s](CQuillaryDialog& page) {
        const int kRows[][7] = {{1029, 1030, 1031, 1003, 1041, 1042, 1034},
                                {1032, 1007, 1033, 1004, 1043, 1044, 1035},
                                {1008, 1010, 1009, 1005, 1045, 1046, 1012}};
        FilterSettings settings{{}, s.mem.filter.matchAny, s.mem.filter.onlyShown};
        s.Fill(page, 65);
        for (const auto& ids : kRows) {
            const int chosen = page.Control<QComboBox>(ids[0])->currentIndex();
            if (chosen == 0) continue;
            const int field = chosen == 1 ? -1 : s.mem.FieldNamed(s.mem.fields[At(chosen - 2)].name);
            const FieldType type = chosen == 1 ? FieldType::Text : s.mem.fields[At(field)].type;
            auto* operators = page.Control<QComboBox>(ids[1]);
            const auto test = [&](int k) {
                return "filter " + std::string(InfoOf(type).name) + ' ' + operators->itemText(k).toStdString();
            };
            if (s.Chance(50)) s.Choose(operators, s.Rarest(operators->count(), test));
            const int editor =
                *std::find_if(ids + 2, ids + 6, [&](int id) { return page.Control<QWidget>(id)->isVisibleTo(&page); });
            FilterCondition condition{
                chosen == 1, chosen == 1 ? "" : s.mem.fields[At(field)].name,
                static_cast<std::uint8_t>(page.Control<QComboBox>(ids[1])->currentIndex()),
                StoredAs(type == FieldType::Phone ? FieldType::Text : type, Shown(page, editor)).value()};
            if (type == FieldType::Checkbox) condition.value = condition.value == "true" ? "T" : "F";
            // What shows as it did is kept as it was.
            const auto k = static_cast<std::size_t>(&ids - kRows);
            const auto& old = s.mem.filter.conditions;
            const bool isKept =
                k < old.size() && old[k].field == condition.field && ShowsTheSame(type, old[k].value, condition.value);
            if (isKept) condition.value = old[k].value;
            s.Cover(test(operators->currentIndex()));
            settings.conditions.push_back(condition);
            s.Log("condition " + condition.field + ' ' + std::to_string(condition.operation) + ' ' + condition.value);
        }
        if (page.Control<QComboBox>(1029)->currentIndex() > 0) {
            settings.matchAny = page.Control<QComboBox>(1011)->currentIndex() == 1;
            settings.onlyShown = page.Control<QComboBox>(1002)->currentIndex() == 1;
        }
        if (!s.Finish(page)) return;
        s.mem.filter = settings;
        s.mem.ApplyFilter();
        s.mem.Sort();
        s.Saved();
    });
    s.Command(ID_RECORD_FILTER);
}

void ShowAll(Soak& s) {
    const bool isFiltered = !s.mem.filter.conditions.empty();
    s.Command(ID_RECORD_SHOW_ALL, isFiltered);
    if (!isFiltered) return;
    s.mem.filter.conditions.clear();
    s.mem.filter.onlyShown = false;
    s.mem.ShowAll();
    s.mem.Sort();
    s.Saved();
}

// ---- Settings

void ChangeOptions(Soak& s) {
    s.On(149, [&s](CQuillaryDialog& page) {
        s.Fill(page, 50);
        const bool longDates = Shown(page, 1003) == "true";
        const bool edits = Shown(page, 1013) == "true";
        if (!s.Finish(page)) return;
        s.mem.longDates = longDates, s.mem.editOnSelect = edits;
        s.Saved();
    });
    s.Command(ID_DATABASE_OPTIONS, !s.readOnly);
}

void ChangeInfo(Soak& s) {
    const QString password = s.Of(kPasswords);
    s.On(137, [&](CQuillaryDialog& page) {
        std::int32_t lock = s.mem.infoLock;
        for (int k = s.readOnly ? 0 : s.Pick(4); k > 0; --k) {
            if (lock == 0) s.Fill(page, 50, 1038);
            s.On(138, [&](CQuillaryDialog& asking) {
                s.Answer("You have entered an incorrect password.");
                for (const QString& one : lock == 0 ? std::vector<QString>{password} : kPasswords) {
                    if (asking.isVisible()) s.Type(asking.Control<QWidget>(1034), one), s.Press(asking, kOkButton);
                }
            });
            s.Press(page, lock == 0 ? ID_INFO_LOCK : ID_INFO_UNLOCK);
            lock = lock != 0 ? 0 : static_cast<std::int32_t>(Hash(kInfoLock, password));
        }
        const std::string text = Stored(Shown(page, 1038));
        if (!s.Finish(page) || s.readOnly) return;
        s.mem.info = text, s.mem.infoLock = lock;
        s.Saved();
    });
    s.Command(ID_DATABASE_INFO);
}

void ChangePassword(Soak& s) {
    const QString wanted = s.Chance(60) ? QString() : s.Of(kPasswords);
    const QString old = s.Password(*s.open);
    s.On(143, [&](CQuillaryDialog& page) {
        for (const auto& [id, text] : {std::pair(1036, old), {1006, wanted}, {1007, wanted}}) {
            s.Type(page.Control<QWidget>(id), text);
        }
        if (!s.Finish(page)) return;
        s.mem.password = Hash(kDatabasePassword, wanted);
        s.Saved();
    });
    s.Command(ID_DATABASE_CHANGE_PASSWORD, !s.readOnly);
}

// ---- The desktop, servers and other programs

void Download(Soak& s) {
    if (s.disk.size() > kMostFiles) return;
    int searches = 0;
    s.On(203, [&](CQuillaryDialog& page) {
        s.Type(page.Control<QWidget>(1005), s.Of<QString>({"", "grün"}));
        s.Press(page, ++searches > 2 ? kCancelButton : kOkButton);
    });
    s.On(212, [&](CQuillaryDialog& page) { s.Press(page, kOkButton); });
    s.On(214, [&](CQuillaryDialog& page) { s.Press(page, s.Chance(80) ? kOkButton : kCancelButton); });
    s.On(213, [&](CQuillaryDialog& page) {
        s.WaitFor([&] { return page.isHidden() || page.Control<QWidget>(kOkButton)->isVisible(); },
                  "the download ends");
        if (page.isVisible()) s.Press(page, kOkButton);
    });
    s.On(205, [&](CQuillaryDialog& page) {
        auto* list = page.Control<QTreeWidget>(1017);
        for (const int id : {ID_RESULTS_NEXT, ID_RESULTS_INFORMATION}) {
            if (page.Control<QWidget>(id)->isEnabled() && s.Chance(50)) s.Press(page, id);
        }
        if (s.Chance(20)) return s.Press(page, ID_RESULTS_NEW_SEARCH);
        for (int k = 0; k < list->topLevelItemCount(); ++k) s.Key(list, s.Chance(50) ? Qt::Key_Space : Qt::Key_Down);
        s.Press(page, s.Chance(80) ? kOkButton : kCancelButton);
        if (page.isVisible()) s.Press(page, kCancelButton);  // nothing came
    });
    s.Answer("No results returned."), s.Answer("cannot be stored in the search text");
    s.Command(ID_APP_DOWNLOAD);
    s.AdoptNewFiles();
    if (s.View()) s.Opened(s.recentFiles.paths.back());
}

void HandOver(Soak& s) {
    s.handedOver = s.AnyPath();
    s.app->HandOver().Receive({s.handedOver->native(), {}});
}

void WriteAsAnother(Soak& s, const Path& path) {
    s.Log("another writes " + path.string());
    const Row row = NewRecord(s.disk[path]);
    s.Expect(AppendByAnother(s.others, path, row).empty(), "another program can write");
    s.disk[path].Append(row);
}

/// The window has read the file again.
void Follow(Soak& s) {
    s.mem = s.disk[*s.open];
    s.WaitFor([&s] { return s.WindowDifference().empty(); }, "the window follows the file");
}

void AnotherWrites(Soak& s) {
    const Path path = s.open && s.Chance(80) ? *s.open : s.AnyPath();
    if (s.disk[path].shown.size() > kMostRecords) return;
    WriteAsAnother(s, path);
    if (path == s.open) Follow(s);
}

/// A change that cannot be saved, and what becomes of it.
void Unsaved(Soak& s) {
    const Path path = *s.open;
    const bool isFull = s.Chance(50);
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
    const Path elsewhere = s.root / "Documents" / ("Saved " + std::to_string(s.Pick(1000)) + ".pdb");
    s.chosenFile = QString::fromStdString(elsewhere.string());
    const bool goesElsewhere = !isFull && !s.disk.contains(elsewhere) && s.disk.size() <= kMostFiles && s.Chance(40);
    if (goesElsewhere) {
        s.mem.name = elsewhere.stem().string();
        s.disk[elsewhere] = s.mem.InFile();
    }
    if (s.Chance(50)) {  // leaves it
        s.Answer("are not saved.", {goesElsewhere ? "Save Elsewhere..." : "Discard the Changes"});
        s.Command(ID_FILE_OPEN);
        s.files.isFull = false;
        s.Closed();
        return;
    }
    const bool reloads = s.Chance(50);
    s.files.isFull = false;
    s.isUnsaved = false;
    s.Answer(kChanged, {goesElsewhere ? "Save Elsewhere..." : reloads ? "Reload" : "Overwrite"});
    s.Command(ID_FILE_SAVE);
    if (goesElsewhere) s.open = elsewhere;
    if (!goesElsewhere && !isFull && reloads) return Follow(s);
    s.Saved();
}

// ---- The window

void Leave(Soak& s) {
    s.View()->setFocus();
    s.Chance(30) ? s.Key(s.View(), Qt::Key_Escape) : s.Command(ID_FILE_OPEN);
    s.Closed();
}

void Quit(Soak& s) { s.Command(ID_APP_EXIT); }

/// Whatever can be done, above all what was not yet; nobody knows what comes of it.
void Play(Soak& s) {
    s.isPlaying = true;
    if (s.Chance(60)) s.CommandRarest();
    if (s.Frame().isVisible()) s.PlayAbout(s.Frame(), 1 + s.Pick(30));
    for (int k = 0; k < 3; ++k) {  // a name that is being edited
        QTest::qWait(0);
        auto* editor = List(s) ? List(s)->findChild<QLineEdit*>() : nullptr;
        if (editor) editor->setFocus(), s.Key(editor, Qt::Key_Escape);
    }
    if (!s.Frame().isVisible()) s.StartAgain();
    s.Adopt();
    s.isPlaying = false;
    if (s.open) Leave(s);  // the window knows more than the file: how a filter is applied, what a reader sorted
}

}  // namespace

const std::vector<Action>& Actions() {
    static const std::vector<Action> kActions = {
        {"opens a database", Action::List, 30, OpenFromList},
        {"renames", Action::List, 4, Rename},
        {"copies", Action::List, 3, Copy},
        {"deletes a database", Action::Any, 2, Delete},
        {"creates a database", Action::List, 6, Create},
        {"downloads", Action::List, 4, Download},
        {"edits records", Action::Open, 30, EditRecord},
        {"sorts", Action::Open, 7, Sort},
        {"filters", Action::Open, 12, Filter},
        {"shows all", Action::Open, 6, ShowAll},
        {"changes the fields", Action::Open, 8, ChangeFields},
        {"changes options", Action::Open, 4, ChangeOptions},
        {"changes the info text", Action::Open, 4, ChangeInfo},
        {"changes the password", Action::Open, 3, ChangePassword},
        {"hands a file over", Action::Any, 3, HandOver},
        {"another program writes", Action::Any, 5, AnotherWrites},
        {"changes what cannot be saved", Action::Writing, 5, Unsaved},
        {"leaves the database", Action::Open, 8, Leave},
        {"quits", Action::Any, 2, Quit},
        {"plays about", Action::Any, 24, Play},
    };
    return kActions;
}

}  // namespace quillary::soak
