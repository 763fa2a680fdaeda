// HTTP responses as the library takes them. Every one has a length.
#pragma once

#include <microhttpd.h>

#include <cstdint>
#include <memory>
#include <string>

#include "catalogue-server/FileCopy.h"

namespace quillary {

struct DestroyResponse {
    void operator()(MHD_Response* response) const { MHD_destroy_response(response); }
};
using Response = std::unique_ptr<MHD_Response, DestroyResponse>;

/// Null when there is no memory, as are those below.
[[nodiscard]] Response TextResponse(const std::string& text, const std::string& contentType);
/// `name` is what a browser calls the file, UTF-8.
[[nodiscard]] Response FileResponse(const std::shared_ptr<const FileCopy>& copy, const std::string& name);
void AddHeader(const Response& response, const char* name, const std::string& value);

}  // namespace quillary
