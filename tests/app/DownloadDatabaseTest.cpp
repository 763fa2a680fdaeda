// "Download Database ...", against a server on this machine.
#include <QAction>
#include <QElapsedTimer>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>
#include <QTreeWidget>
#include <deque>

#include "admin/Settings.h"
#include "platform/http/CurlSession.h"
#include "tests/fakes/ScriptedServer.h"
#include "tests/ui/WindowTest.h"
#include "ui/OpenDialog.h"

namespace quillary {
namespace {

using Answer = ScriptedServer::Answer;

constexpr int kSearch = 203;
constexpr int kResults = 205;
constexpr int kInformation = 212;
constexpr int kProgress = 213;
constexpr int kSaveToPath = 214;
constexpr char kSearching[] = "Searching the catalogue...";
constexpr char kSure[] = "Are you sure you want to cancel the download?";
constexpr char kNotThere[] = "No results returned.\nThe server answers with status 404.";
constexpr char kOneFile[] = "0:0:1:peo:ple^!d^!7^!pdb^!0.3^!";
constexpr char kHalf[] = "HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\nhalf";

QString Text(const CQuillaryDialog& page, int label) { return page.Control<QLabel>(label)->text(); }
QPlainTextEdit* Edit(const CQuillaryDialog& page) { return page.Control<QPlainTextEdit>(1005); }
QTreeWidget* List(const CQuillaryDialog& page) { return page.Control<QTreeWidget>(1017); }

/// The rows from top to bottom, a whole or half tick in front of them.
std::string Rows(const CQuillaryDialog& page) {
    QStringList rows;
    for (QTreeWidgetItemIterator at(List(page)); *at; ++at) {
        const char* const ticks[] = {"", "~", "+"};
        rows << QLatin1String(ticks[(*at)->checkState(0)]) + (*at)->text(0) + u'/' + (*at)->text(1);
    }
    return rows.join(u' ').toStdString();
}

class DownloadDatabaseTest : public WindowTest {
  protected:
    DownloadDatabaseTest() {
        qApp->removeEventFilter(&user);  // transfers come to their ends by themselves; this user looks where they are
        settings.texts.emplace(kCatalogueServer, server.Address());
        settings.texts.emplace(kDownloadServer, server.Address());
        settings.numbers.emplace(kMaxRemoteResults, 3);
        openHttp = [] { return std::make_unique<CurlSession>(); };
        ImageParts other = PeopleParts();
        other.name = "Other";
        files.contents["/o/other.pdb"] = other.Build();
        app.InitInstance({});
    }
    /// Chooses the command and takes the steps, each as soon as it can be taken.
    void Download() {
        m_sinceStep.start();
        Poll();
        ChooseMenu("Tools", "Download Database ...");
        EXPECT_TRUE(m_steps.empty()) << m_steps.size() << " steps were not reached";
        m_steps.clear();
    }
    void When(std::function<bool()> ready, std::function<void()> act) {
        m_steps.emplace_back(std::move(ready), std::move(act));
    }
    void OnPage(int id, const std::function<void(CQuillaryDialog&)>& act) {
        When([this, id] { return Page(id) && !QApplication::activeModalWidget(); },
             [this, id, act] { act(*Page(id)); });
    }
    void ClickOn(int id, int control) {
        OnPage(id, [control](CQuillaryDialog& page) { Press(page, control); });
    }
    /// `text` with the details in a line of their own.
    void OnBox(const QString& text, const QString& button) {
        When([text] { return Box(text) != nullptr; },
             [text, button] {
                 for (QAbstractButton* one : Box(text)->buttons()) {
                     if (one->text().remove(u'&') == button) return one->click();
                 }
             });
    }
    /// Once the download shows these two lines.
    void OnProgress(const QString& status, const QString& file, const std::function<void(CQuillaryDialog&)>& act) {
        const auto isThere = [this, status, file] {
            const CQuillaryDialog* page = QApplication::activeModalWidget() ? nullptr : Page(kProgress);
            return page && Text(*page, 1061) == status && Text(*page, 1062) == file;
        };
        When(isThere, [this, act] { act(*Page(kProgress)); });
    }
    /// Ticks the first results and begins.
    void TickAndBegin(int count) {
        OnPage(kResults, [count](CQuillaryDialog& page) {
            for (int i = 0; i < count; ++i) {
                QTest::keyClick(List(page), Qt::Key_Space);
                QTest::keyClick(List(page), Qt::Key_Down);
            }
            QTest::keyClick(List(page), Qt::Key_Return);
        });
    }
    void FinishDownload(const QString& summary) {
        OnProgress("Download Complete.", "", [summary](CQuillaryDialog& page) {
            EXPECT_EQ(Text(page, 1063), summary);
            QTest::keyClick(page.Control<QWidget>(kOkButton), Qt::Key_Return);
        });
    }
    [[nodiscard]] CQuillaryDialog* Page(int id) {
        auto* page = app.Frame().findChild<CQuillaryDialog*>(QString::number(id));
        return page && page->isVisible() ? page : nullptr;
    }
    [[nodiscard]] static QMessageBox* Box(const QString& text) {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (!box) return nullptr;
        const QString details = box->informativeText();
        return (details.isEmpty() ? box->text() : box->text() + u'\n' + details) == text ? box : nullptr;
    }
    /// What there is besides the other database.
    [[nodiscard]] std::string Saved() const {
        std::string all;
        for (const auto& [path, content] : files.contents) {
            if (path != "/o/other.pdb") all += path + " ";
        }
        return all;
    }
    [[nodiscard]] Answer AnswerOf(const std::string& request) const {
        for (const auto& [part, body] : answers) {
            if (request.find(part) != std::string::npos) return {ScriptedServer::Ok(body)};
        }
        return {"HTTP/1.1 404 Not Found\r\n\r\n"};
    }

    // By a part of the request's line; the first one counts.
    std::vector<std::pair<std::string, std::string>> answers;
    std::function<Answer(const std::string&)> script = [this](const std::string& r) { return AnswerOf(r); };
    ScriptedServer server{[this](const std::string& request) { return script(request); }};

  private:
    void Poll() {
        QTimer::singleShot(5, &app.Frame(), [this] {
            if (m_steps.empty()) return;
            if (m_sinceStep.elapsed() > 5000) {
                ADD_FAILURE() << "waited in vain";
                if (!OpenDialog::All().empty()) OpenDialog::All().back()->reject();
            }
            Poll();
            if (!m_steps.front().first()) return;
            const auto act = std::move(m_steps.front().second);
            m_steps.pop_front();
            m_sinceStep.start();
            act();
        });
    }
    std::deque<std::pair<std::function<bool()>, std::function<void()>>> m_steps;
    QElapsedTimer m_sinceStep;
};

TEST_F(DownloadDatabaseTest, OneFileOpens) {
    answers = {{"qly_search", kOneFile}, {"download_file", PeopleParts().Build()}};
    OnPage(kSearch, [](CQuillaryDialog& page) {
        Edit(page)->setPlainText(u"\u017bubr"_qs);
        QTest::keyClick(Edit(page), Qt::Key_Return);
    });
    OnBox(u"The code page lacks these characters, so they cannot be searched for: \u017b"_qs, "OK");
    OnPage(kSearch, [](CQuillaryDialog& page) {
        Edit(page)->setPlainText(u"caf\u00e9\u00ff"_qs);
        page.Control<QComboBox>(1002)->setCurrentText("Palm-Related");
        QTest::keyClick(Edit(page), Qt::Key_Return);
    });
    TickAndBegin(1);
    ClickOn(kSaveToPath, kOkButton);
    FinishDownload("Saved in /nowhere");
    Download();
    EXPECT_EQ(Title(), "People");
    EXPECT_EQ(Saved(), "/nowhere/peo_ple.pdb ");
    EXPECT_EQ(server.Requests(), (std::vector<std::string>{"/wireless/?screen=qly_search&start=0&size=3&title=caf%E9%FF"
                                                           "&category=palm-related",
                                                           "/?global_op=download_file&file_id=7"}));
}

TEST_F(DownloadDatabaseTest, ResultsAreASortedTreeToTick) {
    answers = {{"start=0", "0:2:5:B^!d1^!1^!pdb^!10^!a^!d2^!2^!pdb^!9^!pack^!d3^!3^!zip^!1^!"},
               {"start=3", "3:3:5:c^!d4^!4^!pdb^!0.5^!"},
               {"start=4", "4:3:4:"},  // one has gone meanwhile
               {"qly_detail", "Ann^!^!Two\nlines^!^!^!^!4.5^!9^!"},
               {"qly_view_zip", "0:1:2:y.pdb^!/p/y^!1^!file^!1.25^!x.txt^!/p/x^!2^!file^!2^!"},
               {"file_id=1", "B's bytes"},
               {"/p/y", "y's bytes"}};
    ClickOn(kSearch, kOkButton);
    OnPage(kResults, [](CQuillaryDialog& page) {
        const char* const kSorted[] = {"a/9 B/10 pack/1", "pack/1 a/9 B/10"};
        QHeaderView& header = *List(page)->header();
        EXPECT_EQ(Text(page, 1058), "Downloaded 3 of 5 results.");
        EXPECT_EQ(Rows(page), "B/10 a/9 pack/1");
        for (const int column : {0, 1}) {
            const QPoint place(header.sectionViewportPosition(column) + 8, 5);
            QTest::mouseClick(header.viewport(), Qt::LeftButton, {}, place);
            EXPECT_EQ(Rows(page), kSorted[column]);
        }
        List(page)->actions().last()->trigger();
        EXPECT_EQ(header.sortIndicatorOrder(), Qt::DescendingOrder) << "without a mouse, too";
        Press(page, ID_RESULTS_NEXT);
        EXPECT_EQ(Text(page, 1058), "Downloaded 4 of 5 results.");
        EXPECT_EQ(Rows(page), "B/10 a/9 pack/1 c/0.5");
        Press(page, ID_RESULTS_NEXT);
    });
    OnBox("No results returned.", "OK");
    OnPage(kResults, [](CQuillaryDialog& page) {
        EXPECT_EQ(Text(page, 1058), "Downloaded 4 of 4 results.");
        EXPECT_FALSE(page.Control<QWidget>(ID_RESULTS_NEXT)->isEnabled());
        Press(page, ID_RESULTS_INFORMATION);
    });
    OnPage(kInformation, [](CQuillaryDialog& page) {
        auto* edit = page.Control<QPlainTextEdit>(1059);
        EXPECT_EQ(edit->toPlainText(), "Author: Ann\n\nRating: 4.50\n\n# Downloads: 9\n\nDescription: Two\nlines\n\n");
        QTest::keyClick(edit, Qt::Key_Return);
    });
    OnPage(kResults, [](CQuillaryDialog& page) {
        List(page)->setCurrentItem(List(page)->topLevelItem(2));
        for (const auto key : {Qt::Key_Space, Qt::Key_Right}) QTest::keyClick(List(page), key);
    });
    When([this] { return List(*Page(kResults))->topLevelItem(2)->childCount() == 2; },
         [this] {
             const CQuillaryDialog& page = *Page(kResults);
             EXPECT_EQ(Rows(page), "B/10 a/9 +pack/3.2 +x.txt/2 +y.pdb/1.25 c/0.5");
             for (const auto key : {Qt::Key_Down, Qt::Key_Space}) QTest::keyClick(List(page), key);
             List(page)->setCurrentItem(List(page)->topLevelItem(0));
             QTest::keyClick(List(page), Qt::Key_Space);
             EXPECT_EQ(Rows(page), "+B/10 a/9 ~pack/3.2 x.txt/2 +y.pdb/1.25 c/0.5");
             QTest::keyClick(List(page), Qt::Key_Return);
         });
    ClickOn(kSaveToPath, kOkButton);
    FinishDownload("Saved in /nowhere");
    Download();
    EXPECT_EQ(Saved(), "/nowhere/B.pdb /nowhere/y.pdb ");
    EXPECT_EQ(Title(), "Quillary") << "of several none opens";
}

TEST_F(DownloadDatabaseTest, WhatYieldsNothingSaysWhyAndNewSearchBeginsAnew) {
    const std::pair<const char*, const char*> kAnswers[] = {
        {kNotThere, nullptr}, {"No results returned.", "0:-1:0:"}, {nullptr, "0:0:1:p^!e^!8^!zip^!1^!"}};
    for (const auto& [told, answer] : kAnswers) {
        OnPage(kSearch, [this, answer = answer](CQuillaryDialog& page) {
            if (answer) answers = {{"qly_search", answer}};
            Edit(page)->setPlainText("tea");
            Press(page, kOkButton);
        });
        if (told) OnBox(told, "OK");
    }
    OnPage(kResults, [](CQuillaryDialog& page) { QTest::keyClick(List(page), Qt::Key_Right); });
    OnBox(kNotThere, "OK");
    OnPage(kResults, [](CQuillaryDialog& page) {
        EXPECT_FALSE(List(page)->topLevelItem(0)->isExpanded());
        Press(page, ID_RESULTS_NEW_SEARCH);
    });
    OnPage(kSearch, [](CQuillaryDialog& page) {
        EXPECT_EQ(Edit(page)->toPlainText(), "tea");
        QTest::keyClick(Edit(page), Qt::Key_Escape);
    });
    Download();
    EXPECT_EQ(server.Requests()[1], "/wireless/?screen=qly_search&start=0&size=3&title=tea");
}

TEST_F(DownloadDatabaseTest, TheEndTellsWhatCouldNotBeFetchedAndOpeningWhatIsNoDatabase) {
    answers = {{"qly_search", "0:2:3:one^!d^!1^!pdb^!1^!two^!d^!2^!pdb^!1^!pack^!e^!3^!zip^!1^!"},
               {"file_id=2", "no database"}};
    ClickOn(kSearch, kOkButton);
    TickAndBegin(3);
    ClickOn(kSaveToPath, kCancelButton);
    FinishDownload("\"pack\" was not fetched: the server answers with status 404.");
    OnPage(kResults, [](CQuillaryDialog& page) {
        EXPECT_EQ(Rows(page), "+one/1 +two/1 +pack/1");
        QTest::keyClick(List(page), Qt::Key_Return);
    });
    ClickOn(kSaveToPath, kOkButton);
    FinishDownload(
        "2 files were not fetched, the first one \"pack\": the server answers with status 404.\n"
        "The other file was saved in /nowhere");
    OnBox("Invalid database file.\ntwo.pdb: This is no database.", "OK");
    Download();
    EXPECT_EQ(Saved(), "/nowhere/two.pdb ");
}

TEST_F(DownloadDatabaseTest, TheWindowLivesWhileTheServerThinksAndCancelBreaksTheSearchOff) {
    Answer answer = {ScriptedServer::Ok(kOneFile), 1500, false};
    script = [&](const std::string&) { return answer; };
    ClickOn(kSearch, kOkButton);
    When([] { return Box(kSearching) != nullptr; }, [&] { answer = {kHalf, 0, true}; });
    ClickOn(kResults, ID_RESULTS_NEW_SEARCH);
    ClickOn(kSearch, kOkButton);
    OnBox(kSearching, "Cancel");
    OnPage(kSearch, [&](CQuillaryDialog& page) {
        answer = {ScriptedServer::Ok(kOneFile)};
        Press(page, kOkButton);
    });
    ClickOn(kResults, kCancelButton);
    Download();
    EXPECT_EQ(server.Requests().size(), 3U);
}

TEST_F(DownloadDatabaseTest, CancelAsksAndWaitsForTheFileASecondOneDoesNot) {
    answers = {{"qly_search", "0:2:3:one^!d^!1^!pdb^!1^!two^!d^!2^!pdb^!1^!three^!d^!3^!pdb^!1^!"}, {"file_id=1", "1"}};
    script = [this](const std::string& r) {
        return r.find("file_id=2") == std::string::npos ? AnswerOf(r) : Answer{kHalf, 0, true};
    };
    const auto cancel = [](CQuillaryDialog& page) { QTest::keyClick(&page, Qt::Key_Escape); };
    ClickOn(kSearch, kOkButton);
    TickAndBegin(3);
    ClickOn(kSaveToPath, kOkButton);
    OnProgress("Downloading:", "two", [&](CQuillaryDialog& page) {
        const auto* bar = page.Control<QProgressBar>(1060);
        EXPECT_EQ(std::pair(bar->value(), bar->maximum()), std::pair(2, 3));
        cancel(page);
    });
    OnBox(kSure, "No");
    OnProgress("Downloading:", "two", cancel);
    OnBox(kSure, "Yes");
    OnProgress("Cancelling download.", "Please stand by.", cancel);
    OnPage(kResults, [](CQuillaryDialog& page) {
        EXPECT_EQ(Rows(page), "one/1 +two/1 +three/1") << "what is there is ticked no more";
        Press(page, kCancelButton);
    });
    Download();
    EXPECT_EQ(Saved(), "/nowhere/one.pdb ");
    EXPECT_EQ(Title(), "Quillary") << "nothing opens after a Cancel";
}

TEST_F(DownloadDatabaseTest, TheFolderIsNotAskedForOverAnOpenQuestion) {
    answers = {{"qly_search", "0:0:1:pack^!d^!1^!zip^!1^!"}, {"qly_view_zip", "0:0:1:x^!/p/x^!1^!f^!1^!"}};
    script = [this](const std::string& r) {
        return Answer{AnswerOf(r).bytes, r.find("zip") == std::string::npos ? 0 : 200};
    };
    ClickOn(kSearch, kOkButton);
    TickAndBegin(1);
    ClickOn(kProgress, kCancelButton);
    // The wish for a folder comes right behind the number of files.
    When([this] { return Box(kSure) && Page(kProgress)->Control<QProgressBar>(1060)->maximum() == 1; },
         [] { QTest::qWait(20); });
    OnBox(kSure, "No");
    ClickOn(kSaveToPath, kCancelButton);
    FinishDownload("No file was downloaded.");
    ClickOn(kResults, kCancelButton);
    Download();
}

TEST_F(DownloadDatabaseTest, AnotherFileOrTheEndOfTheProgramComesAtAnyStage) {
    enum Stage { Searching, Results, Asking, Downloading, Sure };
    for (const bool closes : {false, true}) {
        for (const int stage : {Searching, Results, Asking, Downloading, Sure}) {
            SCOPED_TRACE(::testing::Message() << "stage " << stage << (closes ? ", close" : ", another file"));
            app.CloseDocument();
            app.Frame().show();
            answers = {{"qly_search", kOneFile}};
            script = [=, this](const std::string& request) {
                const bool isSearch = request.find("qly_search") != std::string::npos;
                return isSearch && stage != Searching ? AnswerOf(request) : Answer{kHalf, 0, true};
            };
            ClickOn(kSearch, kOkButton);
            if (stage > Results) TickAndBegin(1);
            if (stage > Asking) {
                ClickOn(kSaveToPath, kOkButton);
                OnProgress("Downloading:", "peo:ple", [stage](CQuillaryDialog& page) {
                    if (stage == Sure) QTest::keyClick(&page, Qt::Key_Escape);
                });
            }
            const auto isThere = [this, stage] {
                if (stage == Searching || stage == Sure) return Box(stage == Sure ? kSure : kSearching) != nullptr;
                return Page(stage == Results ? kResults : stage == Asking ? kSaveToPath : kProgress) != nullptr;
            };
            When(isThere, [this, closes] {
                closes ? void(app.Frame().close()) : app.HandOver().Receive({"/o/other.pdb", {}});
            });
            if (stage == Asking || stage == Downloading) OnBox(kSure, "Yes");
            Download();
            EXPECT_TRUE(QTest::qWaitFor([&] { return closes ? !app.Frame().isVisible() : Title() == "Other"; }));
            EXPECT_EQ(Saved(), "");
        }
    }
}

}  // namespace
}  // namespace quillary
