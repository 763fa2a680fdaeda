// What the system provides to the window.
#pragma once

namespace quillary {

class FileAccess;
class FolderWatcher;
class InputPanel;
class Launcher;
class RecentFiles;
class Settings;
class StorageLocations;
class Trash;

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
};

}  // namespace quillary
