// The module's one door.
#include "platform/http/CurlSession.h"
#include "platform/http/HttpModule.h"

extern "C" __attribute__((visibility("default"))) quillary::HttpSession* QuillaryHttpSession() {
    static_assert(std::string_view(quillary::kHttpEntry) == "QuillaryHttpSession");
    return new quillary::CurlSession;
}
