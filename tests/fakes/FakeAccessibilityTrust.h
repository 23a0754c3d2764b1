#pragma once

// Trust that a test grants or withdraws, and a count of how often it was asked for.

#include "Platform/AccessibilityTrustPort.h"

namespace orvesa {

class FakeAccessibilityTrust final : public AccessibilityTrustPort {
public:
    enum class Trust { granted, missing };

    explicit FakeAccessibilityTrust(Trust trust = Trust::granted);

    [[nodiscard]] bool isTrusted() const override;
    void requestTrust() override;

    void setTrust(Trust trust);
    [[nodiscard]] int requests() const { return m_requests; }
    /// How often isTrusted() was asked.
    [[nodiscard]] int questions() const { return m_questions; }

private:
    Trust m_trust;
    int m_requests = 0;
    mutable int m_questions = 0;
};

} // namespace orvesa
