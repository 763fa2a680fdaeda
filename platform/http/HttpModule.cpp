#include "platform/http/HttpModule.h"

#include <dlfcn.h>

#include "platform/posix/ProgramFolder.h"

namespace quillary {

std::unique_ptr<HttpSession> LoadHttpSession() {
    const Path module = CompanionPath(kHttpModule);
    if (module.empty()) return nullptr;
    // Never unloaded: libcurl's libraries keep things for as long as the process lives.
    void* loaded = ::dlopen(module.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    if (!loaded) return nullptr;
    auto* entry = reinterpret_cast<HttpEntry*>(::dlsym(loaded, kHttpEntry));
    return std::unique_ptr<HttpSession>(entry ? entry() : nullptr);
}

}  // namespace quillary
