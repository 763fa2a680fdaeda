#include "admin/FieldOptionsEditor.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>
#include <utility>

#include "admin/ListItemsEditor.h"
#include "db/AnsiText.h"
#include "ui/DigitsEdit.h"
#include "ui/Mnemonics.h"

namespace quillary {

namespace {

constexpr int kNoPane = 0;  // an empty page

// In the order of the type numbers.
constexpr int kPaneOfType[] = {151, kNoPane, 152, 153, 154, 155, 156, 215, 215, 215};
static_assert(std::size(kPaneOfType) == kFieldTypeCount);

}  // namespace

CFieldOptionsEditor::CFieldOptionsEditor(bool converts, const AnsiText& page)
    : m_page(page), m_items(new CListItemsEditor(page)) {
    QStringList texts = WithMnemonics({QStringLiteral("Type:"),  // beside the panes
                                       QStringLiteral("Auto capitalize first word"), QStringLiteral("First Value:"),
                                       QStringLiteral("Value Increment:"), QStringLiteral("Default as checked"),
                                       QStringLiteral("Default as current date"), QStringLiteral("Convert from"),
                                       QStringLiteral("Default as current time")});
    m_capitalize = AddCheckBox(*AddPane(151), 1018, texts[1]);
    QVBoxLayout* sequence = AddPane(152);
    m_first = AddNumber(*sequence, 1019, texts[2]);
    m_increment = AddNumber(*sequence, 1020, texts[3]);
    m_checked = AddCheckBox(*AddPane(153), 1021, texts[4]);
    AddDatePane(converts, texts[5], texts[6]);
    m_now = AddCheckBox(*AddPane(155), 1024, texts[7]);
    m_items->setObjectName(QStringLiteral("156"));
    addWidget(m_items);
    (void)AddPane(215);
    (void)AddPane(kNoPane);
}

QVBoxLayout* CFieldOptionsEditor::AddPane(int id) {
    auto* pane = new QWidget;
    pane->setObjectName(QString::number(id));
    addWidget(pane);
    auto* column = new QVBoxLayout(pane);
    column->setContentsMargins(0, fontMetrics().height() / 2, 0, 0);
    column->setSpacing(fontMetrics().height() / 2);
    column->setAlignment(Qt::AlignTop);
    return column;
}

QCheckBox* CFieldOptionsEditor::AddCheckBox(QBoxLayout& pane, int id, const QString& text) {
    auto* box = new QCheckBox(text);
    box->setObjectName(QString::number(id));
    pane.addWidget(box, 0, Qt::AlignLeft);
    return box;
}

CDigitsEdit* CFieldOptionsEditor::AddNumber(QVBoxLayout& pane, int id, const QString& label) {
    auto* edit = new CDigitsEdit;
    edit->setObjectName(QString::number(id));
    edit->setAccessibleName(QString(label).remove(u'&'));
    auto* above = new QLabel(label);
    above->setBuddy(edit);
    pane.addWidget(above);
    pane.addWidget(edit);
    return edit;
}

void CFieldOptionsEditor::AddDatePane(bool converts, const QString& today, const QString& convert) {
    QVBoxLayout* pane = AddPane(154);
    m_today = AddCheckBox(*pane, 1023, today);
    auto* row = new QHBoxLayout;
    row->setAlignment(Qt::AlignLeft);
    pane->addLayout(row);
    m_convert = AddCheckBox(*row, 1013, convert);
    m_convertFrom = new QComboBox;
    m_convertFrom->setObjectName(QStringLiteral("1022"));
    m_convertFrom->setAccessibleName(QStringLiteral("Order of the date"));
    // The toolkit may give a list's value as its name; this is told besides.
    m_convertFrom->setAccessibleDescription(m_convertFrom->accessibleName());
    // In the order of DateOrder.
    m_convertFrom->addItems({QStringLiteral("M/D/Y"), QStringLiteral("D.M.Y"), QStringLiteral("Y-M-D")});
    row->addWidget(m_convertFrom);
    m_convert->setVisible(converts);
    m_convertFrom->setVisible(converts);
    // The box and the list say one thing: an order is chosen, or the usual one holds.
    connect(m_convertFrom, &QComboBox::activated, m_convert, [this] { m_convert->setChecked(true); });
    connect(m_convert, &QCheckBox::clicked, m_convertFrom, [this](bool on) {
        if (!on) m_convertFrom->setCurrentIndex(0);
    });
}

void CFieldOptionsEditor::Load(const FieldEdit& edit) {
    const FieldOptions& options = edit.definition.field.options;
    m_capitalize->setChecked(options.capitalize);
    m_first->SetValue(options.first);
    m_increment->SetValue(options.increment);
    m_checked->setChecked(options.checked);
    m_today->setChecked(options.today);
    m_convert->setChecked(edit.convert);
    m_convertFrom->setCurrentIndex(static_cast<int>(edit.definition.convertFrom));
    m_now->setChecked(options.now);
    m_items->SetItems(options.items);
}

void CFieldOptionsEditor::ShowPane(FieldType type) {
    auto* pane =
        findChild<QWidget*>(QString::number(kPaneOfType[static_cast<std::size_t>(type)]), Qt::FindDirectChildrenOnly);
    // As small as the pane that shows allows, not the largest one.
    for (int i = 0; i < count(); ++i) {
        const auto policy = widget(i) == pane ? QSizePolicy::Preferred : QSizePolicy::Ignored;
        widget(i)->setSizePolicy(policy, policy);
    }
    setCurrentWidget(pane);
}

bool CFieldOptionsEditor::AreItemsChanged() const { return m_items->IsChanged(); }

bool CFieldOptionsEditor::Commit(FieldType type, FieldEdit& edit, Failure& failure, int& item) {
    FieldOptions& options = edit.definition.field.options;
    switch (type) {
        case FieldType::Text:
            options.capitalize = m_capitalize->isChecked();
            break;
        case FieldType::Sequence:
            options.first = m_first->Value(1);
            options.increment = m_increment->Value(1);
            break;
        case FieldType::Checkbox:
            options.checked = m_checked->isChecked();
            break;
        case FieldType::Date:
            options.today = m_today->isChecked();
            edit.convert = m_convert->isChecked();
            edit.definition.convertFrom = static_cast<DateOrder>(m_convertFrom->currentIndex());
            break;
        case FieldType::Time:
            options.now = m_now->isChecked();
            break;
        case FieldType::List: {
            auto items = m_items->Items(failure, item);
            if (!items) return false;
            options.items = std::move(*items);
            break;
        }
        case FieldType::Number:
        case FieldType::Phone:
        case FieldType::EMail:
        case FieldType::WebUrl:
            break;
    }
    return true;
}

void CFieldOptionsEditor::EditItem(int item) { m_items->EditItem(item); }

}  // namespace quillary
