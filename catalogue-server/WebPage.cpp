#include "catalogue-server/WebPage.h"

#include <algorithm>

#include "catalogue-server/Answers.h"
#include "catalogue-server/Texts.h"

namespace quillary {

namespace {

// So many clients may wait for a page at once that it has to be small. The rest of the rows are on the next one.
constexpr std::size_t kFullPage = 256 << 10;
constexpr std::size_t kMostFilesShown = 20;
constexpr std::size_t kMostCategoriesOffered = 200;
constexpr std::size_t kLongestCategoryOffered = 80;  // bytes
constexpr std::size_t kLongestText = 280;            // bytes

constexpr const char* kHead = R"(<!DOCTYPE html>
<html lang="en"><head><meta charset="utf-8"><meta name="viewport" content="width=device-width, initial-scale=1">
<title>Quillary catalogue</title>
<style>
:root { color-scheme: light dark; }
body { font: 1rem/1.5 system-ui, sans-serif; max-width: 60rem; margin: 0 auto; padding: 1rem; }
h1 { font-size: 1.4rem; margin: 0 0 1rem; }
form { display: flex; flex-wrap: wrap; gap: .5rem; margin-bottom: 1rem; }
input { flex: 1 1 12rem; }
input, select, button { font: inherit; padding: .35rem .6rem; }
ul { list-style: none; margin: .5rem 0 0; padding: 0; }
li { padding: .6rem 0; border-top: 1px solid color-mix(in srgb, currentColor 20%, transparent); }
li li { padding: .15rem 0; border: 0; }
a { font-weight: 600; overflow-wrap: anywhere; }
li li a, nav a { font-weight: normal; }
p { margin: .2rem 0 0; overflow-wrap: anywhere; }
small, summary { color: color-mix(in srgb, currentColor 70%, transparent); }
small { margin-left: .5rem; }
nav { display: flex; gap: 1.5rem; margin-top: 1rem; }
</style></head><body>
<h1>Quillary catalogue</h1>
)";

std::string Link(const std::string& address, const std::string& text) {
    return "<a href=\"" + HtmlEscaped(address) + "\">" + HtmlEscaped(text) + "</a>";
}

std::string Beginning(const std::string& text) {
    const std::string_view whole = TrimmedText(text);
    const std::string_view shown = BeginningOf(whole, kLongestText);
    return shown.size() == whole.size() ? std::string(whole) : std::string(shown) + "…";
}

std::string Form(const CatalogueIndex& index, const SearchTerms& terms) {
    std::string form =
        "<form action=\"/\"><input type=\"search\" name=\"title\" aria-label=\"Title\" placeholder=\"Title\" "
        "value=\"" +
        HtmlEscaped(terms.title) + "\">";
    std::vector<std::string> categories = index.Categories();
    // A shortened one would not be found.
    std::erase_if(categories, [](const std::string& c) { return c.empty() || c.size() > kLongestCategoryOffered; });
    std::sort(categories.begin(), categories.end());
    categories.resize(std::min(categories.size(), kMostCategoriesOffered));
    if (!categories.empty()) {
        form += "<select name=\"category\" aria-label=\"Category\"><option value=\"\">Any category</option>";
        const std::string chosen = FoldedText(terms.category);
        for (const std::string& category : categories) {
            form += "<option";
            if (FoldedText(category) == chosen) form += " selected";
            form += ">" + HtmlEscaped(category) + "</option>";
        }
        form += "</select>";
    }
    return form + "<button>Search</button></form>\n";
}

void AppendRow(const Publication& row, std::string& page) {
    const std::string download = "/?global_op=download_file&file_id=" + PercentEncoded(row.fileId);
    page += "<li>" + Link(download, row.title) + "<small>" + KilobytesText(row.size) + " KB";
    for (const std::string* text : {&row.category, &row.author, &row.language, &row.updated}) {
        if (!text->empty()) page += " · " + HtmlEscaped(Beginning(*text));
    }
    page += "</small>";
    const std::string description = Beginning(row.description);
    if (!description.empty()) page += "<p>" + HtmlEscaped(description) + "</p>";
    if (!row.files.empty()) {
        const std::size_t count = row.files.size();
        page += "<details><summary>" + std::to_string(count) + (count == 1 ? " file" : " files") + "</summary><ul>";
        const std::size_t shown = std::min(count, kMostFilesShown);
        for (std::size_t i = 0; i < shown; ++i) {
            const PackageFile& file = row.files[i];
            page += "<li>" + Link(PackageFilePath(row, file), file.name) + "<small>" + KilobytesText(file.size) +
                    " KB</small></li>";
        }
        if (shown < count) page += "<li>and " + std::to_string(count - shown) + " more, in the package</li>";
        page += "</ul></details>";
    }
    page += "</li>\n";
}

std::string PageLink(const SearchTerms& terms, std::size_t start, const char* text) {
    const std::string category = terms.category.empty() ? "" : "&category=" + PercentEncoded(terms.category);
    return Link("/?title=" + PercentEncoded(terms.title) + category + "&start=" + std::to_string(start), text);
}

}  // namespace

std::string WebPage(const CatalogueIndex& index, const SearchTerms& terms, const SearchPage& found,
                    std::size_t pageSize) {
    std::string page = kHead + Form(index, terms) + "<main>\n";
    if (found.rows.empty()) {
        page += "<p>No results returned.</p>\n";
        if (index.Size() > 0) page += "<p>" + Link("/", "Show all") + "</p>\n";
        return page + "</main>\n</body></html>\n";
    }
    std::string rows;
    std::size_t end = found.first;
    for (const Publication* row : found.rows) {
        if (page.size() + rows.size() > kFullPage && end > found.first) break;
        AppendRow(*row, rows);
        ++end;
    }
    page += "<p>" + std::to_string(found.first + 1) + " to " + std::to_string(end) + " of " +
            std::to_string(found.total) + "</p>\n<ul>\n";
    page += rows + "</ul>\n";
    std::string pages;
    if (found.first > 0) pages += PageLink(terms, found.first - std::min(found.first, pageSize), "Previous");
    if (end < found.total) pages += PageLink(terms, end, "Next");
    if (!pages.empty()) page += "<nav>" + pages + "</nav>\n";
    return page + "</main>\n</body></html>\n";
}

}  // namespace quillary
