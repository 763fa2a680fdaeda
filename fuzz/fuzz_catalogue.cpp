// Any bytes as a request, as catalogue.json and as a title: the texts that answer are whole fields, hold no control
// character, and the page for browsers has no markup but its own.
#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue-server/Answers.h"
#include "catalogue-server/CatalogueJson.h"
#include "catalogue-server/FileFacts.h"
#include "catalogue-server/Package.h"
#include "catalogue-server/Requests.h"
#include "catalogue-server/Texts.h"
#include "catalogue-server/WebPage.h"
#include "db/Utf.h"
#include "fuzz/FuzzCheck.h"

namespace quillary {
namespace {

const AnsiText& kPage = AnsiText::Windows1252();

std::size_t FieldCount(std::string_view fields) {
    std::size_t count = 0;
    while (!fields.empty()) {
        const auto end = fields.find("^!");
        FUZZ_CHECK(end != fields.npos);
        for (const char c : fields.substr(0, end)) {
            FUZZ_CHECK(static_cast<unsigned char>(c) >= ' ' || c == '\r' || c == '\n');
        }
        fields.remove_prefix(end + 2);
        ++count;
    }
    return count;
}

// What stands behind the three numbers of a page.
std::string_view Rows(std::string_view answer) {
    for (int i = 0; i < 3; ++i) answer.remove_prefix(answer.find(':') + 1);
    return answer;
}

CatalogueIndex IndexOf(const FolderTexts& texts) {
    CatalogueIndex::Publications rows;
    FileFacts facts;
    for (const auto& [name, published] : texts) {
        facts.kind = rows.size() % 2 == 0 ? PublicationKind::Database : PublicationKind::Package;
        facts.name = ValidText(name);
        facts.files = {{ListedName(name), "1", 1, 0}};
        FUZZ_CHECK(facts.files[0].name.find('/') == std::string::npos);
        rows.push_back(std::make_shared<const Publication>(MakePublication(name, facts, {}, &published)));
    }
    return CatalogueIndex(std::move(rows));
}

void Check(const CatalogueIndex& index, const Request& request) {
    FUZZ_CHECK(Utf8ToWide(request.terms.title) && Utf8ToWide(request.terms.category));
    const SearchPage page = index.Search(request.terms, request.start, request.size);
    FUZZ_CHECK(page.rows.size() <= request.size && page.rows.size() <= page.total && page.total <= index.Size());
    FUZZ_CHECK(FieldCount(Rows(SearchAnswer(page, kPage))) == 5 * page.rows.size());
    for (const Publication* row : page.rows) {
        FUZZ_CHECK(FoldedText(row->title).find(FoldedText(request.terms.title)) != std::string::npos);
        FUZZ_CHECK(index.Find(row->docId, row->fileId).get() == row);
        FUZZ_CHECK(FieldCount(DetailsAnswer(*row, kPage)) == 8);
        FUZZ_CHECK(FieldCount(Rows(PackageAnswer(*row, kPage))) == 5 * row->files.size());
    }
    (void)index.Find(request.docId, request.fileId);
    // Between its first and its last tag, every "<" is one of the page's own.
    const std::string text = WebPage(index, request.terms, page, kLargestPage);
    const auto opened = std::count(text.begin(), text.end(), '<');
    FUZZ_CHECK(opened == std::count(text.begin(), text.end(), '>'));
}

// A request's target up to the first line end, then catalogue.json.
void Run(std::string_view bytes) {
    const std::string_view target = bytes.substr(0, bytes.find('\n'));
    const std::string_view json = bytes.substr(std::min(target.size() + 1, bytes.size()));
    std::vector<std::string> problems;
    const auto texts = ParseCatalogueJson(json, problems);
    FUZZ_CHECK(texts || !problems.empty());
    const Request request = ParseRequest(target, kPage);
    Check(IndexOf(texts.value_or(FolderTexts{{std::string(target), {}}})), request);
}

}  // namespace
}  // namespace quillary

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    quillary::Run({reinterpret_cast<const char*>(data), size});
    return 0;
}
