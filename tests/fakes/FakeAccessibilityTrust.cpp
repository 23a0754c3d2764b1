#include "fakes/FakeAccessibilityTrust.h"

namespace orvesa {

FakeAccessibilityTrust::FakeAccessibilityTrust(Trust trust) : m_trust(trust) {}

bool FakeAccessibilityTrust::isTrusted() const
{
    ++m_questions;
    return m_trust == Trust::granted;
}

void FakeAccessibilityTrust::requestTrust()
{
    ++m_requests;
}

void FakeAccessibilityTrust::setTrust(Trust trust)
{
    m_trust = trust;
}

} // namespace orvesa
