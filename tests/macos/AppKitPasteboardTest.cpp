#include "Platform/macos/AppKitPasteboard.h"

#include "Core/ClipboardService.h"
#include "Platform/PasteboardContract.h"
#include "fakes/Awaited.h"
#include "macos/ObjectiveCTest.h"
#include "macos/recorders/Pasteboard.h"

namespace orvesa {

using namespace Qt::StringLiterals;
using recorders::Pasteboard;
using tests::Calls;

namespace {

const QString nativeText = u"public.utf8-plain-text"_s;

class AppKitPasteboardTest : public tests::ObjectiveCTest {
protected:
    Pasteboard m_general;
    AppKitPasteboard m_pasteboard;
};

} // namespace

TEST_F(AppKitPasteboardTest, KeepsTheContract)
{
    tests::expectPasteboardContract(
        m_pasteboard, {
                          .copyFromOutside =
                              [this](const QString &text) {
                                  m_general.copyFromOutside({{{nativeText, text.toUtf8()}}});
                              },
                          .pasteOutside = [this]() -> std::optional<QString> {
                              const auto contents = m_general.contents();
                              return contents.empty()
                                         ? std::nullopt
                                         : std::optional(QString::fromUtf8(contents.front().front().second));
                          },
                      });
}

TEST_F(AppKitPasteboardTest, PutsEveryItemBackInItsOrderWithOneWrite)
{
    const std::vector<Pasteboard::Data> copied{
        {{u"public.png"_s, QByteArray("\x89PNG\0", 5)}, {nativeText, "picture"}}, {}, {{u"public.rtf"_s, "{\\rtf1}"}}};
    m_general.copyFromOutside(copied);
    ClipboardService clipboard(m_pasteboard);
    const auto snapshot = awaited(clipboard.snapshot());
    ASSERT_TRUE(snapshot.has_value());
    m_general.copyFromOutside({{{nativeText, "the selection"}}});
    clipboard.restore(*snapshot);
    EXPECT_EQ(m_general.contents(), copied);
    EXPECT_EQ(recorders::calls(), (Calls{"clearContents", "writeObjects 3"}));
}

TEST_F(AppKitPasteboardTest, IsLeftEmptyWhereItWasEmpty)
{
    ClipboardService clipboard(m_pasteboard);
    const auto snapshot = awaited(clipboard.snapshot());
    m_general.copyFromOutside({{{nativeText, "the selection"}}});
    clipboard.restore(snapshot.value());
    EXPECT_TRUE(m_general.contents().empty());
    EXPECT_EQ(recorders::calls(), Calls{"clearContents"});
}

} // namespace orvesa
