// Texts that belong to no single menu item or dialog, by the number under which other tables name them.
#pragma once

#include <string_view>

namespace quillary {

inline constexpr int kCaptionTools = 103;
inline constexpr int kCaptionProgram = 128;  // the window's title while no database is open
inline constexpr int kCaptionDatabase = 32776;
inline constexpr int kCaptionRecord = 32783;
inline constexpr int kCaptionNew = 65000;

[[nodiscard]] std::u16string_view Caption(int id);

}  // namespace quillary
