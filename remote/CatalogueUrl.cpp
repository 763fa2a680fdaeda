#include "remote/CatalogueUrl.h"

#include <algorithm>
#include <charconv>

namespace quillary {

namespace {

std::string Screen(const CatalogueServers& servers, std::string_view query) {
    return "http://" + servers.catalogue + "/wireless/?screen=" + std::string(query);
}

std::string Ids(std::string_view docId, std::string_view fileId) {
    return "doc_id=" + std::string(docId) + "&file_id=" + std::string(fileId);
}

bool IsPort(std::string_view text) {
    std::uint16_t port = 0;
    const auto read = std::from_chars(text.data(), text.data() + text.size(), port);
    return read.ec == std::errc() && read.ptr == text.data() + text.size() && port > 0;
}

}  // namespace

bool IsServer(std::string_view server) {
    // The colons of an address in numbers stand in brackets.
    const auto colon = server.find(':', server.starts_with('[') ? server.find(']') : 0);
    if (colon != server.npos && !IsPort(server.substr(colon + 1))) return false;
    server = server.substr(0, colon);
    return !server.empty() && std::none_of(server.begin(), server.end(), [](char c) {
        return c <= ' ' || c > '~' || std::string_view("/?#@\\").find(c) != std::string_view::npos;
    });
}

std::string SearchUrl(const CatalogueServers& servers, std::int32_t start, std::int32_t size, std::string_view title,
                      std::string_view category) {
    std::string url =
        Screen(servers, "qly_search&") + "start=" + std::to_string(start) + "&size=" + std::to_string(size);
    if (!title.empty()) url.append("&title=").append(title);
    if (!category.empty()) url.append("&category=").append(category);
    return url;
}

std::string DetailsUrl(const CatalogueServers& servers, std::string_view docId, std::string_view fileId) {
    return Screen(servers, "qly_detail&one_file=1&") + Ids(docId, fileId);
}

std::string PackageUrl(const CatalogueServers& servers, std::string_view docId, std::string_view fileId) {
    return Screen(servers, "qly_view_zip&") + Ids(docId, fileId);
}

std::string DownloadUrl(const CatalogueServers& servers, std::string_view fileId) {
    return "http://" + servers.download + "/?global_op=download_file&file_id=" + std::string(fileId);
}

std::string PackagedFileUrl(const CatalogueServers& servers, std::string_view path) {
    // What begins otherwise would be read as a part of the server's name.
    return "http://" + servers.catalogue + (path.starts_with('/') ? "" : "/") + std::string(path);
}

std::string OnTheWire(std::string_view url) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    constexpr std::string_view kOthers = "\"#%<>[]\\^`{|}";
    // The brackets of an address in numbers stay.
    const auto path = url.find('/', url.find("://") == std::string_view::npos ? 0 : url.find("://") + 3);
    std::string wire;
    for (std::size_t i = 0; i < url.size(); ++i) {
        const auto byte = static_cast<unsigned char>(url[i]);
        const bool isHost = i < path;
        if (byte <= 0x20 || byte >= 0x7F || (!isHost && kOthers.find(url[i]) != std::string_view::npos)) {
            wire.append({'%', kDigits[byte >> 4], kDigits[byte & 15]});
        } else {
            wire += url[i];
        }
    }
    return wire;
}

}  // namespace quillary
