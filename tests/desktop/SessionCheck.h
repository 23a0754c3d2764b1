#pragma once

// What the product has to do in any real desktop, checked with real keys and clicks in the session around: from its
// start at login to the reading of the screen. Every step is told on standard output with the time it took; a step that
// fails does not keep the others from being tried.
//
// Main thread. Must not outlive its session.

#include "desktop/RunningSession.h"

#include <QElapsedTimer>
#include <QString>
#include <QStringList>

#include <functional>

namespace orvesa::desktop {

enum class SessionTray {
    none,
    notifier,
    embedding,
    either, ///< both kinds are there, and the one that comes first at login gets the icon
};

struct SessionCheckOptions {
    QStringList editor;  ///< its command line; a document is added
    QString editorClass; ///< part of its window's class
    SessionTray tray = SessionTray::notifier;
    QString splash; ///< part of the class of a window that covers the screen until the desktop is ready; empty for none
    QString dismiss; ///< a key that puts away what the desktop greets its users with; empty for none
    bool isAskedForAccessibility = false; ///< the desktop switches it off at login, so that the product asks for it
    QString answer;                       ///< what the service answers
    QString pictures;                     ///< the folder for screenshots
    QStringList doctorLines;              ///< what the doctor's page must have
    QString name;                         ///< what the desktop is called, for the pictures' names
};

class SessionCheck final {
public:
    SessionCheck(RunningSession &session, SessionCheckOptions options);

    /// True when every step passed.
    bool run();

private:
    void step(const QString &name, const std::function<void()> &body);
    void startsAtLogin();
    void asksForAccessibility();
    void isInTheTray();
    [[nodiscard]] bool hasNotifierItem();
    [[nodiscard]] bool hasEmbeddedIcon();
    void opensTheEditor();
    void selectsInTheEditor();
    void translates();
    void panelIsAPanel();
    void nothingIsDisturbed();
    void goesOnAClickElsewhere();
    void takesTheKeyboardWhenClicked();
    void opensItsSettings();
    void settingsByTheTray();
    void readsTheScreen();
    void hasATrueDoctor();
    void translatesOnTheCommandLine();

    void pressTheShortcut();
    void awaitAnswer();
    void awaitPanelGone();
    void focusTheEditor();
    void awaitStillScreen();
    [[nodiscard]] bool isShown(const QString &className);
    void picture(const QString &name);
    [[nodiscard]] QPoint middleOfTheEditor() const;
    [[nodiscard]] bool editorIsInUse() const;

    RunningSession &m_session;
    SessionCheckOptions m_options;
    qint64 m_product = 0;
    xcb_window_t m_editor = 0;
    xcb_window_t m_panel = 0;
    qint64 m_editorProcess = 0;
    Accessible m_content;
    int m_clipboardChanges = 0;
    int m_pictures = 0;
    int m_failed = 0;
};

} // namespace orvesa::desktop
