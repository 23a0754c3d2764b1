#pragma once

// The product on a private desktop: its set-up, its start, and its result panel as a screen reader reads it.
//
// Main thread. Must not outlive its Desktop. Texts are those of the English interface.

#include "desktop/Desktop.h"

#include <QMap>
#include <QString>
#include <QStringList>

#include <chrono>
#include <functional>

namespace orvesa::desktop {

class TranslateProgram final {
public:
    /// The program at `path`; set up to translate with OpenAI into English, with the English interface.
    TranslateProgram(Desktop &desktop, QString path);

    /// The program in the folder of the running one.
    [[nodiscard]] static QString pathBeside();
    /// What it calls itself on the bus, in the key store and for its preferences.
    [[nodiscard]] static QString identifier();

    /// Text preferences by key, over those it is set up with. Written by the next start or run.
    void setPreference(const QString &key, const QString &value);
    /// Has it send requests for the chat services to this address ("http://127.0.0.1:1").
    void setService(const QString &address);
    void setVariable(const QString &name, const QString &value);
    /// Stores the OpenAI key.
    void storeKey(const QByteArray &key);

    /// Starts the utility, and returns once its event loop runs and its shortcuts are in place.
    Process &start(const EnvironmentChanges &changes = {});
    /// The same where its answers on the accessibility bus cannot be had: waits for its shortcut on the keyboard.
    Process &startUnheard(const EnvironmentChanges &changes = {});
    /// Starts it with arguments and waits for its end.
    ProcessResult run(const QStringList &arguments, const EnvironmentChanges &changes = {},
                      const QByteArray &input = {}, std::chrono::milliseconds deadline = usualDeadline);
    [[nodiscard]] Process &process() const;

    /// The panel once it shows, as the X server sees it. Throws DeadlineError.
    xcb_window_t awaitPanel(std::chrono::milliseconds deadline = usualDeadline);
    [[nodiscard]] bool isPanelShown() const;
    /// The panel as a screen reader sees it; null while it is hidden.
    [[nodiscard]] Accessible panel() const;
    [[nodiscard]] QString panelTitle() const;
    [[nodiscard]] QString source() const;
    [[nodiscard]] QString result() const; ///< the answer, or the message of a failure
    /// The result once the condition holds for it. Throws DeadlineError with what the panel reads.
    QString awaitResult(const std::function<bool(const QString &)> &condition, const QString &what,
                        std::chrono::milliseconds deadline = usualDeadline);

private:
    [[nodiscard]] QString textNamed(const QString &name) const;
    [[nodiscard]] EnvironmentChanges prepared(const EnvironmentChanges &changes);

    Desktop &m_desktop;
    QString m_path;
    QMap<QString, QString> m_preferences;
    EnvironmentChanges m_environment;
    Process *m_process = nullptr;
};

} // namespace orvesa::desktop
