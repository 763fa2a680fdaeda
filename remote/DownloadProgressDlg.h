// Downloads what is ticked, and shows how far that is.
#pragma once

#include <QEvent>
#include <future>
#include <memory>
#include <optional>
#include <vector>

#include "db/FileAccess.h"
#include "ui/QuillaryDialog.h"

class QLabel;
class QProgressBar;

namespace quillary {

class AnsiText;
class CRemoteCatalog;
class DownloadRun;
class StorageLocations;

/// Where downloads go. All outlive the dialog.
struct DownloadPlace {
    FileAccess& files;
    const StorageLocations& locations;
    const AnsiText& page;  // the catalogue's code page
};

/// OK closes it when all is done.
class CDownloadProgressDlg : public CQuillaryDialog {
  public:
    CDownloadProgressDlg(CRemoteCatalog& catalog, const DownloadPlace& place, FrameWindow& frame);
    ~CDownloadProgressDlg() override;

    /// After the end, however it came: the files that are there now.
    [[nodiscard]] const std::vector<Path>& Kept() const;

    /// While it runs, only after the question of Cancel.
    [[nodiscard]] bool MayBeLeft() override { return m_state != State::Running || m_isAsking || IsSureToCancel(); }
    /// Without a question: breaks off the file that is being written, waits for the download to end and closes.
    void reject() override;
    bool event(QEvent* event) override;

  protected:
    void Load() override;
    [[nodiscard]] bool Commit() override;
    void FocusFirst() override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    CDownloadProgressDlg(CRemoteCatalog& catalog, const DownloadPlace& place, FrameWindow& frame, QWidget* content);

    // On the download's thread.
    void Post(QEvent::Type message, std::size_t number = 0, const std::string& name = {});
    [[nodiscard]] std::optional<Path> WaitForFolder();

    void AskForFolder();
    void GiveFolder(std::optional<Path> folder);
    /// The user's Cancel: a question, then the file that is being written is finished. The next one breaks it off.
    void AskToCancel();
    [[nodiscard]] bool IsSureToCancel();
    void BeginCancelling();
    void Finish();
    [[nodiscard]] QString Summary() const;
    static void Show(QLabel& label, const QString& text);

    CRemoteCatalog& m_catalog;
    const DownloadPlace m_place;
    QLabel* m_status;
    QLabel* m_file;
    QProgressBar* m_bar;
    QLabel* m_summary;
    std::promise<std::optional<Path>> m_folder;
    bool m_isFolderGiven = false;
    bool m_isFolderWanted = false;  // while a question is open
    bool m_isAsking = false;
    enum class State { Running, Cancelling, Finished } m_state = State::Running;
    std::unique_ptr<DownloadRun> m_run;  // the last member: its thread uses the others
};

}  // namespace quillary
