// The info text of a database and the lock that guards it: what may be stored, and which password opens it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "db/AnsiText.h"
#include "db/Messages.h"

namespace quillary {

/// The info text in the code page of `page`, every line end as CR LF. Refuses, by name, the characters that cannot be
/// stored in it.
[[nodiscard]] std::optional<std::string> StoredInfoText(std::u16string_view typed, const AnsiText& page,
                                                        Failure& failure);

/// The lock that `password` opens; 0, which is no lock, for an empty one.
[[nodiscard]] std::int32_t MakeInfoLock(std::u16string_view password, const AnsiText& page);

/// Makes `lock` 0. Refuses a password that does not open it.
[[nodiscard]] bool UnlockInfo(std::int32_t& lock, std::u16string_view password, const AnsiText& page, Failure& failure);

}  // namespace quillary
