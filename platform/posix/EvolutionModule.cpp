#include "platform/posix/EvolutionModule.h"

#include <dlfcn.h>

#include <cstdlib>

namespace quillary {

std::unique_ptr<ItemKeeper> LoadEvolutionKeeper(const Path& module) {
    const char* bus = std::getenv("DBUS_SESSION_BUS_ADDRESS");
    if (!bus || !*bus || !module.is_absolute()) return nullptr;
    // Never unloaded: the libraries behind it register types and run threads for as long as the process lives.
    void* loaded = ::dlopen(module.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    if (!loaded) return nullptr;
    auto* entry = reinterpret_cast<EvolutionEntry*>(::dlsym(loaded, kEvolutionEntry));
    return std::unique_ptr<ItemKeeper>(entry ? entry() : nullptr);
}

}  // namespace quillary
