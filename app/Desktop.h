// What the system provides to the window.
#pragma once

#include <functional>
#include <memory>

#include "integration/PersonalStore.h"

namespace quillary {

class Clock;
class FileAccess;
class FolderWatcher;
class HttpSession;
class InputPanel;
class Launcher;
class RecentFiles;
class Settings;
class StorageLocations;
class Trash;
class UserLocale;

/// All of it outlives the application.
struct Desktop {
    FileAccess& files;
    const StorageLocations& locations;
    Settings& settings;
    Trash& trash;
    InputPanel& inputPanel;
    Settings& windowSettings;  // where and how large the window was
    RecentFiles& recentFiles;
    FolderWatcher& folderWatcher;  // for the list of databases
    FolderWatcher& fileWatcher;    // for the open one
    Launcher& launcher;
    const Clock& clock;
    const UserLocale& locale;
    PersonalStoreFactory makePersonalStore = {};
    std::function<std::unique_ptr<HttpSession>()> openHttp = {};  // may give none
};

}  // namespace quillary
