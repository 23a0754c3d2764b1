// Large applications whose selection is captured: an editor with many menus, browsers, a word processor, a document
// viewer.

#include "desktop/apps/CaptureStage.h"

#include <QImage>
#include <QRegularExpression>
#include <QTimer>

#include <algorithm>

namespace orvesa::desktop {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto startBound = 60s;

/// A page with a paragraph and with a text area that has the keyboard. Its title says where on the screen the paragraph
/// is.
QByteArray page(const QString &areaText)
{
    return "<!DOCTYPE html><meta charset=utf-8><title>Page</title>"
           "<p style='margin:40px;font:20px monospace'><span id=p>A paragraph to drag over</span></p>"
           "<textarea rows=6 cols=60 autofocus>" +
           areaText.toHtmlEscaped().toUtf8() +
           "</textarea><script>setTimeout(() => { const r = document.getElementById('p').getBoundingClientRect();"
           "const x = window.mozInnerScreenX ?? window.screenX;"
           "const y = window.mozInnerScreenY ?? (window.screenY + window.outerHeight - window.innerHeight);"
           "document.title = 'place ' + [x + r.left, y + r.top, r.width, r.height].map(Math.round).join(' ') + ' end';"
           "}, 1500)</script>";
}

} // namespace

class HeavyApplications : public CaptureStage {
protected:
    void SetUp() override { setUp(); }

    /// Captures with the selection as it is now, three times, and shows that nothing was disturbed.
    void expectUndisturbed(const QString &title, const QString &text, const QStringList &strategies)
    {
        const QByteArray before = clipboard();
        const auto primary = desktop->selections().text(Selection::primary);
        const xcb_window_t focus = desktop->windows().rawInputFocus();
        for (const auto hold : {0ms, 300ms, 3000ms}) {
            const Captured captured = capture(hold);
            note(title + u", held for %1 ms"_s.arg(hold.count()), captured);
            EXPECT_EQ(captured.text, text);
            EXPECT_TRUE(strategies.contains(captured.strategy)) << captured.strategy.toStdString();
            EXPECT_EQ(clipboard(), before);
            EXPECT_EQ(desktop->selections().text(Selection::primary), primary);
            EXPECT_EQ(desktop->windows().rawInputFocus(), focus);
            EXPECT_EQ(desktop->windows().active(), window());
        }
    }
    /// Captures where nothing is selected.
    void expectNothing(const QString &title, const QString &strategy)
    {
        const QByteArray before = clipboard();
        const Captured captured = capture();
        note(title + u", nothing selected"_s, captured);
        EXPECT_EQ(captured.message, nothingSelected);
        EXPECT_EQ(captured.text, QString());
        EXPECT_EQ(captured.strategy, strategy);
        EXPECT_EQ(clipboard(), before);
    }
    /// Another window in which something was selected before.
    void selectElsewhere()
    {
        open(u"mousepad"_s, {u"--disable-server"_s, desktop->folders().write(u"home/older.txt"_s, "older text")},
             u"Mousepad"_s);
        select(u"Ctrl+a"_s, u"older text"_s);
    }

    void openChromium(const QByteArray &content)
    {
        const QString path = desktop->folders().write(u"home/page.html"_s, content);
        m_browser = &open(u"chromium"_s,
                          {u"--no-sandbox"_s, u"--no-first-run"_s, u"--no-default-browser-check"_s, u"--disable-gpu"_s,
                           u"--password-store=basic"_s, u"--disable-background-networking"_s,
                           u"--disable-component-update"_s, u"--user-data-dir="_s + desktop->folders().home() + u"/c"_s,
                           u"--window-size=1000,700"_s, u"file://"_s + path},
                          u"Chromium"_s, {}, startBound);
        awaitPage();
    }
    void openFirefox(const QByteArray &content)
    {
        const QString path = desktop->folders().write(u"home/page.html"_s, content);
        const QString profile = desktop->folders().home() + u"/f"_s;
        desktop->folders().write(
            u"home/f/user.js"_s,
            "user_pref('browser.aboutwelcome.enabled', "
            "false);\nuser_pref('datareporting.policy.dataSubmissionEnabled', "
            "false);\nuser_pref('browser.shell.checkDefaultBrowser', false);\nuser_pref('browser.startup.page', "
            "0);\nuser_pref('termsofuse.bypassNotification', true);\nuser_pref('app.normandy.enabled', "
            "false);\nuser_pref('browser.tabs.firefox-view', "
            "false);\nuser_pref('trailhead.firstrun.didSeeAboutWelcome', "
            "true);\nuser_pref('datareporting.policy.dataSubmissionPolicyBypassNotification', true);\n");
        m_browser = &open(u"firefox-esr"_s, {u"--no-remote"_s, u"--profile"_s, profile, u"file://"_s + path},
                          u"firefox-esr"_s, {}, startBound);
        awaitPage();
    }
    void awaitPage()
    {
        static const QRegularExpression place(u"place (\\d+) (\\d+) (\\d+) (\\d+) end"_s);
        QRegularExpressionMatch match;
        waitUntil(
            [&] {
                match = place.match(desktop->windows().title(window()));
                return match.hasMatch();
            },
            u"the page"_s, startBound);
        m_paragraph = QRect(match.captured(1).toInt(), match.captured(2).toInt(), match.captured(3).toInt(),
                            match.captured(4).toInt());
    }
    void selectAllByKeys(const QString &text) { select(u"Ctrl+a"_s, text); }
    /// Drags over the paragraph.
    void dragOverParagraph()
    {
        const QRect area = m_paragraph;
        desktop->pointer().drag(area.topLeft() + QPoint(1, area.height() / 2),
                                QPoint(area.right() + 40, area.center().y()));
        desktop->selections().awaitText(Selection::primary, u"A paragraph to drag over"_s);
    }
    /// Selects the whole page, text area and all, and waits until the browser says so.
    void selectPageByKeys()
    {
        const int before = desktop->selections().changes(Selection::primary);
        desktop->keyboard().press(u"Ctrl+a"_s);
        waitUntil([&] { return desktop->selections().changes(Selection::primary) > before; }, u"the selection"_s);
    }
    /// The user's own copy.
    void copyByKeys()
    {
        const int before = desktop->selections().changes(Selection::clipboard);
        desktop->keyboard().press(u"Ctrl+c"_s);
        waitUntil([&] { return desktop->selections().changes(Selection::clipboard) > before; }, u"the copy by keys"_s);
    }
    void clickBesideParagraph()
    {
        const QRect area = m_paragraph;
        desktop->pointer().clickAt(QPoint(area.right() + 200, area.center().y()));
    }

    /// What chromium copies of the whole page, with what is in its text area.
    const QString wholePage = u"A paragraph to drag over\n\narea"_s;
    /// What a browser tells on the accessibility bus depends on what else has asked it before.
    const QStringList anyOf{u"accessibility"_s, u"copied by keystroke"_s};
    /// What a document for printing still knows of the sample: its lines and their characters, but no blanks at the
    /// beginning of a line and no empty lines.
    const QString ofDocument = u"Hello 世界 こんにちは 👩‍👩‍👧‍👦\nzweite Zeile\nEnde."_s;
    Process *m_browser = nullptr;
    QRect m_paragraph;
};

TEST_F(HeavyApplications, Kate)
{
    copyPicture();
    selectElsewhere();
    const Process &kate = open(u"kate"_s, {u"--new"_s, desktop->folders().write(u"home/kate.txt"_s, sample.toUtf8())},
                               u"kate"_s, {}, startBound);
    const Accessible content = awaitFocusedText(kate.pid(), startBound);
    waitUntil([&] { return content.text().startsWith(sample); }, u"the document"_s);
    const QByteArray before = clipboard();
    // Its own Copy takes the line when nothing is selected.
    Captured captured = capture();
    note(u"kate, nothing selected"_s, captured);
    EXPECT_EQ(captured.text, sample.section(u'\n', 0, 0) + u'\n');
    EXPECT_EQ(clipboard(), before);
    select(u"Ctrl+a"_s, sample);
    expectUndisturbed(u"kate"_s, sample, {u"accessibility"_s});
    desktop->keyboard().press(u"x"_s);
    waitUntil([&] { return content.text() == u"x"_s; }, u"typing to replace the selection"_s);
}

TEST_F(HeavyApplications, ChromiumTextArea)
{
    copyPicture();
    selectElsewhere();
    openChromium(page(sample));
    expectNothing(u"chromium, text area"_s, u"copied by keystroke"_s);
    selectAllByKeys(sample);
    expectUndisturbed(u"chromium, text area"_s, sample, anyOf);
    desktop->keyboard().press(u"x"_s);
    EXPECT_EQ(contentByKeys(), u"x"_s);
}

TEST_F(HeavyApplications, ChromiumPage)
{
    copyPicture();
    selectElsewhere();
    openChromium(page(u"area"_s));
    dragOverParagraph();
    expectUndisturbed(u"chromium, page, drag"_s, u"A paragraph to drag over"_s, anyOf);
    clickBesideParagraph();
    expectNothing(u"chromium, page"_s, u"copied by keystroke"_s);
    selectPageByKeys();
    // Whoever copies there, PRIMARY then has what is in the text area too, which it had only a mark for before.
    copyByKeys();
    copyPicture();
    EXPECT_EQ(desktop->selections().text(Selection::primary), wholePage);
    expectUndisturbed(u"chromium, page, Ctrl+A"_s, wholePage, {u"copied by keystroke"_s});
}

TEST_F(HeavyApplications, FirefoxTextArea)
{
    copyPicture();
    selectElsewhere();
    openFirefox(page(sample));
    expectNothing(u"firefox, text area"_s, u"copied by keystroke"_s);
    selectAllByKeys(sample);
    expectUndisturbed(u"firefox, text area"_s, sample, anyOf);
    desktop->keyboard().press(u"x"_s);
    EXPECT_EQ(contentByKeys(), u"x"_s);
}

TEST_F(HeavyApplications, FirefoxPage)
{
    copyPicture();
    selectElsewhere();
    openFirefox(page(u"area"_s));
    dragOverParagraph();
    expectUndisturbed(u"firefox, page, drag"_s, u"A paragraph to drag over"_s, anyOf);
    clickBesideParagraph();
    expectNothing(u"firefox, page"_s, u"copied by keystroke"_s);
    selectPageByKeys();
    expectUndisturbed(u"firefox, page, Ctrl+A"_s, u"A paragraph to drag over\narea"_s, {u"copied by keystroke"_s});
}

TEST_F(HeavyApplications, Writer)
{
    copyPicture();
    selectElsewhere();
    const QString path = desktop->folders().write(u"home/letter.txt"_s, sample.toUtf8());
    open(u"soffice"_s,
         {u"--norestore"_s, u"--nologo"_s, u"--nofirststartwizard"_s, u"--infilter=Text (encoded):UTF8,LF"_s,
          u"--writer"_s, path},
         u"libreoffice-writer"_s, {}, startBound);
    (void)awaitFocusedText(desktop->windows().pid(window()), startBound);
    expectNothing(u"Writer"_s, u"copied by keystroke"_s);
    selectAllByKeys(sample);
    expectUndisturbed(u"Writer"_s, sample, {u"copied by keystroke"_s});
    desktop->keyboard().press(u"x"_s);
    EXPECT_EQ(contentByKeys().trimmed(), u"x"_s);
}

TEST_F(HeavyApplications, Evince)
{
    copyPicture();
    selectElsewhere();
    const QString path = desktop->folders().write(u"home/letter.txt"_s, sample.toUtf8());
    const ProcessResult converted =
        desktop->runToEnd(u"soffice"_s,
                          {u"--headless"_s, u"--infilter=Text (encoded):UTF8,LF"_s, u"--convert-to"_s, u"pdf"_s,
                           u"--outdir"_s, desktop->folders().home(), path},
                          {}, {}, startBound);
    ASSERT_EQ(converted.exitCode, 0) << converted.standardError.toStdString();
    open(u"evince"_s, {desktop->folders().home() + u"/letter.pdf"_s}, u"Evince"_s, {}, startBound);
    expectNothing(u"evince"_s, u"copied by keystroke"_s);
    // Selected by keys it does not take PRIMARY. What tells is the colour on the page, and nobody announces that.
    QTimer look;
    look.start(50ms);
    const auto isShown = [this](QRgb colour) {
        const QImage picture =
            desktop->windows().picture(desktop->windows().geometry(window())).convertToFormat(QImage::Format_RGB32);
        const auto *const pixels = reinterpret_cast<const QRgb *>(picture.constBits());
        return std::count(pixels, pixels + picture.sizeInBytes() / 4, colour) > 500;
    };
    waitUntil(
        [&] {
            desktop->keyboard().press(u"Ctrl+a"_s);
            return isShown(qRgb(0x35, 0x84, 0xe4));
        },
        u"the selection"_s);
    look.stop();
    expectUndisturbed(u"evince"_s, ofDocument, {u"copied by keystroke"_s});
}

} // namespace orvesa::desktop
