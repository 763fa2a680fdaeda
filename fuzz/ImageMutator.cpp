#include "fuzz/ImageMutator.h"

#include <algorithm>
#include <cstring>
#include <random>

#include "db/Bytes.h"
#include "db/Layout.h"

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize);

namespace quillary {

namespace {

class Mutator {
  public:
    Mutator(std::uint8_t* data, std::size_t size, std::size_t maxSize, unsigned seed)
        : m_data(reinterpret_cast<char*>(data)), m_size(size), m_maxSize(maxSize), m_random(seed) {}

    std::size_t Run() {
        switch (Below(8)) {
            case 0:
                MoveRecord();
                break;
            case 1:
                SetAttributes();
                break;
            case 2:
                SetCount();
                break;
            case 3:
                SetAppInfo();
                break;
            case 4:
                PutSpecialByte();
                break;
            case 5:
                SwapRecords();
                break;
            case 6:
                m_size = Below(m_size) + 1;
                break;
            default:
                return LLVMFuzzerMutate(reinterpret_cast<std::uint8_t*>(m_data), m_size, m_maxSize);
        }
        return m_size;
    }

  private:
    std::size_t Below(std::size_t limit) { return limit == 0 ? 0 : m_random() % limit; }
    std::size_t Count() const {
        const std::size_t there = (m_size - kHeaderSize) / kRecordEntrySize;
        return std::min<std::size_t>(LoadBig16(m_data + kRecordCountAt), there);
    }
    char* AnyEntry() { return Count() == 0 ? nullptr : m_data + kHeaderSize + Below(Count()) * kRecordEntrySize; }

    void MoveRecord() {
        char* entry = AnyEntry();
        if (!entry) return;
        const std::uint32_t offset = LoadBig32(entry);
        const std::uint32_t choices[] = {0,
                                         offset + 1,
                                         offset - 1,
                                         static_cast<std::uint32_t>(m_size),
                                         0xFFFFFFFF,
                                         static_cast<std::uint32_t>(Below(m_size + 16)),
                                         LoadBig32(AnyEntry())};
        StoreBig32(entry, choices[Below(std::size(choices))]);
    }
    void SetAttributes() {
        const std::uint8_t choices[] = {1, 2, 3, 4, 5, 6, 0x41, 0x42, 0x43, 0x44, 0x46, 0x81, 0x12, 0, 0x0F};
        if (char* entry = AnyEntry()) entry[4] = static_cast<char>(choices[Below(std::size(choices))]);
    }
    void SetCount() {
        const std::size_t count = Count();
        const std::size_t choices[] = {0, count + 1, count > 0 ? count - 1 : 0, 0xFFFF, Below(64)};
        StoreBig16(m_data + kRecordCountAt, static_cast<std::uint16_t>(choices[Below(std::size(choices))]));
    }
    void SetAppInfo() {
        const std::size_t at = LoadBig32(m_data + kAppInfoOffsetAt);
        if (at >= m_size || m_size - at < kAppInfoWrittenSize || Below(8) == 0) {
            StoreBig32(m_data + kAppInfoOffsetAt, static_cast<std::uint32_t>(Below(m_size * 2)));
            return;
        }
        const std::size_t places[] = {kFormatVersionAt + 1,
                                      kLockWordAt + Below(4),
                                      kEditOnSelectAt,
                                      kDateStyleAt,
                                      kConditionsAt + Below(kMaxConditions * kConditionSize),
                                      kAppInfoFixedSize + Below(kMaxSortKeys * kWrittenSortKeySize)};
        m_data[at + places[Below(std::size(places))]] = static_cast<char>(Below(24));
    }
    void PutSpecialByte() {
        const std::uint8_t choices[] = {0, 0xFF, 10, 13, 9, 1, '%', ';', '!', '-', 'I', 'L'};
        m_data[kHeaderSize + Below(m_size - kHeaderSize)] = static_cast<char>(choices[Below(std::size(choices))]);
    }
    void SwapRecords() {
        char* a = AnyEntry();
        char* b = AnyEntry();
        if (a && a != b) std::swap_ranges(a, a + kRecordEntrySize, b);
    }

    char* m_data;
    std::size_t m_size;
    std::size_t m_maxSize;
    std::minstd_rand m_random;
};

}  // namespace

std::size_t MutateImage(std::uint8_t* data, std::size_t size, std::size_t maxSize, unsigned seed) {
    if (size <= kHeaderSize) return LLVMFuzzerMutate(data, size, maxSize);
    return Mutator(data, size, maxSize, seed).Run();
}

}  // namespace quillary
