// The record form over a disk in memory.
#pragma once

#include "tests/ui/WindowTest.h"
#include "ui/TextEdit.h"
#include "ui/ValuePicker.h"
#include "views/QuillaryView.h"

namespace quillary {

inline const std::vector<std::string> kAllNames = {"Notes", "Amount", "No",    "Paid", "Due",
                                                   "At",    "Colour", "Phone", "Mail", "Web"};

/// Two records with a field of every type.
[[nodiscard]] inline ImageParts AllTypesParts() {
    ImageParts parts;
    parts.AddSchema(kAllNames, {"t", "F", "I100;5", "B", "D", "d", "Lred;green;blue", "P", "M", "W"});
    parts.Add(2, {"Ada\r\nwas here", "12.5", "100", "true", "36591", "52200", "green", "5551234567", "ada@example.org",
                  "https://example.org"});
    parts.Add(2, {"Bob", "", "105", "false", "", "", "", "", "", ""});
    return parts;
}

/// What a person sees in the editor `id`.
[[nodiscard]] inline QString Shown(const CQuillaryDialog& page, int id) {
    const auto* widget = page.Control<QWidget>(id);
    if (const auto* text = dynamic_cast<const CTextEdit*>(widget)) return text->Text();
    if (const auto* picker = dynamic_cast<const CValuePicker*>(widget)) return picker->Text();
    if (const auto* line = page.Control<QLineEdit>(id)) return line->text();
    if (const auto* check = page.Control<QCheckBox>(id)) return check->isChecked() ? "true" : "false";
    return page.Control<QComboBox>(id)->currentText();
}

class FormTest : public WindowTest {
  protected:
    /// With the option "On select, go to Edit View".
    CQuillaryDoc* OpenForEditing(const ImageParts& parts) {
        Open(parts.Build())->SetEditOnSelect(true);
        Failure failure;
        EXPECT_TRUE(Doc().SaveDatabase(failure)) << failure.text;
        return &Doc();
    }
    [[nodiscard]] CQuillaryDoc& Doc() { return *app.OpenDocumentFile("/people.pdb"); }
    /// Opens the form on that row and does the steps, which end it.
    void InForm(int row, User::Steps steps) {
        View()->setCurrentIndex(View()->model()->index(row, 0));
        user.ExpectDialog(173, std::move(steps));
        QTest::keyClick(View(), Qt::Key_Return);
    }
    [[nodiscard]] std::string StoredEntries(std::size_t row) {
        const auto& shown = Stored().Shown();
        return row < shown.size() ? std::string(shown[row].Entries()) : "no such record";
    }
    [[nodiscard]] std::vector<std::string> StoredRecord(std::size_t row) { return ShownTexts(Stored()).at(row); }
};

}  // namespace quillary
