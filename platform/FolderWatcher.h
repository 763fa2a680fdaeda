// Notices when something changes in folders.
#pragma once

#include <filesystem>
#include <functional>
#include <utility>
#include <vector>

namespace quillary {

class FolderWatcher {
  public:
    virtual ~FolderWatcher() = default;
    /// Watches these folders and no others; one that is not there is left out. False when the system watches no more of
    /// them.
    [[nodiscard]] virtual bool Watch(const std::vector<std::filesystem::path>& folders) = 0;

    /// Called on the interface thread after files in a watched folder came, went or were written, or a storage card
    /// came or went: once or often for one change.
    void OnChange(std::function<void()> changed) { m_changed = std::move(changed); }

  protected:
    void TellChange() const {
        if (m_changed) m_changed();
    }

  private:
    std::function<void()> m_changed;
};

}  // namespace quillary
