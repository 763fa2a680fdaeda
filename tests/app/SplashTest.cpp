// The splash shows while the program starts, and gets in nobody's way.
#include "app/Splash.h"

#include <QPointer>
#include <QTest>

#include "tests/ui/WindowTest.h"

namespace quillary {
namespace {

class SplashTest : public WindowTest {
  protected:
    /// Waits for less than the splash stays by itself.
    [[nodiscard]] bool IsGoneSoon() {
        return QTest::qWaitFor([this] { return m_splash.isNull() || !m_splash->isVisible(); }, 1000);
    }
    QPointer<CSplash> m_splash;
};

TEST_F(SplashTest, GoesWithTheFirstPaintOfTheMainWindow) {
    QWidget window;
    m_splash = new CSplash(window);
    EXPECT_TRUE(m_splash->isVisible());
    window.show();
    EXPECT_TRUE(IsGoneSoon());
}

TEST_F(SplashTest, GoesWithAnyInputAndByItself) {
    QWidget other;  // which never shows, and so never paints
    m_splash = new CSplash(other);
    QTest::keyClick(&app.Frame(), Qt::Key_Shift);
    EXPECT_TRUE(IsGoneSoon());
    m_splash = new CSplash(other);
    QTest::mouseClick(m_splash, Qt::LeftButton);
    EXPECT_TRUE(IsGoneSoon());
    m_splash = new CSplash(other);
    EXPECT_TRUE(QTest::qWaitFor([this] { return m_splash.isNull(); }, 5000));
}

}  // namespace
}  // namespace quillary
