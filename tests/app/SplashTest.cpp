// The splash shows while the program starts, and gets in nobody's way.
#include "app/Splash.h"

#include <QPointer>

#include "tests/ui/WindowTest.h"

namespace quillary {
namespace {

using SplashTest = WindowTest;

TEST_F(SplashTest, GoesWithTheFirstPaintOfTheMainWindowWithAnyInputAndByItself) {
    QWidget window, other;  // the other one never shows, and so never paints
    const std::function<void(QWidget&)> kEnds[] = {
        [&](QWidget&) { window.show(); }, [&](QWidget&) { QTest::keyClick(&app.Frame(), Qt::Key_Shift); },
        [](QWidget& splash) { QTest::mouseClick(&splash, Qt::LeftButton); }, [](QWidget&) {}};
    for (const auto& end : kEnds) {
        const bool isLast = &end == &kEnds[3];
        const QPointer<CSplash> splash = new CSplash(&end == &kEnds[0] ? window : other);
        EXPECT_TRUE(splash->isVisible());
        end(*splash);
        EXPECT_TRUE(QTest::qWaitFor([&] { return !splash || !splash->isVisible(); }, isLast ? 5000 : 1000));
    }
}

}  // namespace
}  // namespace quillary
