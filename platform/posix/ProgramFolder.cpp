#include "platform/posix/ProgramFolder.h"

#include <filesystem>
#include <system_error>

namespace quillary {

Path CompanionPath(std::string_view name) {
    std::error_code error;
    const Path program = std::filesystem::read_symlink("/proc/self/exe", error);
    if (!program.is_absolute()) return {};
    const Path folder = program.parent_path();
    for (const Path& candidate : {folder / name, folder.parent_path() / "lib" / "quillary" / name}) {
        if (std::filesystem::is_regular_file(candidate, error)) return candidate;
    }
    return {};
}

}  // namespace quillary
