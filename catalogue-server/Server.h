// Speaks HTTP: takes requests apart, answers from the catalogue, sends copies of files. Holds every client to limits,
// so that a slow or hostile one costs the others nothing.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>

#include "catalogue-server/CatalogueKeeper.h"
#include "db/AnsiText.h"

namespace quillary {

struct ServerLimits {
    unsigned connections = 1024;
    unsigned connectionsPerAddress = 100;
    std::chrono::seconds patience{15};  // for a request's head, for the next request, and for silence in between
};

class Server {
  public:
    /// Both must outlive it.
    Server(const CatalogueKeeper& keeper, const AnsiText& codePage);
    ~Server();
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;

    /// `address` is a numeric one of either family; port 0 is any that is free. Who connects from now on waits for
    /// Start. False with a message for the user, as below.
    [[nodiscard]] bool Bind(const std::string& address, std::uint16_t port, std::string& message);
    [[nodiscard]] bool Start(const ServerLimits& limits, std::string& message);
    /// "http://127.0.0.1:8711/", once it is bound.
    [[nodiscard]] const std::string& Address() const { return m_address; }
    /// Ends what is being sent.
    void Stop();

  private:
    class Running;

    const CatalogueKeeper& m_keeper;
    const AnsiText& m_codePage;
    std::string m_address;
    PosixFile m_socket;
    std::unique_ptr<Running> m_running;
};

}  // namespace quillary
