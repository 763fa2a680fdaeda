// Hears how far the reading or writing of a long file has come, for somebody who waits for it.
#pragma once

#include <cstdint>

namespace quillary {

class TransferObserver {
  public:
    enum class Transfer : std::uint8_t { Reading, Writing };

    virtual ~TransferObserver() = default;
    /// Between two pieces of a file; and ahead of a flush, which comes in one piece, with `done` equal to `total`.
    virtual void Moved(Transfer transfer, std::uint64_t done, std::uint64_t total) = 0;
    /// What Moved told of is over, done or failed.
    virtual void Ended() = 0;
};

}  // namespace quillary
