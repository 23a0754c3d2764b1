#pragma once

// The desktop's selections, observed without touching them.
//
// Main thread; owned by the Desktop. changes() counts XFixes notifications of a new owner since the desktop started, so
// it tells whether a selection was touched even when the text is the same afterwards.

#include "desktop/Waiting.h"

#include <QByteArray>
#include <QString>

#include <xcb/xcb.h>

#include <chrono>
#include <optional>

namespace orvesa::desktop {

class XSession;

enum class Selection { primary, clipboard };

class Selections final {
public:
    explicit Selections(XSession &session);

    [[nodiscard]] xcb_window_t owner(Selection selection) const; ///< 0 for none
    /// Of any selection by its name.
    [[nodiscard]] xcb_window_t owner(const QByteArray &selection) const;
    [[nodiscard]] int changes(Selection selection) const;
    /// Its text as UTF8_STRING; absent when nobody owns it or the owner has no text. Throws DeadlineError when the
    /// owner never answers.
    [[nodiscard]] std::optional<QString> text(Selection selection, std::chrono::milliseconds deadline = usualDeadline);
    void awaitText(Selection selection, const QString &text, std::chrono::milliseconds deadline = usualDeadline);

private:
    XSession &m_session;
};

} // namespace orvesa::desktop
