// Keeps each item in a file of its own, for the programs that read such files: calendar/UID.ics and contacts/UID.vcf.
#pragma once

#include "platform/posix/ItemKeeper.h"
#include "platform/posix/XdgFolders.h"

namespace quillary {

class FileItemKeeper : public ItemKeeper {
  public:
    /// Files live below `dataFolder`/quillary.
    explicit FileItemKeeper(Path dataFolder = DataFolder()) : m_dataFolder(std::move(dataFolder)) {}
    ~FileItemKeeper() override;
    FileItemKeeper(const FileItemKeeper&) = delete;
    FileItemKeeper& operator=(const FileItemKeeper&) = delete;

    /// False for a user without a home.
    bool Create() override { return !m_dataFolder.empty(); }
    /// False when the folders cannot be made or written.
    bool LogOn() override;
    std::string Reason() const override { return m_reason; }
    bool KeepEvent(const std::string& text, const std::string& uid) override;
    bool KeepCard(const std::string& text, const std::string& uid) override;
    std::vector<Path> Files() const override { return m_files; }

  private:
    bool Keep(const Path& path, const std::string& text);

    Path m_dataFolder;
    std::vector<Path> m_files;
    std::string m_reason;
};

}  // namespace quillary
