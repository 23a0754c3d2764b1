#include "Platform/linux/X11Pasteboard.h"

#include "Platform/AdoptedDesktop.h"
#include "Platform/PasteboardContract.h"
#include "fakes/Awaited.h"
#include "fakes/QtPrinting.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QTimer>

#include <algorithm>

namespace orvesa {

using namespace Qt::StringLiterals;
using desktop::Selection;
using desktop::waitUntil;
using ::testing::Contains;
using ::testing::IsEmpty;
using tests::AdoptedDesktop;

namespace {

/// The longest time for which the event loop did nothing while this was alive.
class Ticking final {
public:
    Ticking()
    {
        m_timer.setTimerType(Qt::PreciseTimer);
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] {
            m_longest = std::max(m_longest, m_since.restart());
            ++m_count;
        });
        m_since.start();
        m_timer.start(std::chrono::milliseconds(2));
    }

    [[nodiscard]] qint64 longestPause() const { return std::max(m_longest, m_since.elapsed()); }
    [[nodiscard]] int count() const { return m_count; }

private:
    QTimer m_timer;
    QElapsedTimer m_since;
    qint64 m_longest = 0;
    int m_count = 0;
};

struct Contents {
    std::vector<PasteboardItem> items;
    bool isWhole = true;
};

QCoro::Task<Contents> readAll(PasteboardPort &pasteboard)
{
    Contents contents;
    const auto types = co_await pasteboard.itemTypes();
    if (!types) {
        contents.isWhole = false;
        co_return contents;
    }
    for (std::size_t index = 0; index < types->size(); ++index) {
        PasteboardItem item;
        for (const QString &type : (*types)[index]) {
            const PasteboardReading reading = co_await pasteboard.data(index, type);
            contents.isWhole = contents.isWhole && reading.outcome != PasteboardReading::Outcome::unreachable;
            if (!contents.isWhole) {
                co_return contents;
            }
            if (reading.outcome == PasteboardReading::Outcome::data) {
                item.push_back({type, reading.data});
            }
        }
        contents.items.push_back(item);
    }
    co_return contents;
}

std::optional<QByteArray> bytesOf(const Contents &contents, const QString &type)
{
    for (const PasteboardItem &item : contents.items) {
        const auto found = std::ranges::find(item, type, &PasteboardEntry::type);
        if (found != item.end()) {
            return found->data.bytes;
        }
    }
    return std::nullopt;
}

class X11PasteboardTest : public ::testing::Test {
protected:
    /// Another program copies.
    desktop::Process &copyElsewhere(qsizetype bytes, int types, const QString &secrecy = {})
    {
        desktop::Process &owner = m_desktop->launch(QStringLiteral(ORVESA_CLIPBOARD_PROBE),
                                                    {u"own"_s, QString::number(bytes), QString::number(types), secrecy},
                                                    {{u"QT_QPA_PLATFORM"_s, u"xcb"_s}});
        EXPECT_EQ(owner.readLine(), "owns");
        waitUntil([this] { return m_desktop->selections().owner(Selection::clipboard) != 0; }, u"the copy"_s);
        return owner;
    }
    /// What another program sees.
    QByteArray pasteElsewhere()
    {
        return m_desktop
            ->runToEnd(QStringLiteral(ORVESA_CLIPBOARD_PROBE), {u"read"_s}, {{u"QT_QPA_PLATFORM"_s, u"xcb"_s}})
            .standardOutput;
    }
    QByteArray targetsElsewhere()
    {
        return m_desktop->runToEnd(u"xclip"_s, {u"-out"_s, u"-selection"_s, u"clipboard"_s, u"-target"_s, u"TARGETS"_s})
            .standardOutput;
    }
    Contents read() { return awaited(readAll(*m_pasteboard)); }

    AdoptedDesktop m_desktop{tests::sessionOnly()};
    X11Connection m_connection;
    std::unique_ptr<X11Pasteboard> m_pasteboard = std::make_unique<X11Pasteboard>(m_connection);
};

} // namespace

TEST_F(X11PasteboardTest, KeepsTheContract)
{
    X11Connection connection;
    X11Pasteboard other(connection);
    const auto awaitChange = [this](qint64 count) {
        waitUntil([&] { return m_pasteboard->changeCount() != count; }, u"the change"_s);
    };
    const auto copy = [&](const QString &text) {
        const qint64 before = m_pasteboard->changeCount();
        EXPECT_TRUE(other.write({{{QString::fromLatin1(pasteboardPlainText), {text.toUtf8(), {}}}}}));
        awaitChange(before);
    };
    const auto paste = [&other] { return awaited(other.string()); };
    tests::expectPasteboardContract(*m_pasteboard,
                                    {.copyFromOutside = copy, .pasteOutside = paste, .awaitChange = awaitChange});
}

TEST_F(X11PasteboardTest, ReadsNothingFromAnEmptyClipboard)
{
    EXPECT_THAT(read().items, IsEmpty());
    EXPECT_EQ(awaited(m_pasteboard->string()), std::nullopt);
}

TEST_F(X11PasteboardTest, CountsEveryChange)
{
    const qint64 before = m_pasteboard->changeCount();
    desktop::Process &owner = copyElsewhere(10, 0);
    const qint64 copied = m_pasteboard->changeCount();
    EXPECT_GT(copied, before);
    EXPECT_EQ(m_pasteboard->changeCount(), copied);
    (void)read();
    EXPECT_EQ(m_pasteboard->changeCount(), copied) << "reading is no change";
    owner.kill();
    waitUntil([&] { return m_pasteboard->changeCount() > copied; }, u"the end of the owner to count"_s);
}

TEST_F(X11PasteboardTest, PutsBackByteForByteWhatAnotherProgramCopied)
{
    copyElsewhere(3'000'000, 5);
    const QByteArray before = pasteElsewhere();
    const QByteArray targetsBefore = targetsElsewhere();
    EXPECT_TRUE(before.contains("image/png 3000000 ")) << before.toStdString();
    EXPECT_TRUE(before.contains("application/x-orvesa-4 3 "));
    const Contents contents = read();
    EXPECT_TRUE(contents.isWhole);
    ASSERT_EQ(contents.items.size(), 1U);

    copyElsewhere(0, 0); // the captured selection
    EXPECT_NE(pasteElsewhere(), before);
    m_pasteboard->clear();
    EXPECT_TRUE(m_pasteboard->write(contents.items));
    EXPECT_EQ(pasteElsewhere(), before);
    EXPECT_EQ(targetsElsewhere(), targetsBefore) << "in the same order";
    EXPECT_EQ(read().items, contents.items) << "a later capture reads them from us";
}

TEST_F(X11PasteboardTest, KeepsTheFormOfData)
{
    const Contents contents = [&] {
        copyElsewhere(0, 0);
        return read();
    }();
    const PasteboardItem item{{u"TARGETS"_s, {{}, u"owner"_s}},
                              {u"TIMESTAMP"_s, {{}, u"owner"_s}},
                              {u"LENGTH"_s, {QByteArray("\1\0\0\0\2\0\0\0", 8), u"INTEGER/32"_s}},
                              {u"SHORTS"_s, {QByteArray("\1\2\3\4", 4), u"INTEGER/16"_s}},
                              {u"TEXT"_s, {"\xe4", u"STRING/8"_s}},
                              {u"EMPTY"_s, {QByteArray(""), u"UTF8_STRING/8"_s}}};
    ASSERT_TRUE(m_pasteboard->write({item}));
    const Contents again = read();
    ASSERT_EQ(again.items.size(), 1U);
    EXPECT_EQ(again.items.front(), item);
}

TEST_F(X11PasteboardTest, CopiesTextUnderTheNamesThatProgramsAskFor)
{
    ASSERT_TRUE(m_pasteboard->write({{{QString::fromLatin1(pasteboardPlainText), {"\xc3\xa4 text", {}}}}}));
    EXPECT_EQ(m_desktop->selections().text(Selection::clipboard), u"ä text"_s);
    for (const auto *const target : {"UTF8_STRING", "text/plain", "text/plain;charset=utf-8", "TEXT"}) {
        EXPECT_EQ(m_desktop
                      ->runToEnd(u"xclip"_s, {u"-out"_s, u"-selection"_s, u"clipboard"_s, u"-target"_s,
                                              QString::fromLatin1(target)})
                      .standardOutput,
                  "\xc3\xa4 text")
            << target;
    }
    EXPECT_EQ(awaited(m_pasteboard->string()), u"ä text"_s);
    EXPECT_EQ(m_desktop->runToEnd(u"xclip"_s, {u"-out"_s, u"-selection"_s, u"clipboard"_s, u"-target"_s, u"STRING"_s})
                  .standardOutput,
              "\xe4 text");
}

TEST_F(X11PasteboardTest, EmptiesTheClipboardWhenNothingIsWritten)
{
    copyElsewhere(10, 0);
    m_pasteboard->clear();
    waitUntil([this] { return m_desktop->selections().owner(Selection::clipboard) == 0; }, u"nobody to own it"_s);
    EXPECT_FALSE(m_pasteboard->write({}));
    EXPECT_EQ(m_desktop->selections().owner(Selection::clipboard), 0U);
}

TEST_F(X11PasteboardTest, ReplacesTheContentsInOneStep)
{
    copyElsewhere(10, 0);
    const Contents contents = read();
    const int before = m_desktop->selections().changes(Selection::clipboard);
    m_pasteboard->clear();
    ASSERT_TRUE(m_pasteboard->write(contents.items));
    desktop::processEventsFor(std::chrono::milliseconds(100));
    EXPECT_EQ(m_desktop->selections().changes(Selection::clipboard), before + 1);
}

TEST_F(X11PasteboardTest, ReadsAndServesFiftyMegabytesWhileTheEventLoopGoesOn)
{
    constexpr qsizetype size = 50'000'000;
    copyElsewhere(size, 0);
    QElapsedTimer timer;
    timer.start();
    const Ticking ticking;
    const Contents contents = read();
    RecordProperty("millisecondsToRead", static_cast<int>(timer.elapsed()));
    RecordProperty("longestPause", static_cast<int>(ticking.longestPause()));
    EXPECT_LT(ticking.longestPause(), 250);
    EXPECT_TRUE(contents.isWhole);
    const auto picture = bytesOf(contents, u"image/png"_s);
    ASSERT_TRUE(picture);
    EXPECT_EQ(picture->size(), size);
    const QByteArray before = pasteElsewhere();
    timer.restart();
    ASSERT_TRUE(m_pasteboard->write(contents.items));
    EXPECT_LT(timer.elapsed(), 250);
    EXPECT_EQ(pasteElsewhere(), before);
}

TEST_F(X11PasteboardTest, ReadsTwoHundredTargets)
{
    copyElsewhere(1000, 200);
    QElapsedTimer timer;
    timer.start();
    const Ticking ticking;
    const Contents contents = read();
    RecordProperty("milliseconds", static_cast<int>(timer.elapsed()));
    EXPECT_TRUE(contents.isWhole);
    EXPECT_EQ(bytesOf(contents, u"application/x-orvesa-199"_s), QByteArray("199\0\xff", 5));
    EXPECT_LT(timer.elapsed(), 3000);
    EXPECT_LT(ticking.longestPause(), 250);
    const QByteArray before = pasteElsewhere();
    ASSERT_TRUE(m_pasteboard->write(contents.items));
    EXPECT_EQ(pasteElsewhere(), before);
}

TEST_F(X11PasteboardTest, GivesUpOnAnOwnerThatHasStopped)
{
    desktop::Process &owner = copyElsewhere(1000, 3);
    owner.freeze();
    QElapsedTimer timer;
    timer.start();
    const Ticking ticking;
    EXPECT_FALSE(read().isWhole);
    EXPECT_GE(timer.elapsed(), 900);
    EXPECT_LT(timer.elapsed(), 1500);
    timer.restart();
    EXPECT_EQ(awaited(m_pasteboard->string()), std::nullopt);
    EXPECT_LT(timer.elapsed(), 1500);
    EXPECT_LT(ticking.longestPause(), 100);
    EXPECT_GT(ticking.count(), 100);
    owner.thaw();
    EXPECT_TRUE(read().isWhole) << "nothing was lost";
}

TEST_F(X11PasteboardTest, GivesUpOnAnOwnerThatStopsInTheMiddle)
{
    desktop::Process &owner = copyElsewhere(50'000'000, 0);
    QTimer::singleShot(std::chrono::milliseconds(60), [&owner] { owner.freeze(); });
    QElapsedTimer timer;
    timer.start();
    const Contents contents = read();
    EXPECT_LT(timer.elapsed(), 4500);
    const auto picture = bytesOf(contents, u"image/png"_s);
    EXPECT_TRUE(!contents.isWhole || (picture && picture->size() == 50'000'000)) << "half a picture is none";
    owner.thaw();
}

TEST_F(X11PasteboardTest, AnOwnerThatDiesInTheMiddleIsAChange)
{
    desktop::Process &owner = copyElsewhere(50'000'000, 0);
    const qint64 before = m_pasteboard->changeCount();
    QTimer::singleShot(std::chrono::milliseconds(40), [&owner] { owner.kill(); });
    QElapsedTimer timer;
    timer.start();
    const Ticking ticking;
    (void)read();
    EXPECT_LT(timer.elapsed(), 4500);
    EXPECT_LT(ticking.longestPause(), 250);
    EXPECT_GT(m_pasteboard->changeCount(), before);
    EXPECT_THAT(read().items, IsEmpty());
}

TEST_F(X11PasteboardTest, KeepsServingWhileTheMainThreadIsBusy)
{
    copyElsewhere(1000, 2);
    const Contents contents = read();
    const QByteArray before = pasteElsewhere();
    ASSERT_TRUE(m_pasteboard->write(contents.items));
    // Nothing of this process' event loop runs until the reader has ended.
    QProcess reader;
    reader.setProcessEnvironment(m_desktop->environment());
    QProcessEnvironment environment = m_desktop->environment();
    environment.insert(u"QT_QPA_PLATFORM"_s, u"xcb"_s);
    reader.setProcessEnvironment(environment);
    reader.start(QStringLiteral(ORVESA_CLIPBOARD_PROBE), {u"read"_s});
    ASSERT_TRUE(reader.waitForFinished(5000));
    EXPECT_EQ(reader.readAllStandardOutput(), before);
}

TEST_F(X11PasteboardTest, LeavesTheContentsToAClipboardManager)
{
    desktop::Process &manager = m_desktop->launch(u"xfsettingsd"_s, {u"--disable-wm-check"_s, u"--no-daemon"_s});
    waitUntil([this] { return m_desktop->selections().owner("CLIPBOARD_MANAGER") != 0; }, u"the clipboard manager"_s);
    ASSERT_TRUE(m_pasteboard->write({{{QString::fromLatin1(pasteboardPlainText), {"left behind", {}}}}}));
    m_pasteboard.reset();
    waitUntil([this] { return m_desktop->selections().owner(Selection::clipboard) != 0; }, u"the manager to own it"_s);
    EXPECT_EQ(m_desktop->selections().text(Selection::clipboard), u"left behind"_s);
    manager.terminate();
}

TEST_F(X11PasteboardTest, LeavesNoSecretToAClipboardManager)
{
    desktop::Process &manager = m_desktop->launch(u"xfsettingsd"_s, {u"--disable-wm-check"_s, u"--no-daemon"_s});
    waitUntil([this] { return m_desktop->selections().owner("CLIPBOARD_MANAGER") != 0; }, u"the clipboard manager"_s);
    copyElsewhere(0, 0, u"secret"_s);
    const Contents contents = read();
    EXPECT_EQ(bytesOf(contents, u"x-kde-passwordManagerHint"_s), "secret");
    copyElsewhere(0, 0);
    ASSERT_TRUE(m_pasteboard->write(contents.items));
    EXPECT_TRUE(pasteElsewhere().contains("x-kde-passwordManagerHint 6 ")) << "it is put back with its mark";
    m_pasteboard.reset();
    desktop::processEventsFor(std::chrono::milliseconds(300));
    EXPECT_EQ(m_desktop->selections().owner(Selection::clipboard), 0U);
    manager.terminate();
}

TEST(X11PasteboardWithoutDisplay, HasNothingAndTakesNothing)
{
    qunsetenv("DISPLAY");
    X11Connection connection;
    X11Pasteboard pasteboard(connection);
    EXPECT_EQ(pasteboard.changeCount(), 0);
    EXPECT_THAT(awaited(readAll(pasteboard)).items, IsEmpty());
    EXPECT_EQ(awaited(pasteboard.string()), std::nullopt);
    pasteboard.clear();
    EXPECT_FALSE(pasteboard.write({{{QString::fromLatin1(pasteboardPlainText), {"text", {}}}}}));
}

} // namespace orvesa
