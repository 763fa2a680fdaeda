#include "cli/Progress.h"

#include <algorithm>
#include <utility>

#include "cli/StandardStreams.h"

namespace quillary {

namespace {

constexpr std::chrono::milliseconds kFirstAfter{500};
const auto kProgramBegan = std::chrono::steady_clock::now();
constexpr std::chrono::milliseconds kThenEvery{100};

// Progress that cannot be shown is no failure of the work.
void WriteQuietly(const std::string& text) {
    std::string ignored;
    (void)WriteAll(StandardStream::Error, text, ignored);
}

}  // namespace

Progress::Progress(std::string doing, std::uint64_t total, bool shown)
    : m_doing(std::move(doing)),
      m_total(total),
      m_shown(shown && IsTerminal(StandardStream::Error)),
      m_next(kProgramBegan + kFirstAfter) {}

void Progress::Hide() {
    if (m_lineLength > 0) WriteQuietly(std::string("\r").append(m_lineLength, ' ').append("\r"));
    m_lineLength = 0;
}

void Progress::Show(std::uint64_t done) {
    if (!m_shown) return;
    const auto now = std::chrono::steady_clock::now();
    if (now < m_next) return;
    m_next = now + kThenEvery;
    std::string line("\r");
    line.append(m_doing).append(" ");
    line.append(m_total > 0 ? std::to_string(done * 100 / m_total) + " %" : std::to_string(done >> 20) + " MiB");
    m_lineLength = std::max(m_lineLength, line.size() - 1);
    WriteQuietly(line);
}

}  // namespace quillary
