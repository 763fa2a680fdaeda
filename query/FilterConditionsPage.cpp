#include "query/FilterConditionsPage.h"

#include <QLabel>
#include <QVBoxLayout>

#include "query/Filter.h"
#include "query/FilterConditionEditor.h"
#include "ui/QLYComboBox.h"

namespace quillary {

namespace {

constexpr int kPage = 181;
constexpr int kCombine = 1011;
constexpr int kApply = 1002;
constexpr int kApplyLabel = 1040;

constexpr CFilterConditionEditor::Controls kConditions[] = {
    {1, 1029, 1030, 1031, 1003, 1041, 1042, 1034},
    {2, 1032, 1007, 1033, 1004, 1043, 1044, 1035},
    {3, 1008, 1010, 1009, 1005, 1045, 1046, 1012},
};
static_assert(std::size(kConditions) == kMaxConditions);

enum Combine { kMatchAll, kMatchAny };
enum Apply { kAllRecords, kFilteredRecords };

}  // namespace

CFilterConditionsPage::CFilterConditionsPage(const CQuillaryDoc& doc, const Clock& clock, DateOrder order)
    : m_doc(doc), m_applyLabel(new QLabel(QStringLiteral("&Apply Filter On:"))) {
    setObjectName(QString::number(kPage));
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins({});
    column->setSpacing(fontMetrics().height() / 2);
    for (std::size_t k = 0; k < m_conditions.size(); ++k) {
        m_conditions[k] = new CFilterConditionEditor(kConditions[k], doc, clock, order);
        column->addWidget(m_conditions[k]);
    }
    m_combine = AddChoice(kCombine, *new QLabel(QStringLiteral("&Combine Filters As:")),
                          {QStringLiteral("and (match all)"), QStringLiteral("or (match any)")});
    m_applyLabel->setObjectName(QString::number(kApplyLabel));
    m_apply = AddChoice(kApply, *m_applyLabel, {QStringLiteral("All records"), QStringLiteral("Filtered records")});
}

QComboBox* CFilterConditionsPage::AddChoice(int id, QLabel& label, const QStringList& items) {
    auto* choice = new CQLYComboBox;
    choice->setObjectName(QString::number(id));
    choice->setAccessibleName(label.text().remove(u'&'));
    choice->clear();
    choice->addItems(items);
    label.setBuddy(choice);
    label.setWordWrap(true);
    auto* pair = new QVBoxLayout;
    pair->setSpacing(fontMetrics().height() / 4);
    pair->addWidget(&label);
    pair->addWidget(choice);
    static_cast<QVBoxLayout*>(layout())->addLayout(pair);
    return choice;
}

void CFilterConditionsPage::Load() {
    const FilterSettings filter = EffectiveFilter(m_doc);
    for (std::size_t k = 0; k < m_conditions.size(); ++k) {
        m_conditions[k]->Load(k < filter.conditions.size() ? &filter.conditions[k] : nullptr);
    }
    m_combine->setCurrentIndex(filter.matchAny ? kMatchAny : kMatchAll);
    const bool isInForce = !filter.conditions.empty();
    m_apply->setCurrentIndex(isInForce && filter.onlyShown ? kFilteredRecords : kAllRecords);
    m_applyLabel->setVisible(isInForce);
    m_apply->setVisible(isInForce);
}

QStringList CFilterConditionsPage::State() const {
    QStringList state;
    for (const CFilterConditionEditor* condition : m_conditions) state << condition->State();
    return state << m_combine->currentText() << m_apply->currentText();
}

std::optional<FilterSettings> CFilterConditionsPage::Settings(Failure& failure, int& control) const {
    FilterSettings settings{{}, m_doc.Filter().matchAny, m_doc.Filter().onlyShown};
    for (const CFilterConditionEditor* condition : m_conditions) {
        if (!condition->IsUsed()) continue;
        auto stored = condition->Condition(failure, control);
        if (!stored) return std::nullopt;
        settings.conditions.push_back(std::move(*stored));
    }
    // The choices below count with the first condition only.
    if (m_conditions[0]->IsUsed()) {
        settings.matchAny = m_combine->currentIndex() == kMatchAny;
        settings.onlyShown = m_apply->currentIndex() == kFilteredRecords;
    }
    return settings;
}

}  // namespace quillary
