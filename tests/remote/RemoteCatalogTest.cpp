#include "remote/RemoteCatalog.h"

#include <gtest/gtest.h>

#include "platform/http/CurlSession.h"
#include "remote/CatalogueAnswer.h"
#include "remote/DownloadTarget.h"
#include "tests/fakes/MemoryFiles.h"
#include "tests/fakes/ScriptedServer.h"
#include "tests/fakes/TestSettings.h"

namespace quillary {
namespace {

using Answer = ScriptedServer::Answer;

class Client {
  public:
    explicit Client(ScriptedServer::Script script) : server(std::move(script)) {
        settings.texts.emplace(kCatalogueServer, server.Address());
        settings.texts.emplace(kDownloadServer, server.Address());
        catalog.emplace(std::make_unique<CurlSession>(), settings);
    }
    // The same answer to everything.
    explicit Client(std::string bytes) : Client([bytes](const std::string&) { return Answer{bytes}; }) {}

    // Into /d, under the name "x". What is there afterwards, in one line.
    std::string Download(bool isInPackage = false) {
        CRemoteResult item;
        item.docId = "/p/a b.pdb";
        item.fileId = "7";
        {
            DownloadTarget target(files, "/d/x");
            kept = catalog->Download(item, isInPackage, target);
        }
        std::string all;
        for (const auto& [path, content] : files.contents) all += path + "=" + content + ";";
        return all;
    }

    ScriptedServer server;
    TestSettings settings;
    MemoryFiles files;
    std::optional<CRemoteCatalog> catalog;
    bool kept = false;
};

std::string NamesOf(const std::vector<std::unique_ptr<CRemoteResult>>& results) {
    std::string names;
    for (const auto& result : results) names += result->name + "/" + result->size + " ";
    return names;
}

TEST(CatalogueAnswer, TakesWhatIsThere) {
    const struct {
        const char* name;
        std::string answer;
        std::string results;
        std::int32_t total;
    } kCases[] = {
        {"as it should be", "0:1:60:a^!1^!2^!^!1.0^!b^!1^!2^!zip^!2^!", "a/1.0 b/2 ", 60},
        {"none", "0:-1:0:", "", 0},
        {"nothing", "", "", 0},
        {"fewer than it says", "0:1999999999:2000000000:a^!", "a/ ", 2000000000},
        {"more than it says", "0:0:9:a^!1^!2^!^!1^!b^!1^!2^!^!2^!", "a/1 ", 9},
        {"less than none", "0:-7:9:a^!1^!2^!^!1^!b^!", "a/1 b/ ", 9},
        {"beyond 32 bits", "-99999999999:99999999999:99999999999:a^!", "a/ ", 2147483647},
        {"half a terminator", "0:0:1:a^b!c^!1^!2^!^!1^", "a^b!c/1^ ", 1},
        {"a NUL", std::string("0:0:1:a^!1^!2^!^!1") + '\0' + "9^!", "a/1 ", 1},
    };
    for (const auto& c : kCases) {
        const CataloguePage page = ReadPage(c.answer);
        EXPECT_EQ(NamesOf(page.results), c.results) << c.name;
        EXPECT_EQ(page.total, c.total) << c.name;
    }
    for (std::string endless : {"0:-2:99:", "0:2000000000:99:"}) {
        for (int i = 0; i < 60000; ++i) endless += "^!";
        EXPECT_EQ(ReadPage(endless).results.size(), 10000u);
    }
    EXPECT_EQ(ReadDetails("A^!B^!C^!D^!E^!F^!4.5^!9^!").rating, "4.50");
    EXPECT_EQ(ReadDetails("A^!B^!C^!D^!E^!F^!0.0^!9^!").rating, "0.0");
    EXPECT_EQ(ReadDetails("^!^!^!^!^!^!none^!").rating, "none");
    EXPECT_EQ(InformationText(ReadDetails("A^!^!C^!^!^!^!1e999^!9^!")).substr(0, 30),
              "Author: A\r\n\r\nRating: 179769313");
    EXPECT_EQ(InformationText(ReadDetails("A^!B^!^!D^!^!^!^!9")),
              "Author: A\r\n\r\n# Downloads: 9\r\n\r\nCategory: B\r\n\r\nLanguage: D\r\n\r\n");
}

TEST(RemoteCatalog, AsksPageByPage) {
    Client client([](const std::string& request) {
        const bool isFirst = request.find("start=0&") != std::string::npos;
        return Answer{ScriptedServer::Ok(isFirst ? "0:1:3:a^!1^!2^!^!1^!b^!1^!2^!^!2^!" : "2:3:3:c^!1^!2^!^!3^!")};
    });
    client.catalog->SetQuery("", "");
    EXPECT_TRUE(client.catalog->Search());
    EXPECT_TRUE(client.catalog->Search());
    EXPECT_FALSE(client.catalog->Search());  // 4 lies beyond 3, and nobody is asked
    EXPECT_EQ(NamesOf(client.catalog->Results()), "a/1 b/2 c/3 ");
    client.settings.numbers.emplace(kMaxRemoteResults, 1000);
    CRemoteCatalog other(std::make_unique<CurlSession>(), client.settings);
    other.SetQuery("50% caf\xE9 & #1\r\n\"x\"", "palm-related");
    EXPECT_TRUE(other.Search());
    EXPECT_EQ(client.server.Requests(),
              (std::vector<std::string>{
                  "/wireless/?screen=qly_search&start=0&size=25", "/wireless/?screen=qly_search&start=2&size=25",
                  "/wireless/?screen=qly_search&start=0&size=100&title=50%25%20caf%E9%20&%20%231%0D%0A%22x%22"
                  "&category=palm-related"}));
    const std::string head = client.server.LastHead();
    EXPECT_NE(head.find("User-Agent: Quillary PPC\r\n"), std::string::npos) << head;
}

TEST(RemoteCatalog, AsksNobodyWhereTheAddressIsNone) {
    for (const char* address : {"", "http://h/", "h/x", "h:", "h:0", "h:65536", "h:1x", "a b", "::1"}) {
        Client client("");
        client.settings.texts = {{std::string(kCatalogueServer), address}, {std::string(kDownloadServer), address}};
        client.catalog.emplace(std::make_unique<CurlSession>(), client.settings);
        const std::string why = " is \"" + std::string(address) + "\", not HOST or HOST:PORT";
        EXPECT_FALSE(client.catalog->Search());
        EXPECT_EQ(client.catalog->Reason(), "the preference CatalogueServer" + why);
        (void)client.Download();
        EXPECT_EQ(client.catalog->Reason(), "the preference DownloadServer" + why);
    }
}

TEST(RemoteCatalog, FetchesDetailsAndPackagesOnce) {
    Client client([](const std::string& request) {
        if (request.find("qly_detail") != std::string::npos)
            return Answer{ScriptedServer::Ok("Ann^!Law^!^!^!^!^!^!^!")};
        return Answer{ScriptedServer::Ok("0:1:2:a.pdb^!/zip/a^!^!^!1.25^!b.pdb^!/zip/b^!^!^!2.5^!")};
    });
    CRemoteResult package;
    package.docId = "3", package.fileId = "4", package.kind = "zip";
    package.isTicked = true;
    EXPECT_FALSE(package.IsSingleFile());
    ASSERT_TRUE(client.catalog->FetchDetails(package));
    ASSERT_TRUE(client.catalog->FetchDetails(package));
    EXPECT_EQ(package.details->author, "Ann");
    ASSERT_TRUE(client.catalog->FetchPackage(package));
    EXPECT_EQ(package.size, "3.8");
    EXPECT_TRUE(package.children.at(1)->isTicked);
    package.details.reset();
    ASSERT_TRUE(client.catalog->FetchDetails(package));  // not of one whose files are known
    EXPECT_EQ(client.server.Requests(),
              (std::vector<std::string>{"/wireless/?screen=qly_detail&one_file=1&doc_id=3&file_id=4",
                                        "/wireless/?screen=qly_view_zip&doc_id=3&file_id=4"}));
}

TEST(RemoteCatalog, LeavesWholeFilesOrNone) {
    const std::string head = "HTTP/1.1 200 OK\r\n";
    const struct {
        const char* name;
        std::string answer;
        std::string left;
    } kCases[] = {
        {"whole", ScriptedServer::Ok("abc"), "/d/x=abc;"},
        {"of unknown length", head + "\r\nabc", "/d/x=abc;"},
        {"in pieces", head + "Transfer-Encoding: chunked\r\n\r\n3\r\nabc\r\n0\r\n\r\n", "/d/x=abc;"},
        {"cut in its pieces", head + "Transfer-Encoding: chunked\r\n\r\n3\r\nabc\r\n", ""},
        {"shorter than it says", head + "Content-Length: 9\r\n\r\nabc", ""},
        {"empty", ScriptedServer::Ok(""), ""},
        {"larger than any", head + "Content-Length: 268435457\r\n\r\nabc", ""},
        {"not there", "HTTP/1.1 404 Not Found\r\nContent-Length: 3\r\n\r\nabc", ""},
        {"no answer", "", ""},
        {"no HTTP", "abc", ""},
        {"elsewhere, by another protocol", "HTTP/1.1 302 Found\r\nLocation: file:///etc/passwd\r\n\r\n", ""},
        {"around and around", "HTTP/1.1 302 Found\r\nLocation: /again\r\nContent-Length: 0\r\n\r\n", ""},
    };
    for (const auto& c : kCases) {
        Client client(c.answer);
        EXPECT_EQ(client.Download(), c.left) << c.name;
        EXPECT_EQ(client.kept, !c.left.empty()) << c.name;
        EXPECT_EQ(client.catalog->Reason().empty(), client.kept) << c.name;
    }
    Client client(ScriptedServer::Ok("abc"));
    client.files.contents = {{"/d/x", "mine"}, {"/d/x (2)", "too"}, {"/d/.x.part", "left over"}};
    EXPECT_EQ(client.Download(true), "/d/x=mine;/d/x (2)=too;/d/x (3)=abc;");
    EXPECT_EQ(client.server.Requests().back(), "/p/a%20b.pdb");
    EXPECT_EQ(OnTheWire(PackagedFileUrl({"h", ""}, "@elsewhere/x#y")), "http://h/@elsewhere/x%23y");
    (void)client.Download();
    EXPECT_EQ(client.server.Requests().back(), "/?global_op=download_file&file_id=7");
}

TEST(RemoteCatalog, SurvivesAnAnswerCutAnywhere) {
    const std::string whole = ScriptedServer::Ok("0:0:1:a^!1^!2^!^!1^!");
    for (std::size_t size = 0; size <= whole.size(); ++size) {
        Client client(whole.substr(0, size));
        EXPECT_EQ(client.catalog->Search(), size == whole.size()) << size;
        EXPECT_EQ(client.catalog->Results().size(), size == whole.size() ? 1 : 0) << size;
        EXPECT_EQ(client.Download().empty(), size != whole.size()) << size;
    }
}

TEST(DownloadTarget, KeepsNamesInsideItsFolder) {
    constexpr struct {
        std::string_view name;
        bool isInPackage;
        std::string_view safe;
    } kCases[] = {
        {"Books", false, "Books.pdb"},
        {"Books.pdb", true, "Books.pdb"},
        {"A\\B: C", false, "A-B_ C.pdb"},
        {"../../etc/passwd", true, "__-..-etc-passwd"},
        {"..", true, "__"},
        {".hidden", false, "_hidden.pdb"},
        {"a\r\nb\x7F", true, "ab"},
        {"\n", true, "_"},
        {"a\xC2\x81\xE2\x80\xAE"
         "fdp.exe",
         true, "afdp.exe"},
        {"", false, "_.pdb"},
        {" \xC2\xA0", false, "_.pdb"},
    };
    for (const auto& c : kCases) EXPECT_EQ(SafeFileName(c.name, c.isInPackage), c.safe);
    std::string longest;
    for (int i = 0; i < 300; ++i) longest += "\xC3\xA9";
    const std::string safe = SafeFileName(longest, false);
    EXPECT_LE(safe.size(), 230u);
    EXPECT_TRUE(safe.ends_with("\xC3\xA9.pdb")) << safe;
}

}  // namespace
}  // namespace quillary
