// The help book: every topic is there, and opens from where it belongs.
#include <QPushButton>
#include <QTextBlock>
#include <QTextBrowser>
#include <set>

#include "tests/ui/WindowTest.h"
#include "ui/HelpBook.h"
#include "ui/HelpTopics.h"

namespace quillary {
namespace {

class HelpTest : public WindowTest {
  protected:
    [[nodiscard]] QTextBrowser* Page() {
        for (QWidget* window : QApplication::topLevelWidgets()) {
            if (window->objectName() == QLatin1String("help") && window->isVisible()) {
                return window->findChild<QTextBrowser*>();
            }
        }
        return nullptr;
    }
    /// The line at the top of the page.
    [[nodiscard]] QString TopLine() {
        QTest::qWait(0);
        return Page() ? Page()->cursorForPosition({40, 8}).block().text() : QString();
    }
};

TEST_F(HelpTest, EveryTopicHasAnAnchorAndEveryLinkLeadsToOne) {
    CHelpBook book;
    std::set<QString> anchors;
    QStringList links;
    const QTextDocument* page = book.findChild<QTextBrowser*>()->document();
    for (QTextBlock block = page->begin(); block.isValid(); block = block.next()) {
        for (auto fragment = block.begin(); !fragment.atEnd(); ++fragment) {
            const QTextCharFormat format = fragment.fragment().charFormat();
            for (const QString& name : format.anchorNames()) {
                EXPECT_TRUE(anchors.insert(name).second) << name.toStdString();
            }
            if (!format.anchorHref().isEmpty()) links << format.anchorHref();
        }
    }
    for (const std::string_view topic : kAllTopics) {
        EXPECT_TRUE(anchors.contains(QString::fromLatin1(topic.data(), static_cast<int>(topic.size())))) << topic;
    }
    EXPECT_GT(links.size(), 5);
    for (const QString& link : links) EXPECT_TRUE(anchors.contains(link.mid(1))) << link.toStdString();
}

TEST_F(HelpTest, F1AndTheHelpButtonOpenTheTopicOfWhatShows) {
    Open(PeopleParts().Build());
    QTest::keyClick(View(), Qt::Key_F1);
    EXPECT_EQ(TopLine(), "The record list");
    InDialog(149, "Tools", "Options...", [this](CQuillaryDialog& page) {
        Press(page, kHelpButton);
        EXPECT_EQ(TopLine(), "Options of a database");
        EXPECT_TRUE(page.isVisible());
        QTest::keyClick(page.Control<QWidget>(1003), Qt::Key_Escape);
    });
    InDialog(142, "Record", "Find...", [this](CQuillaryDialog& page) {
        QTest::keyClick(page.Control<QLineEdit>(1027), Qt::Key_F1);
        EXPECT_EQ(TopLine(), "Find a record");
        QTest::keyClick(&page, Qt::Key_Escape);
    });
}

TEST_F(HelpTest, TheSearchGoesRound) {
    CHelpBook book;
    book.ShowTopic(kTopicContents);
    auto* line = book.findChild<QLineEdit*>();
    auto* page = book.findChild<QTextBrowser*>();
    QTest::keyClicks(line, "trash");
    QList<int> found;
    for (int i = 0; i < 100 && found.count(found.value(0)) < 2; ++i) {
        QTest::keyClick(line, Qt::Key_Return);
        found << page->textCursor().position();
    }
    EXPECT_EQ(page->textCursor().selectedText(), "trash");
    EXPECT_TRUE(found.size() > 2 && found.first() == found.last()) << found.size();
}

}  // namespace
}  // namespace quillary
