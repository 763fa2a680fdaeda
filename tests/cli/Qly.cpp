#include "tests/cli/Qly.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "platform/posix/PosixFileAccess.h"

namespace quillary {
namespace {

namespace fs = std::filesystem;
constexpr const char* kOwnFolder = ".qly";  // home, and the streams of the last call

std::string ReadFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void WriteFile(const std::string& path, const std::string& bytes) {
    std::ofstream(path, std::ios::binary | std::ios::trunc) << bytes;
}

void Redirect(int stream, const std::string& path, int flags) {
    const int file = ::open(path.c_str(), flags, 0600);
    if (file < 0 || ::dup2(file, stream) < 0) ::_exit(99);
}

void RedirectOutput(const std::string& output, const std::string& file) {
    if (output == "-") {
        ::close(STDOUT_FILENO);
    } else if (output == "|") {
        int ends[2];
        if (::pipe(ends) != 0 || ::dup2(ends[1], STDOUT_FILENO) < 0) ::_exit(99);
        ::close(ends[0]);
    } else {
        Redirect(STDOUT_FILENO, output.empty() ? file : output, O_WRONLY | O_CREAT | O_TRUNC);
    }
}

}  // namespace

QlyTest::QlyTest() {
    std::string pattern = fs::temp_directory_path() / "qly-test-XXXXXX";
    m_folder = ::mkdtemp(pattern.data());
    fs::create_directory(PathOf(kOwnFolder));
}

QlyTest::~QlyTest() { fs::remove_all(m_folder); }

QlyResult QlyTest::Qly(const std::vector<std::string>& arguments, const QlySurroundings& surroundings) {
    const std::string own = PathOf(kOwnFolder);
    WriteFile(own + "/in", surroundings.input);
    WriteFile(own + "/out", "");
    const pid_t child = ::fork();
    if (child == 0) {
        Redirect(STDIN_FILENO, own + "/in", O_RDONLY);
        Redirect(STDERR_FILENO, own + "/err", O_WRONLY | O_CREAT | O_TRUNC);
        RedirectOutput(surroundings.output, own + "/out");
        if (::chdir(m_folder.c_str()) != 0) ::_exit(99);
        for (const char* name : {"QLY_PASSWORD", "LC_ALL", "LC_TIME", "LANG", "NO_COLOR", "DBUS_SESSION_BUS_ADDRESS"}) {
            ::unsetenv(name);
        }
        for (const char* name : {"HOME", "XDG_STATE_HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME"}) {
            ::setenv(name, own.c_str(), 1);
        }
        for (const auto& [name, value] : surroundings.environment) ::setenv(name.c_str(), value.c_str(), 1);
        std::vector<char*> words{const_cast<char*>("qly")};
        for (const std::string& argument : arguments) words.push_back(const_cast<char*>(argument.c_str()));
        words.push_back(nullptr);
        ::execv(QLY_PROGRAM, words.data());
        ::_exit(99);
    }
    int state = 0;
    ::waitpid(child, &state, 0);
    return {WIFEXITED(state) ? WEXITSTATUS(state) : 128 + WTERMSIG(state), ReadFile(own + "/out"),
            ReadFile(own + "/err")};
}

std::string QlyTest::Output(const std::vector<std::string>& arguments, const QlySurroundings& surroundings) {
    const QlyResult result = Qly(arguments, surroundings);
    EXPECT_EQ(0, result.status) << ::testing::PrintToString(arguments) << result.err;
    EXPECT_EQ("", result.err) << ::testing::PrintToString(arguments);
    return result.out;
}

void QlyTest::Expect(const std::vector<std::string>& prefix, const std::vector<Call>& calls) {
    for (const Call& call : calls) {
        std::vector<std::string> arguments = prefix;
        arguments.insert(arguments.end(), call.arguments.begin(), call.arguments.end());
        const auto before = Files();
        const QlyResult result = Qly(arguments, call.surroundings);
        EXPECT_EQ(call.status, result.status) << call.why << "\n" << result.err;
        EXPECT_EQ(call.output, result.out) << call.why;
        EXPECT_NE(std::string::npos, result.err.find(call.message)) << call.why << "\n" << result.err;
        const bool oneLine = result.err.starts_with("qly: ") && result.err.find('\n') == result.err.size() - 1;
        EXPECT_TRUE(call.message.empty() ? result.err.empty() : oneLine) << call.why << "\n" << result.err;
        EXPECT_TRUE(call.status == 0 || before == Files()) << call.why;
    }
}

void QlyTest::Write(const std::string& name, const std::string& bytes) { WriteFile(PathOf(name), bytes); }

void QlyTest::Remove(const std::string& name) { fs::remove(PathOf(name)); }

void QlyTest::WriteRecovery(const std::string& name, const std::string& bytes) {
    ::setenv("XDG_STATE_HOME", PathOf(kOwnFolder).c_str(), 1);
    PosixFileAccess files;
    FileError error;
    ASSERT_TRUE(files.WriteRecovery(files.RecoveryPath(PathOf(name)), bytes, "", error)) << error.reason;
}

std::string QlyTest::Read(const std::string& name) const { return ReadFile(PathOf(name)); }

bool QlyTest::Exists(const std::string& name) const { return fs::exists(PathOf(name)); }

std::map<std::string, std::string> QlyTest::Files() const {
    std::map<std::string, std::string> files;
    for (const auto& entry : fs::directory_iterator(m_folder)) {
        if (entry.path().filename() != kOwnFolder) files[entry.path().filename()] = ReadFile(entry.path());
    }
    return files;
}

}  // namespace quillary
