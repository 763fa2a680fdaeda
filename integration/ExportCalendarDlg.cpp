#include "integration/ExportCalendarDlg.h"

#include <QFormLayout>
#include <QLabel>
#include <QVBoxLayout>

#include "ui/HelpTopics.h"
#include "ui/Mnemonics.h"
#include "ui/PickList.h"
#include "ui/QLYComboBox.h"
#include "ui/WideText.h"

namespace quillary {

namespace {

constexpr int kDate = 1002;
constexpr int kStart = 1003;
constexpr int kEnd = 1004;
constexpr int kBody = 1056;
constexpr int kNone = -1;

constexpr DialogInfo kDialog{189, u"Export to Calendar", {}, kTopicExportToCalendar};

void Name(QWidget& control, int id, QLabel& label) {
    control.setObjectName(QString::number(id));
    control.setAccessibleName(label.text().remove(u'&'));
    label.setBuddy(&control);
}

}  // namespace

CExportCalendarDlg::CExportCalendarDlg(const CQuillaryDoc& doc, std::optional<std::size_t> row, FrameWindow& frame)
    : CExportCalendarDlg(doc, row, new QWidget, frame) {}

CExportCalendarDlg::CExportCalendarDlg(const CQuillaryDoc& doc, std::optional<std::size_t> row, QWidget* content,
                                       FrameWindow& frame)
    : CQuillaryDialog(kDialog, nullptr, Scrolled(*content), frame),
      m_doc(doc),
      m_row(row),
      m_date(new CQLYComboBox),
      m_start(new CQLYComboBox),
      m_end(new CQLYComboBox),
      m_body(new CPickList) {
    const QStringList labels = WithMnemonics({QStringLiteral("Date:"), QStringLiteral("Start Time:"),
                                              QStringLiteral("End Time:"), QStringLiteral("Fields to Export:")});
    auto* column = new QVBoxLayout(content);
    column->setContentsMargins({});
    column->setSpacing(fontMetrics().height() / 2);
    auto* times = new QFormLayout;
    times->setRowWrapPolicy(QFormLayout::WrapLongRows);
    times->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    column->addLayout(times);
    struct Row {
        QComboBox* list;
        int id;
    };
    qsizetype next = 0;
    for (const auto& [list, id] : {Row{m_date, kDate}, Row{m_start, kStart}, Row{m_end, kEnd}}) {
        auto* label = new QLabel(labels[next++]);
        Name(*list, id, *label);
        times->addRow(label, list);
    }
    auto* label = new QLabel(labels[next]);
    Name(*m_body, kBody, *label);
    m_body->setAccessibleDescription(QStringLiteral("Each becomes a line of the appointment, in the order picked"));
    column->addWidget(label);
    column->addWidget(m_body, 1);
}

void CExportCalendarDlg::Offer(QComboBox& list, FieldType type) {
    list.clear();
    if (type == FieldType::Time) list.addItem(QStringLiteral("None"), kNone);
    for (const int field : OfferedFields(m_doc, type, m_row)) {
        list.addItem(OnOneLine(FromWide(m_doc.FieldName(static_cast<std::size_t>(field)))), field);
    }
    // The first field, where there is one.
    list.setCurrentIndex(type == FieldType::Time && list.count() > 1 ? 1 : 0);
}

void CExportCalendarDlg::Load() {
    Offer(*m_date, FieldType::Date);
    Offer(*m_start, FieldType::Time);
    Offer(*m_end, FieldType::Time);
    m_body->clear();
    for (std::size_t k = 0; k < m_doc.FieldCount(); ++k) m_body->addItem(OnOneLine(FromWide(m_doc.FieldName(k))));
}

void CExportCalendarDlg::FocusFirst() { m_date->setFocus(); }

bool CExportCalendarDlg::Commit() {
    const auto chosen = [](const QComboBox& list) { return list.count() > 0 ? list.currentData().toInt() : kNone; };
    m_fields = {chosen(*m_date), chosen(*m_start), chosen(*m_end), m_body->Picked()};
    return true;
}

}  // namespace quillary
