// Fetches over HTTP: one session of a program with a server, each answer read piece by piece.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>

namespace quillary {

/// An answer whose head has arrived.
class HttpFile {
  public:
    virtual ~HttpFile() = default;
    /// In bytes, as the server says; nullopt when it does not say.
    [[nodiscard]] virtual std::optional<std::uint64_t> Length() const = 0;
    /// Waits for the next bytes and puts as many into `buffer` as are there. 0 at the end; nullopt when the transfer
    /// broke off, stalled or was cancelled.
    [[nodiscard]] virtual std::optional<std::size_t> Read(std::span<char> buffer) = 0;
};

class HttpSession {
  public:
    virtual ~HttpSession() = default;
    /// Follows redirections to http alone. nullptr when no answer comes, or one that is no success; `reason` then says
    /// why, for a person. The file must not outlive the session, and one is open at a time.
    [[nodiscard]] virtual std::unique_ptr<HttpFile> OpenUrl(const std::string& url, std::string& reason) = 0;
    /// Breaks off what another thread waits for, and everything after it until Resume.
    virtual void Cancel() = 0;
    virtual void Resume() = 0;
};

}  // namespace quillary
