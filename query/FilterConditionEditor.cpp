#include "query/FilterConditionEditor.h"

#include <QLabel>
#include <QStackedWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <limits>

#include "db/FieldValue.h"
#include "query/Filter.h"
#include "ui/DatePicker.h"
#include "ui/LineEdit.h"
#include "ui/QLYButton.h"
#include "ui/QLYComboBox.h"
#include "ui/TimePicker.h"
#include "ui/WideText.h"

namespace quillary {

namespace {

// What an entry of the list of fields stands for; a field has its number, from 0.
constexpr int kNone = -2;
constexpr int kAllFields = -1;

constexpr int kLongestOperator = 12;  // characters of "greater than"

}  // namespace

CFilterConditionEditor::CFilterConditionEditor(const Controls& controls, const CQuillaryDoc& doc, const Clock& clock,
                                               DateOrder order)
    : m_controls(controls),
      m_doc(doc),
      m_fields(new CQLYComboBox),
      m_operators(new CQLYComboBox),
      m_values(new QStackedWidget),
      m_test(new QBoxLayout(QBoxLayout::LeftToRight)),
      m_text(new CLineEdit),
      m_check(new CQLYButton),
      m_date(new CDatePicker(order, clock)),
      m_time(new CTimePicker(clock)),
      m_list(new CQLYComboBox) {
    auto* label = new QLabel(QStringLiteral("Filter &%1:").arg(controls.number));
    label->setBuddy(m_fields);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins({});
    column->setSpacing(fontMetrics().height() / 4);
    column->addWidget(label);
    column->addWidget(m_fields);
    m_test->addWidget(m_operators);
    m_test->addWidget(m_values, 1);
    column->addLayout(m_test);

    Name(*m_fields, controls.field, QString());
    Name(*m_operators, controls.operation, QStringLiteral(" operator"));
    m_operators->setMinimumContentsLength(kLongestOperator);
    const QString value = QStringLiteral(" value");
    Name(*m_text, controls.text, value);
    Name(*m_check, controls.check, value);
    Name(*m_date, controls.date, value);
    Name(*m_time, controls.time, value);
    Name(*m_list, controls.list, value);
    for (QWidget* editor :
         {static_cast<QWidget*>(m_text), static_cast<QWidget*>(m_check), static_cast<QWidget*>(m_date),
          static_cast<QWidget*>(m_time), static_cast<QWidget*>(m_list)}) {
        m_values->addWidget(editor);
    }
    m_text->setMaxLength(std::numeric_limits<int>::max());  // a long one is refused, not cut
    const auto showCheck = [this](bool on) { m_check->setText(on ? QStringLiteral("true") : QStringLiteral("false")); };
    connect(m_check, &CQLYButton::toggled, this, showCheck);
    showCheck(false);

    FillFields();
    connect(m_fields, &QComboBox::currentIndexChanged, this, [this] { ShowChosenField(); });
}

QSize CFilterConditionEditor::minimumSizeHint() const {
    const int narrow = std::max(m_operators->minimumSizeHint().width(), m_values->minimumSizeHint().width());
    return {narrow, QWidget::minimumSizeHint().height()};
}

void CFilterConditionEditor::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    const int wide = m_operators->minimumSizeHint().width() + m_test->spacing() + m_values->minimumSizeHint().width();
    m_test->setDirection(width() < wide ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
}

void CFilterConditionEditor::Name(QWidget& widget, int id, const QString& part) {
    widget.setObjectName(QString::number(id));
    const QString filter = QStringLiteral("Filter %1").arg(m_controls.number);
    widget.setAccessibleName(part.isEmpty() ? filter + u':' : filter + part);
    // A combo box without a label of its own tells its present text as its name.
    if (!part.isEmpty()) widget.setAccessibleDescription(filter + part);
}

void CFilterConditionEditor::FillFields() {
    m_fields->clear();
    m_fields->addItem(QStringLiteral("None"), kNone);
    m_fields->addItem(QStringLiteral("All Fields"), kAllFields);
    for (std::size_t k = 0; k < m_doc.FieldCount(); ++k) {
        // A condition names its field: of several with one name it is about the first.
        const auto named = m_doc.FieldByName(m_doc.Fields()[k].name);
        m_fields->addItem(OnOneLine(FromWide(m_doc.FieldName(k))), static_cast<int>(named.value_or(k)));
    }
}

void CFilterConditionEditor::Load(const FilterCondition* stored) {
    m_stored = stored ? std::optional(*stored) : std::nullopt;
    int wanted = kNone;
    if (stored) {
        const auto field = stored->allFields ? std::nullopt : m_doc.FieldByName(stored->field);
        wanted = field ? static_cast<int>(*field) : kAllFields;
    }
    m_fields->setCurrentIndex(m_fields->findData(wanted));
    ShowChosenField();
}

bool CFilterConditionEditor::IsUsed() const { return m_fields->currentData().toInt() != kNone; }

std::optional<std::size_t> CFilterConditionEditor::ChosenField() const {
    const int chosen = m_fields->currentData().toInt();
    return chosen < 0 ? std::nullopt : std::optional(static_cast<std::size_t>(chosen));
}

bool CFilterConditionEditor::IsStoredField() const {
    if (!m_stored || !IsUsed()) return false;
    const auto chosen = ChosenField();
    return chosen ? !m_stored->allFields && m_stored->field == m_doc.Fields()[*chosen].name : m_stored->allFields;
}

QWidget* CFilterConditionEditor::ValueEditor() const {
    const auto field = ChosenField();
    switch (field ? m_doc.TypeOf(*field) : FieldType::Text) {
        case FieldType::Checkbox:
            return m_check;
        case FieldType::Date:
            return m_date;
        case FieldType::Time:
            return m_time;
        case FieldType::List:
            return m_list;
        default:
            return m_text;
    }
}

// The stored operator and value belong to the stored field alone; what was entered for another one stays in its editor.
void CFilterConditionEditor::ShowChosenField() {
    m_operators->setVisible(IsUsed());
    m_values->setVisible(IsUsed());
    if (!IsUsed()) return;
    const auto field = ChosenField();
    m_operators->clear();
    for (const std::string_view text : FilterOperators(m_doc, field)) m_operators->addItem(FromUtf8(text));
    m_list->clear();
    if (ValueEditor() == m_list) {
        for (const std::string& item : m_doc.Fields()[*field].options.items) {
            m_list->addItem(FromWide(m_doc.Page().ToWide(item)));
        }
    }
    m_values->setCurrentWidget(ValueEditor());
    if (!IsStoredField()) return;
    if (m_stored->operation < m_operators->count()) m_operators->setCurrentIndex(m_stored->operation);
    ShowStoredValue();
    m_storedShown = ShownValue();
}

void CFilterConditionEditor::ShowStoredValue() {
    const std::string& value = m_stored->value;
    const QWidget* editor = ValueEditor();
    if (editor == m_check) {
        m_check->setChecked(IsConditionChecked(value));
    } else if (editor == m_date) {
        m_date->SetDay(ReadDay(value));
    } else if (editor == m_time) {
        const auto minute = ConditionMinute(value);
        m_time->SetSeconds(minute ? std::optional(*minute * 60) : std::nullopt);
    } else if (editor == m_list) {
        const auto& items = m_doc.Fields()[*ChosenField()].options.items;
        const auto item = std::find(items.begin(), items.end(), value);
        if (item != items.end()) m_list->setCurrentIndex(static_cast<int>(item - items.begin()));
    } else {
        m_text->setText(FromWide(m_doc.Page().ToWide(value)));
    }
}

QString CFilterConditionEditor::ShownValue() const {
    const QWidget* editor = ValueEditor();
    if (editor == m_text) return m_text->text();
    if (editor == m_list) return m_list->currentText();
    if (editor == m_check) return FromUtf8(ConditionCheck(m_check->isChecked()));
    const CValuePicker& picker = editor == m_date ? static_cast<const CValuePicker&>(*m_date) : *m_time;
    if (picker.IsUnreadable()) return picker.Text();
    return FromUtf8(ConditionCount(editor == m_date ? m_date->Day() : m_time->Seconds()));
}

QString CFilterConditionEditor::State() const {
    if (!IsUsed()) return {};
    return QStringList{m_fields->currentData().toString(), m_operators->currentText(), ShownValue()}.join(u'\n');
}

std::optional<std::string> CFilterConditionEditor::StoredValue(Failure& failure, int& control) const {
    const QWidget* editor = ValueEditor();
    if (editor == m_list) {
        const auto& items = m_doc.Fields()[*ChosenField()].options.items;
        const std::string item =
            items.empty() ? std::string() : items[static_cast<std::size_t>(m_list->currentIndex())];
        control = m_controls.list;
        return CheckConditionLength(item, m_doc.Page(), failure) ? std::optional(item) : std::nullopt;
    }
    // What the file brought along stays, even where no editor can show it.
    if (IsStoredField() && ShownValue() == m_storedShown) return m_stored->value;
    for (const auto& [picker, id] :
         {std::pair<CValuePicker*, int>(m_date, m_controls.date), {m_time, m_controls.time}}) {
        if (editor != picker || !picker->IsUnreadable()) continue;
        control = id;
        failure.text =
            QStringLiteral("Filter %1: %2").arg(m_controls.number).arg(picker->WhyUnreadable()).toStdString();
        return std::nullopt;
    }
    control = m_controls.text;
    if (editor == m_text) return ConditionText(ToWide(m_text->text()), m_doc.Page(), failure);
    return ShownValue().toStdString();
}

std::optional<FilterCondition> CFilterConditionEditor::Condition(Failure& failure, int& control) const {
    FilterCondition condition;
    const auto field = ChosenField();
    condition.allFields = !field;
    if (field) condition.field = m_doc.Fields()[*field].name;
    condition.operation = static_cast<std::uint8_t>(m_operators->currentIndex());
    auto value = StoredValue(failure, control);
    if (!value) return std::nullopt;
    condition.value = std::move(*value);
    return condition;
}

}  // namespace quillary
