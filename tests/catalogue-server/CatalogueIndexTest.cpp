// The index, and the answers as the bytes that travel.
#include "catalogue-server/CatalogueIndex.h"

#include <gtest/gtest.h>

#include "catalogue-server/Answers.h"
#include "catalogue-server/CatalogueJson.h"
#include "catalogue-server/Package.h"
#include "catalogue-server/Texts.h"
#include "catalogue-server/WebPage.h"

namespace quillary {
namespace {

const AnsiText& kPage = AnsiText::Windows1252();

std::shared_ptr<const Publication> Row(const std::string& title, const std::string& category) {
    Publication row;
    row.path = title + ".pdb";
    SetIds(row);
    row.title = title;
    row.category = category;
    row.size = 1536;
    return std::make_shared<const Publication>(row);
}

std::string Titles(const SearchPage& page) {
    std::string titles = std::to_string(page.total) + ":";
    for (const Publication* row : page.rows) titles += " " + row->title;
    return titles;
}

TEST(CatalogueIndex, SearchesByTitleAndCategoryPageByPage) {
    const CatalogueIndex index({Row("Straße", "Travel"), Row("zoo", "science"), Row("Émile", "Novels"),
                                Row("Oslo", "travel"), Row("ozon", "Science"), Row("zoo", "science")});
    const struct {
        const char* name;
        SearchTerms terms;
        std::size_t start, size;
        const char* found;
    } kCases[] = {
        {"all, in the order of their titles", {}, 0, 9, "5: Oslo ozon Straße zoo Émile"},
        {"in either case", {"OZ", ""}, 0, 9, "1: ozon"},
        {"letters beyond ASCII too", {"éM", ""}, 0, 9, "1: Émile"},
        {"not across the end of a title", {"oo", ""}, 0, 9, "1: zoo"},
        {"a title that holds it twice counts once", {"o", ""}, 0, 9, "3: Oslo ozon zoo"},
        {"category", {"", "SCIENCE"}, 0, 9, "2: ozon zoo"},
        {"both", {"s", "travel"}, 0, 9, "2: Oslo Straße"},
        {"an unknown category", {"", "any"}, 0, 9, "0:"},
        {"a later page", {}, 2, 2, "5: Straße zoo"},
        {"the last page", {"", ""}, 4, 2, "5: Émile"},
        {"behind the last", {}, 5, 2, "5:"},
        {"a character that ends a title inside", {std::string("\0", 1), ""}, 0, 9, "0:"},
    };
    for (const auto& c : kCases) {
        EXPECT_EQ(Titles(index.Search(c.terms, c.start, c.size)), c.found) << c.name;
    }
    const auto zoo = index.Search({"zoo", ""}, 0, 1).rows[0];
    EXPECT_EQ(index.Find(zoo->docId, zoo->fileId).get(), zoo);
    EXPECT_EQ(index.Find("", zoo->fileId).get(), zoo);
    EXPECT_EQ(index.Find(zoo->docId, "").get(), zoo);
    EXPECT_FALSE(index.Find(zoo->docId, index.Search({"oslo", ""}, 0, 1).rows[0]->fileId)) << "another file's id";
    EXPECT_FALSE(index.Find("", ""));
}

TEST(Answers, AreTheBytesThatClientsRead) {
    const auto plain = Row("Caf\u00e9 \u2126\U0001F600", "");
    auto hostile = *Row("x", "");
    hostile.title = std::string("a^!b^!\0c\r\nd", 11) + "^";
    hostile.kind = PublicationKind::Package;
    hostile.files = {{"one^!two", "1f", 52, 0}};
    hostile.author = "A^";
    hostile.category = "!B";
    hostile.description = "two\nlines\r\nand a \x1b";
    hostile.rating = "4.5";
    const auto search = [](std::size_t total, std::size_t first, std::vector<const Publication*> rows) {
        return SearchAnswer({total, first, std::move(rows)}, kPage);
    };
    EXPECT_EQ(search(60, 25, {plain.get()}),
              "25:25:60:Caf\xE9 ??^!" + plain->docId + "^!" + plain->fileId + "^!pdb^!1.5^!");
    EXPECT_EQ(search(1, 0, {&hostile}),
              "0:0:1:a^ !b^ ! c  d^^!" + hostile.docId + "^!" + hostile.fileId + "^!zip^!1.5^!");
    EXPECT_EQ(search(0, 0, {}), "0:-1:0:");
    EXPECT_EQ(search(60, 2'000'000'000, {}), "60:59:60:") << "keeps the total, moves nobody on";
    EXPECT_EQ(DetailsAnswer(hostile, kPage), "A^^!!B^!two\r\nlines\r\nand a  ^!^!^!^!4.5^!^!");
    EXPECT_EQ(PackageAnswer(hostile, kPage), "0:0:1:one^ !two^!/package/" + hostile.fileId + "/1f^!1f^!file^!0.1^!");
    EXPECT_EQ(PackageAnswer(*plain, kPage), "0:-1:0:");
    for (const auto& [bytes, text] : std::initializer_list<std::pair<std::uint64_t, const char*>>{
             {0, "0.0"}, {1, "0.1"}, {1023, "1.0"}, {1024 * 10 + 51, "10.0"}, {1024 * 10 + 52, "10.1"}}) {
        EXPECT_EQ(KilobytesText(bytes), text);
    }
}

TEST(Answers, NoMarkupOfOthersReachesTheWebPage) {
    Publication row = *Row("<b>\"x\"</b>", "'a' & b");
    row.description = "<script>";
    row.files = {{"<i>", "1", 1, 0}};
    const CatalogueIndex index({std::make_shared<const Publication>(row)});
    const SearchTerms terms{"\"><x", ""};
    const std::string page = WebPage(index, terms, index.Search({}, 0, 10), 10);
    for (const char* raw : {"<b>", "<script>", "<i>", "\"><x", "'a'"}) EXPECT_EQ(page.find(raw), page.npos) << raw;
    EXPECT_NE(page.find("&lt;b&gt;&quot;x&quot;"), page.npos);
}

TEST(Answers, WebPageStaysSmallAndGoesOn) {
    CatalogueIndex::Publications rows;
    for (int i = 0; i < 100; ++i) {
        Publication row = *Row(std::to_string(1000 + i), std::string(5000, static_cast<char>('a' + i % 26)));
        row.files.assign(1000, {std::string(kLongestName, '"'), "1", 1, 0});
        rows.push_back(std::make_shared<const Publication>(row));
    }
    const CatalogueIndex index(std::move(rows));
    for (std::size_t start = 0; start < 100;) {
        const std::string page = WebPage(index, {}, index.Search({}, start, 100), 100);
        EXPECT_LT(page.size(), 400u << 10);
        EXPECT_NE(page.find("and 980 more"), page.npos);
        std::size_t count = 0;
        for (auto at = page.find("<li><a href=\"/?"); at != page.npos; at = page.find("<li><a href=\"/?", at + 1))
            ++count;
        ASSERT_TRUE(count > 0 && start + count <= 100);
        start += count;
        EXPECT_EQ(page.find("&amp;start=" + std::to_string(start)) != page.npos, start < 100);
    }
}

TEST(CatalogueJson, TakesWhatFitsAndNamesTheRest) {
    std::vector<std::string> problems;
    const std::string long32(32769, 'x');
    const auto texts = ParseCatalogueJson(R"({"files": {"a.pdb": {"title": "A", "rating": 4.25, "downloads": 12},
        "b.pdb": {"rating": 7, "title": 3, "colour": "red"}, "c.pdb": [], "d.pdb": {"title": ")" +
                                              long32 + "\"}}}",
                                          problems);
    ASSERT_TRUE(texts);
    const PublishedTexts& a = texts->at("a.pdb");
    EXPECT_EQ(a.title.value() + a.rating.value() + a.downloads.value(), "A4.312");
    EXPECT_FALSE(a.author);
    EXPECT_EQ(problems.size(), 5u);
    for (const char* bad : {"", "[]", "{\"files\": 1}", "{\"files\": {}", "{\"files\": {\"\xff\": {}}}"}) {
        problems.clear();
        EXPECT_FALSE(ParseCatalogueJson(bad, problems)) << bad;
        EXPECT_EQ(problems.size(), 1u) << bad;
    }
    EXPECT_FALSE(ParseCatalogueJson(std::string(1 << 20, '['), problems)) << "deep, not recursive";
}

TEST(Package, ListsNoPath) {
    EXPECT_EQ(ListedName("../../etc//./passwd"), "etc-passwd");
    EXPECT_EQ(ListedName("C:\\new\\..\\a.pdb"), "C:-new-a.pdb");
    EXPECT_EQ(ListedName("/../"), "");
    EXPECT_EQ(ListedName("\u00e9" + std::string(kLongestName - 5, 'x') + ".pdb").size(), kLongestName - 1)
        << "no half of a character";
}

}  // namespace
}  // namespace quillary
