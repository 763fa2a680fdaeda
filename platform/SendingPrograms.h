// The programs that take a file to send: each has an option of its own for it.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "platform/Launcher.h"

namespace quillary {

/// How the mail program at `program` opens a mail with the file attached; empty for one that is not known.
[[nodiscard]] std::vector<std::string> MailCommand(const std::string& program, const std::filesystem::path& file);
/// That of the desktop's own mail program, else of one that is installed; empty without any.
[[nodiscard]] std::vector<std::string> FindMailCommand(const std::filesystem::path& file);

/// How an installed program asks for the device and sends the file by Bluetooth; empty without any.
[[nodiscard]] std::vector<std::string> FindBluetoothCommand(const std::filesystem::path& file);

/// `adapters` is the folder in which the system lists them.
[[nodiscard]] Launcher::Bluetooth FindBluetooth(const std::filesystem::path& adapters);

}  // namespace quillary
