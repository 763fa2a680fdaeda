#include "catalogue-server/Responses.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>

#include "catalogue-server/Texts.h"

namespace quillary {

namespace {

using Held = std::shared_ptr<const FileCopy>;

void Release(void* held) { delete static_cast<Held*>(held); }

MHD_Response* FromMemory(std::unique_ptr<Held> held) {
    const std::string_view bytes = (*held)->Bytes();
    // The library wants bytes that it could write, and writes none.
    auto* response = MHD_create_response_from_buffer_with_free_callback_cls(
        bytes.size(), const_cast<char*>(bytes.data()), &Release, held.get());
    if (response) (void)held.release();
    return response;
}

MHD_Response* FromDescriptor(const FileCopy& copy) {
    // The library closes what it is given; the bytes in memory live as long as one descriptor does.
    const int own = fcntl(copy.Descriptor(), F_DUPFD_CLOEXEC, 0);
    auto* response = own < 0 ? nullptr : MHD_create_response_from_fd64(copy.Size(), own);
    if (own >= 0 && !response) close(own);
    return response;
}

}  // namespace

Response TextResponse(const std::string& text, const std::string& contentType) {
    Response response(
        MHD_create_response_from_buffer(text.size(), const_cast<char*>(text.data()), MHD_RESPMEM_MUST_COPY));
    AddHeader(response, MHD_HTTP_HEADER_CONTENT_TYPE, contentType);
    AddHeader(response, "X-Content-Type-Options", "nosniff");
    return response;
}

Response FileResponse(const std::shared_ptr<const FileCopy>& copy, const std::string& name) {
    Response response(copy->Descriptor() < 0 ? FromMemory(std::make_unique<Held>(copy)) : FromDescriptor(*copy));
    std::string safe = name;
    std::replace_if(
        safe.begin(), safe.end(),
        [](char c) { return static_cast<unsigned char>(c) < ' ' || c == '/' || c == '\\' || c == '\x7F'; }, '-');
    AddHeader(response, MHD_HTTP_HEADER_CONTENT_TYPE, "application/octet-stream");
    AddHeader(response, MHD_HTTP_HEADER_CONTENT_DISPOSITION, "attachment; filename*=UTF-8''" + PercentEncoded(safe));
    AddHeader(response, "X-Content-Type-Options", "nosniff");
    return response;
}

void AddHeader(const Response& response, const char* name, const std::string& value) {
    if (response) (void)MHD_add_response_header(response.get(), name, value.c_str());
}

}  // namespace quillary
