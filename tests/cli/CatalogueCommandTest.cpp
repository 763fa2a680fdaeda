// What `qly catalogue` refuses, and what it makes of answers that no good server gives.
#include "tests/cli/Qly.h"
#include "tests/fakes/ScriptedServer.h"

namespace quillary {
namespace {

class CatalogueCommand : public QlyTest {};

TEST_F(CatalogueCommand, Refuses) {
    Expect({"catalogue"},
           {
               {"no command", {}, 2, "Too few words"},
               {"an unknown one", {"serch"}, 2, "Did you mean \"search\"?"},
               {"too many words", {"search", "x"}, 2, "takes 0 words"},
               {"too few words", {"details", "1"}, 2, "takes 2 words"},
               {"another command's option", {"search", "--name", "x"}, 2, "\"catalogue search\" has no \"--name\"."},
               {"no pages", {"search", "--pages", "0"}, 2, "a number from 1"},
               {"a path for a server", {"search", "--server", "h/x"}, 2, "HOST or HOST:PORT"},
               {"no port", {"search", "--server", "h:8711x"}, 2, "HOST or HOST:PORT"},
               {"a device", {"download", "1", "/dev/null"}, 1, "/dev/null is neither a file nor a folder."},
               {"what cannot travel", {"search", "--title", "\xD0\xB6"}, 1, "cannot be searched for: \xD0\xB6"},
               {"nobody there", {"search", "--server", "127.0.0.1:1"}, 1, "No results returned. ("},
               {"nor for a file", {"download", "1", "x", "--server", "127.0.0.1:1"}, 1, "was not downloaded to x: "},
           });
}

TEST_F(CatalogueCommand, EndsWithEveryServer) {
    const std::string one = "0:0:2000000000:a\x1B^!1^!2^!zip^!1.5^!", printed = "aU+001B\t1.5\tzip\t1\t2\n";
    const struct {
        const char* why;
        std::string answer;
        std::vector<std::string> arguments;
        int status;
        std::string output;
        std::size_t requests = 1;
    } kCases[] = {
        {"no result", "0:-1:0:", {"search", "--title", "\xC3\xBF"}, 1, ""},
        {"none, as JSON", "0:-1:0:", {"search", "--json"}, 1, "{\"total\": 0, \"results\": []}\n"},
        {"one page of many", one, {"search"}, 0, printed},
        {"a server that begins anew", one, {"search", "--pages", "all"}, 0, printed + printed, 2},
        {"no details", "", {"details", "1", "2"}, 0, ""},
        {"an empty package", "0:-1:0:", {"package", "1", "2"}, 1, ""},
        {"an empty file", "", {"download", "1", "x.pdb"}, 1, ""},
    };
    for (const auto& c : kCases) {
        ScriptedServer server(
            [&c](const std::string&) { return ScriptedServer::Answer{ScriptedServer::Ok(c.answer)}; });
        std::vector<std::string> arguments = c.arguments;
        arguments.insert(arguments.begin(), "catalogue");
        arguments.insert(arguments.end(), {"--server", server.Address()});
        const QlyResult result = Qly(arguments);
        EXPECT_EQ(c.status, result.status) << c.why << result.err;
        EXPECT_EQ(c.output, result.out) << c.why;
        EXPECT_EQ(c.requests, server.Requests().size()) << c.why;
        EXPECT_TRUE(Files().empty()) << c.why;
    }
}

}  // namespace
}  // namespace quillary
