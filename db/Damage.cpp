#include "db/Damage.h"

#include <algorithm>
#include <vector>

#include "db/Ascii.h"
#include "db/Bytes.h"
#include "db/FieldValue.h"
#include "db/RecordBuffer.h"

namespace quillary {

namespace {

// Whether the entries up to `last` read as what they are, each once, and will when they are written in order.
bool ReadAsTheyAre(std::string_view entries, const std::vector<Entry>& walked, std::size_t last) {
    for (std::size_t k = 0; k <= last; ++k) {
        const auto isOwn = [k](const Entry& entry) { return entry.number == k; };
        const auto own = std::find_if(walked.begin(), walked.end(), isOwn);
        const std::string_view text = own == walked.end() ? std::string_view{} : own->text;
        if (own != walked.end() && std::any_of(own + 1, walked.end(), isOwn)) return false;
        if (FindEntry(entries, static_cast<std::uint8_t>(k)).value_or(std::string_view{}) != text) return false;
        if (FieldHiddenBy(text, k, last + 1)) return false;
    }
    return true;
}

// In either case: "t" is a text field, too. Entries beyond the greatest number are pieces of a text with a stray zero.
bool HasFillersFrom(std::size_t first, std::string_view filler, const std::vector<Entry>& walked) {
    return std::all_of(walked.begin(), walked.end(), [&](const Entry& entry) {
        if (entry.number >= kMaxFields) return false;
        return entry.number < first || entry.text.empty() ||
               std::equal(entry.text.begin(), entry.text.end(), filler.begin(), filler.end(),
                          [](char c, char wanted) { return AsciiUpper(c) == wanted; });
    });
}

}  // namespace

bool IsRecordDamaged(const RecordList& records, std::size_t i, std::string_view entries) {
    const std::string_view bytes = records.BytesOf(i);
    if (bytes.empty() || !records.Image().substr(records.OffsetOf(i)).starts_with(kRecordHeader)) return true;
    const auto mark = bytes.find(kEndMark.back(), entries.size());
    return mark == bytes.npos || bytes.find_first_not_of('\0', mark + 1) != bytes.npos;
}

bool ComesBack(const RecordList& records, std::size_t i, std::size_t last, std::size_t firstFiller,
               std::string_view filler) {
    const std::string_view entries = EntriesOf(records.BytesOf(i));
    const auto walked = WalkEntries(entries);
    return !IsRecordDamaged(records, i, entries) && walked && ReadAsTheyAre(entries, *walked, last) &&
           HasFillersFrom(firstFiller, filler, *walked);
}

bool IsAppInfoElsewhere(const RecordList& records, const DatabaseHeader& header, const AppInfoBlock& appInfo) {
    const std::string_view image = records.Image();
    const std::uint64_t begin = header.AppInfoOffset();
    const std::uint64_t listEnd = records.BytesEnd();
    const std::uint64_t usual = std::min<std::uint64_t>(listEnd + kGapSize + kCategoryNamesAt, image.size());
    if (begin != listEnd + kGapSize && image.substr(usual).starts_with(kFirstCategoryName)) return true;
    if (begin == 0) {
        const bool hasRoom = records.End() > 0 && records.OffsetOf(0) >= listEnd + kConditionsAt;
        return hasRoom && LoadBig32(image.data() + kSortInfoOffsetAt) == 0;
    }
    // Old files may hold a shorter block, where a block should be.
    const bool isOld = appInfo.FormatVersion() < kFormatVersion && begin <= listEnd + kGapSize;
    const std::uint64_t end = begin + (isOld ? kConditionsAt : kAppInfoWrittenSize);
    if (begin < listEnd || end > image.size()) return true;
    for (std::size_t i = records.First(); i < records.End(); ++i) {
        if (records.OffsetOf(i) < end && records.EndOf(i) > begin) return true;
    }
    return false;
}

}  // namespace quillary
