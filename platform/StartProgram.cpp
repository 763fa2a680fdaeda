#include "platform/StartProgram.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QSocketNotifier>
#include <QTimer>
#include <csignal>
#include <optional>
#include <system_error>
#include <utility>

#include "platform/posix/PosixFile.h"
#include "platform/posix/XdgFolders.h"

namespace quillary {

namespace {

constexpr qint64 kSoonMilliseconds = 30000;
constexpr int kLookMilliseconds = 250;
constexpr int kNotStarted = 127;  // as shells have it
constexpr int kKilled = 128;      // plus the signal

/// A session of its own, so that it outlives this program; no input; signals as a program expects them.
bool Spawn(const std::vector<std::string>& command, const std::filesystem::path& folder, pid_t& child) {
    std::vector<char*> arguments;
    arguments.reserve(command.size() + 1);
    for (const std::string& argument : command) arguments.push_back(const_cast<char*>(argument.c_str()));
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawnattr_t attributes;
    posix_spawn_file_actions_init(&actions);
    posix_spawnattr_init(&attributes);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    std::error_code ignored;
    for (const std::filesystem::path& place : {folder, HomeFolder()}) {
        if (place.empty() || !std::filesystem::is_directory(place, ignored)) continue;
        posix_spawn_file_actions_addchdir_np(&actions, place.c_str());
        break;
    }
    sigset_t none;
    sigset_t all;
    sigemptyset(&none);
    sigfillset(&all);
    posix_spawnattr_setsigmask(&attributes, &none);
    posix_spawnattr_setsigdefault(&attributes, &all);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    const int error = posix_spawn(&child, arguments[0], &actions, &attributes, arguments.data(), environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    return error == 0;
}

/// Takes in how a program has ended. It goes with it, or with this program.
class Watch : public QObject {
  public:
    Watch(pid_t child, Launcher::EndedBadly endedBadly)
        : QObject(QCoreApplication::instance()),
          m_child(child),
          m_endedBadly(std::move(endedBadly)),
          m_handle(static_cast<int>(syscall(SYS_pidfd_open, child, 0))) {
        m_running.start();
        if (m_handle) {
            m_ended.emplace(m_handle.Descriptor(), QSocketNotifier::Read);
            connect(&*m_ended, &QSocketNotifier::activated, this, [this] { Look(); });
        } else {  // an older kernel
            connect(&m_turns, &QTimer::timeout, this, [this] { Look(); });
            m_turns.start(kLookMilliseconds);
        }
    }

  private:
    void Look() {
        int status = 0;
        if (waitpid(m_child, &status, WNOHANG) == 0) return;
        if (m_ended) m_ended->setEnabled(false);
        m_turns.stop();
        deleteLater();
        const int exitStatus = WIFSIGNALED(status) ? kKilled + WTERMSIG(status) : WEXITSTATUS(status);
        if (exitStatus != 0 && m_running.elapsed() < kSoonMilliseconds) m_endedBadly(exitStatus);
    }

    pid_t m_child;
    Launcher::EndedBadly m_endedBadly;
    PosixFile m_handle;
    std::optional<QSocketNotifier> m_ended;
    QTimer m_turns;
    QElapsedTimer m_running;
};

}  // namespace

void StartProgram(const std::vector<std::string>& command, const std::filesystem::path& folder,
                  Launcher::EndedBadly endedBadly) {
    pid_t child = 0;
    if (!command.empty() && Spawn(command, folder, child)) {
        new Watch(child, std::move(endedBadly));  // goes by itself
    } else {
        endedBadly(kNotStarted);
    }
}

}  // namespace quillary
