#include "Platform/linux/XSettings.h"

#include <gtest/gtest.h>

#include <QtEndian>

namespace orvesa {
namespace {

/// Settings as a settings daemon writes them.
class Settings {
public:
    explicit Settings(bool isBigEndian) : m_isBigEndian(isBigEndian) {}

    void addInteger(const QByteArray &name, qint32 value)
    {
        begin(0, name);
        append(static_cast<quint32>(value));
    }
    void addText(const QByteArray &name, const QByteArray &value)
    {
        begin(1, name);
        append(static_cast<quint32>(value.size()));
        m_bytes += value.leftJustified((value.size() + 3) / 4 * 4, '\0');
    }
    void addColor(const QByteArray &name)
    {
        begin(2, name);
        m_bytes += QByteArray(8, '\7');
    }

    [[nodiscard]] QByteArray bytes() const
    {
        Settings head(m_isBigEndian);
        head.m_bytes = QByteArray(1, m_isBigEndian ? '\1' : '\0') + QByteArray(3, '\0');
        head.append(quint32{7});
        head.append(m_count);
        return head.m_bytes + m_bytes;
    }

private:
    template <typename Number>
    void append(Number number)
    {
        const Number ordered = m_isBigEndian ? qToBigEndian(number) : qToLittleEndian(number);
        m_bytes.append(reinterpret_cast<const char *>(&ordered), sizeof ordered);
    }
    void begin(char type, const QByteArray &name)
    {
        ++m_count;
        m_bytes += QByteArray(1, type) + '\0';
        append(static_cast<quint16>(name.size()));
        m_bytes += name.leftJustified((name.size() + 3) / 4 * 4, '\0');
        append(quint32{7});
    }

    bool m_isBigEndian;
    quint32 m_count = 0;
    QByteArray m_bytes;
};

QByteArray sample(bool isBigEndian)
{
    Settings settings(isBigEndian);
    settings.addText("Net/ThemeName", "Adwaita");
    settings.addColor("Any/Color");
    settings.addInteger("Gtk/EnableAnimations", 0);
    settings.addInteger("Xft/DPI", -98304);
    return settings.bytes();
}

TEST(XSettings, FindsANumberAmongAllKinds)
{
    for (const bool isBigEndian : {false, true}) {
        EXPECT_EQ(XSettings::integer(sample(isBigEndian), "Gtk/EnableAnimations"), 0);
        EXPECT_EQ(XSettings::integer(sample(isBigEndian), "Xft/DPI"), -98304);
        EXPECT_FALSE(XSettings::integer(sample(isBigEndian), "Net/ThemeName").has_value());
        EXPECT_FALSE(XSettings::integer(sample(isBigEndian), "Gtk/Enable").has_value());
    }
}

TEST(XSettings, SurvivesEveryCut)
{
    const QByteArray whole = sample(false);
    for (qsizetype length = 0; length < whole.size(); ++length) {
        EXPECT_FALSE(XSettings::integer(whole.first(length), "Xft/DPI").has_value()) << length;
    }
    for (qsizetype place = 0; place < whole.size(); ++place) {
        QByteArray broken = whole;
        broken[place] = '\xff';
        static_cast<void>(XSettings::integer(broken, "Xft/DPI"));
    }
}

} // namespace
} // namespace orvesa
