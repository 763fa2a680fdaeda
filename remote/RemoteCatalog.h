// The client of a catalogue of published databases: searches it page by page and fetches details, packages and files.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "remote/CatalogueUrl.h"
#include "remote/HttpSession.h"
#include "remote/RemoteResult.h"

namespace quillary {

class DownloadTarget;
class Settings;

/// One thread at a time. Each operation that fails leaves everything as it was, and Reason() says why.
class CRemoteCatalog {
  public:
    /// Page size and servers are the preferences'.
    CRemoteCatalog(std::unique_ptr<HttpSession> session, const Settings& settings);
    /// `pageSize` is how many results one query asks for.
    CRemoteCatalog(std::unique_ptr<HttpSession> session, CatalogueServers servers, std::int32_t pageSize);
    ~CRemoteCatalog();

    /// For the next Search, which begins anew. Texts in the code page; the category in lower case; either may be empty.
    void SetQuery(std::string title, std::string category);

    /// Fetches the next page. False when there is none, or when it cannot be fetched.
    [[nodiscard]] bool Search();
    /// Once for each item: one that has details, or files, is left as it is.
    [[nodiscard]] bool FetchDetails(CRemoteResult& item);
    /// Of a package: its files, which are ticked as the package is, and its size, which is theirs.
    [[nodiscard]] bool FetchPackage(CRemoteResult& item);
    /// False, with nothing left of it, when the file is empty, cannot be fetched or cannot be written.
    [[nodiscard]] bool Download(const CRemoteResult& item, bool isInPackage, DownloadTarget& target);

    [[nodiscard]] const std::vector<std::unique_ptr<CRemoteResult>>& Results() const { return m_results; }
    [[nodiscard]] std::int32_t Total() const { return m_total; }
    [[nodiscard]] std::int32_t PageCount() const { return m_pageCount; }
    /// Of the next page.
    [[nodiscard]] std::int32_t NextStart() const { return m_nextStart; }
    /// Whether Search would ask the server.
    [[nodiscard]] bool HasMore() const { return m_total == 0 || m_nextStart <= m_total; }
    /// For a person, UTF-8; empty when the last operation did not fail.
    [[nodiscard]] const std::string& Reason() const { return m_reason; }

    /// May be called by another thread.
    HttpSession& Session() { return *m_session; }

  private:
    /// nullptr with a reason when there is no answer, or nobody to ask.
    [[nodiscard]] std::unique_ptr<HttpFile> Open(const std::string& url, bool isDownload);
    [[nodiscard]] bool Fetch(const std::string& url, std::string& answer);

    std::unique_ptr<HttpSession> m_session;
    CatalogueServers m_servers;
    std::vector<std::unique_ptr<CRemoteResult>> m_results;
    std::string m_title;
    std::string m_category;
    std::int32_t m_pageSize;
    std::int32_t m_nextStart = 0;
    std::int32_t m_pageCount = 0;
    std::int32_t m_total = 0;
    std::string m_reason;
};

/// The sum of the files' sizes, as a package shows it.
[[nodiscard]] std::string SumOfSizes(const std::vector<std::unique_ptr<CRemoteResult>>& files);

/// The texts that a person reads about an item: each detail that is not empty, behind its label. In the code page.
[[nodiscard]] std::string InformationText(const CRemoteDetails& details);

}  // namespace quillary
