#include "integration/ExportContactsPage.h"

#include <QFormLayout>
#include <QLabel>

#include "ui/Mnemonics.h"
#include "ui/QLYComboBox.h"
#include "ui/WideText.h"

namespace quillary {

namespace {

constexpr int kPage = 197;
constexpr int kNone = -1;

}  // namespace

CExportContactsPage::CExportContactsPage(const CQuillaryDoc& doc) : m_doc(doc) {
    setObjectName(QString::number(kPage));
    auto* rows = new QFormLayout(this);
    rows->setContentsMargins({});
    rows->setRowWrapPolicy(QFormLayout::WrapLongRows);
    rows->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    QStringList labels;
    for (const ContactPropertyInfo& info : kContactPropertyTable) labels << FromWide(info.label);
    labels = WithMnemonics(labels);
    qsizetype next = 0;
    for (const ContactPropertyInfo& info : kContactPropertyTable) {
        auto* list = new CQLYComboBox;
        list->setObjectName(QString::number(info.control));
        list->setAccessibleName(FromWide(info.label));
        auto* label = new QLabel(labels[next++]);
        label->setBuddy(list);
        rows->addRow(label, list);
        m_lists[static_cast<std::size_t>(info.property)] = list;
    }
}

void CExportContactsPage::Load() {
    for (QComboBox* list : m_lists) {
        list->clear();
        list->addItem(QStringLiteral("None"), kNone);
        for (std::size_t k = 0; k < m_doc.FieldCount(); ++k) {
            list->addItem(OnOneLine(FromWide(m_doc.FieldName(k))), static_cast<int>(k));
        }
        list->setCurrentIndex(0);
    }
}

ContactFields CExportContactsPage::Fields() const {
    ContactFields fields{};
    for (std::size_t k = 0; k < fields.size(); ++k) fields[k] = m_lists[k]->currentData().toInt();
    return fields;
}

}  // namespace quillary
