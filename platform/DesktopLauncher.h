// The desktop's programs, asked over its session bus and by its table of programs.
#pragma once

#include <utility>

#include "platform/Launcher.h"

namespace quillary {

class DesktopLauncher : public Launcher {
  public:
    /// `bluetoothAdapters`: where the system lists them.
    explicit DesktopLauncher(std::filesystem::path bluetoothAdapters = "/sys/class/bluetooth")
        : m_bluetoothAdapters(std::move(bluetoothAdapters)) {}

    void ShowInFolder(const std::filesystem::path& file, Failed failed) override;
    bool OpenLink(const std::string& link) override;
    Program ProgramFor(const std::string& scheme) override;
    void StartProgramFor(const std::string& link, EndedBadly endedBadly) override;
    void SendByMail(const std::filesystem::path& file, QWindow* window, Failed failed) override;
    Bluetooth BluetoothState() override;
    void SendByBluetooth(const std::filesystem::path& file, EndedBadly endedBadly) override;

  private:
    std::filesystem::path m_bluetoothAdapters;
};

/// "file:///home/ann/My%20Lists": also for a name that is no valid text.
[[nodiscard]] std::string FileLink(const std::filesystem::path& path);

}  // namespace quillary
