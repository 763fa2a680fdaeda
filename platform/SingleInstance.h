// One running program for each user, program path and display: finds out whether this one is the first, and hands what
// a later one was started for to the first.
#pragma once

#include <QByteArray>
#include <QLocalServer>
#include <chrono>
#include <filesystem>
#include <functional>
#include <string>

#include "platform/posix/PosixFile.h"

class QLocalSocket;

namespace quillary {

/// What a program was started for.
struct LaunchRequest {
    std::string path;             // absolute, as bytes; empty when no file was named
    std::string activationToken;  // by which the desktop lets a window come to the front; may be empty
};

class SingleInstance {
  public:
    enum class Role {
        First,       // receives the requests of later ones
        HandedOver,  // a first one has taken the request; this program has nothing left to do
        Alone,       // the first one does not answer, or there is no place to meet it
    };
    using Receive = std::function<void(const LaunchRequest&)>;

    /// The bytes that a request may have; a larger one is not handed over.
    static constexpr std::uint32_t kMaxRequestSize = 1 << 16;
    static constexpr std::chrono::milliseconds kPatience{3000};

    /// Needs the application object.
    SingleInstance();
    SingleInstance(const SingleInstance&) = delete;
    SingleInstance& operator=(const SingleInstance&) = delete;

    /// Blocks until the role is settled, at most for kPatience. The first one's requests come through the event loop;
    /// each has been acknowledged before `receive` is called.
    [[nodiscard]] Role Start(const LaunchRequest& request, Receive receive);

  private:
    enum class Lock { Taken, Others, Impossible };
    [[nodiscard]] Lock TakeLock();
    [[nodiscard]] bool Listen();
    void Accept();
    void Read(QLocalSocket& peer);
    [[nodiscard]] bool Send(const LaunchRequest& request, std::chrono::milliseconds patience) const;
    [[nodiscard]] QString SocketName() const;

    std::filesystem::path m_folder;  // for this user alone; empty when there is none
    std::string m_name;              // the same in all programs that are to find each other
    Receive m_receive;
    PosixFile m_lock;  // given back after the server has gone
    QLocalServer m_server;
};

}  // namespace quillary
