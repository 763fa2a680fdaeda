// Hands files and links to the desktop's other programs.
#pragma once

#include <filesystem>
#include <functional>
#include <string>

class QWindow;

namespace quillary {

class Launcher {
  public:
    using Failed = std::function<void()>;
    /// Called on the interface thread, perhaps later, with the exit status of a program that has failed soon after its
    /// start; 127 when it could not be started. A program that is still there after a while has done its work.
    using EndedBadly = std::function<void(int exitStatus)>;
    enum class Program { None, Missing, There };
    enum class Bluetooth { NoAdapter, NoProgram, There };

    virtual ~Launcher() = default;
    /// Shows the file in its folder, in the desktop's file manager. Returns at once; `failed` is called on the
    /// interface thread, perhaps later, when there is none.
    virtual void ShowInFolder(const std::filesystem::path& file, Failed failed) = 0;
    /// Opens a link (percent-encoded, of any scheme, file: too) in the desktop's program for it. False when there is
    /// none.
    [[nodiscard]] virtual bool OpenLink(const std::string& link) = 0;

    /// Whether the desktop names a program for links of that scheme, and whether it is installed.
    [[nodiscard]] virtual Program ProgramFor(const std::string& scheme) = 0;
    /// Starts the desktop's program for the link's scheme, with the link, as it is, as one argument.
    virtual void StartProgramFor(const std::string& link, EndedBadly endedBadly) = 0;

    /// Opens a new mail with the file attached. Returns at once; `failed` is called on the interface thread, perhaps
    /// later, when no mail program takes it. `window` is the one that asks, or null.
    virtual void SendByMail(const std::filesystem::path& file, QWindow* window, Failed failed) = 0;
    [[nodiscard]] virtual Bluetooth BluetoothState() = 0;
    /// Lets the user choose a device that gets the file.
    virtual void SendByBluetooth(const std::filesystem::path& file, EndedBadly endedBadly) = 0;
};

}  // namespace quillary
