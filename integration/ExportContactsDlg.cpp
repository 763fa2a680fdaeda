#include "integration/ExportContactsDlg.h"

#include "db/Messages.h"
#include "integration/ExportContactsPage.h"
#include "ui/HelpTopics.h"
#include "ui/WideText.h"

namespace quillary {

namespace {

constexpr DialogInfo kDialog{196, u"Export to Contacts", {}, kTopicExportToContacts};
constexpr int kFirstList = kContactPropertyTable.front().control;

}  // namespace

CExportContactsDlg::CExportContactsDlg(const CQuillaryDoc& doc, FrameWindow& frame)
    : CExportContactsDlg(new CExportContactsPage(doc), frame) {}

CExportContactsDlg::CExportContactsDlg(CExportContactsPage* page, FrameWindow& frame)
    : CQuillaryDialog(kDialog, nullptr, Scrolled(*page), frame), m_page(page) {}

void CExportContactsDlg::Load() { m_page->Load(); }

void CExportContactsDlg::FocusFirst() { Control<QWidget>(kFirstList)->setFocus(); }

bool CExportContactsDlg::Commit() {
    const ContactFields fields = m_page->Fields();
    if (fields == NoContactFields()) return Refuse(kFirstList, FromUtf8(MessageText(Message::NoContactFields)));
    m_fields = fields;
    return true;
}

}  // namespace quillary
