#include "cli/Input.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

namespace quillary {

namespace {

constexpr std::size_t kFirstCapacity = 64 * 1024;
constexpr std::size_t kPiece = 1024 * 1024;  // between two looks at the progress
constexpr std::size_t kLongestLine = 64 * 1024;

// A file open for reading as long as the object lives; "-" is standard input, which stays open.
class InputFile {
  public:
    explicit InputFile(const std::string& path)
        : m_owned(path != "-"), m_number(m_owned ? ::open(path.c_str(), O_RDONLY | O_CLOEXEC) : STDIN_FILENO) {
        m_error = errno;
    }
    ~InputFile() {
        if (m_owned && m_number >= 0) ::close(m_number);
    }
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;

    [[nodiscard]] bool IsOpen(std::string& reason) const {
        if (m_number < 0) reason = std::strerror(m_error);
        return m_number >= 0;
    }
    [[nodiscard]] int Number() const { return m_number; }

  private:
    bool m_owned;
    int m_number;
    int m_error = 0;
};

}  // namespace

bool InputBytes::Grow(std::size_t capacity) {
    auto* grown = static_cast<char*>(std::realloc(m_bytes.get(), capacity));
    if (!grown) return false;
    (void)m_bytes.release();
    m_bytes.reset(grown);
    m_capacity = capacity;
    return true;
}

bool InputBytes::ReadFrom(int file, std::size_t limit, Progress& progress, std::string& reason) {
    struct stat state {};
    std::size_t expected = kFirstCapacity;
    if (::fstat(file, &state) == 0 && S_ISREG(state.st_mode)) expected = static_cast<std::size_t>(state.st_size) + 1;
    m_size = 0;
    for (;;) {
        if (m_size > limit) {
            reason = "More than " + std::to_string(limit >> 20) + " MiB are not read";
            return false;
        }
        if (m_size == m_capacity && !Grow(std::min(std::max(expected, 2 * m_capacity), limit + 1))) {
            reason = std::strerror(ENOMEM);
            return false;
        }
        const ssize_t count = ::read(file, m_bytes.get() + m_size, std::min(m_capacity - m_size, kPiece));
        if (count == 0) return true;
        if (count > 0) {
            m_size += static_cast<std::size_t>(count);
            progress.Show(m_size);
        } else if (errno != EINTR) {
            reason = std::strerror(errno);
            return false;
        }
    }
}

bool InputBytes::Read(const std::string& path, std::size_t limit, Progress& progress, std::string& reason) {
    const InputFile file(path);
    return file.IsOpen(reason) && ReadFrom(file.Number(), limit, progress, reason);
}

std::string FirstLine(std::string_view text) {
    const auto end = text.find('\n');
    std::string line(text.substr(0, end));
    if (end != text.npos && !line.empty() && line.back() == '\r') line.pop_back();
    return line;
}

bool ReadFirstLine(const std::string& path, std::string& line, std::string& reason) {
    const InputFile file(path);
    if (!file.IsOpen(reason)) return false;
    line.clear();
    char byte = 0;
    while (line.size() <= kLongestLine) {
        const ssize_t count = ::read(file.Number(), &byte, 1);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) {
            reason = std::strerror(errno);
            return false;
        }
        if (count == 0) break;
        line.push_back(byte);
        if (byte == '\n') break;
    }
    if (line.size() > kLongestLine) {
        reason = "Its first line is too long";
        return false;
    }
    line = FirstLine(line);
    return true;
}

}  // namespace quillary
