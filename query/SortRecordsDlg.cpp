#include "query/SortRecordsDlg.h"

#include "db/QuillaryDoc.h"
#include "query/SortKeysPage.h"
#include "ui/HelpTopics.h"

namespace quillary {

namespace {

constexpr DialogInfo kDialog{139, u"Sort Records", {}, kTopicSortRecords};

}  // namespace

CSortRecordsDlg::CSortRecordsDlg(const CQuillaryDoc& doc, FrameWindow& frame)
    : CSortRecordsDlg(doc, frame, new CSortKeysPage(doc)) {}

CSortRecordsDlg::CSortRecordsDlg(const CQuillaryDoc& doc, FrameWindow& frame, CSortKeysPage* page)
    : CQuillaryDialog(kDialog, nullptr, Short(*page), frame), m_keys(doc.Sort()), m_page(page) {}

void CSortRecordsDlg::Load() { m_page->Load(m_keys); }

void CSortRecordsDlg::FocusFirst() { m_page->FocusFirst(); }

bool CSortRecordsDlg::Commit() {
    m_keys = m_page->Keys();
    return true;
}

}  // namespace quillary
