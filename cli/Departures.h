// What a check finds on its way, handed over in order as soon as no earlier departure can follow.
#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace quillary {

struct Departure {
    std::uint64_t offset;
    std::string problem;  // UTF-8, one line
};

/// Takes the next departure; false when no more is wanted.
using TakeDeparture = std::function<bool(const Departure&)>;

class Departures {
  public:
    explicit Departures(TakeDeparture take) : m_take(std::move(take)) {}

    void Report(std::uint64_t offset, std::string problem) { m_found.push_back({offset, std::move(problem)}); }
    /// Hands over by offset, and forgets, what was reported since the last time. False when no more is wanted.
    [[nodiscard]] bool HandOver() {
        if (m_found.empty()) return true;
        const auto isEarlier = [](const Departure& a, const Departure& b) { return a.offset < b.offset; };
        std::stable_sort(m_found.begin(), m_found.end(), isEarlier);
        const bool wanted = std::all_of(m_found.begin(), m_found.end(), std::ref(m_take));
        m_found.clear();
        return wanted;
    }

  private:
    TakeDeparture m_take;
    std::vector<Departure> m_found;
};

}  // namespace quillary
