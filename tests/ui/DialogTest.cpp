// What holds for every dialog: controls with names, a way in and out by keys, a page instead of a window.
#include <QAbstractButton>
#include <algorithm>
#include <functional>
#include <memory>
#include <set>

#include "admin/ChangePasswordDlg.h"
#include "admin/CreateDatabaseDlg.h"
#include "admin/DatabaseInfoDlg.h"
#include "admin/DatabaseOptionsDlg.h"
#include "admin/EnterPasswordDlg.h"
#include "admin/FieldDefinitionsDlg.h"
#include "admin/FieldTypeDlg.h"
#include "admin/LockPasswordDlg.h"
#include "admin/PreferencesDlg.h"
#include "admin/SaveToPathDlg.h"
#include "app/WindowQuestions.h"
#include "integration/DialNumberDlg.h"
#include "integration/Dialing.h"
#include "integration/ExportCalendarDlg.h"
#include "integration/ExportContactsDlg.h"
#include "platform/TelephoneLinks.h"
#include "query/FindRecordDlg.h"
#include "tests/views/FormTest.h"
#include "ui/AboutDlg.h"
#include "views/DocumentSession.h"
#include "views/EditRecordDlg.h"

namespace quillary {
namespace {

class DialogTest : public WindowTest {
  protected:
    DialogTest() : m_doc(files), m_session(std::make_unique<CQuillaryDoc>(files), files, app.Frame(), app) {
        files.contents["/all-types.pdb"] = AllTypesParts().Build();
        ScriptedQuestions questions;
        EXPECT_TRUE(m_session.Doc().OpenDatabase("/all-types.pdb", OpenMode::Edit, questions));
    }

    std::vector<std::unique_ptr<CQuillaryDialog>> AllDialogs() {
        std::vector<std::unique_ptr<CQuillaryDialog>> dialogs;
        CMainFrame& frame = app.Frame();
        const auto add = [&dialogs](CQuillaryDialog* dialog) { dialogs.emplace_back(dialog); };
        add(new CAboutDlg(frame));
        add(new CChangePasswordDlg(m_doc, frame));
        add(new CDatabaseInfoDlg(m_doc, frame));
        add(new CLockPasswordDlg(m_doc, 0, frame));
        add(new CCreateDatabaseDlg(m_newDatabase, QString(28, u'W'), nullptr, frame));
        add(new CPreferencesDlg(settings, locations, frame));
        add(new CSaveToPathDlg(locations, frame));
        add(new CDatabaseOptionsDlg({}, frame));
        add(new CDialNumberDlg({"Home", "Work"}, frame));
        add(new CEnterPasswordDlg(m_doc, frame));
        add(new CFieldDefinitionsDlg(
            {m_field}, true, m_doc.Page(), [](const auto&) { return true; }, frame));
        add(new CFieldTypeDlg(m_field, true, m_doc.Page(), frame));
        add(new CFindRecordDlg(m_doc, QString(), -2, frame));
        const FormSurroundings surroundings{clock, locale, settings, m_dialing, launcher, m_stores};
        add(new CEditRecordDlg(m_session, surroundings, CEditRecordDlg::Opening::CurrentRecord, frame));
        add(new CExportCalendarDlg(m_session.Doc(), std::nullopt, frame));
        add(new CExportContactsDlg(m_session.Doc(), frame));
        return dialogs;
    }

  private:
    FieldEdit m_field{{MakeField("Colour", "Lred;green"), std::nullopt}};
    PersonalStoreFactory m_stores;
    NewDatabase m_newDatabase{{files, locations, settings}};
    CWindowQuestions m_messages{app.Frame()};
    TelephoneLinks m_phone{launcher};
    Dialing m_dialing{m_phone, m_messages};
    CQuillaryDoc m_doc;
    CDocumentSession m_session;
};

TEST_F(DialogTest, EveryControlHasANumberAndANameAndNoLetterServesTwo) {
    for (const auto& dialog : AllDialogs()) {
        EXPECT_FALSE(dialog->accessibleName().isEmpty());
        EXPECT_FALSE(dialog->Control<QLabel>(kTitleHeader)->text().isEmpty());
        std::set<QString> letters;
        int focusable = 0;
        for (const QWidget* widget : dialog->findChildren<QWidget*>()) {
            widget->ensurePolished();
            const auto* button = qobject_cast<const QAbstractButton*>(widget);
            const auto* label = qobject_cast<const QLabel*>(widget);
            const QString text = button ? button->text() : label && label->buddy() ? label->text() : QString();
            const auto mark = text.indexOf(u'&');
            EXPECT_TRUE(mark < 0 || letters.insert(text.mid(mark + 1, 1).toUpper()).second) << text.toStdString();
            // The toolkit's own parts of a control, and the lists that it opens in a window of their own, are no
            // controls.
            const bool isPart = widget->focusProxy() || widget->window() != dialog->window();
            if (widget->focusPolicy() == Qt::NoFocus || isPart) continue;
            ++focusable;
            EXPECT_GT(widget->objectName().toInt(), 0) << widget->metaObject()->className();
            EXPECT_FALSE(widget->accessibleName().isEmpty() && text.isEmpty()) << widget->objectName().toStdString();
        }
        EXPECT_GE(focusable, 1);
    }
}

TEST_F(DialogTest, IsAPageThatFitsASmallScreen) {
    app.Frame().resize(240, 320);
    for (const auto& dialog : AllDialogs()) {
        user.ExpectDialog(dialog->objectName().toInt(), [this](CQuillaryDialog& page) {
            EXPECT_FALSE(page.isWindow());
            EXPECT_EQ(page.window(), &app.Frame());
            EXPECT_LE(app.Frame().width(), 240);
            for (const QLabel* label : page.findChildren<QLabel*>()) {
                if (!label->isVisible()) continue;
                EXPECT_GE(label->height(), label->heightForWidth(label->width())) << label->text().toStdString();
                EXPECT_LE(label->mapTo(&page, QPoint(label->width(), 0)).x(), page.width());
            }
            QTest::keyClick(page.focusWidget() ? page.focusWidget() : &page, Qt::Key_Escape);
        });
        EXPECT_EQ(dialog->exec(), QDialog::Rejected);
    }
}

TEST_F(DialogTest, ALinkFollowsTheKeyboardToo) {
    CAboutDlg about(app.Frame());
    user.ExpectDialog(100, [](CQuillaryDialog& page) {
        QTest::keyClick(page.Control<QWidget>(1001), Qt::Key_Return);
        const auto windows = QApplication::topLevelWidgets();
        EXPECT_TRUE(std::any_of(windows.begin(), windows.end(), [](const QWidget* window) {
            return window->objectName() == QLatin1String("help") && window->isVisible();
        }));
        QTest::keyClick(&page, Qt::Key_Escape);
    });
    about.exec();
}

}  // namespace
}  // namespace quillary
