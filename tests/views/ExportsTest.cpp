// The exports to calendar and address book from the list and the form: the dialogs, the questions, the run.
#include <QListWidget>
#include <QTimer>

#include "tests/views/FormTest.h"

namespace quillary {
namespace {

constexpr int kCalendar = 189;
constexpr int kContacts = 196;
constexpr char kWithoutDate[] = "1 records have no date. Export them too?";

class ExportsTest : public FormTest {
  protected:
    static QStringList Offered(const CQuillaryDialog& page, int list) {
        QStringList offered;
        const auto* box = page.Control<QComboBox>(list);
        for (int k = 0; k < box->count(); ++k) offered << (k == box->currentIndex() ? "*" : "") + box->itemText(k);
        return offered;
    }
    static void Pick(CQuillaryDialog& page, int row, Qt::KeyboardModifiers keys = {}) {
        auto* list = page.Control<QListWidget>(1056);
        QTest::mouseClick(list->viewport(), Qt::LeftButton, keys, list->visualItemRect(list->item(row)).center());
    }
    static void Key(CQuillaryDialog& page, int control, Qt::Key key) {
        QTest::keyClick(page.Control<QWidget>(control), key);
    }
    /// From the list, with these steps in the dialog before OK.
    void Export(int dialog, User::Steps steps) {
        user.ExpectDialog(dialog, [&](CQuillaryDialog& page) {
            steps(page);
            if (page.isVisible()) Press(page, kOkButton);
            if (page.isVisible()) page.reject();
        });
        ChooseMenu("Database", dialog == kCalendar ? "Export to Calendar..." : "Export to Contacts...");
    }
    /// The texts of the appointments, which are taken away.
    std::string Bodies() {
        std::u16string bodies;
        for (const Appointment& item : items->appointments) bodies += item.body + u"|";
        items->appointments.clear();
        return QString::fromStdU16String(bodies).toStdString();
    }
};

TEST_F(ExportsTest, CalendarTakesTheFieldsInTheOrderPickedAndAsksBeforeAnyRecordWithoutADate) {
    files.writable = false;
    Open(PeopleParts().Build());
    Export(kCalendar, [this](CQuillaryDialog& page) {
        EXPECT_EQ(Offered(page, 1002), QStringList({"*Born"}));
        EXPECT_EQ(Offered(page, 1003), QStringList({"*None"}));
        for (const int row : {1, 3, 0, 3}) Pick(page, row);
        Key(page, 1056, Qt::Key_M);  // goes there, no more
        user.ExpectMessage(kWithoutDate, "No");
    });
    EXPECT_EQ(items->appointments[0].subject, u"People");
    EXPECT_EQ(Bodies(), "Age: 36\n\rName: Ada|Age: -1\n\rName: 100%% of %d|");
    Export(kCalendar, [this](CQuillaryDialog& page) {
        Pick(page, 2);
        Pick(page, 0, Qt::ShiftModifier);
        user.ExpectMessage(kWithoutDate, "Yes");
    });
    EXPECT_EQ(items->appointments.size(), 3U);
    EXPECT_EQ(Bodies().substr(0, 40), "Born: 12/07/2003\n\rName: Ada\n\rAge: 36|Bor");
    ImageParts parts = PeopleParts();
    for (std::size_t k = 4; k < parts.records.size(); ++k) parts.records[k].attributes = 3;
    Open(parts.Build());
    items = std::make_shared<FakePersonalItems>();
    Export(kCalendar, [](CQuillaryDialog&) {});
    ChooseMenu("Database", "Export to Contacts...");  // disabled
    EXPECT_EQ(items->asked, -1) << "nothing is shown";
}

TEST_F(ExportsTest, NothingIsExportedWhenTheQuestionIsLeft) {
    Open(PeopleParts().Build());
    Export(kCalendar, [this](CQuillaryDialog&) { user.ExpectMessage(kWithoutDate, "Cancel"); });
    Export(kCalendar, [this](CQuillaryDialog& page) {
        qApp->removeEventFilter(&user);  // who does not answer
        QTimer::singleShot(0, &page, [this] { app.HandOver().Receive({"/gone.pdb", {}}); });
        Press(page, kOkButton);
        qApp->installEventFilter(&user);
        user.ExpectMessage("Invalid database file.");
        EXPECT_TRUE(QTest::qWaitFor([&page] { return !page.isVisible(); }));
    });
    EXPECT_TRUE(QTest::qWaitFor([this] { return user.IsDone(); }));
    EXPECT_EQ(items->asked, -1) << "another file came while it was asked";
}

TEST_F(ExportsTest, TheFormExportsItsRecordAsItWasJustEntered) {
    OpenForEditing(AllTypesParts());
    InForm(0, [this](CQuillaryDialog& page) {
        auto* button = page.Control<QToolButton>(ID_FORM_EXPORT_CALENDAR);
        QTest::keyClicks(page.Control<QWidget>(100), "new ");
        user.ExpectDialog(kCalendar, [&](CQuillaryDialog& inner) {
            EXPECT_EQ(StoredRecord(0)[0], "new Ada\r\nwas here");
            EXPECT_EQ(Offered(inner, 1003), QStringList({"None", "*At"}));
            Pick(inner, 0);
            Press(inner, kOkButton);
        });
        QWidget* before = app.Frame().focusWidget();
        Click(button);
        EXPECT_EQ(app.Frame().focusWidget(), before);
        EXPECT_EQ(items->appointments.at(0).date, 38053);
        EXPECT_EQ(Bodies(), "Notes: new Ada\r\nwas here|");
        Press(page, ID_FORM_NEXT);
        user.ExpectDialog(kCalendar, [&](CQuillaryDialog& inner) {
            EXPECT_EQ(Offered(inner, 1002), QStringList());
            EXPECT_EQ(Offered(inner, 1003), QStringList({"*None"}));
            for (const char* const answer : {"No", "Yes"}) {
                EXPECT_TRUE(inner.isVisible()) << "nothing was left to export";
                user.ExpectMessage(kWithoutDate, answer);
                Press(inner, kOkButton);
            }
        });
        Click(button);
        EXPECT_EQ(items->appointments.size(), 1U);
        Press(page, ID_FORM_NEW);
        EXPECT_FALSE(button->isEnabled()) << "a new record";
        Press(page, kCancelButton);
    });
}

TEST_F(ExportsTest, ContactsNeedAFieldAndCanBeStoppedAndTheirFilesOpened) {
    Open(PeopleParts().Build());
    items->refuses = {1};
    items->keepsFiles = true;
    const QString question = "2 contacts were written to files. Open them in the desktop's address book program?";
    Export(kContacts, [&](CQuillaryDialog& page) {
        EXPECT_EQ(Offered(page, 1045), QStringList({"*None", "Name", "Age", "Born", "Member"}));
        user.ExpectMessage("You must select at least one field to export to contacts.");
        Press(page, kOkButton);
        Key(page, 1045, Qt::Key_N);
        Key(page, 1041, Qt::Key_B);
        user.ExpectMessage(question, "Open");
    });
    ASSERT_EQ(items->contacts.size(), 2U) << "the refused one is skipped silently";
    EXPECT_EQ(items->contacts[1].texts[static_cast<std::size_t>(ContactProperty::Notes)], u"100%% of %d");
    EXPECT_EQ(items->contacts[1].birthday, 1462);
    EXPECT_EQ(launcher.opened.at(1), "file://" + items->files[1].string());

    ImageParts many = PeopleParts();
    for (int k = 0; k < 3; ++k) many.Add(2, {"Bea"});
    Open(many.Build());
    items = std::make_shared<FakePersonalItems>();
    items->keepsFiles = true;
    Export(kContacts, [this](CQuillaryDialog& page) {
        Key(page, 1002, Qt::Key_N);
        user.ExpectMessage("6 contacts were written to files in /items. Show the folder?", "Show");
    });
    EXPECT_EQ(launcher.shown.size(), 1U);
    Open(PeopleParts().Build());

    items = std::make_shared<FakePersonalItems>();
    items->isThere = false;
    Export(kContacts, [this](CQuillaryDialog& page) {
        Key(page, 1002, Qt::Key_N);
        user.ExpectMessage("CPocketOutlook constructor Failed!!");
    });
    for (const int waitsAt : {-1, 2}) {
        const auto held = items = std::make_shared<FakePersonalItems>();
        held->waitsAt = waitsAt;
        Export(kContacts, [&](CQuillaryDialog& page) {
            Key(page, 1002, Qt::Key_N);
            user.ExpectMessage(waitsAt < 0 ? "Opening the address book..." : "Exporting 2 of 3 records...", "Cancel");
            if (waitsAt == 2) user.ExpectMessage("2 of 3 records were exported.");
        });
        held->GoOn();
        items.reset();
        EXPECT_TRUE(QTest::qWaitFor([&] { return held.use_count() == 1; })) << "its thread lets go of it";
        EXPECT_EQ(held->contacts.size(), waitsAt < 0 ? 0U : 3U) << "the one under way is kept";
    }
}

}  // namespace
}  // namespace quillary
