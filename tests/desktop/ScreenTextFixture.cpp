#include "desktop/ScreenTextFixture.h"

#include <QCoreApplication>
#include <QDir>
#include <QTimer>

namespace orvesa::desktop {

using namespace Qt::StringLiterals;

const QString ScreenTextFixture::overlayClass = u"orvesa-screencapture"_s;
const QString ScreenTextFixture::answerText = u"an answer"_s;

void ScreenTextFixture::setUpScreen(const DesktopOptions &options)
{
    setUp(options);
    service.setResponder([](const service::ServiceRequest &) { return answer(answerText); });
    program->start();
}

void ScreenTextFixture::TearDown()
{
    if (desktop) {
        EXPECT_EQ(captureFiles(), QStringList());
    }
}

QString ScreenTextFixture::samplePath(const QString &file)
{
    return QStringLiteral(ORVESA_SAMPLES "/") + file;
}

QRect ScreenTextFixture::showPicture(const QString &sample, QPoint place)
{
    const Process &window =
        desktop->launch(QCoreApplication::applicationDirPath() + u"/orvesa-PictureWindow"_s,
                        {samplePath(sample + u".png"_s), QString::number(place.x()), QString::number(place.y())});
    const QRect area = desktop->windows().geometry(desktop->windows().awaitWindow({.pid = window.pid()}));
    // Mapped is not painted yet.
    QTimer look;
    look.start(std::chrono::milliseconds(10));
    const QImage picture = QImage(samplePath(sample + u".png"_s)).convertToFormat(QImage::Format_RGB32);
    waitUntil([&] { return desktop->windows().picture(area).convertToFormat(QImage::Format_RGB32) == picture; },
              u"the picture to be painted"_s);
    return area;
}

xcb_window_t ScreenTextFixture::startCapture()
{
    desktop->keyboard().press(u"Alt+a"_s);
    return awaitOverlay();
}

xcb_window_t ScreenTextFixture::awaitOverlay()
{
    QTimer look; // the server tells nobody of another program's grab
    look.start(std::chrono::milliseconds(10));
    const xcb_window_t overlay = desktop->windows().awaitWindow({.className = overlayClass});
    waitUntil([&] { return desktop->windows().title(overlay) == u"Screen capture"_s; },
              u"the overlay to have pointer and keyboard"_s);
    return overlay;
}

void ScreenTextFixture::dragAround(const QRect &area, int margin)
{
    desktop->pointer().drag(area.topLeft() - QPoint(margin, margin),
                            area.bottomRight() + QPoint(margin + 1, margin + 1));
}

void ScreenTextFixture::awaitOverlayGone()
{
    desktop->windows().awaitNoWindow({.className = overlayClass});
}

QString ScreenTextFixture::awaitSource()
{
    program->awaitResult([](const QString &text) { return text == answerText; }, u"the answer"_s,
                         std::chrono::seconds(60));
    return program->source();
}

QStringList ScreenTextFixture::captureFiles() const
{
    return QDir(desktop->folders().temporary())
        .entryList({u"kestrovander-ocr-*"_s}, QDir::Files | QDir::System | QDir::Hidden);
}

} // namespace orvesa::desktop
