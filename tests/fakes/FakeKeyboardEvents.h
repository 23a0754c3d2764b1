#pragma once

// A keyboard whose modifiers a test holds, and that remembers what was posted. Main thread.

#include "Platform/KeyboardEventPort.h"

#include <functional>
#include <vector>

namespace orvesa {

class FakeKeyboardEvents final : public KeyboardEventPort {
public:
    struct Event {
        quint16 keyCode = 0;
        KeyTransition transition = KeyTransition::down;
        quint32 flags = 0;
        bool operator==(const Event &) const = default;
    };

    [[nodiscard]] quint32 modifierFlags() override;
    bool post(quint16 keyCode, KeyTransition transition, quint32 flags) override;

    void hold(quint32 flags) { m_held = flags; }
    /// Called for every event that was posted.
    void setPostHandler(std::function<void(const Event &)> handler);
    /// No event of this kind can be made.
    void refuse(KeyTransition transition) { m_refused.push_back(transition); }
    [[nodiscard]] const std::vector<Event> &posted() const { return m_posted; }
    /// How often the modifiers were asked for.
    [[nodiscard]] int questions() const { return m_questions; }

private:
    quint32 m_held = 0;
    int m_questions = 0;
    std::vector<Event> m_posted;
    std::vector<KeyTransition> m_refused;
    std::function<void(const Event &)> m_postHandler;
};

} // namespace orvesa
