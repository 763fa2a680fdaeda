// HTTP through libcurl: directly to the server, as no proxy is asked.
#pragma once

#include <atomic>
#include <memory>

#include "remote/HttpSession.h"

namespace quillary {

class CurlSession : public HttpSession {
  public:
    CurlSession();
    ~CurlSession() override;
    CurlSession(const CurlSession&) = delete;
    CurlSession& operator=(const CurlSession&) = delete;

    [[nodiscard]] std::unique_ptr<HttpFile> OpenUrl(const std::string& url, std::string& reason) override;
    void Cancel() override;
    void Resume() override { m_isCancelled = false; }

  private:
    void* m_multi;  // libcurl's handle, which keeps connections for the next request
    std::atomic<bool> m_isCancelled = false;
};

}  // namespace quillary
