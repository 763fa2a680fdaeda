#include "query/FieldChoice.h"

#include <string>

namespace quillary {

std::optional<std::size_t> ChosenField(const CQuillaryDoc& doc, std::string_view name) {
    if (name.empty()) return std::nullopt;
    if (const auto exact = doc.FieldByName(name)) return exact;
    const std::u16string beginning = AnsiText::Upper(doc.Page().ToWide(name));
    for (std::size_t k = 0; k < doc.FieldCount(); ++k) {
        if (AnsiText::Upper(doc.FieldName(k)).starts_with(beginning)) return k;
    }
    return std::nullopt;
}

}  // namespace quillary
