#include "query/FilterRecordsDlg.h"

#include <QScrollArea>
#include <QScrollBar>
#include <utility>

#include "db/Messages.h"
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
    findChild<QScrollArea*>()->verticalScrollBar()->setSingleStep(kLineStep);
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
