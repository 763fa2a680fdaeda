#include "remote/DownloadRun.h"

#include <utility>

#include "remote/DownloadTarget.h"
#include "remote/RemoteCatalog.h"

namespace quillary {

DownloadRun::DownloadRun(CRemoteCatalog& catalog, FileAccess& files, const AnsiText& page, Events events)
    : m_catalog(catalog), m_files(files), m_page(page), m_events(std::move(events)), m_thread([this] { Run(); }) {}

DownloadRun::~DownloadRun() { Wait(); }

void DownloadRun::Wait() {
    if (m_thread.joinable()) m_thread.join();
}

void DownloadRun::Run() {
    m_events.start(CountFiles());
    const auto& results = m_catalog.Results();
    bool goesOn = true;
    for (std::size_t i = 0; i < results.size() && goesOn && !m_stop; ++i) {
        CRemoteResult& result = *results[i];
        if (result.IsSingleFile()) {
            goesOn = !result.isTicked || Fetch(i, result, false);
            continue;
        }
        for (const auto& file : result.children) {
            if (!goesOn || m_stop) break;
            if (file->isTicked) goesOn = Fetch(i, *file, true);
        }
    }
    m_events.done();
}

std::size_t DownloadRun::CountFiles() {
    std::size_t count = 0;
    for (const auto& result : m_catalog.Results()) {
        if (m_stop) break;
        if (result->IsSingleFile()) {
            count += result->isTicked ? 1 : 0;
            continue;
        }
        if (result->isTicked && !result->hasFetchedFiles && !m_catalog.FetchPackage(*result)) {
            m_missed.push_back({result->name, m_catalog.Reason()});
        }
        for (const auto& file : result->children) count += file->isTicked ? 1 : 0;
    }
    return count;
}

bool DownloadRun::Fetch(std::size_t result, CRemoteResult& item, bool isInPackage) {
    if (!m_folder) {
        m_folder = m_events.askFolder();
        if (!m_folder) return false;
        FileError untold;  // each file tells why it cannot be written
        (void)m_files.MakeFolder(*m_folder, untold);
    }
    m_events.begin(result, item.name);
    DownloadTarget target(m_files, *m_folder / SafeFileName(m_page.ToUtf8(item.name), isInPackage));
    if (m_catalog.Download(item, isInPackage, target)) {
        m_kept.push_back(target.KeptAs());
        item.isTicked = false;
    } else {
        m_missed.push_back({item.name, m_catalog.Reason()});
    }
    return true;
}

}  // namespace quillary
