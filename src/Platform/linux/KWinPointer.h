#pragma once

// Where the pointer is on KWin's screen. KWin tells the X server inside a Wayland session only of moves over X windows;
// a script, which it runs for any program that asks, may see the pointer everywhere.
//
// Main thread. Nothing of it stays in KWin when the question is answered.

#include <QCoroTask>

#include <QObject>
#include <QPointF>
#include <QTemporaryFile>

#include <chrono>
#include <memory>
#include <optional>

QT_FORWARD_DECLARE_CLASS(QDBusPendingCallWatcher)

namespace orvesa {

class KWinPointer final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.orvesa.Pointer1")

public:
    KWinPointer();
    ~KWinPointer() override;

    /// Whether the session says that KWin shows it.
    [[nodiscard]] static bool isOffered();
    /// The pointer's place as a part of the whole desktop's width and height; nothing without an answer in time.
    [[nodiscard]] QCoro::Task<std::optional<QPointF>> place();

    static constexpr std::chrono::milliseconds bound{100};

public Q_SLOTS:
    /// For the script, over the bus: pixels in the compositor's own measure.
    Q_SCRIPTABLE void at(int x, int y, int width, int height);

Q_SIGNALS:
    void answered(QPointF place);

private:
    [[nodiscard]] bool prepare();
    void runScript(QDBusPendingCallWatcher *loading);

    std::unique_ptr<QTemporaryFile> m_script;
    quint64 m_questions = 0;
};

} // namespace orvesa
