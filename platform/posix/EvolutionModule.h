// Evolution's calendar and address book, from a module that is loaded only when it is asked for: its libraries take
// longer to load than the whole program.
#pragma once

#include <memory>

#include "platform/posix/ItemKeeper.h"

namespace quillary {

inline constexpr const char* kEvolutionModule = "quillary-evolution.so";

/// What the module exports under kEvolutionEntry: nullptr when the session has no Evolution Data Server, else a keeper
/// that the caller deletes.
using EvolutionEntry = ItemKeeper*();
inline constexpr const char* kEvolutionEntry = "QuillaryEvolutionKeeper";

/// nullptr when there is no session bus, `module` cannot be loaded on this machine, or the session has no server. May
/// wait for the bus.
[[nodiscard]] std::unique_ptr<ItemKeeper> LoadEvolutionKeeper(const Path& module);

}  // namespace quillary
