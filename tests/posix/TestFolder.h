// A folder for one test's files, environment variables for its duration, and a process without root's rights.
#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <iterator>
#include <optional>
#include <string>

#include "db/FileAccess.h"

namespace quillary {

class TestFolder {
  public:
    TestFolder() {
        std::string name = testing::TempDir() + "quillary-XXXXXX";
        m_path = std::filesystem::canonical(mkdtemp(name.data()));
    }
    ~TestFolder() { std::filesystem::remove_all(m_path); }
    TestFolder(const TestFolder&) = delete;
    TestFolder& operator=(const TestFolder&) = delete;

    [[nodiscard]] const Path& Root() const { return m_path; }
    [[nodiscard]] Path operator/(const char* name) const { return m_path / name; }
    Path Write(const char* name, std::string_view bytes) const {
        const Path path = m_path / name;
        std::filesystem::create_directories(path.parent_path());
        std::ofstream(path, std::ios::binary | std::ios::trunc) << bytes;
        return path;
    }

  private:
    Path m_path;
};

// Runs `test` in a process of its own, without the rights that root has over everyone's files; true when it says so.
template <class Test>
bool AsOrdinaryUser(Test test) {
    const pid_t child = fork();
    if (child == 0) {
        const bool dropped = geteuid() != 0 || (setgid(65534) == 0 && setuid(65534) == 0);
        _exit(dropped && test() ? 0 : 1);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

inline std::string FileBytes(const Path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

class Environment {
  public:
    /// A null `value` unsets the variable.
    Environment(const char* name, const char* value) : m_name(name) {
        if (const char* before = getenv(name)) m_before = before;
        Set(value);
    }
    ~Environment() { Set(m_before ? m_before->c_str() : nullptr); }
    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;

  private:
    void Set(const char* value) { value ? setenv(m_name, value, 1) : unsetenv(m_name); }

    const char* m_name;
    std::optional<std::string> m_before;
};

}  // namespace quillary
