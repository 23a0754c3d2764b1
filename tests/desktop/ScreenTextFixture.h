#pragma once

// What tests of screen text share: the product, something on the screen to read, and real drags over it.
//
// Main thread. A test calls setUpScreen() first of all.

#include "desktop/ProgramFixture.h"

#include <QRect>
#include <QString>

namespace orvesa::desktop {

class ScreenTextFixture : public ProgramFixture {
protected:
    void TearDown() override;

    /// Every request is answered by the same text.
    void setUpScreen(const DesktopOptions &options = {});
    /// A picture of the recognition's samples with its top left at the place; where it then is.
    QRect showPicture(const QString &sample, QPoint place);
    [[nodiscard]] static QString samplePath(const QString &file);

    /// Presses the shortcut; returns with the overlay on the screen, which has the keyboard.
    xcb_window_t startCapture();
    xcb_window_t awaitOverlay();
    /// Drags around the area with a margin.
    void dragAround(const QRect &area, int margin = 6);
    void awaitOverlayGone();
    /// The recognised text in the panel, once the answer is there.
    QString awaitSource();
    [[nodiscard]] QStringList captureFiles() const;

    static const QString overlayClass;
    static const QString answerText;
};

} // namespace orvesa::desktop
