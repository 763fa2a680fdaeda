#include "views/RecordEditor.h"

#include <QLineEdit>
#include <QScrollBar>
#include <QTextCursor>
#include <limits>

#include "db/FieldValue.h"
#include "db/RecordCommit.h"
#include "ui/DatePicker.h"
#include "ui/LineEdit.h"
#include "ui/LinkEdit.h"
#include "ui/NumericEdit.h"
#include "ui/QLYButton.h"
#include "ui/QLYComboBox.h"
#include "ui/ReadOnly.h"
#include "ui/TextEdit.h"
#include "ui/TimePicker.h"
#include "ui/WideText.h"

namespace quillary {

QString CRecordEditor::Display(std::optional<std::string_view> stored) const {
    if (!stored) return {};
    std::string shown;
    m_doc.AppendDisplay(*stored, m_field, shown);
    return FromWide(m_doc.Page().ToWide(shown));
}

std::optional<std::string> CRecordEditor::StoredOf(const QString& typed, Failure& failure) const {
    return StoredText(m_doc, m_field, ToWide(typed), failure);
}

namespace {

class TextEditor : public CRecordEditor {
  public:
    TextEditor(const CQuillaryDoc& doc, std::size_t field, QWidget& parent)
        : CRecordEditor(doc, field), m_edit(new CTextEdit(&parent)) {
        m_edit->CapitalizeFirst(doc.Fields()[field].options.capitalize);
    }
    [[nodiscard]] QWidget& Widget() const override { return *m_edit; }
    void Load(std::optional<std::string_view> stored) override {
        m_loaded = Display(stored);
        m_edit->SetText(m_loaded);
    }
    void Follow(std::optional<std::string_view> stored) override {
        if (m_edit->Text() != Display(stored)) return Load(stored);
        m_loaded = m_edit->Text();
        m_edit->document()->setModified(false);
    }
    void SetReadOnly(bool readOnly) override { m_edit->SetReadOnly(readOnly); }
    [[nodiscard]] bool IsChanged() const override {
        return m_edit->document()->isModified() && m_edit->Text() != m_loaded;
    }
    [[nodiscard]] std::optional<std::string> Stored(Failure& failure) const override {
        return StoredOf(m_edit->Text(), failure);
    }
    [[nodiscard]] bool HasCaret() const override { return true; }
    [[nodiscard]] bool IsLeftBy(int key) const override {
        if (m_edit->isReadOnly()) {  // the keys scroll it
            const QScrollBar& bar = *m_edit->verticalScrollBar();
            return bar.value() == (key == Qt::Key_Up ? bar.minimum() : bar.maximum());
        }
        QTextCursor caret = m_edit->textCursor();
        return !caret.movePosition(key == Qt::Key_Up ? QTextCursor::Up : QTextCursor::Down);
    }

  private:
    CTextEdit* m_edit;
    QString m_loaded;
};

class LineEditor : public CRecordEditor {
  public:
    LineEditor(const CQuillaryDoc& doc, std::size_t field, QWidget& parent)
        : LineEditor(doc, field, *new CLineEdit(&parent)) {}
    [[nodiscard]] QWidget& Widget() const override { return m_edit; }
    void Load(std::optional<std::string_view> stored) override {
        m_loaded = Display(stored);
        m_edit.setText(m_loaded);
        m_edit.home(false);  // a long text shows its beginning
    }
    void Follow(std::optional<std::string_view> stored) override {
        if (m_edit.text() != Display(stored)) return Load(stored);
        m_loaded = m_edit.text();
    }
    void SetReadOnly(bool readOnly) override {
        m_edit.setReadOnly(readOnly);
        TellReadOnly(m_edit, readOnly);
    }
    [[nodiscard]] bool IsChanged() const override { return m_edit.text() != m_loaded; }
    [[nodiscard]] std::optional<std::string> Stored(Failure& failure) const override {
        return StoredOf(m_edit.text(), failure);
    }
    [[nodiscard]] bool HasCaret() const override { return true; }
    [[nodiscard]] QString Text() const override { return m_edit.text(); }

  protected:
    LineEditor(const CQuillaryDoc& doc, std::size_t field, QLineEdit& edit) : CRecordEditor(doc, field), m_edit(edit) {
        m_edit.setMaxLength(std::numeric_limits<int>::max());  // the toolkit would cut a long text off
    }

  private:
    QLineEdit& m_edit;
    QString m_loaded;
};

class LinkEditor : public LineEditor {
  public:
    LinkEditor(const CQuillaryDoc& doc, std::size_t field, QWidget& parent)
        : LinkEditor(doc, field, *new CLinkEdit(&parent)) {}
    void SetReadOnly(bool readOnly) override {
        LineEditor::SetReadOnly(readOnly);
        m_edit.SetReadOnly(readOnly);
    }
    [[nodiscard]] bool IsLinkAt(const QPoint& place) const override { return m_edit.IsLinkAt(place); }
    void WhenFollowed(const std::function<void()>& follow) override { m_edit.onFollow = follow; }

  private:
    LinkEditor(const CQuillaryDoc& doc, std::size_t field, CLinkEdit& edit)
        : LineEditor(doc, field, edit), m_edit(edit) {}

    CLinkEdit& m_edit;
};

class NumericEditor : public LineEditor {
  public:
    NumericEditor(const CQuillaryDoc& doc, std::size_t field, QWidget& parent)
        : NumericEditor(doc, field, *new CNumericEdit(&parent)) {}
    [[nodiscard]] std::optional<std::string> Stored(Failure& failure) const override {
        m_edit.CleanUp();  // the focus may still be there
        return LineEditor::Stored(failure);
    }

  private:
    NumericEditor(const CQuillaryDoc& doc, std::size_t field, CNumericEdit& edit)
        : LineEditor(doc, field, edit), m_edit(edit) {}

    CNumericEdit& m_edit;
};

class CheckEditor : public CRecordEditor {
  public:
    CheckEditor(const CQuillaryDoc& doc, std::size_t field, QWidget& parent)
        : CRecordEditor(doc, field), m_button(new CQLYButton(&parent)) {}
    [[nodiscard]] QWidget& Widget() const override { return *m_button; }
    void Load(std::optional<std::string_view> stored) override {
        m_loaded = IsChecked(stored.value_or(std::string_view()));
        m_button->setChecked(m_loaded);
    }
    void SetReadOnly(bool readOnly) override { m_button->SetReadOnly(readOnly); }
    [[nodiscard]] bool IsChanged() const override { return m_button->isChecked() != m_loaded; }
    [[nodiscard]] std::optional<std::string> Stored(Failure& /*failure*/) const override {
        return StoredCheckBox(m_button->isChecked());
    }

  private:
    CQLYButton* m_button;
    bool m_loaded = false;
};

class ListEditor : public CRecordEditor {
  public:
    ListEditor(const CQuillaryDoc& doc, std::size_t field, QWidget& parent)
        : CRecordEditor(doc, field), m_list(new CQLYComboBox(&parent)) {
        QStringList items;
        for (const std::string& item : doc.Fields()[field].options.items) items << FromWide(doc.Page().ToWide(item));
        m_list->SetItems(items);
    }
    [[nodiscard]] QWidget& Widget() const override { return *m_list; }
    void Load(std::optional<std::string_view> stored) override {
        m_loaded = Display(stored);
        m_list->Select(m_loaded);
    }
    void SetReadOnly(bool readOnly) override { m_list->SetReadOnly(readOnly); }
    [[nodiscard]] bool IsChanged() const override { return m_list->currentText() != m_loaded; }
    [[nodiscard]] std::optional<std::string> Stored(Failure& failure) const override {
        return StoredOf(m_list->currentText(), failure);
    }
    [[nodiscard]] bool IsLeftBy(int /*key*/) const override { return false; }

  private:
    CQLYComboBox* m_list;
    QString m_loaded;
};

/// A date or a time: a number in the file, or an empty text.
class PickerEditor : public CRecordEditor {
  public:
    PickerEditor(const CQuillaryDoc& doc, std::size_t field, CValuePicker& picker)
        : CRecordEditor(doc, field), m_picker(picker) {
        m_picker.WhenChanged([this] { m_touched = true; });
    }
    [[nodiscard]] QWidget& Widget() const override { return m_picker; }
    void Load(std::optional<std::string_view> stored) override {
        m_loaded = Read(stored.value_or(std::string_view()));
        m_isUnreadable = stored && !stored->empty() && !m_loaded;
        m_touched = false;
        Set(m_loaded);
    }
    void Follow(std::optional<std::string_view> stored) override {
        if (Value() != Read(stored.value_or(std::string_view()))) return Load(stored);
        m_loaded = Value();
        m_isUnreadable = m_touched = false;
    }
    void SetReadOnly(bool readOnly) override { m_picker.SetReadOnly(readOnly); }
    [[nodiscard]] bool IsChanged() const override {
        // What cannot be shown looks empty, and can be made so.
        return Value() != m_loaded || m_picker.IsUnreadable() || (m_isUnreadable && m_touched);
    }
    [[nodiscard]] std::optional<std::string> Stored(Failure& failure) const override {
        if (m_picker.IsUnreadable()) {
            const QString name = OnOneLine(FromWide(Doc().FieldName(Field())));
            failure.text = QStringLiteral("Field \"%1\": %2").arg(name, m_picker.WhyUnreadable()).toStdString();
            return std::nullopt;
        }
        m_picker.CleanUp();  // the focus may still be there
        const auto value = Value();
        return value ? std::to_string(*value) : std::string();
    }
    [[nodiscard]] bool IsLeftBy(int /*key*/) const override { return m_picker.IsEmpty(); }

  protected:
    using Number = std::optional<std::int32_t>;
    [[nodiscard]] virtual Number Read(std::string_view stored) const = 0;
    [[nodiscard]] virtual Number Value() const = 0;
    virtual void Set(Number value) = 0;

  private:
    CValuePicker& m_picker;
    Number m_loaded;
    bool m_isUnreadable = false;
    bool m_touched = false;
};

class DateEditor : public PickerEditor {
  public:
    DateEditor(const CQuillaryDoc& doc, std::size_t field, CDatePicker& picker)
        : PickerEditor(doc, field, picker), m_picker(picker) {}

  protected:
    [[nodiscard]] Number Read(std::string_view stored) const override { return ReadDay(stored); }
    [[nodiscard]] Number Value() const override { return m_picker.Day(); }
    void Set(Number value) override { m_picker.SetDay(value); }

  private:
    CDatePicker& m_picker;
};

class TimeEditor : public PickerEditor {
  public:
    TimeEditor(const CQuillaryDoc& doc, std::size_t field, CTimePicker& picker)
        : PickerEditor(doc, field, picker), m_picker(picker) {}

  protected:
    [[nodiscard]] Number Read(std::string_view stored) const override {
        const auto minute = ReadMinute(stored);
        return minute ? Number(*minute * 60) : std::nullopt;
    }
    [[nodiscard]] Number Value() const override { return m_picker.Seconds(); }
    void Set(Number value) override { m_picker.SetSeconds(value); }

  private:
    CTimePicker& m_picker;
};

}  // namespace

std::unique_ptr<CRecordEditor> MakeRecordEditor(const CQuillaryDoc& doc, std::size_t field, const Clock& clock,
                                                DateOrder order, QWidget& parent) {
    switch (doc.TypeOf(field)) {
        case FieldType::Text:
            return std::make_unique<TextEditor>(doc, field, parent);
        case FieldType::Number:
        case FieldType::Sequence:
            return std::make_unique<NumericEditor>(doc, field, parent);
        case FieldType::Checkbox:
            return std::make_unique<CheckEditor>(doc, field, parent);
        case FieldType::Date:
            return std::make_unique<DateEditor>(doc, field, *new CDatePicker(order, clock, &parent));
        case FieldType::Time:
            return std::make_unique<TimeEditor>(doc, field, *new CTimePicker(clock, &parent));
        case FieldType::List:
            return std::make_unique<ListEditor>(doc, field, parent);
        case FieldType::EMail:
        case FieldType::WebUrl:
            return std::make_unique<LinkEditor>(doc, field, parent);
        case FieldType::Phone:
            break;
    }
    return std::make_unique<LineEditor>(doc, field, parent);
}

}  // namespace quillary
