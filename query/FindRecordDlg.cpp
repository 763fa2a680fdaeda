#include "query/FindRecordDlg.h"

#include <QComboBox>
#include <QLineEdit>
#include <utility>

#include "db/QuillaryDoc.h"
#include "query/Find.h"
#include "ui/HelpTopics.h"
#include "ui/WideText.h"

namespace quillary {

namespace {

constexpr int kText = 1027;
constexpr int kColumn = 1028;

constexpr ControlInfo kControls[] = {
    {kText, ControlKind::TextEdit, u"Find:"},
    {kColumn, ControlKind::ComboBox, u"In Field:"},
};
constexpr DialogInfo kDialog = {142, u"Find Record", kControls, kTopicFindRecord};

}  // namespace

CFindRecordDlg::CFindRecordDlg(const CQuillaryDoc& doc, QString text, int column, FrameWindow& frame)
    : CQuillaryDialog(kDialog, frame), m_doc(doc), m_text(std::move(text)), m_column(column) {}

void CFindRecordDlg::Load() {
    Control<QLineEdit>(kText)->setText(m_text);
    Control<QLineEdit>(kText)->selectAll();
    auto* columns = Control<QComboBox>(kColumn);
    columns->addItem(QStringLiteral("All Fields"), RecordFinder::kAllFields);
    for (std::size_t k = 0; k < m_doc.FieldCount(); ++k) {
        columns->addItem(OnOneLine(FromWide(m_doc.FieldName(k))), static_cast<int>(k));
    }
    columns->setCurrentIndex(std::max(columns->findData(m_column), 0));
}

bool CFindRecordDlg::Commit() {
    m_text = Control<QLineEdit>(kText)->text();
    m_column = Control<QComboBox>(kColumn)->currentData().toInt();
    return true;
}

}  // namespace quillary
