#include "query/FilterRecordsDlg.h"

#include <QScrollArea>
#include <QScrollBar>
#include <utility>

#include "db/Messages.h"
#include "query/FilterConditionEditor.h"
#include "query/FilterConditionsPage.h"
#include "ui/HelpTopics.h"
#include "ui/WideText.h"

namespace quillary {

namespace {

constexpr DialogInfo kDialog{140, u"Filter Records", {}, kTopicFilterRecords};
constexpr int kFirstField = 1029;
constexpr int kLineStep = 5;  // pixels

}  // namespace

CFilterRecordsDlg::CFilterRecordsDlg(const CQuillaryDoc& doc, const Clock& clock, DateOrder order, FrameWindow& frame)
    : CFilterRecordsDlg(new CFilterConditionsPage(doc, clock, order), frame) {}

CFilterRecordsDlg::CFilterRecordsDlg(CFilterConditionsPage* page, FrameWindow& frame)
    : CQuillaryDialog(kDialog, nullptr, Short(*page), frame), m_page(page) {
    auto* scroll = findChild<QScrollArea*>();
    QScrollBar* bar = scroll->verticalScrollBar();
    bar->setSingleStep(kLineStep);
    // A field that is chosen brings its operator and value with it, below on a small screen.
    connect(bar, &QScrollBar::rangeChanged, page, [scroll, page] {
        QWidget* condition = page->focusWidget() ? page->focusWidget()->parentWidget() : nullptr;
        if (dynamic_cast<CFilterConditionEditor*>(condition)) scroll->ensureWidgetVisible(condition, 0, 0);
    });
}

void CFilterRecordsDlg::Load() {
    m_page->Load();
    m_loadedState = m_page->State();
}

void CFilterRecordsDlg::FocusFirst() { Control<QWidget>(kFirstField)->setFocus(); }

bool CFilterRecordsDlg::IsChanged() const { return m_page->State() != m_loadedState; }

bool CFilterRecordsDlg::Commit() {
    Failure failure;
    int control = 0;
    auto settings = m_page->Settings(failure, control);
    if (!settings) return Refuse(control, FromUtf8(failure.text));
    m_settings = std::move(*settings);
    return true;
}

}  // namespace quillary
