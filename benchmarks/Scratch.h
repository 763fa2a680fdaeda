// What every benchmark of files needs: a folder that goes with the program, and a way out when something is not as it
// should be.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>

#include "db/QuillaryDoc.h"

namespace quillary {

[[noreturn]] inline void GiveUp(const std::string& what) {
    std::fprintf(stderr, "benchmark: %s\n", what.c_str());
    std::_Exit(1);
}

inline void Require(bool done, const std::string& what) {
    if (!done) GiveUp(what);
}

// A folder of its own that goes with the object.
class ScratchFolder {
  public:
    explicit ScratchFolder(const Path& parent) {
        std::string name = parent / "quillary-bench-XXXXXX";
        Require(mkdtemp(name.data()), "cannot make a folder for its files");
        m_path = name;
    }
    ~ScratchFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;
    [[nodiscard]] const Path& Name() const { return m_path; }

  private:
    Path m_path;
};

class NoQuestions : public Questions {
  public:
    void Tell(const Failure& failure) override { GiveUp(failure.text); }
    bool AskDatabasePassword(const CQuillaryDoc&) override { return false; }
};

inline void OpenTable(CQuillaryDoc& doc, const Path& path, OpenMode mode) {
    NoQuestions questions;
    Require(doc.OpenDatabase(path, mode, questions), "the table does not open");
}

}  // namespace quillary
