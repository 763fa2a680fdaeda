// Request targets as clients send them, and as nobody should.
#include "catalogue-server/Requests.h"

#include <gtest/gtest.h>

namespace quillary {
namespace {

using Kind = RequestKind;

TEST(Requests, SearchesAsTheyAreTyped) {
    const struct {
        const char* query;
        const char* title;
        const char* category;
        std::size_t start, size;
    } kCases[] = {
        {"start=0&size=25", "", "", 0, 25},
        {"start=25&size=10&title=film&category=palm-related", "film", "palm-related", 25, 10},
        {"start=0&size=25&title=R&B + C", "R&B + C", "", 0, 25},
        {"start=0&size=25&title=a&size=3&category=x", "a&size=3", "x", 0, 25},
        {"start=0&size=25&title=a&category=b&category=x", "a&category=b", "x", 0, 25},
        {"start=0&size=25&title=100%25%20caf%e9%zz%", "100% café%zz%", "", 0, 25},
        {"start=0&size=25&title=caf\xE9", "café", "", 0, 25},
        {"start=0&size=25&title=%0d%0a two %00", "two", "", 0, 25},
        {"start=0&size=25&category=%2fetc%2f..", "", "/etc/..", 0, 25},
        {"start=-1&size=0", "", "", 0, 1},
        {"start=99999999999999999999999&size=2000000000", "", "", 1'000'000'000, kLargestPage},
        {"", "", "", 0, kDefaultPage},
    };
    for (const auto& c : kCases) {
        const Request r = ParseRequest(std::string("/wireless/?screen=qly_search&") + c.query, AnsiText::Windows1252());
        EXPECT_EQ(r.kind, Kind::Search) << c.query;
        EXPECT_EQ(r.terms.title + "|" + r.terms.category, std::string(c.title) + "|" + c.category) << c.query;
        EXPECT_EQ(r.start, c.start) << c.query;
        EXPECT_EQ(r.size, c.size) << c.query;
    }
}

TEST(Requests, KindsAndIds) {
    const std::tuple<const char*, Kind, const char*> kCases[] = {
        {"/wireless/?screen=qly_detail&one_file=1&doc_id=d1&file_id=f1", Kind::Details, "d1|f1"},
        {"/wireless/?screen=qly_view_zip&doc_id=d1&file_id=f%31", Kind::PackageFiles, "d1|f1"},
        {"/?global_op=download_file&file_id=../x", Kind::Download, "|../x"},
        {"http://example.org:80/?global_op=download_file&file_id=f", Kind::Download, "|f"},
        {"/package/f1/2a", Kind::PackageFile, "2a|f1"},
        {"/package/../../etc/passwd", Kind::PackageFile, "../etc/passwd|.."},
        {"/", Kind::WebPage, "|"},
        {"http://example.org", Kind::WebPage, "|"},
        {"/?file_id=f", Kind::WebPage, "|"},
        {"/wireless/?screen=other", Kind::Unknown, "|"},
        {"/wireless/../?screen=qly_search", Kind::Unknown, "|"},
        {"/films.pdb", Kind::Unknown, "|"},
        {"*", Kind::Unknown, "|"},
        {"", Kind::Unknown, "|"},
    };
    for (const auto& [target, kind, ids] : kCases) {
        const Request r = ParseRequest(target, AnsiText::Windows1252());
        EXPECT_EQ(r.kind, kind) << target;
        EXPECT_EQ(r.docId + "|" + r.fileId, ids) << target;
    }
    const Request form = ParseRequest("/?title=caf%C3%A9+%2b&category=a%26b&start=100", AnsiText::Windows1252());
    EXPECT_EQ(form.terms.title + "|" + form.terms.category, "café +|a&b");
    EXPECT_EQ(form.start, 100u);
}

}  // namespace
}  // namespace quillary
