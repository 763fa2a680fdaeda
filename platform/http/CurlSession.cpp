#include "platform/http/CurlSession.h"

#include <curl/curl.h>

#include <algorithm>
#include <cstring>
#include <new>
#include <string>
#include <string_view>

namespace quillary {

namespace {

constexpr const char* kAgent = "Quillary PPC";
constexpr long kConnectSeconds = 15;
constexpr long kStallSeconds = 15;
constexpr long kMostRedirections = 5;
constexpr int kPollMilliseconds = 1000;                // a Cancel wakes it at once
constexpr std::size_t kEnough = std::size_t{1} << 20;  // received and not yet read: the server waits then
constexpr long kOk = 200;

class CurlFile : public HttpFile {
  public:
    CurlFile(CURLM* multi, const std::atomic<bool>& isCancelled) : m_multi(multi), m_isCancelled(isCancelled) {}
    ~CurlFile() override {
        if (!m_easy) return;
        curl_multi_remove_handle(m_multi, m_easy);
        curl_easy_cleanup(m_easy);
    }
    CurlFile(const CurlFile&) = delete;
    CurlFile& operator=(const CurlFile&) = delete;

    // Waits for the first bytes or the end, so that the head is there.
    [[nodiscard]] bool Open(const std::string& url, std::string& reason) {
        m_easy = curl_easy_init();
        if (!m_easy) throw std::bad_alloc();
        SetUp(url);
        if (curl_multi_add_handle(m_multi, m_easy) != CURLM_OK) throw std::bad_alloc();
        while (!m_ended && m_received.empty()) Work();
        if (m_received.empty() && m_failure == CURLE_OK && !m_headIsWhole) End(CURLE_PARTIAL_FILE);
        long status = 0;
        curl_easy_getinfo(m_easy, CURLINFO_RESPONSE_CODE, &status);
        if (m_received.empty() && m_failure != CURLE_OK) {
            reason = m_isCancelled ? "cancelled" : Why();
            return false;
        }
        if (status != kOk) {
            reason = "the server answers with status " + std::to_string(status);
            return false;
        }
        return true;
    }

    [[nodiscard]] std::optional<std::uint64_t> Length() const override {
        curl_off_t length = -1;
        curl_easy_getinfo(m_easy, CURLINFO_CONTENT_LENGTH_DOWNLOAD_T, &length);
        return length < 0 ? std::nullopt : std::optional(static_cast<std::uint64_t>(length));
    }

    [[nodiscard]] std::optional<std::size_t> Read(std::span<char> buffer) override {
        if (m_read == m_received.size()) {
            m_received.clear();
            m_read = 0;
            if (m_isPaused) {
                m_isPaused = false;
                curl_easy_pause(m_easy, CURLPAUSE_CONT);
            }
            while (!m_ended && m_received.empty()) Work();
        }
        const std::size_t size = std::min(buffer.size(), m_received.size() - m_read);
        if (size > 0) {
            std::memcpy(buffer.data(), m_received.data() + m_read, size);
            m_read += size;
            return size;
        }
        return m_failure == CURLE_OK ? std::optional<std::size_t>(0) : std::nullopt;
    }

  private:
    static std::size_t Receive(char* bytes, std::size_t, std::size_t size, void* file) {
        auto& self = *static_cast<CurlFile*>(file);
        if (self.m_received.size() >= kEnough) {
            self.m_isPaused = true;
            return CURL_WRITEFUNC_PAUSE;
        }
        self.m_received.append(bytes, size);
        return size;
    }

    // libcurl takes a head that breaks off for a whole one.
    static std::size_t ReceiveHead(char* line, std::size_t, std::size_t size, void* file) {
        static_cast<CurlFile*>(file)->m_headIsWhole =
            std::string_view(line, size) == "\r\n" || std::string_view(line, size) == "\n";
        return size;
    }

    void SetUp(const std::string& url) {
        const auto set = [this](CURLoption option, auto value) { curl_easy_setopt(m_easy, option, value); };
        set(CURLOPT_URL, url.c_str());
        set(CURLOPT_USERAGENT, kAgent);
        set(CURLOPT_PROXY, "");
        set(CURLOPT_NETRC, static_cast<long>(CURL_NETRC_IGNORED));
        set(CURLOPT_PROTOCOLS_STR, "http");
        set(CURLOPT_REDIR_PROTOCOLS_STR, "http");
        set(CURLOPT_FOLLOWLOCATION, 1L);
        set(CURLOPT_MAXREDIRS, kMostRedirections);
        set(CURLOPT_PATH_AS_IS, 1L);
        set(CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1));
        set(CURLOPT_HTTP09_ALLOWED, 0L);
        set(CURLOPT_CONNECTTIMEOUT, kConnectSeconds);
        set(CURLOPT_LOW_SPEED_LIMIT, 1L);
        set(CURLOPT_LOW_SPEED_TIME, kStallSeconds);
        set(CURLOPT_NOSIGNAL, 1L);
        set(CURLOPT_QUICK_EXIT, 1L);  // a cancelled transfer does not wait for a name server
        set(CURLOPT_ERRORBUFFER, m_why);
        set(CURLOPT_HEADERFUNCTION, &ReceiveHead);
        set(CURLOPT_HEADERDATA, static_cast<void*>(this));
        set(CURLOPT_WRITEFUNCTION, &Receive);
        set(CURLOPT_WRITEDATA, static_cast<void*>(this));
    }

    [[nodiscard]] std::string Why() const { return m_why[0] ? m_why : curl_easy_strerror(m_failure); }

    // A turn of the transfer: waits until there is something to do.
    void Work() {
        int running = 0;
        if (m_isCancelled) {
            End(CURLE_ABORTED_BY_CALLBACK);
            return;
        }
        if (curl_multi_perform(m_multi, &running) != CURLM_OK) {
            End(CURLE_RECV_ERROR);
            return;
        }
        int left = 0;
        while (const CURLMsg* message = curl_multi_info_read(m_multi, &left)) {
            if (message->easy_handle == m_easy && message->msg == CURLMSG_DONE) End(message->data.result);
        }
        if (!m_ended && m_received.empty()) curl_multi_poll(m_multi, nullptr, 0, kPollMilliseconds, nullptr);
    }
    void End(CURLcode result) {
        m_ended = true;
        m_failure = result;
    }

    CURLM* m_multi;
    const std::atomic<bool>& m_isCancelled;
    CURL* m_easy = nullptr;
    std::string m_received;
    std::size_t m_read = 0;
    bool m_isPaused = false;
    bool m_headIsWhole = false;
    bool m_ended = false;
    CURLcode m_failure = CURLE_OK;
    char m_why[CURL_ERROR_SIZE] = {};
};

CURLM* NewMulti() {
    // Once for the whole program, before its first transfer.
    static const CURLcode started = curl_global_init(CURL_GLOBAL_DEFAULT);
    CURLM* multi = started == CURLE_OK ? curl_multi_init() : nullptr;
    if (!multi) throw std::bad_alloc();
    return multi;
}

}  // namespace

CurlSession::CurlSession() : m_multi(NewMulti()) {}

CurlSession::~CurlSession() { curl_multi_cleanup(m_multi); }

std::unique_ptr<HttpFile> CurlSession::OpenUrl(const std::string& url, std::string& reason) {
    auto file = std::make_unique<CurlFile>(m_multi, m_isCancelled);
    if (!file->Open(url, reason)) return nullptr;
    return file;
}

void CurlSession::Cancel() {
    m_isCancelled = true;
    curl_multi_wakeup(m_multi);
}

}  // namespace quillary
