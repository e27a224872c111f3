// SPDX-License-Identifier: MIT
// A window that shows no change does no work.
#include "views/main_window_fixture.h"

#include <QElapsedTimer>
#include <QGuiApplication>

namespace halvane::test {
namespace {

using namespace Qt::StringLiterals;

using IdleTest = MainWindowFixture;

class Activity : public QObject {
  public:
    explicit Activity(QQuickWindow& window) {
        QObject::connect(&window, &QQuickWindow::frameSwapped, this, [this] { ++m_events; });
        qApp->installEventFilter(this);
    }
    // Waits for half a second in which nothing happens.
    bool ceases() {
        QElapsedTimer quiet;
        quiet.start();
        return GalleryWorld::waitFor(
            [&] {
                if (std::exchange(m_events, 0) > 0)
                    quiet.start();
                return quiet.elapsed() > 500;
            },
            20000);
    }
    bool eventFilter(QObject* object, QEvent* event) override {
        m_events += event->type() == QEvent::Timer && object->objectName() != u"waitFor"_s;
        return false;
    }

  private:
    int m_events = 0;
};

TEST_F(IdleTest, NothingIsDrawnAndNoTimerRunsWhileNothingPlays) {
    library.transport()->togglePlayback();
    ASSERT_FALSE(library.transport()->isPlaying());
    Activity activity(ui->window());
    EXPECT_TRUE(activity.ceases());
}

TEST_F(IdleTest, AHiddenWindowDrawsNothingWhileMusicPlays) {
    ui->window().hide();
    int frames = 0;
    QObject::connect(&ui->window(), &QQuickWindow::afterAnimating, [&] { ++frames; });
    const double heard = library.engine()->elapsedSeconds();
    const double shown = library.progressClock()->elapsedSeconds();
    ASSERT_TRUE(
        world.waitFor([&] { return library.engine()->elapsedSeconds() > heard + 0.5; }, 20000));
    EXPECT_EQ(frames, 0);
    EXPECT_LT(library.progressClock()->elapsedSeconds(), heard + 0.5) << "nor does it look";
    ui->window().show();
    EXPECT_TRUE(
        world.waitFor([&] { return library.progressClock()->elapsedSeconds() > shown + 0.5; }));
}

} // namespace
} // namespace halvane::test
