#include "platform/DesktopRecentFiles.h"

#include <glib.h>
#include <glib/gstdio.h>

#include <cerrno>
#include <memory>

namespace quillary {

namespace {

constexpr char kMimeType[] = "application/x-quillary-database";
constexpr char kProgram[] = "Quillary";
constexpr char kCommand[] = "quillary %f";
constexpr gsize kMaxListSize = 8 << 20;  // reading a longer one would be felt
constexpr int kPrivateFolder = 0700;
constexpr int kPrivateFile = 0600;

struct Free {
    void operator()(char* text) const { g_free(text); }
    void operator()(GBookmarkFile* list) const { g_bookmark_file_free(list); }
};
using Text = std::unique_ptr<char, Free>;
using List = std::unique_ptr<GBookmarkFile, Free>;

// Null when there is a list that must not be replaced.
List Load(const char* file) {
    List list(g_bookmark_file_new());
    GStatBuf status;
    if (g_stat(file, &status) != 0) return errno == ENOENT ? std::move(list) : nullptr;
    if (status.st_size > static_cast<goffset>(kMaxListSize)) return nullptr;
    if (!g_bookmark_file_load_from_file(list.get(), file, nullptr)) return nullptr;
    return list;
}

}  // namespace

void DesktopRecentFiles::Add(const std::filesystem::path& path) {
    const Text uri(g_filename_to_uri(path.c_str(), nullptr, nullptr));
    if (!uri) return;
    const Text file(g_build_filename(g_get_user_data_dir(), "recently-used.xbel", nullptr));
    const List list = Load(file.get());
    if (!list || g_mkdir_with_parents(g_get_user_data_dir(), kPrivateFolder) != 0) return;
    g_bookmark_file_set_mime_type(list.get(), uri.get(), kMimeType);
    g_bookmark_file_add_application(list.get(), uri.get(), kProgram, kCommand);  // counts, and sets the time
    // What a person opens is nobody else's business.
    if (g_bookmark_file_to_file(list.get(), file.get(), nullptr)) g_chmod(file.get(), kPrivateFile);
}

}  // namespace quillary
