// On fields, of a new database and of the open one.
#include "tests/soak/Soak.h"
#include "ui/RowListView.h"

namespace quillary::soak {

namespace {

/// When a name in the list is being edited.
void EnterName(Soak& s, CRowListView& list, const QString& name) {
    auto* editor = qobject_cast<QLineEdit*>(s.Frame().focusWidget());
    if (!editor || !list.isAncestorOf(editor)) return;
    s.Type(editor, name);
    s.Key(editor, Qt::Key_Return);
}

/// In the dialog of a field's type. How dates are then read, when it ends with OK.
std::optional<DateOrder> ChooseType(Soak& s, CQuillaryDialog& page) {
    s.Fill(page, 60);
    const bool isToDial = s.Percent(20);  // among the numbers of several fields
    if (isToDial) s.Choose(page.Control<QComboBox>(1011), static_cast<int>(FieldType::Phone));
    auto* list = page.Control<CRowListView>(1004);
    for (int k = list->isVisible() ? s.Pick(6) : 0; k > 0; --k) {
        const int command = s.Of<int>({ID_ITEM_ADD, ID_ITEM_DELETE, ID_ITEM_UP, ID_ITEM_DOWN, ID_ITEM_RENAME});
        if (command != ID_ITEM_ADD && list->SelectedRow() < 0) continue;
        s.Cover(NameOf(command));
        command == ID_ITEM_RENAME
            ? s.FromContextMenu(list->viewport(), list->visualRect(list->currentIndex()).center(), "Rename")
            : s.Press(page, command);
        EnterName(s, *list, s.Of<QString>({"red", "grün", "", "blue 10"}));
    }
    const auto order = static_cast<DateOrder>(page.Control<QComboBox>(1022)->currentIndex());
    const bool isDate = page.Control<QComboBox>(1011)->currentIndex() == static_cast<int>(FieldType::Date);
    return s.Finish(page, Soak::Ends::Here) && isDate ? std::optional(order) : std::nullopt;
}

/// In the editor of the fields, of which there were `count`; nothing when it does not end with OK.
std::optional<std::vector<Definition>> DefineFields(Soak& s, CQuillaryDialog& page, std::size_t count) {
    auto* list = page.Control<CRowListView>(1017);
    const auto enterName = [&] { EnterName(s, *list, s.Word().simplified() + "."); };
    std::map<std::size_t, DateOrder> orders;
    s.Answer("A database has at most 20 fields.");
    enterName();
    for (int k = 1 + s.Pick(4); k > 0; --k) {
        const int what =
            s.Of<int>({ID_FIELD_INSERT, ID_FIELD_INSERT, ID_FIELD_REMOVE, ID_FIELD_UP, ID_FIELD_DOWN, 0, 1, 1});
        if (what > 1) {
            if (what != ID_FIELD_REMOVE || list->RowCount() > 1) s.Press(page, what);
        } else {
            const QModelIndex cell = list->model()->index(s.Pick(At(list->RowCount())), what);
            s.On(150, [&](CQuillaryDialog& typePage) {
                if (const auto order = ChooseType(s, typePage)) orders[list->Value(cell.row()).toULongLong()] = *order;
            });
            list->scrollTo(cell);
            s.Click(list->viewport(), list->visualRect(cell).center());
        }
        enterName();
    }
    std::vector<Definition> fields;
    for (int row = 0; row < list->RowCount(); ++row) {
        const auto place = list->Value(row).value<std::size_t>();
        Definition& field = fields.emplace_back();
        field.field.name = Stored(list->Text(row));
        if (place < count) field.from = static_cast<int>(place);
        if (orders.contains(place)) field.order = orders[place];
    }
    return s.Finish(page) ? std::optional(fields) : std::nullopt;
}

/// The names must be stored; types and what is set beside them are taken as they are.
void AdoptTypes(Soak& s, const Database& now, std::vector<Definition>& fields) {
    s.Expect(now.fields.size() == fields.size(), "the fields are stored");
    for (std::size_t k = 0; k < fields.size(); ++k) {
        s.Expect(now.fields[k].name == fields[k].field.name, "the name of field " + std::to_string(k) + " is stored");
        fields[k].field = now.fields[k];
    }
}

void ChangeFields(Soak& s) {
    std::optional<std::vector<Definition>> fields;
    s.Answer("Change the fields all the same?", {s.Percent(75) ? "Change" : "Cancel"});
    s.Answer("would hide");
    s.On(136, [&](CQuillaryDialog& page) { fields = DefineFields(s, page, s.mem.fields.size()); });
    s.Command(ID_DATABASE_FIELDS, !s.IsReadOnly());
    if (!fields) return;
    const Database now = s.Now();
    AdoptTypes(s, now, *fields);
    bool isSame = now.fields == s.mem.fields;
    for (int k = 0; isSame && At(k) < fields->size(); ++k) isSame = (*fields)[At(k)].from == k;
    if (isSame) return;
    s.mem.ChangeFields(*fields);
    s.mem.Sort();
    s.Saved();
}

void Create(Soak& s) {
    if (s.HasManyFiles()) return;
    const QString name = s.Of<QString>({"Tea", "a b", "Lent.pdb"}) + QString::number(s.Pick(30));
    const Path folder = s.root / (s.desktop.settings.ReadInt(kLocationNdx, 0) == 1 ? "card" : "Documents");
    const Path path = folder / (name.toStdString() + ".pdb");
    std::optional<std::vector<Definition>> fields;
    s.Answer("A database with this name already exists at this location.");
    s.On(135, [&](CQuillaryDialog& page) {
        s.Type(page.Control<QWidget>(1010), name);
        (void)s.Finish(page);
    });
    s.On(136, [&](CQuillaryDialog& page) { fields = DefineFields(s, page, 0); });
    s.Command(ID_FILE_NEW);
    if (!fields) return;
    const auto found = ReadFile(s.others, path);
    s.Expect(found.has_value(), "the new database is stored");
    AdoptTypes(s, *found, *fields);
    Database& made = s.disk[path] = {};
    made.name = Stored(name);
    made.ChangeFields(*fields);
    if (s.View() && !s.handedOver) s.Opened(path);
}

}  // namespace

const std::vector<Action> kFieldActions = {
    {"creates a database", Action::List, 6, Create},
    {"changes the fields", Action::Open, 8, ChangeFields},
};

}  // namespace quillary::soak
