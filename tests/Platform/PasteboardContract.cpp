#include "Platform/PasteboardContract.h"

#include "fakes/Awaited.h"

#include <gtest/gtest.h>

namespace orvesa::tests {

using namespace Qt::StringLiterals;

namespace {

using Outcome = PasteboardReading::Outcome;

const QString plainText = QString::fromLatin1(pasteboardPlainText);
const QString picture = u"application/x-test-picture"_s;
const QByteArray pictureBytes("\x89PNG\0\xff", 6);

/// The content as the clipboard is put back from it.
std::vector<PasteboardItem> readAll(PasteboardPort &pasteboard)
{
    std::vector<PasteboardItem> items;
    const auto types = awaited(pasteboard.itemTypes());
    EXPECT_TRUE(types.has_value());
    for (std::size_t index = 0; types && index < types->size(); ++index) {
        PasteboardItem item;
        for (const QString &type : (*types)[index]) {
            const PasteboardReading reading = awaited(pasteboard.data(index, type));
            EXPECT_NE(reading.outcome, Outcome::unreachable);
            if (reading.outcome == Outcome::data) {
                item.push_back({type, reading.data});
            }
        }
        items.push_back(item);
    }
    return items;
}

} // namespace

void expectPasteboardContract(PasteboardPort &pasteboard, const PasteboardBench &bench)
{
    // What others copy is seen, and counted; looking changes nothing.
    const qint64 before = pasteboard.changeCount();
    bench.copyFromOutside(u" kopiert 日本\n"_s);
    const qint64 copied = pasteboard.changeCount();
    EXPECT_NE(copied, before);
    EXPECT_EQ(awaited(pasteboard.string()), u" kopiert 日本\n"_s);
    EXPECT_NE(awaited(pasteboard.data(0, u"application/x-not-there"_s)).outcome, Outcome::data);
    EXPECT_EQ(awaited(pasteboard.data(7, plainText)).outcome, Outcome::none);
    const std::vector<PasteboardItem> taken = readAll(pasteboard);
    ASSERT_EQ(taken.size(), 1U);
    EXPECT_EQ(pasteboard.changeCount(), copied);

    // What is written is there for others at once, with every type's own bytes.
    pasteboard.clear();
    ASSERT_TRUE(pasteboard.write({{{plainText, {QByteArray("geschrieben"), {}}}, {picture, {pictureBytes, {}}}}}));
    EXPECT_NE(pasteboard.changeCount(), copied);
    EXPECT_EQ(bench.pasteOutside(), u"geschrieben"_s);
    EXPECT_EQ(awaited(pasteboard.string()), u"geschrieben"_s);
    const PasteboardReading read = awaited(pasteboard.data(0, picture));
    EXPECT_EQ(read.outcome, Outcome::data);
    EXPECT_EQ(read.data.bytes, pictureBytes);

    // Put back, the earlier content is as it was.
    pasteboard.clear();
    ASSERT_TRUE(pasteboard.write(taken));
    EXPECT_EQ(bench.pasteOutside(), u" kopiert 日本\n"_s);
    EXPECT_EQ(awaited(pasteboard.string()), u" kopiert 日本\n"_s);
    EXPECT_NE(awaited(pasteboard.data(0, picture)).outcome, Outcome::data);

    // Emptied, there is nothing.
    const qint64 put = pasteboard.changeCount();
    pasteboard.clear();
    bench.awaitChange(put);
    EXPECT_NE(pasteboard.changeCount(), put);
    EXPECT_EQ(awaited(pasteboard.string()), std::nullopt);
    EXPECT_TRUE(readAll(pasteboard).empty());
    EXPECT_EQ(bench.pasteOutside(), std::nullopt);
}

} // namespace orvesa::tests
