// Shows on standard error how far long work has come, when somebody looks at it: from half a second after the program
// began, whatever that time went into.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace quillary {

class Progress {
  public:
    /// `doing` is what is shown, for example "Importing". A `total` of 0: what is done are bytes, and how many there
    /// will be is unknown. Nothing is shown when `shown` is false.
    Progress(std::string doing, std::uint64_t total, bool shown);
    ~Progress() { Hide(); }
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// Cheap enough to be called for every record.
    void At(std::uint64_t done) {
        if (m_shown && ++m_calls % kCallsALook == 0) Show(done);
    }
    /// For what is called for large pieces.
    void Show(std::uint64_t done);
    /// Takes away what is shown, until it is shown again.
    void Hide();

  private:
    static constexpr unsigned kCallsALook = 256;

    std::string m_doing;
    std::uint64_t m_total;
    bool m_shown;
    unsigned m_calls = 0;
    std::chrono::steady_clock::time_point m_next;
    std::size_t m_lineLength = 0;
};

}  // namespace quillary
