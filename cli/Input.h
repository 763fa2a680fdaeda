// Reads text files, or what a pipe sends: whole into memory, or the first line alone.
#pragma once

#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>

#include "cli/Progress.h"

namespace quillary {

/// Bytes that stay where they are when the object moves.
class InputBytes {
  public:
    [[nodiscard]] std::string_view Text() const { return {m_bytes.get(), m_size}; }

    /// Replaces the bytes by those of the file at `path`, "-" being standard input. False with the reason, for the
    /// user, when they cannot be read or are more than `limit`.
    [[nodiscard]] bool Read(const std::string& path, std::size_t limit, Progress& progress, std::string& reason);

  private:
    struct Free {
        void operator()(char* bytes) const { std::free(bytes); }
    };
    [[nodiscard]] bool Grow(std::size_t capacity);
    [[nodiscard]] bool ReadFrom(int file, std::size_t limit, Progress& progress, std::string& reason);

    std::unique_ptr<char[], Free> m_bytes;  // by malloc: making a large block larger moves no bytes
    std::size_t m_size = 0;
    std::size_t m_capacity = 0;
};

/// The first line of `text` without its line end, LF or CR LF.
[[nodiscard]] std::string FirstLine(std::string_view text);

/// The first line of the file at `path` ("-": standard input) without its line end, LF or CR LF. False with the reason
/// when it cannot be read. Does not wait for what comes behind the line.
[[nodiscard]] bool ReadFirstLine(const std::string& path, std::string& line, std::string& reason);

}  // namespace quillary
