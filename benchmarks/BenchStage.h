#pragma once

// Where the measurements take place: a private desktop with an editor whose text is selected, a tray, and a TLS service
// that answers like a language-model service.
//
// Owns everything it starts. Main thread.

#include "TrayWatcher.h"

#include "desktop/Desktop.h"
#include "service/LoopbackService.h"

#include <QString>
#include <QStringList>

#include <chrono>

namespace orvesa::benchmark {

class BenchStage final {
public:
    /// `programFolder` holds both programs.
    explicit BenchStage(QString programFolder);

    [[nodiscard]] QString floorProgram() const;
    [[nodiscard]] QString productProgram() const;

    /// Starts one of the programs, with everything the product needs in its environment.
    desktop::Process &launch(const QString &program, const QStringList &arguments = {});
    /// When the program's event loop answered, on the monotonic clock in nanoseconds.
    qint64 awaitLoop(const desktop::Process &process, std::chrono::milliseconds deadline = std::chrono::seconds(10));
    /// Returns once the program has done nothing for twice that long. Throws when it does not come to rest.
    static void awaitRest(const desktop::Process &process,
                          std::chrono::milliseconds quiet = std::chrono::milliseconds(400));

    /// Throws unless the product holds its three shortcuts at this moment.
    void expectShortcutsHeld();

    /// Gives the editor the keyboard, and returns when it has it.
    void focusEditor();

    [[nodiscard]] desktop::Desktop &desktop() { return m_desktop; }
    [[nodiscard]] service::LoopbackService &service() { return m_service; }

private:
    void saveSettings();
    void openEditor();

    QString m_programFolder;
    service::LoopbackService m_service;
    desktop::Desktop m_desktop;
    TrayWatcher m_tray;
    xcb_window_t m_editorWindow = 0;
};

} // namespace orvesa::benchmark
