#include "admin/FieldTypeDlg.h"

#include <QComboBox>
#include <QLabel>
#include <QScrollArea>
#include <QVBoxLayout>
#include <iterator>
#include <utility>

#include "admin/FieldOptionsEditor.h"
#include "ui/FrameWindow.h"
#include "ui/HelpTopics.h"
#include "ui/MessageBox.h"
#include "ui/WideText.h"

namespace quillary {

namespace {

constexpr int kType = 1011;
constexpr int kOptions = 1012;
constexpr DialogInfo kDialog{150, u"Field Type", {}, kTopicFieldTypeText};

// In the order of the type numbers.
constexpr std::string_view kTopics[] = {
    kTopicFieldTypeText, kTopicFieldTypeNumber, kTopicFieldTypeSequence, kTopicFieldTypeCheckbox, kTopicFieldTypeDate,
    kTopicFieldTypeTime, kTopicFieldTypeList,   kTopicFieldTypePhone,    kTopicFieldTypeEMail,    kTopicFieldTypeUrl,
};
static_assert(std::size(kTopics) == kFieldTypeCount);

/// The list of the types below its label.
QWidget& TypeRow(QComboBox& types) {
    types.setObjectName(QString::number(kType));
    types.setAccessibleName(QStringLiteral("Type:"));
    for (const FieldTypeInfo& info : AllFieldTypes()) types.addItem(FromUtf8(info.name));
    types.setMaxVisibleItems(types.count());
    auto* label = new QLabel(QStringLiteral("&Type:"));
    label->setBuddy(&types);
    auto* row = new QWidget;
    auto* column = new QVBoxLayout(row);
    column->setContentsMargins({});
    column->setSpacing(row->fontMetrics().height() / 4);
    column->addWidget(label);
    column->addWidget(&types);
    return *row;
}

}  // namespace

CFieldTypeDlg::CFieldTypeDlg(FieldEdit& edit, bool converts, const AnsiText& page, FrameWindow& frame)
    : CFieldTypeDlg(edit, frame, new QComboBox, new CFieldOptionsEditor(converts, page)) {}

CFieldTypeDlg::CFieldTypeDlg(FieldEdit& edit, FrameWindow& frame, QComboBox* types, CFieldOptionsEditor* options)
    : CQuillaryDialog(kDialog, &TypeRow(*types), Scrolled(*options), frame),
      m_edit(edit),
      m_types(types),
      m_options(options) {
    options->setObjectName(QString::number(kOptions));
    connect(types, &QComboBox::currentIndexChanged, this, [this] { m_options->ShowPane(ChosenType()); });
}

FieldType CFieldTypeDlg::ChosenType() const { return static_cast<FieldType>(m_types->currentIndex()); }

std::string_view CFieldTypeDlg::Topic() const { return kTopics[m_types->currentIndex()]; }

void CFieldTypeDlg::Load() {
    m_options->Load(m_edit);
    m_types->setCurrentIndex(static_cast<int>(m_edit.definition.field.type));
    m_options->ShowPane(ChosenType());
}

void CFieldTypeDlg::FocusFirst() { m_types->setFocus(); }

bool CFieldTypeDlg::IsChanged() const { return CQuillaryDialog::IsChanged() || m_options->AreItemsChanged(); }

bool CFieldTypeDlg::Commit() {
    FieldEdit edited = m_edit;
    edited.definition.field.type = ChosenType();
    Failure failure;
    int item = 0;
    if (!m_options->Commit(ChosenType(), edited, failure, item)) {
        ShowMessage(Frame().Window(), FromUtf8(failure.text));
        m_options->EditItem(item);
        return false;
    }
    m_edit = std::move(edited);
    return true;
}

bool RunFieldType(FieldEdit& edit, bool converts, const AnsiText& page, FrameWindow& frame) {
    CFieldTypeDlg dialog(edit, converts, page, frame);
    return dialog.exec() == QDialog::Accepted;
}

}  // namespace quillary
