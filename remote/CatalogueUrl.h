// The addresses of the catalogue's answers. Texts stand in them as they are; OnTheWire makes them fit for a request.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace quillary {

/// `host` or `host:port`.
struct CatalogueServers {
    std::string catalogue;
    std::string download;
};

/// False for what is no host, with or without a port: a whole address, a path, nothing.
[[nodiscard]] bool IsServer(std::string_view server);

/// The next page of a search. `title` and `category` may be empty, texts in the code page.
[[nodiscard]] std::string SearchUrl(const CatalogueServers& servers, std::int32_t start, std::int32_t size,
                                    std::string_view title, std::string_view category);
[[nodiscard]] std::string DetailsUrl(const CatalogueServers& servers, std::string_view docId, std::string_view fileId);
[[nodiscard]] std::string PackageUrl(const CatalogueServers& servers, std::string_view docId, std::string_view fileId);
[[nodiscard]] std::string DownloadUrl(const CatalogueServers& servers, std::string_view fileId);
/// `path` is the doc id of a file inside a package.
[[nodiscard]] std::string PackagedFileUrl(const CatalogueServers& servers, std::string_view path);

/// `url` with each byte percent-encoded that a request line cannot hold: blanks, controls, all above 0x7E, and
/// "#" and "%", which would mean something else there.
[[nodiscard]] std::string OnTheWire(std::string_view url);

}  // namespace quillary
