// Menus, accelerators and message maps name the same commands.
#include <QAccessible>
#include <QAction>
#include <QMenuBar>
#include <map>
#include <set>

#include "admin/FieldDefinitionsDlg.h"
#include "admin/ListItemsEditor.h"
#include "tests/ui/WindowTest.h"
#include "ui/Accelerators.h"
#include "ui/Captions.h"
#include "ui/Menus.h"
#include "ui/Mnemonics.h"
#include "ui/ToolBars.h"
#include "views/DocumentSession.h"
#include "views/EditRecordDlg.h"

namespace quillary {
namespace {

template <class... Targets>
std::set<int> HandledBy() {
    std::set<int> handled;
    const auto add = [&handled](const auto& commands) {
        for (const auto& entry : commands) handled.insert(entry.id);
    };
    (add(Targets::Commands()), ...);
    return handled;
}

std::set<int> Handled(bool withDatabase) {
    return withDatabase ? HandledBy<CMainFrame, CQuillaryApp, CQuillaryView, CDocumentSession>()
                        : HandledBy<CMainFrame, CQuillaryApp>();
}

TEST(CommandTables, EveryMenuItemHasAHandlerAndEveryHandlerAWayToIt) {
    std::set<int> reachable;
    for (const Accelerator& accelerator : AllAccelerators()) reachable.insert(accelerator.command);
    for (const MenuBarInfo& menuBar : AllMenuBars()) {
        for (const Popup& popup : menuBar.popups) {
            EXPECT_FALSE(Caption(popup.caption).empty()) << popup.caption;
            for (const MenuItem& item : popup.items) {
                if (item.command == kSeparator) continue;
                reachable.insert(item.command);
                EXPECT_TRUE(Handled(menuBar.id == kMenuDatabase).contains(item.command)) << item.command;
            }
        }
    }
    EXPECT_EQ(reachable, Handled(true));
}

TEST(CommandTables, EveryToolBarButtonHasAHandlerAndWhatTheDialogsHandleCanBeReached) {
    for (const ToolButton& button : ButtonsOf(kToolBarDatabase)) EXPECT_TRUE(Handled(true).contains(button.command));
    std::set<int> reached;
    for (const ToolButton& button : ButtonsOf(kToolBarRecord)) reached.insert(button.command);
    for (const Accelerator& accelerator : RecordFormAccelerators()) reached.insert(accelerator.command);
    EXPECT_EQ(reached, HandledBy<CEditRecordDlg>());
    reached = {ID_ITEM_RENAME};  // in the menu of an item
    for (const int bar : {kToolBarFieldDefinitions, kToolBarListItems}) {
        for (const ToolButton& button : ButtonsOf(bar)) reached.insert(button.command);
    }
    EXPECT_EQ(reached, (HandledBy<CFieldDefinitionsDlg, CListItemsEditor>()));
}

TEST(CommandTables, NoTextStandsTwiceInAMenuBarAndNoKeyTwice) {
    for (const MenuBarInfo& menuBar : AllMenuBars()) {
        std::set<std::u16string_view> texts;
        for (const Popup& popup : menuBar.popups) {
            for (const MenuItem& item : popup.items) {
                EXPECT_TRUE(item.command == kSeparator || texts.insert(item.text).second) << item.command;
            }
        }
    }
    std::set<int> keys;
    for (const Accelerator& accelerator : AllAccelerators()) {
        EXPECT_TRUE(keys.insert(accelerator.key.toCombined()).second) << accelerator.command;
    }
}

TEST(Mnemonics, Marks) {
    const struct {
        const char* name;
        QStringList texts;
        QStringList marked;
    } kCases[] = {
        {"a later word gives its letter when the first is taken",
         {"Top of Database", "Tools"},
         {"&Top of Database", "T&ools"}},
        {"case does not make two letters of one", {"sort", "Send"}, {"&sort", "S&end"}},
        {"an ampersand of the text stays one", {"R & D", "R&D"}, {"&R && D", "R&&&D"}},
        {"nothing is left to mark", {"A", "a", "123", ""}, {"&A", "a", "123", ""}},
    };
    for (const auto& c : kCases) EXPECT_EQ(WithMnemonics(c.texts), c.marked) << c.name;
}

class CommandRoutingTest : public WindowTest {
  protected:
    bool IsEnabled(int command) {
        const auto* action = app.Frame().findChild<QAction*>(QString::number(command));
        return action && action->isEnabled();
    }
};

TEST_F(CommandRoutingTest, StatesFollowTheDatabase) {
    ImageParts parts = PeopleParts();
    Open(parts.Build());
    EXPECT_TRUE(IsEnabled(ID_RECORD_TOP) && IsEnabled(ID_FILE_SAVE));
    app.CloseDocument();
    EXPECT_FALSE(IsEnabled(ID_RECORD_TOP) || IsEnabled(ID_FILE_SAVE)) << "no database";
    parts.records.resize(5);
    files.writable = false;
    Open(parts.Build());
    EXPECT_FALSE(IsEnabled(ID_RECORD_TOP)) << "one record";
    EXPECT_FALSE(IsEnabled(ID_DATABASE_OPTIONS) || IsEnabled(ID_DATABASE_FIELDS)) << "read only";
    EXPECT_TRUE(IsEnabled(ID_FILE_OPEN)) << "read only";
    files.writable = true;
    InDialog(100, "Tools", "About Quillary...", [this](CQuillaryDialog& about) {
        EXPECT_FALSE(IsEnabled(ID_FILE_OPEN)) << "a dialog is open";
        app.Frame().Dispatch(ID_RECORD_BOTTOM);
        app.Frame().CancelDialog();
        EXPECT_FALSE(about.isVisible());
    });
    EXPECT_TRUE(IsEnabled(ID_FILE_OPEN));
}

TEST_F(CommandRoutingTest, KeysWorkWhileTheMenuBarHasTheFocusAndThenBelongToTheDialog) {
    Open(PeopleParts().Build());
    auto* bar = app.Frame().findChild<QMenuBar*>();
    bar->setFocus();
    user.ExpectDialog(142, [](CQuillaryDialog& page) {
        EXPECT_TRUE(page.Control<QWidget>(1027)->hasFocus());
        page.reject();
    });
    QTest::keyClick(bar, Qt::Key_F, Qt::ControlModifier);
}

TEST_F(CommandRoutingTest, AScreenReaderFindsEachMenusItemsWhicheverBarShows) {
    const auto check = [this] {
        for (const QAction* caption : app.Frame().findChild<QMenuBar*>()->actions()) {
            QAccessibleInterface* menu = QAccessible::queryAccessibleInterface(caption->menu());
            ASSERT_TRUE(menu);
            EXPECT_EQ(menu->childCount(), caption->menu()->actions().size());
            for (int i = 0; i < menu->childCount(); ++i) {
                QAccessibleInterface* item = menu->child(i);
                ASSERT_TRUE(item && item->parent()) << i;
                EXPECT_EQ(item->parent()->object(), caption->menu()) << i;
            }
        }
    };
    check();
    Open(PeopleParts().Build());
    check();
    app.CloseDocument();
    check();
}

}  // namespace
}  // namespace quillary
