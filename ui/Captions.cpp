#include "ui/Captions.h"

#include <algorithm>
#include <iterator>

namespace quillary {

namespace {

struct Row {
    int id;
    std::u16string_view text;
};

constexpr Row kCaptions[] = {
    {kCaptionTools, u"Tools"},   {kCaptionProgram, u"Quillary"}, {kCaptionDatabase, u"Database"},
    {kCaptionRecord, u"Record"}, {kCaptionNew, u"New"},
};

}  // namespace

std::u16string_view Caption(int id) {
    const auto found =
        std::find_if(std::begin(kCaptions), std::end(kCaptions), [id](const Row& r) { return r.id == id; });
    return found == std::end(kCaptions) ? std::u16string_view() : found->text;
}

}  // namespace quillary
