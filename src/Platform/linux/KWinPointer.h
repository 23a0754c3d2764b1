#pragma once

// Where the pointer is on KWin's screen. KWin tells the X server inside a Wayland session only of moves over X windows;
// a script, which it runs for any program that asks, may see the pointer everywhere.
//
// Main thread. Nothing of it stays in KWin when the question is answered.

#include "Platform/linux/PointerQuestion.h"

#include <QCoroTask>

#include <QObject>
#include <QPointF>
#include <QTemporaryFile>

#include <chrono>
#include <memory>
#include <optional>

QT_FORWARD_DECLARE_CLASS(QDBusConnection)
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
    /// The pointer's place as a part of the whole desktop's width and height; nothing without an answer in time,
    /// or when this object goes. Those who ask at the same time get the same answer, in their order.
    [[nodiscard]] QCoro::Task<std::optional<QPointF>> place();

    static constexpr std::chrono::milliseconds bound{100};

public Q_SLOTS:
    /// For the script, over the bus: pixels in the compositor's own measure.
    Q_SCRIPTABLE void at(int x, int y, int width, int height);

private:
    [[nodiscard]] bool prepare();
    [[nodiscard]] QString scriptName() const;
    void loadScript(const QDBusConnection &bus);
    void unloadScript();
    void runScript(QDBusPendingCallWatcher *loading);

    std::unique_ptr<QTemporaryFile> m_script;
    std::shared_ptr<PointerQuestion> m_question;
    quint64 m_questions = 0;
};

} // namespace orvesa
