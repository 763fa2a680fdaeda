#include <algorithm>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <system_error>
#include <utility>

#include "admin/DatabasePath.h"
#include "admin/Settings.h"
#include "cli/Progress.h"
#include "cli/Session.h"
#include "cli/Text.h"
#include "cli/services/Interrupts.h"
#include "cli/services/ServiceCommands.h"
#include "db/Ascii.h"
#include "db/Utf.h"
#include "platform/http/CurlSession.h"
#include "platform/posix/PreferencesFile.h"
#include "remote/DownloadTarget.h"
#include "remote/RemoteCatalog.h"

namespace quillary {

namespace {

constexpr std::int64_t kAllPages = 0;
using Results = std::vector<std::unique_ptr<CRemoteResult>>;

class CatalogueRun {
  public:
    CatalogueRun(Session& session, const Arguments& arguments, CatalogueServers servers, std::int32_t pageSize)
        : m_session(session),
          m_arguments(arguments),
          m_catalog(std::make_unique<CurlSession>(), std::move(servers), pageSize) {}

    ExitStatus Search() {
        const auto pages = ReadPages();
        if (!pages) return m_session.WrongUsage("--pages is a number from 1, or \"all\".");
        const auto title = Sendable("--title");
        auto category = Sendable("--category");
        if (!title || !category) return ExitStatus::Refused;
        std::transform(category->begin(), category->end(), category->begin(), AsciiLower);
        if (*category == "any") category->clear();
        m_catalog.SetQuery(*title, *category);

        const bool isWhole = FetchPages(*pages);
        const Results& results = m_catalog.Results();
        if (m_arguments.Has("--json")) {
            PrintJson(results, m_catalog.Total());
        } else {
            Print(results);
        }
        if (results.empty()) return NoResults();
        return isWhole ? ExitStatus::Done : m_session.Refuse("The next page did not arrive: " + m_catalog.Reason());
    }

    ExitStatus Details() {
        CRemoteResult item = Named();
        if (!m_catalog.FetchDetails(item)) return NoResults();
        std::string text = InformationText(*item.details);
        std::erase(text, '\r');
        m_session.Out().Append(ShowControls(Utf8(text), "\n"));
        return ExitStatus::Done;
    }

    ExitStatus Package() {
        CRemoteResult item = Named();
        const bool isThere = m_catalog.FetchPackage(item);
        if (m_arguments.Has("--json")) {
            PrintJson(item.children, static_cast<std::int64_t>(item.children.size()));
        } else if (!item.children.empty()) {
            Print(item.children);
            m_session.Out().Append(item.size + "\n");
        }
        return isThere && !item.children.empty() ? ExitStatus::Done : NoResults();
    }

    ExitStatus Download() {
        const bool isInPackage = m_arguments.Has("--in-package");
        CRemoteResult item;
        (isInPackage ? item.docId : item.fileId) = m_arguments.words[1];
        Path path = m_arguments.words[2];
        std::error_code none;
        if (std::filesystem::is_directory(path, none)) {
            std::string name = m_arguments.Value("--name").value_or(m_arguments.words[1]);
            if (!isInPackage && EndsInExtension(name)) name.resize(name.size() - 4);  // that it gets
            path /= SafeFileName(name, isInPackage);
        } else if (m_arguments.Has("--name")) {
            return m_session.WrongUsage("--name is for a TARGET that is a folder.");
        } else if (std::filesystem::exists(path, none) && !std::filesystem::is_regular_file(path, none)) {
            return m_session.Refuse(path.string() + " is neither a file nor a folder.");
        }
        const Interrupts interrupts([this] { m_catalog.Session().Cancel(); });
        DownloadTarget target(m_session.Files(), path);
        if (!m_catalog.Download(item, isInPackage, target)) {
            return m_session.Refuse("The file was not downloaded to " + path.string() + ": " + m_catalog.Reason());
        }
        m_session.Out().Append(target.KeptAs().string() + "\n");
        return ExitStatus::Done;
    }

  private:
    [[nodiscard]] std::optional<std::int64_t> ReadPages() const {
        const auto given = m_arguments.Value("--pages");
        if (!given) return 1;
        if (*given == "all") return kAllPages;
        const auto number = ReadWholeNumber(*given);
        return number && *number >= 1 ? number : std::nullopt;
    }

    // The option's value in the code page.
    [[nodiscard]] std::optional<std::string> Sendable(std::string_view option) const {
        const auto wide = m_session.Wide(m_arguments.Value(option).value_or(""));
        if (!wide) return std::nullopt;
        std::u16string lacking;
        auto text = m_session.Page().FromWideToSend(*wide, &lacking);
        if (!text) Complain(FormatMessage(Message::NotSearchable, {WideToUtf8(lacking)}));
        return text;
    }

    // Until a page brings nothing, or nothing new. False when one does not arrive.
    [[nodiscard]] bool FetchPages(std::int64_t pages) {
        Progress progress("Searching", 0, m_session.ShowsProgress());
        std::int32_t start = -1;
        for (std::int64_t page = 0; pages == kAllPages || page < pages; ++page) {
            if (!m_catalog.HasMore() || m_catalog.NextStart() <= start) return true;
            start = m_catalog.NextStart();
            if (!m_catalog.Search()) return false;
            if (m_catalog.PageCount() == 0) return true;
            progress.Show(m_catalog.Results().size());
        }
        return true;
    }

    [[nodiscard]] CRemoteResult Named() const {
        CRemoteResult item;
        item.docId = m_arguments.words[1];
        item.fileId = m_arguments.words[2];
        return item;
    }
    [[nodiscard]] std::string Utf8(std::string_view received) const { return m_session.Page().ToUtf8(received); }

    void Print(const Results& results) {
        for (const auto& result : results) {
            std::string line;
            for (const std::string* text :
                 {&result->name, &result->size, &result->kind, &result->docId, &result->fileId}) {
                if (text != &result->name) line += '\t';
                line += OneLine(Utf8(*text));
            }
            m_session.Out().Append(line + "\n");
        }
    }
    void PrintJson(const Results& results, std::int64_t total) {
        std::string json = "{\"total\": " + std::to_string(total) + ", \"results\": [";
        for (const auto& result : results) {
            if (result != results.front()) json += ", ";
            const std::pair<std::string_view, const std::string&> values[] = {{"name", result->name},
                                                                              {"docId", result->docId},
                                                                              {"fileId", result->fileId},
                                                                              {"kind", result->kind},
                                                                              {"size", result->size}};
            for (const auto& [name, value] : values) {
                json.append(&value == &result->name ? "{\"" : ", \"").append(name).append("\": ");
                AppendJsonString(Utf8(value), json);
            }
            json += '}';
        }
        m_session.Out().HoldsJson();
        m_session.Out().Append(json + "]}\n");
    }
    [[nodiscard]] ExitStatus NoResults() const {
        const std::string& reason = m_catalog.Reason();
        return m_session.Refuse("No results returned." + (reason.empty() ? "" : " (" + reason + ")"));
    }

    Session& m_session;
    const Arguments& m_arguments;
    CRemoteCatalog m_catalog;
};

struct Action {
    std::string_view name;
    std::size_t words;  // with the name
    std::string_view options;
    ExitStatus (CatalogueRun::*run)();
};
constexpr Action kActions[] = {
    {"search", 1, "--title --category --pages --json", &CatalogueRun::Search},
    {"details", 3, "", &CatalogueRun::Details},
    {"package", 3, "--json", &CatalogueRun::Package},
    {"download", 3, "--in-package --name", &CatalogueRun::Download},
};
constexpr std::string_view kOwnOptions[] = {"--title", "--category", "--pages", "--json", "--in-package", "--name"};

}  // namespace

ExitStatus RunCatalogue(Session& session, const Arguments& arguments) {
    const std::string& name = arguments.words[0];
    const auto* action =
        std::find_if(std::begin(kActions), std::end(kActions), [&name](const Action& row) { return row.name == name; });
    if (action == std::end(kActions)) {
        const std::string hint = NearestNameHint(name, {"search", "details", "package", "download"});
        return session.WrongUsage("There is no catalogue command " + Quoted(name) + "." + hint);
    }
    if (arguments.words.size() != action->words) {
        return session.WrongUsage("\"catalogue " + name + "\" takes " + Counted(action->words - 1, "word") + ".");
    }
    for (const std::string_view option : kOwnOptions) {
        if (arguments.Has(option) && action->options.find(option) == std::string_view::npos) {
            return session.WrongUsage("\"catalogue " + name + "\" has no " + Quoted(option) + ".");
        }
    }
    const PreferencesFile preferences;
    CatalogueServers servers{preferences.ReadText(kCatalogueServer, kServerDefault),
                             preferences.ReadText(kDownloadServer, kServerDefault)};
    if (const auto server = arguments.Value("--server")) {
        if (!IsServer(*server)) return session.WrongUsage("--server is HOST or HOST:PORT.");
        servers = {*server, *server};
    }
    CatalogueRun run(session, arguments, std::move(servers), MaxRemoteResults(preferences));
    return (run.*action->run)();
}

}  // namespace quillary
