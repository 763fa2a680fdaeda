// quillary-catalogue: publishes a folder of databases for Quillary's "Download Database".
#include <signal.h>

#include <CLI/CLI.hpp>
#include <charconv>
#include <cstdio>
#include <optional>
#include <string>

#include "catalogue-server/CatalogueKeeper.h"
#include "catalogue-server/Server.h"
#include "platform/posix/CodePages.h"

namespace quillary {
namespace {

enum class Status { Done = 0, Failed = 1, WrongUsage = 2 };

struct Options {
    std::string folder;
    std::string address = "127.0.0.1";
    std::uint16_t port = 8711;
    std::string codePage = "windows-1252";
    ServerLimits limits;
};

int Complain(const std::string& message, Status status) {
    std::fprintf(stderr, "quillary-catalogue: %s\n", message.c_str());
    return static_cast<int>(status);
}

// Says what may be given, of what is no number as well. Without a name it adds nothing to the help.
CLI::Validator WholeNumber(int least, int most) {
    const auto check = [least, most](const std::string& text) {
        int number = 0;
        const auto [end, problem] = std::from_chars(text.data(), text.data() + text.size(), number);
        if (problem == std::errc{} && end == text.data() + text.size() && number >= least && number <= most) {
            return std::string();
        }
        return "\"" + text + "\" is not a whole number from " + std::to_string(least) + " to " + std::to_string(most);
    };
    return CLI::Validator(check, "");
}

// The status to end with, when there is nothing to serve.
std::optional<int> ReadOptions(int argc, char** argv, Options& options) {
    CLI::App app(
        "Publishes the databases in a folder, and below it, for Quillary's Download Database and for browsers.",
        "quillary-catalogue");
    constexpr int kOptionsWidth = 36;  // the completion reads a line each, so that none may wrap
    app.get_formatter()->column_width(kOptionsWidth);
    int patience = static_cast<int>(options.limits.patience.count());
    app.add_option("--folder", options.folder, "The folder that is published; required")->type_name("DIR");
    app.add_option("--port", options.port, "The port, 0 for any that is free")
        ->type_name("N")
        ->check(WholeNumber(0, 65535))
        ->capture_default_str();
    app.add_option("--listen", options.address, "The address of this machine that is listened on; 0.0.0.0 for all")
        ->type_name("ADDRESS")
        ->capture_default_str();
    app.add_option("--code-page", options.codePage, "The code page of the databases")
        ->type_name("NAME")
        ->capture_default_str();
    app.add_option("--connections-per-address", options.limits.connectionsPerAddress,
                   "How many connections one address may have at a time")
        ->type_name("N")
        ->check(WholeNumber(1, 10000))
        ->capture_default_str();
    app.add_option("--patience", patience, "How many seconds a client may take for a request, or be silent")
        ->type_name("SECONDS")
        ->check(WholeNumber(1, 3600))
        ->capture_default_str();
    app.set_help_flag("-h,--help", "Show this text and end");
    app.set_version_flag("--version", "quillary-catalogue " QUILLARY_VERSION, "Show the version and end");
    try {
        app.parse(argc, argv);
        if (options.folder.empty()) throw CLI::RequiredError("--folder");
    } catch (const CLI::Success& asked) {
        return app.exit(asked);
    } catch (const CLI::ParseError& error) {
        return Complain(std::string(error.what()) + ". \"quillary-catalogue --help\" tells more.", Status::WrongUsage);
    }
    options.limits.patience = std::chrono::seconds(patience);
    return std::nullopt;
}

int Serve(const Options& options) {
    const auto page = CodePageByName(options.codePage);
    if (!page) return Complain("There is no code page \"" + options.codePage + "\".", Status::WrongUsage);
    const Path folder = std::filesystem::absolute(options.folder);
    PublishedFolder published;
    FileError error;
    if (!PublishedFolder::Open(folder, published, error)) {
        return Complain("The folder " + folder.string() + " cannot be read (" + error.reason + ").", Status::Failed);
    }
    CatalogueKeeper keeper(folder, *page, [](const std::string& problem) {
        std::fprintf(stderr, "quillary-catalogue: %s\n", problem.c_str());
    });
    Server server(keeper, *page);
    std::string message;
    // The port first: whoever cannot have it need not wait for a large folder.
    if (!server.Bind(options.address, options.port, message)) return Complain(message, Status::Failed);
    keeper.FirstLook();
    // Before any thread: all of them leave these to the wait below.
    sigset_t ending;
    sigemptyset(&ending);
    sigaddset(&ending, SIGINT);
    sigaddset(&ending, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &ending, nullptr);
    keeper.Follow();
    if (!server.Start(options.limits, message)) return Complain(message, Status::Failed);
    // Without a number: a file that is being written is taken up when it rests.
    std::printf("Publishing %s at %s\n", folder.c_str(), server.Address().c_str());
    std::fflush(stdout);
    int signal = 0;
    while (sigwait(&ending, &signal) != 0) {
    }
    server.Stop();
    return static_cast<int>(Status::Done);
}

}  // namespace
}  // namespace quillary

int main(int argc, char** argv) {
    quillary::Options options;
    if (const auto status = quillary::ReadOptions(argc, argv, options)) return *status;
    return quillary::Serve(options);
}
