#include "catalogue-server/Requests.h"

#include <algorithm>
#include <optional>

#include "catalogue-server/Answers.h"
#include "catalogue-server/Texts.h"
#include "db/Ascii.h"

namespace quillary {

namespace {

constexpr std::string_view kTitle = "&title=";
constexpr std::string_view kCategory = "&category=";

// Takes the text before the first `end`, and the end, off `text`; all of it when there is none.
std::string_view TakeUntil(std::string_view& text, char end) {
    const std::string_view taken = text.substr(0, text.find(end));
    text.remove_prefix(std::min(taken.size() + 1, text.size()));
    return taken;
}

// The value of the first parameter of this name.
std::optional<std::string_view> Parameter(std::string_view query, std::string_view name) {
    while (!query.empty()) {
        std::string_view parameter = TakeUntil(query, '&');
        if (TakeUntil(parameter, '=') == name) return parameter;
    }
    return std::nullopt;
}

// Digits; more than any catalogue holds is as good as the number itself.
std::size_t Number(std::optional<std::string_view> text, std::size_t otherwise) {
    if (!text || text->empty()) return otherwise;
    std::size_t number = 0;
    for (const char c : *text) {
        if (!IsDigit(c)) return otherwise;
        number = std::min<std::size_t>(number * 10 + static_cast<std::size_t>(c - '0'), 1'000'000'000);
    }
    return number;
}

std::string Id(std::string_view query, std::string_view name) {
    return PercentDecoded(Parameter(query, name).value_or(std::string_view{}));
}

SearchTerms TypedTerms(std::string_view& query, const AnsiText& page) {
    const auto decoded = [&page](std::string_view typed) {
        return std::string(TrimmedText(page.ToUtf8(PercentDecoded(typed))));
    };
    SearchTerms terms;
    // From the end: the category's own text comes from a list and holds neither name.
    if (const auto at = query.rfind(kCategory); at != query.npos) {
        terms.category = decoded(query.substr(at + kCategory.size()));
        query = query.substr(0, at);
    }
    if (const auto at = query.find(kTitle); at != query.npos) {
        terms.title = decoded(query.substr(at + kTitle.size()));
        query = query.substr(0, at);
    }
    return terms;
}

void ParseCatalogueRequest(std::string_view query, const AnsiText& page, Request& request) {
    const auto screen = Parameter(query, "screen");
    if (screen == "qly_search") {
        request.kind = RequestKind::Search;
        request.terms = TypedTerms(query, page);
        request.start = Number(Parameter(query, "start"), 0);
        request.size = std::clamp<std::size_t>(Number(Parameter(query, "size"), kDefaultPage), 1, kLargestPage);
    } else if (screen == "qly_detail" || screen == "qly_view_zip") {
        request.kind = screen == "qly_detail" ? RequestKind::Details : RequestKind::PackageFiles;
        request.docId = Id(query, "doc_id");
        request.fileId = Id(query, "file_id");
    }
}

void ParseWebRequest(std::string_view query, Request& request) {
    const auto field = [query](std::string_view name) {
        std::string text(Parameter(query, name).value_or(std::string_view{}));
        std::replace(text.begin(), text.end(), '+', ' ');
        return std::string(TrimmedText(ValidText(PercentDecoded(text))));
    };
    request.kind = RequestKind::WebPage;
    request.terms = {field("title"), field("category")};
    request.start = Number(Parameter(query, "start"), 0);
    request.size = kLargestPage;
}

// "http://host/path" is the path: a request line may hold either.
std::string_view WithoutHost(std::string_view target) {
    constexpr std::string_view kScheme = "http://";
    if (!target.starts_with(kScheme)) return target;
    const auto path = target.find('/', kScheme.size());
    return path == target.npos ? std::string_view("/") : target.substr(path);
}

}  // namespace

Request ParseRequest(std::string_view target, const AnsiText& codePage) {
    Request request;
    std::string_view query = WithoutHost(target);
    query = query.substr(0, query.find('#'));
    std::string_view path = TakeUntil(query, '?');
    if (path == "/wireless/") {
        ParseCatalogueRequest(query, codePage, request);
    } else if (path == "/" && Parameter(query, "global_op") == "download_file") {
        request.kind = RequestKind::Download;
        request.fileId = Id(query, "file_id");
    } else if (path == "/") {
        ParseWebRequest(query, request);
    } else if (path.starts_with(kPackagePath)) {
        path.remove_prefix(std::string_view(kPackagePath).size());
        request.kind = RequestKind::PackageFile;
        request.fileId = TakeUntil(path, '/');
        request.docId = path;
    }
    return request;
}

}  // namespace quillary
