#include "Platform/SecretBuffer.h"

#include <gtest/gtest.h>

#include <string>

namespace orvesa {

using namespace Qt::StringLiterals;

TEST(SecretBuffer, IsLeftWholeForItsOtherHolders)
{
    QByteArray secret(9, 's');
    QByteArray other = secret;
    clearSecret(secret);
    EXPECT_TRUE(secret.isEmpty());
    EXPECT_EQ(other, "sssssssss");
    clearSecret(other);
    EXPECT_TRUE(other.isEmpty());
}

TEST(SecretBuffer, TakesTextsAndNothingAtAll)
{
    QString text = u"sk-secret"_s; // in the program's read-only memory
    clearSecret(text);
    EXPECT_TRUE(text.isEmpty());
    QString none;
    clearSecret(none);
    EXPECT_TRUE(none.isNull());
}

namespace {

/// A buffer that shows what happened to its memory.
class WatchedBuffer final {
public:
    using value_type = char;

    explicit WatchedBuffer(std::string &memory) : m_memory(&memory) {}
    WatchedBuffer() = default;

    [[nodiscard]] bool isDetached() const { return m_isDetached; }
    [[nodiscard]] bool isEmpty() const { return m_memory == nullptr; }
    [[nodiscard]] qsizetype size() const { return static_cast<qsizetype>(m_memory->size()); }
    [[nodiscard]] char *data() { return m_memory->data(); }
    void share() { m_isDetached = false; }

private:
    std::string *m_memory = nullptr;
    bool m_isDetached = true;
};

} // namespace

TEST(SecretBuffer, HasOnlyZerosAfterwards)
{
    std::string memory("sk-secret");
    {
        WatchedBuffer buffer(memory);
        const SecretClearing clearing(buffer);
        EXPECT_EQ(memory, "sk-secret");
    }
    EXPECT_EQ(memory, std::string(9, '\0'));
}

TEST(SecretBuffer, IsLeftToThoseWhoShareIt)
{
    std::string memory("sk-secret");
    WatchedBuffer buffer(memory);
    buffer.share();
    clearSecret(buffer);
    EXPECT_EQ(memory, "sk-secret");
    EXPECT_TRUE(buffer.isEmpty());
}

} // namespace orvesa
