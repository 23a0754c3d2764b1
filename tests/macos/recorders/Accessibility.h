#pragma once

// The accessibility interface's stand-in: elements that a test builds, and what was asked of them. Main thread.

#include "macos/recorders/Object.h"

#include <ApplicationServices/ApplicationServices.h>

#include <optional>
#include <set>

namespace orvesa::recorders {

class ElementObject final : public Object {
public:
    explicit ElementObject(std::string shownName) : Object(Kind::element), name(std::move(shownName)) {}
    ~ElementObject() override;
    [[nodiscard]] std::string description() const override { return name; }

    /// Takes over the value's reference.
    void setAttribute(const QString &attribute, Object *value);
    /// Every call ends with this error.
    void fail(AXError error) { failure = error; }

    const std::string name;
    std::map<QString, Object *> attributes;
    AXError failure = kAXErrorSuccess;
    std::set<std::string> actions{"AXPress"}; ///< those that it knows
};

/// The processes and elements that the interface answers for; one at a time.
class Accessibility final {
public:
    Accessibility();
    ~Accessibility();
    Accessibility(const Accessibility &) = delete;
    Accessibility &operator=(const Accessibility &) = delete;

    [[nodiscard]] static Accessibility *current();

    [[nodiscard]] ElementObject &systemWide() { return *m_systemWide; }
    /// The application of a process that runs from now on.
    [[nodiscard]] ElementObject &application(pid_t process);
    /// What a program gets for a process, whether it runs or not.
    [[nodiscard]] ElementObject *handedOver(pid_t process);

    bool isTrusted = true;

private:
    ElementObject *m_systemWide;
    std::map<pid_t, ElementObject *> m_applications;
};

} // namespace orvesa::recorders
