// A server on this machine that answers each request with bytes that a test has chosen, whatever they are.
#pragma once

#include <atomic>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace quillary {

class ScriptedServer {
  public:
    /// What is sent for a request line, after `delayMilliseconds`; the connection is closed behind it.
    struct Answer {
        std::string bytes;
        int delayMilliseconds = 0;
        bool stays = false;  // open, without another byte, until the client goes or the server ends
    };
    using Script = std::function<Answer(const std::string& requestLine)>;

    explicit ScriptedServer(Script script);
    ~ScriptedServer();
    ScriptedServer(const ScriptedServer&) = delete;
    ScriptedServer& operator=(const ScriptedServer&) = delete;

    /// "127.0.0.1:PORT"
    [[nodiscard]] std::string Address() const;
    /// The request lines so far, without "GET " and the version.
    [[nodiscard]] std::vector<std::string> Requests();
    /// The header lines of the last request.
    [[nodiscard]] std::string LastHead();

    /// An answer of status 200 with its length.
    [[nodiscard]] static std::string Ok(const std::string& body);

  private:
    void Run();
    void Serve(int client);

    Script m_script;
    int m_listener = -1;
    int m_port = 0;
    std::atomic<bool> m_ends = false;
    std::mutex m_mutex;
    std::vector<std::string> m_requests;
    std::string m_lastHead;
    std::vector<std::thread> m_clients;  // of the accepting thread
    std::thread m_thread;
};

}  // namespace quillary
