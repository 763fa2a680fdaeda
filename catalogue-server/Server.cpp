#include "catalogue-server/Server.h"

#include <microhttpd.h>
#include <sys/resource.h>

#include <algorithm>
#include <csignal>
#include <optional>
#include <string_view>
#include <thread>

#include "catalogue-server/Answers.h"
#include "catalogue-server/Deadlines.h"
#include "catalogue-server/FileCopies.h"
#include "catalogue-server/ListeningSocket.h"
#include "catalogue-server/Requests.h"
#include "catalogue-server/Responses.h"
#include "catalogue-server/WebPage.h"

namespace quillary {

namespace {

using std::chrono::seconds;

// For head and lines of a request: the longest search a person types, many times over.
constexpr std::size_t kConnectionMemory = 16 << 10;
// The slowest client that is still served.
constexpr std::uint64_t kBytesPerSecond = 8 << 10;
constexpr rlim_t kDescriptors = 16384;

// From a request's first line to the end of its response.
struct Exchange {
    std::string target;
    bool isWhole = false;
    std::string fileName;  // of a file that is being copied
    std::optional<CopyResult> copy;
};

void RaiseDescriptorLimit() {
    rlimit limit{};
    if (getrlimit(RLIMIT_NOFILE, &limit) != 0 || limit.rlim_cur >= kDescriptors) return;
    limit.rlim_cur = std::min(limit.rlim_max, kDescriptors);
    (void)setrlimit(RLIMIT_NOFILE, &limit);
}

bool AnnouncesBody(MHD_Connection* connection) {
    const char* length = MHD_lookup_connection_value(connection, MHD_HEADER_KIND, MHD_HTTP_HEADER_CONTENT_LENGTH);
    return (length && std::string_view(length) != "0") ||
           MHD_lookup_connection_value(connection, MHD_HEADER_KIND, MHD_HTTP_HEADER_TRANSFER_ENCODING);
}

}  // namespace

// Everything that there is only while the server runs. The library calls it on several threads; what they share guards
// itself.
class Server::Running {
  public:
    Running(const CatalogueKeeper& keeper, const AnsiText& codePage, const ServerLimits& limits)
        : m_keeper(keeper),
          m_codePage(codePage),
          m_limits(limits),
          m_textType("text/plain; charset=" + codePage.Name()) {}
    ~Running() {
        // First who waits for a file is let go: the library cannot stop with a connection that is set aside.
        m_copies.Stop();
        if (m_daemon) MHD_stop_daemon(m_daemon);
    }
    Running(const Running&) = delete;
    Running& operator=(const Running&) = delete;

    [[nodiscard]] bool Start(PosixFile socket);

  private:
    static Running& Of(void* self) { return *static_cast<Running*>(self); }
    static void* Begun(void* self, const char* target, MHD_Connection* connection);
    static MHD_Result Asked(void* self, MHD_Connection* connection, const char* url, const char* method,
                            const char* version, const char* upload, std::size_t* uploadSize, void** exchange);
    static void Completed(void* self, MHD_Connection* connection, void** exchange, MHD_RequestTerminationCode how);
    static void Connected(void* self, MHD_Connection* connection, void** socketContext,
                          MHD_ConnectionNotificationCode what);

    [[nodiscard]] MHD_Result Answer(MHD_Connection* connection, std::string_view method, Exchange& exchange);
    [[nodiscard]] MHD_Result SendFile(MHD_Connection* connection, WantedFile wanted, Exchange& exchange);
    [[nodiscard]] MHD_Result SendCopy(MHD_Connection* connection, const CopyResult& result, const std::string& name);
    [[nodiscard]] MHD_Result Text(MHD_Connection* connection, const std::string& text);
    [[nodiscard]] MHD_Result Page(MHD_Connection* connection, const CatalogueIndex& index, const Request& request);
    [[nodiscard]] MHD_Result Refuse(MHD_Connection* connection, unsigned status, const char* reason);
    [[nodiscard]] MHD_Result Send(MHD_Connection* connection, unsigned status, const Response& response,
                                  std::uint64_t size);
    void GiveTimeFor(std::uint64_t size, Deadlines::Connection& deadline) const;
    static Deadlines::Connection* DeadlineOf(MHD_Connection* connection);

    const CatalogueKeeper& m_keeper;
    const AnsiText& m_codePage;
    ServerLimits m_limits;
    std::string m_textType;
    Deadlines m_deadlines;
    FileCopies m_copies;
    MHD_Daemon* m_daemon = nullptr;
};

bool Server::Running::Start(PosixFile socket) {
    const unsigned threads = std::clamp(std::thread::hardware_concurrency(), 2u, 16u);
    m_daemon = MHD_start_daemon(
        MHD_USE_EPOLL_INTERNAL_THREAD | MHD_ALLOW_SUSPEND_RESUME, 0, nullptr, nullptr, &Asked, this,
        MHD_OPTION_LISTEN_SOCKET, socket.Descriptor(), MHD_OPTION_THREAD_POOL_SIZE, threads,
        MHD_OPTION_CONNECTION_LIMIT, m_limits.connections, MHD_OPTION_PER_IP_CONNECTION_LIMIT,
        m_limits.connectionsPerAddress, MHD_OPTION_CONNECTION_MEMORY_LIMIT, kConnectionMemory,
        MHD_OPTION_URI_LOG_CALLBACK, &Begun, this, MHD_OPTION_NOTIFY_COMPLETED, &Completed, this,
        MHD_OPTION_NOTIFY_CONNECTION, &Connected, this, MHD_OPTION_SIGPIPE_HANDLED_BY_APP, 1, MHD_OPTION_END);
    if (m_daemon) (void)socket.Release();  // the library's from here on
    return m_daemon != nullptr;
}

void* Server::Running::Begun(void* /*self*/, const char* target, MHD_Connection* /*connection*/) {
    return new Exchange{target, false, {}, {}};
}

MHD_Result Server::Running::Asked(void* self, MHD_Connection* connection, const char* /*url*/, const char* method,
                                  const char* /*version*/, const char* /*upload*/, std::size_t* /*uploadSize*/,
                                  void** exchange) {
    return Of(self).Answer(connection, method, *static_cast<Exchange*>(*exchange));
}

void Server::Running::Completed(void* self, MHD_Connection* connection, void** exchange,
                                MHD_RequestTerminationCode /*how*/) {
    delete static_cast<Exchange*>(*exchange);
    *exchange = nullptr;
    // Written is not yet sent.
    if (auto* deadline = DeadlineOf(connection)) Of(self).GiveTimeFor(deadline->BytesUnderWay(), *deadline);
}

void Server::Running::Connected(void* self, MHD_Connection* connection, void** socketContext,
                                MHD_ConnectionNotificationCode what) {
    Running& running = Of(self);
    if (what == MHD_CONNECTION_NOTIFY_STARTED) {
        const auto* info = MHD_get_connection_info(connection, MHD_CONNECTION_INFO_CONNECTION_FD);
        if (info) *socketContext = running.m_deadlines.Add(info->connect_fd, running.m_limits.patience);
    } else if (*socketContext) {
        running.m_deadlines.Remove(static_cast<Deadlines::Connection*>(*socketContext));
        *socketContext = nullptr;
    }
}

Deadlines::Connection* Server::Running::DeadlineOf(MHD_Connection* connection) {
    const auto* info = MHD_get_connection_info(connection, MHD_CONNECTION_INFO_SOCKET_CONTEXT);
    return info ? static_cast<Deadlines::Connection*>(info->socket_context) : nullptr;
}

MHD_Result Server::Running::Answer(MHD_Connection* connection, std::string_view method, Exchange& exchange) {
    if (exchange.copy) return SendCopy(connection, *exchange.copy, exchange.fileName);
    if (AnnouncesBody(connection)) return Refuse(connection, MHD_HTTP_CONTENT_TOO_LARGE, "No request has a body here.");
    if (method != MHD_HTTP_METHOD_GET && method != MHD_HTTP_METHOD_HEAD) {
        return Refuse(connection, MHD_HTTP_METHOD_NOT_ALLOWED, "Only GET and HEAD are answered.");
    }
    if (!exchange.isWhole) {
        // The head is there. An answer at this first call would end the connection, as if a body were to be left
        // unread.
        exchange.isWhole = true;
        return MHD_YES;
    }
    Request request = ParseRequest(exchange.target, m_codePage);
    const std::shared_ptr<const Catalogue> catalogue = m_keeper.Current();
    const CatalogueIndex& index = catalogue->index;
    switch (request.kind) {
        case RequestKind::Search:
            return Text(connection, SearchAnswer(index.Search(request.terms, request.start, request.size), m_codePage));
        case RequestKind::WebPage:
            return Page(connection, index, request);
        case RequestKind::Unknown:
            return Refuse(connection, MHD_HTTP_NOT_FOUND, "There is nothing here.");
        case RequestKind::Details:
        case RequestKind::PackageFiles:
        case RequestKind::Download:
        case RequestKind::PackageFile:
            break;
    }
    const bool asksDetails = request.kind == RequestKind::Details;
    // A file in a package has no details but those of the package.
    if (asksDetails && request.docId.starts_with(kPackagePath)) request = ParseRequest(request.docId, m_codePage);
    const bool isInside = request.kind == RequestKind::PackageFile;
    const auto publication = index.Find(isInside ? std::string() : request.docId, request.fileId);
    if (!publication) return Refuse(connection, MHD_HTTP_NOT_FOUND, "There is no such file.");
    WantedFile wanted{catalogue, publication, nullptr};
    if (isInside) {
        const auto& files = publication->files;
        const auto file = std::find_if(files.begin(), files.end(),
                                       [&request](const PackageFile& inside) { return inside.id == request.docId; });
        if (file == files.end()) return Refuse(connection, MHD_HTTP_NOT_FOUND, "There is no such file.");
        wanted.file = &*file;
        exchange.fileName = file->name;
    } else {
        const bool isPackage = publication->kind == PublicationKind::Package;
        exchange.fileName = publication->title + (isPackage ? ".zip" : ".pdb");
    }
    if (asksDetails) return Text(connection, DetailsAnswer(*publication, m_codePage));
    if (request.kind == RequestKind::PackageFiles) return Text(connection, PackageAnswer(*publication, m_codePage));
    return SendFile(connection, std::move(wanted), exchange);
}

MHD_Result Server::Running::SendFile(MHD_Connection* connection, WantedFile wanted, Exchange& exchange) {
    if (auto copy = m_copies.Kept(wanted)) {
        return SendCopy(connection, {CopyOutcome::Done, std::move(copy)}, exchange.fileName);
    }
    // The thread goes on with other connections until the copy is there; then the library asks again.
    MHD_suspend_connection(connection);
    const bool isMaking = m_copies.Make(std::move(wanted), [connection, &exchange](const CopyResult& result) {
        exchange.copy = result;
        MHD_resume_connection(connection);
    });
    if (!isMaking) {
        exchange.copy = CopyResult{};
        MHD_resume_connection(connection);
    }
    return MHD_YES;
}

MHD_Result Server::Running::SendCopy(MHD_Connection* connection, const CopyResult& result, const std::string& name) {
    if (result.outcome == CopyOutcome::Gone) return Refuse(connection, MHD_HTTP_NOT_FOUND, "There is no such file.");
    if (!result.copy) return Refuse(connection, MHD_HTTP_SERVICE_UNAVAILABLE, "The file is being written. Try again.");
    return Send(connection, MHD_HTTP_OK, FileResponse(result.copy, name), result.copy->Size());
}

MHD_Result Server::Running::Text(MHD_Connection* connection, const std::string& text) {
    return Send(connection, MHD_HTTP_OK, TextResponse(text, m_textType), text.size());
}

MHD_Result Server::Running::Page(MHD_Connection* connection, const CatalogueIndex& index, const Request& request) {
    const SearchPage found = index.Search(request.terms, request.start, request.size);
    const std::string page = WebPage(index, request.terms, found, request.size);
    const Response response = TextResponse(page, "text/html; charset=utf-8");
    AddHeader(response, "Content-Security-Policy", kContentSecurityPolicy);
    return Send(connection, MHD_HTTP_OK, response, page.size());
}

MHD_Result Server::Running::Refuse(MHD_Connection* connection, unsigned status, const char* reason) {
    const std::string text = std::string(reason) + "\n";
    const Response response = TextResponse(text, "text/plain; charset=utf-8");
    if (status == MHD_HTTP_METHOD_NOT_ALLOWED) AddHeader(response, MHD_HTTP_HEADER_ALLOW, "GET, HEAD");
    if (status == MHD_HTTP_SERVICE_UNAVAILABLE) AddHeader(response, MHD_HTTP_HEADER_RETRY_AFTER, "5");
    // What follows on such a connection may be a body.
    if (status != MHD_HTTP_NOT_FOUND) AddHeader(response, MHD_HTTP_HEADER_CONNECTION, "close");
    return Send(connection, status, response, text.size());
}

MHD_Result Server::Running::Send(MHD_Connection* connection, unsigned status, const Response& response,
                                 std::uint64_t size) {
    if (!response) return MHD_NO;
    if (auto* deadline = DeadlineOf(connection)) GiveTimeFor(size + deadline->BytesUnderWay(), *deadline);
    return MHD_queue_response(connection, status, response.get());
}

void Server::Running::GiveTimeFor(std::uint64_t size, Deadlines::Connection& deadline) const {
    deadline.EndIn(m_limits.patience + seconds(static_cast<std::int64_t>(size / kBytesPerSecond)));
}

Server::Server(const CatalogueKeeper& keeper, const AnsiText& codePage) : m_keeper(keeper), m_codePage(codePage) {}

Server::~Server() = default;

bool Server::Bind(const std::string& address, std::uint16_t port, std::string& message) {
    if (!Listen(address, port, m_socket, message)) return false;
    const bool isLong = address.find(':') != std::string::npos;
    m_address = "http://" + (isLong ? "[" + address + "]" : address) + ":" + std::to_string(port) + "/";
    return true;
}

bool Server::Start(const ServerLimits& limits, std::string& message) {
    // A client that leaves is an error of the call that was writing to it.
    std::signal(SIGPIPE, SIG_IGN);
    RaiseDescriptorLimit();
    m_running = std::make_unique<Running>(m_keeper, m_codePage, limits);
    if (m_running->Start(std::move(m_socket))) return true;
    message = "The server cannot be started (" + SystemError(errno).reason + ").";
    m_running.reset();
    return false;
}

void Server::Stop() { m_running.reset(); }

}  // namespace quillary
