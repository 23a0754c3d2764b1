#include "Core/TextSelectionServiceTest.h"

#include <chrono>

namespace orvesa {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 process = 4711;

} // namespace

TextSelectionServiceTest::TextSelectionServiceTest()
    : m_kept{{u"image/png"_s, {QByteArray("\x89PNG\0\1", 6), u"image/png/8"_s}},
             {u"UTF8_STRING"_s, {"kept", u"UTF8_STRING/8"_s}}}
{
    m_workspace.setFrontmostApplication(process);
}

QCoro::Task<void> TextSelectionServiceTest::runInto(TextSelectionService &service, std::shared_ptr<Capture> capture,
                                                    std::stop_token stop)
{
    try {
        capture->text = co_await service.currentSelectedText(stop);
    } catch (const AppError &error) {
        capture->error = error;
    }
    capture->isOver = true;
}

std::shared_ptr<TextSelectionServiceTest::Capture> TextSelectionServiceTest::beginOn(TextSelectionService &service,
                                                                                     std::stop_token stop)
{
    auto capture = std::make_shared<Capture>();
    (void)runInto(service, capture, std::move(stop));
    return capture;
}

std::shared_ptr<TextSelectionServiceTest::Capture> TextSelectionServiceTest::runToEnd()
{
    auto capture = begin();
    m_clock.advance(std::chrono::seconds(3));
    EXPECT_TRUE(capture->isOver);
    return capture;
}

QString TextSelectionServiceTest::capture()
{
    return runToEnd()->text.value_or(u"(failed)"_s);
}

AccessibilityElement TextSelectionServiceTest::addCopyItem(bool isEnabled)
{
    const AccessibilityElement copy =
        m_elements.makeElement({{u"AXIdentifier"_s, u"copy:"_s}, {u"AXEnabled"_s, isEnabled}});
    const auto parentOf = [&](const AccessibilityElement &child) {
        return m_elements.makeElement({{u"AXChildren"_s, std::vector{child}}});
    };
    m_elements.setApplication(process, m_elements.makeElement({{u"AXMenuBar"_s, parentOf(parentOf(copy))}}));
    return copy;
}

void TextSelectionServiceTest::copyOnKeystroke(const QString &text)
{
    m_keyboard.setPostHandler([this, text](const FakeKeyboardEvents::Event &event) {
        if (event.transition == KeyTransition::down) {
            m_pasteboard.copyFromOutside(text);
        }
    });
}

} // namespace orvesa
