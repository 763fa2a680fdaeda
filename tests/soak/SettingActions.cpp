// On what is set for a database: order, filter, options, info text and passwords.
#include <algorithm>
#include <tuple>

#include "tests/soak/Soak.h"

namespace quillary::soak {

namespace {

/// Fills in a dialog. When it takes OK, what is set now is taken from the document, and the rest must follow from it.
bool Set(Soak& s, int command, int dialog, const Soak::Steps& fill, Soak::Ends ends = Soak::Ends::Any) {
    bool isTaken = false;
    s.On(dialog, [&](CQuillaryDialog& page) {
        fill(page);
        isTaken = s.Finish(page, ends);
    });
    s.Command(command, command == ID_RECORD_SORT || command == ID_RECORD_FILTER || command == ID_DATABASE_INFO ||
                           !s.IsReadOnly());
    if (!isTaken) return false;
    Database now = s.Now();
    now.name = s.mem.name;
    std::tie(now.fields, now.shown, now.hidden) = std::tie(s.mem.fields, s.mem.shown, s.mem.hidden);
    s.mem = now;
    return true;
}

void Sort(Soak& s) {
    if (!Set(s, ID_RECORD_SORT, 139, [&](CQuillaryDialog& page) { s.Fill(page, 60); })) return;
    s.mem.Sort();
    s.Saved();
}

void Filter(Soak& s) {
    const auto fill = [&](CQuillaryDialog& page) {
        s.Fill(page, 65);
        for (const auto& [field, test] : {std::pair(1029, 1030), {1032, 1007}, {1008, 1010}}) {
            const int chosen = page.Control<QComboBox>(field)->currentIndex() - 2;  // behind none and all
            if (chosen < 0) continue;
            const FieldTypeInfo& type = InfoOf(s.mem.FieldNamed(s.mem.fields[At(chosen)].name)->type);
            const auto name = [&](int k) {
                return "filter " + std::string(type.name) + ' ' + std::string(type.operators[At(k)]);
            };
            const int operation = s.Rarest(type.operators.size(), name);
            s.Choose(page.Control<QComboBox>(test), operation);
            s.Cover(name(operation));
        }
    };
    // Not left for another file, which would not tell to which records it applies.
    if (!Set(s, ID_RECORD_FILTER, 140, fill, Soak::Ends::Here)) return;
    s.mem.ApplyFilter();
    s.mem.Sort();
    s.Saved();
}

void ShowAll(Soak& s) {
    const bool isFiltered = !s.mem.filter.conditions.empty();
    s.Command(ID_RECORD_SHOW_ALL, isFiltered);
    if (!isFiltered) return;
    s.mem.filter = {{}, s.mem.filter.matchAny};
    s.mem.ShowAll();
    s.mem.Sort();
    s.Saved();
}

void ChangeOptions(Soak& s) {
    if (Set(s, ID_DATABASE_OPTIONS, 149, [&](CQuillaryDialog& page) { s.Fill(page, 50); })) s.Saved();
}

void ChangeInfo(Soak& s) {
    s.Answer("You have entered an incorrect password.");
    const auto fill = [&](CQuillaryDialog& page) {
        for (int k = s.IsReadOnly() ? 0 : s.Pick(4); k > 0; --k) {
            const bool isLocked = page.Control<QWidget>(ID_INFO_UNLOCK)->isVisible();
            if (!isLocked) s.Fill(page, 50, 1038);
            s.On(138, [&](CQuillaryDialog& asking) {
                for (const QString& one : isLocked ? kPasswords : std::vector{s.Of(kPasswords)}) {
                    if (asking.isVisible()) s.Type(asking.Control<QWidget>(1034), one), s.Press(asking, kOkButton);
                }
            });
            s.Press(page, isLocked ? ID_INFO_UNLOCK : ID_INFO_LOCK);
        }
    };
    if (Set(s, ID_DATABASE_INFO, 137, fill)) s.Saved();
}

void ChangePassword(Soak& s) {
    const QString wanted = s.Percent(60) ? QString() : s.Of(kPasswords);
    const auto fill = [&](CQuillaryDialog& page) {
        for (const auto& [id, text] : {std::pair(1036, s.Password(*s.open)), {1006, wanted}, {1007, wanted}}) {
            s.Type(page.Control<QWidget>(id), text);
        }
    };
    if (Set(s, ID_DATABASE_CHANGE_PASSWORD, 143, fill)) s.Saved();
}

}  // namespace

const std::vector<Action> kSettingActions = {
    {"sorts", Action::Open, 7, Sort},
    {"filters", Action::Open, 12, Filter},
    {"shows all", Action::Open, 6, ShowAll},
    {"changes options", Action::Open, 4, ChangeOptions},
    {"changes the info text", Action::Open, 4, ChangeInfo},
    {"changes the password", Action::Open, 3, ChangePassword},
};

}  // namespace quillary::soak
