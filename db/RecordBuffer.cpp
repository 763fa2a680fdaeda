#include "db/RecordBuffer.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace quillary {

namespace {

constexpr std::uint64_t kOnes = 0x0101010101010101u;
constexpr std::uint64_t kHighBits = 0x8080808080808080u;

// The eight bytes from `at` on, the first one lowest; 0x7F behind the end.
std::uint64_t LoadEight(std::string_view bytes, std::size_t at) {
    std::uint64_t eight = 0x7F7F7F7F7F7F7F7Fu;
    if (at + sizeof eight <= bytes.size()) {
        std::memcpy(&eight, bytes.data() + at, sizeof eight);
    } else {
        std::memcpy(&eight, bytes.data() + at, bytes.size() - at);
    }
    if constexpr (std::endian::native == std::endian::big) eight = __builtin_bswap64(eight);
    return eight;
}

// The high bit of each of the eight bytes that is below `limit` (at most 0x80).
std::uint64_t BytesBelow(std::uint64_t eight, std::uint64_t limit) {
    const std::uint64_t reached = (eight & ~kHighBits) + kOnes * (0x80 - limit);
    return ~(reached | eight) & kHighBits;
}

std::string_view TextFrom(std::string_view entries, std::size_t begin) {
    const std::string_view rest = entries.substr(begin);
    const void* end = rest.empty() ? nullptr : std::memchr(rest.data(), 0, rest.size());
    return end ? rest.substr(0, static_cast<std::size_t>(static_cast<const char*>(end) - rest.data())) : rest;
}

// Up to this size, texts that lie in each other do no harm apart.
constexpr std::size_t kSmallRecord = 1 << 20;

std::size_t SizeOf(const std::vector<Entry>& entries) {
    std::size_t size = 0;
    for (const Entry& entry : entries) size += 2 + entry.text.size();
    return size;
}

std::string Joined(const std::vector<Entry>& entries) {
    std::string joined;
    joined.reserve(SizeOf(entries));
    for (const Entry& entry : entries) AppendEntry(joined, entry.number, entry.text);
    return joined;
}

}  // namespace

std::string_view EntriesOf(std::string_view bytes) {
    const void* mark = bytes.empty() ? nullptr : std::memchr(bytes.data(), 0xFF, bytes.size());
    if (mark) bytes = bytes.substr(0, static_cast<std::size_t>(static_cast<const char*>(mark) - bytes.data()));
    // The zero belongs to the end mark. Where it is missing nothing is cut, so that no byte of a text gets lost.
    if (!bytes.empty() && bytes.back() == '\0') bytes.remove_suffix(1);
    return bytes;
}

std::optional<std::string_view> FindEntry(std::string_view entries, std::uint8_t number) {
    if (entries.size() < 2) return std::nullopt;
    const auto found = entries.find(static_cast<char>(number), 1);
    if (found == entries.npos) return std::nullopt;
    return TextFrom(entries, found + 1);
}

void EntryTable::Fill(std::string_view entries, std::size_t fieldCount) {
    m_entries = entries;
    std::fill_n(m_begin.begin(), fieldCount, kMissing);
    std::size_t missing = fieldCount;
    std::uint32_t open = 0;  // bit k: the text of entry k has begun and not met its zero
    // Only bytes below the number of fields matter: a zero ends texts, and each may be an entry's number.
    for (std::size_t i = 1; i < entries.size() && missing > 0; i += 8) {
        const std::uint64_t eight = LoadEight(entries, i);
        for (std::uint64_t marks = BytesBelow(eight, fieldCount); marks != 0; marks &= marks - 1) {
            const auto shift = static_cast<std::uint32_t>(std::countr_zero(marks)) & ~7u;
            const auto number = static_cast<std::uint8_t>(eight >> shift);
            const std::uint32_t here = static_cast<std::uint32_t>(i) + shift / 8;
            for (; number == 0 && open != 0; open &= open - 1) m_end[std::countr_zero(open)] = here;
            if (m_begin[number] != kMissing) continue;
            m_begin[number] = here + 1;
            open |= 1u << number;
            --missing;
        }
    }
    for (; open != 0; open &= open - 1) {
        const int number = std::countr_zero(open);
        m_end[number] = m_begin[number] + static_cast<std::uint32_t>(TextFrom(entries, m_begin[number]).size());
    }
}

bool EntryTable::FillByWalking(std::string_view entries, std::size_t fieldCount) {
    m_entries = entries;
    std::fill_n(m_begin.begin(), fieldCount, kMissing);
    if (!entries.empty() && entries.front() != '\0') return false;
    std::uint8_t open = kMaxFields;  // the entry whose text has begun and not met its end; kMaxFields: none that counts
    std::size_t begin = 0;           // of its text
    for (std::size_t i = 0; i < entries.size(); i += 8) {
        for (std::uint64_t marks = BytesBelow(LoadEight(entries, i), 1); marks != 0; marks &= marks - 1) {
            const std::size_t at = i + static_cast<std::size_t>(std::countr_zero(marks)) / 8;
            if (at < begin) continue;  // the number of entry 0
            if (at + 1 == entries.size()) return false;
            if (open != kMaxFields) m_end[open] = static_cast<std::uint32_t>(at);
            const auto number = static_cast<std::uint8_t>(entries[at + 1]);
            begin = at + 2;
            open = number < fieldCount && m_begin[number] == kMissing ? number : std::uint8_t{kMaxFields};
            if (open != kMaxFields) m_begin[open] = static_cast<std::uint32_t>(begin);
        }
    }
    if (open != kMaxFields) m_end[open] = static_cast<std::uint32_t>(entries.size());
    return true;
}

std::string_view EntryTable::Run(std::size_t first, std::size_t& last) const {
    std::size_t k = first;
    while (k < last && m_begin[k + 1] == m_end[k] + kHeadSize) ++k;
    last = k;
    const std::size_t begin = m_begin[first] - kHeadSize;
    return m_entries.substr(begin, m_end[k] - begin);
}

std::optional<std::vector<Entry>> WalkEntries(std::string_view entries) {
    std::vector<Entry> walked;
    for (std::size_t at = 0; at < entries.size();) {
        if (entries[at] != '\0' || at + 1 == entries.size()) return std::nullopt;
        // More entries than any table needs stay together: a hostile record must not cost a multiple of its size.
        const std::string_view text =
            walked.size() < kMaxEntries ? TextFrom(entries, at + 2) : entries.substr(std::min(at + 2, entries.size()));
        walked.push_back({static_cast<std::uint8_t>(entries[at + 1]), text});
        at += 2 + text.size();
    }
    return walked;
}

void AppendEntry(std::string& entries, std::uint8_t number, std::string_view text) {
    const char head[] = {'\0', static_cast<char>(number)};
    entries.append(head, sizeof head).append(text);
}

std::optional<std::string> RewriteEntries(std::string_view entries, std::span<const Entry> changes,
                                          std::size_t fieldCount) {
    std::size_t mostSize = 2 * entries.size() + kSmallRecord;
    for (const Entry& change : changes) mostSize += change.text.size();
    auto kept = WalkEntries(entries);
    if (!kept) {
        kept.emplace();
        for (std::size_t k = 0; k < fieldCount; ++k) {
            const auto number = static_cast<std::uint8_t>(k);
            if (const auto text = FindEntry(entries, number)) kept->push_back({number, *text});
        }
    }
    for (const Entry& change : changes) {
        const auto tail = kept->begin() + static_cast<std::ptrdiff_t>(std::min(kept->size(), kMaxEntries));
        const auto same =
            std::find_if(kept->begin(), tail, [&change](const Entry& entry) { return entry.number == change.number; });
        if (same != tail) {
            same->text = change.text;
        } else {
            const auto behind = std::find_if(kept->begin(), kept->end(),
                                             [&change](const Entry& entry) { return entry.number > change.number; });
            kept->insert(behind, change);
        }
    }
    if (SizeOf(*kept) > mostSize) return std::nullopt;
    return Joined(*kept);
}

std::string InOrder(std::string_view entries) {
    auto walked = WalkEntries(entries);
    if (!walked) return std::string(entries);
    std::stable_sort(walked->begin(), walked->end(),
                     [](const Entry& a, const Entry& b) { return a.number < b.number; });
    return Joined(*walked);
}

std::size_t CountBytesBelow(std::string_view bytes, std::uint8_t limit) {
    constexpr std::size_t kBlock = 255;  // as many as a byte can count, so that the compiler counts many side by side
    std::size_t count = 0;
    while (!bytes.empty()) {
        const std::string_view block = bytes.substr(0, kBlock);
        std::uint8_t inBlock = 0;
        for (const char c : block)
            inBlock = static_cast<std::uint8_t>(inBlock + (static_cast<std::uint8_t>(c) < limit));
        count += inBlock;
        bytes.remove_prefix(block.size());
    }
    return count;
}

std::optional<HiddenField> FieldHiddenBy(std::string_view text, std::size_t field, std::size_t fieldCount) {
    for (std::size_t i = 0; i < text.size(); i += 8) {
        for (std::uint64_t marks = BytesBelow(LoadEight(text, i), fieldCount); marks != 0; marks &= marks - 1) {
            const char byte = text[i + static_cast<std::size_t>(std::countr_zero(marks)) / 8];
            const auto number = static_cast<unsigned char>(byte);
            if (number > field) return HiddenField{number, byte};
        }
    }
    return std::nullopt;
}

}  // namespace quillary
