// Runs the real qly as a process, in a folder of its own that is also its home.
#pragma once

#include <gmock/gmock.h>

#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "tests/fakes/TestDatabase.h"

namespace quillary {

using Json = nlohmann::json;
using ::testing::HasSubstr;

struct QlyResult {
    int status = -1;  // 128 + the signal for one that was killed
    std::string out;
    std::string err;
};

/// What a process gets besides its arguments.
struct QlySurroundings {
    std::string input = {};
    std::map<std::string, std::string> environment = {};
    std::string output = {};  // a device instead of a file; "-" closes standard output, "|" is a pipe that nobody reads
};

/// A row of a table of calls: what is given, and what comes of it.
struct Call {
    const char* why;
    std::vector<std::string> arguments;
    int status;
    std::string message;  // a part of the one line on standard error; empty: there is none
    std::string output = {};
    QlySurroundings surroundings = {};
};

class QlyTest : public ::testing::Test {
  public:
    QlyTest();
    ~QlyTest() override;

  protected:
    QlyResult Qly(const std::vector<std::string>& arguments, const QlySurroundings& surroundings = {});
    /// The output of a call that must succeed.
    std::string Output(const std::vector<std::string>& arguments, const QlySurroundings& surroundings = {});
    Json JsonOf(const std::vector<std::string>& arguments) { return Json::parse(Output(arguments)); }
    /// The stored texts of the shown records, a JSON array a line.
    std::string Stored(const std::string& file) { return Output({"list", file, "--stored", "--format", "jsonl"}); }

    /// Makes each call, with `prefix` ahead of its arguments, and looks at everything that it leaves.
    void Expect(const std::vector<std::string>& prefix, const std::vector<Call>& calls);

    void Write(const std::string& name, const std::string& bytes);
    void Write(const std::string& name, const ImageParts& parts) { Write(name, parts.Build()); }
    void Remove(const std::string& name);
    /// Leaves a copy where qly looks for the one of the database `name`.
    void WriteRecovery(const std::string& name, const std::string& bytes);
    [[nodiscard]] std::string PathOf(const std::string& name) const { return m_folder + "/" + name; }
    [[nodiscard]] std::string Read(const std::string& name) const;
    [[nodiscard]] bool Exists(const std::string& name) const;
    /// The files that the test or qly put into the folder, with what they hold.
    [[nodiscard]] std::map<std::string, std::string> Files() const;

  private:
    std::string m_folder;
};

}  // namespace quillary
