// Collects what a command prints on standard output and writes it in large pieces. A terminal is shown control
// characters, which it would obey, as their code points.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "cli/StandardStreams.h"

namespace quillary {

class Output {
  public:
    void Append(std::string_view text) { m_size += text.copy(Room(text.size()), text.size()); }
    void Append(char c) {
        *Room(1) = c;
        ++m_size;
    }

    /// Where the next `size` bytes may be put; those that count are told to Took.
    [[nodiscard]] char* Room(std::size_t size) {
        if (m_capacity - m_size < size) Grow(size);
        return m_bytes.get() + m_size;
    }
    void Took(std::size_t size) { m_size += size; }

    /// What is collected is JSON, which writes a code point in its own way.
    void HoldsJson() { m_codePointPrefix = "\\u"; }

    /// Writes what was collected when it is much. False when nobody reads any more, or the output cannot be written:
    /// the command may stop.
    /// Whole characters have been collected by then.
    bool Drain() { return m_size < kPiece || Flush(); }
    bool Flush();

    /// A reader that left is no failure.
    [[nodiscard]] bool HasFailed() const { return m_result == WriteResult::Failed; }
    [[nodiscard]] const std::string& Reason() const { return m_reason; }

  private:
    static constexpr std::size_t kPiece = 64 * 1024;
    void Grow(std::size_t size);

    std::unique_ptr<char[]> m_bytes;
    std::size_t m_size = 0;
    std::size_t m_capacity = 0;
    std::string m_reason;
    std::string_view m_codePointPrefix = "U+";
    bool m_isTerminal = IsTerminal(StandardStream::Output);
    WriteResult m_result = WriteResult::Done;
};

}  // namespace quillary
