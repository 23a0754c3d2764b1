#pragma once

// Ownership of Core Foundation objects.
//
// A function with "Create" or "Copy" in its name hands over a reference that the caller has to release: it goes into an
// owner at once. Every other function only lends one, which is retained when it has to outlive its lender. Any thread.

#include <CoreFoundation/CoreFoundation.h>

#include <QtGlobal>

#include <utility>

namespace orvesa {

template <typename Reference>
class CFOwner final {
public:
    CFOwner() = default;
    /// Takes over a reference that a "Create" or "Copy" function returned; it may be null.
    explicit CFOwner(Reference created) : m_reference(created) {}
    CFOwner(CFOwner &&other) noexcept : m_reference(std::exchange(other.m_reference, nullptr)) {}
    CFOwner &operator=(CFOwner &&other) noexcept
    {
        std::swap(m_reference, other.m_reference);
        return *this;
    }
    CFOwner(const CFOwner &) = delete;
    CFOwner &operator=(const CFOwner &) = delete;
    ~CFOwner()
    {
        if (m_reference != nullptr) {
            CFRelease(m_reference);
        }
    }

    /// A reference of our own to a lent object.
    [[nodiscard]] static CFOwner retaining(Reference lent)
    {
        if (lent != nullptr) {
            CFRetain(lent);
        }
        return CFOwner(lent);
    }

    [[nodiscard]] Reference get() const { return m_reference; }
    [[nodiscard]] explicit operator bool() const { return m_reference != nullptr; }
    /// Hands the reference over to somebody who will release it.
    [[nodiscard]] Reference release() { return std::exchange(m_reference, nullptr); }
    /// Where a "Copy" function writes the reference that it hands over. Only for an owner that holds nothing yet.
    [[nodiscard]] Reference *receiver()
    {
        Q_ASSERT(m_reference == nullptr);
        return &m_reference;
    }

private:
    Reference m_reference = nullptr;
};

} // namespace orvesa
