#include "remote/RemoteCatalog.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <limits>
#include <utility>

#include "admin/Settings.h"
#include "db/FieldValue.h"
#include "remote/CatalogueAnswer.h"
#include "remote/DownloadTarget.h"

namespace quillary {

namespace {

constexpr std::uint64_t kMostAnswer = std::uint64_t{64} << 20;
constexpr std::uint64_t kMostDownload = std::uint64_t{256} << 20;
constexpr std::size_t kDownloadChunk = 4096;
constexpr std::size_t kMostChunk = std::size_t{64} << 10;
constexpr std::string_view kBrokenOff = "the transfer broke off";
constexpr std::string_view kTooLarge = "the answer is too large";

// Reads to the end and hands on each piece. False when the transfer breaks off or is longer than `most`, or when
// `use` refuses a piece.
template <typename Use>
bool ReadAll(HttpFile& file, std::size_t chunk, std::uint64_t most, std::string& reason, const Use& use) {
    const auto length = file.Length();
    reason = kTooLarge;
    if (length.value_or(0) > most) return false;
    std::vector<char> buffer(chunk);
    std::uint64_t received = 0;
    for (;;) {
        const auto read = file.Read(buffer);
        if (!read || (*read == 0 && length && received != *length)) {
            reason = kBrokenOff;
            return false;
        }
        if (*read == 0) break;
        received += *read;
        if (received > most) return false;
        if (!use(std::string_view(buffer.data(), *read))) return false;
    }
    reason.clear();
    return true;
}

std::int32_t After(std::int32_t last) { return last == std::numeric_limits<std::int32_t>::max() ? last : last + 1; }

}  // namespace

CRemoteCatalog::CRemoteCatalog(std::unique_ptr<HttpSession> session, const Settings& settings)
    : CRemoteCatalog(
          std::move(session),
          {settings.ReadText(kCatalogueServer, kServerDefault), settings.ReadText(kDownloadServer, kServerDefault)},
          MaxRemoteResults(settings)) {}

CRemoteCatalog::CRemoteCatalog(std::unique_ptr<HttpSession> session, CatalogueServers servers, std::int32_t pageSize)
    : m_session(std::move(session)), m_servers(std::move(servers)), m_pageSize(pageSize) {}

CRemoteCatalog::~CRemoteCatalog() = default;

void CRemoteCatalog::SetQuery(std::string title, std::string category) {
    m_title = std::move(title);
    m_category = std::move(category);
    m_results.clear();
    m_nextStart = m_pageCount = m_total = 0;
}

std::unique_ptr<HttpFile> CRemoteCatalog::Open(const std::string& url, bool isDownload) {
    const std::string& server = isDownload ? m_servers.download : m_servers.catalogue;
    if (IsServer(server)) return m_session->OpenUrl(OnTheWire(url), m_reason);
    const std::string_view preference = isDownload ? kDownloadServer : kCatalogueServer;
    m_reason = "the preference " + std::string(preference) + " is \"" + server + "\", not HOST or HOST:PORT";
    return nullptr;
}

bool CRemoteCatalog::Fetch(const std::string& url, std::string& answer) {
    const auto file = Open(url, false);
    if (!file) return false;
    const std::uint64_t length = file->Length().value_or(kMostChunk);
    if (length == 0) return true;
    const auto chunk = static_cast<std::size_t>(std::min<std::uint64_t>(length, kMostChunk));
    return ReadAll(*file, chunk, kMostAnswer, m_reason, [&answer](std::string_view piece) {
        answer += piece;
        return true;
    });
}

bool CRemoteCatalog::Search() {
    m_reason.clear();
    std::string answer;
    if (!HasMore() || !Fetch(SearchUrl(m_servers, m_nextStart, m_pageSize, m_title, m_category), answer)) return false;
    CataloguePage page = ReadPage(answer);
    m_pageCount = static_cast<std::int32_t>(page.results.size());
    m_nextStart = After(page.last);
    m_total = page.total;
    for (auto& result : page.results) m_results.push_back(std::move(result));
    return true;
}

bool CRemoteCatalog::FetchDetails(CRemoteResult& item) {
    m_reason.clear();
    if (item.details || !item.children.empty()) return true;
    std::string answer;
    if (!Fetch(DetailsUrl(m_servers, item.docId, item.fileId), answer)) return false;
    item.details = std::make_unique<CRemoteDetails>(ReadDetails(answer));
    return true;
}

bool CRemoteCatalog::FetchPackage(CRemoteResult& item) {
    m_reason.clear();
    std::string answer;
    if (!Fetch(PackageUrl(m_servers, item.docId, item.fileId), answer)) return false;
    item.children = std::move(ReadPage(answer).results);
    item.hasFetchedFiles = true;
    item.size = SumOfSizes(item.children);
    for (const auto& file : item.children) file->isTicked = item.isTicked;
    return true;
}

bool CRemoteCatalog::Download(const CRemoteResult& item, bool isInPackage, DownloadTarget& target) {
    const std::string url = isInPackage ? PackagedFileUrl(m_servers, item.docId) : DownloadUrl(m_servers, item.fileId);
    const auto file = Open(url, !isInPackage);
    if (!file) return false;
    std::string refused;
    bool isEmpty = true;
    const auto write = [&](std::string_view piece) {
        isEmpty = false;
        return target.Append(piece, refused);
    };
    if (!ReadAll(*file, kDownloadChunk, kMostDownload, m_reason, write)) {
        if (!refused.empty()) m_reason = refused;
        return false;
    }
    if (isEmpty) {
        m_reason = "the file is empty";
        return false;
    }
    return target.Keep(m_reason);
}

std::string SumOfSizes(const std::vector<std::unique_ptr<CRemoteResult>>& files) {
    double sum = 0;
    for (const auto& file : files) sum += ReadNumber(file->size);
    char text[std::numeric_limits<double>::max_exponent10 + 16];
    return {text, static_cast<std::size_t>(std::snprintf(text, sizeof text, "%0.1f", sum))};
}

std::string InformationText(const CRemoteDetails& details) {
    const std::array<std::pair<std::string_view, const std::string&>, 8> lines = {{
        {"Author: ", details.author},
        {"Rating: ", details.rating},
        {"# Downloads: ", details.downloads},
        {"Category: ", details.category},
        {"Description: ", details.description},
        {"Language: ", details.language},
        {"Last Updated: ", details.lastUpdated},
        {"Notes: ", details.notes},
    }};
    std::string text;
    for (const auto& [label, value] : lines) {
        if (!value.empty()) text.append(label).append(value).append("\r\n\r\n");
    }
    return text;
}

}  // namespace quillary
