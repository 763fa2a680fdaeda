#include "app/MyDocListTemplate.h"

#include <utility>

#include "app/DocListPage.h"
#include "app/MainFrame.h"

namespace quillary {

namespace {

bool refreshFlag = false;  // the interface thread's

}  // namespace

CMyDocListTemplate::CMyDocListTemplate(CMainFrame& frame, const Desktop& desktop, Requests requests)
    : m_frame(frame), m_desktop(desktop), m_requests(std::move(requests)) {}

CMyDocListTemplate::~CMyDocListTemplate() = default;

void CMyDocListTemplate::ShowDocList(const Path& select) {
    SetRefreshFlag();
    if (!m_page) {
        const auto pass = [this] { FilterPass(); };
        const auto changed = [this] {
            SetRefreshFlag();
            FilterPass();
        };
        m_page = std::make_unique<CDocListPage>(
            m_desktop, m_frame,
            CDocListPage::Requests{m_requests.open, m_requests.openOther, m_requests.create, changed, pass, pass});
    }
    if (!select.empty()) m_page->SelectNext(select);
    m_frame.ShowDocList(*m_page);
    FilterPass();
}

void CMyDocListTemplate::FilterPass() {
    if (!m_page || !m_page->isVisible()) return;
    m_page->FitColumns();
    if (std::exchange(refreshFlag, false)) m_page->Scan();
}

void CMyDocListTemplate::SetRefreshFlag() { refreshFlag = true; }

}  // namespace quillary
