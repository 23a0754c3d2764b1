// Small applications whose selection is captured: editors of three toolkits.

#include "desktop/apps/CaptureStage.h"

namespace orvesa::desktop {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

struct Editor {
    const char *name;
    QStringList arguments;
    QString windowClass;
    QString strategy;       ///< that answers when text is selected
    QString emptyStrategy;  ///< and when none is
    QString textWithoutOwn; ///< what its own Copy gives when nothing is selected
    bool isPrimaryByKeys;   ///< whether selecting by keys takes PRIMARY
};

void PrintTo(const Editor &editor, std::ostream *stream)
{
    *stream << editor.name;
}

} // namespace

class LightEditors : public CaptureStage, public ::testing::WithParamInterface<Editor> {
protected:
    void SetUp() override { setUp(); }

    Process &openDocument(const QString &text)
    {
        const QString path = desktop->folders().write(u"home/document-%1.txt"_s.arg(++m_documents), text.toUtf8());
        Process &process = open(QString::fromLatin1(GetParam().name), GetParam().arguments + QStringList{path},
                                GetParam().windowClass);
        m_content = awaitFocusedText(process.pid());
        waitUntil([&] { return m_content.text() == text; }, u"the document"_s);
        return process;
    }
    void selectAll(const QString &text)
    {
        desktop->keyboard().press(u"Ctrl+a"_s);
        waitUntil([&] { return m_content.selectedText() == text; }, u"the selection"_s);
        if (GetParam().isPrimaryByKeys) {
            desktop->selections().awaitText(Selection::primary, text);
        }
    }

    Accessible m_content;

private:
    int m_documents = 0;
};

INSTANTIATE_TEST_SUITE_P(
    Applications, LightEditors,
    ::testing::Values(
        Editor{
            "mousepad", {u"--disable-server"_s}, u"Mousepad"_s, u"accessibility"_s, u"menu item disabled"_s, {}, true},
        Editor{"gedit", {u"--standalone"_s}, u"Gedit"_s, u"accessibility"_s, u"copied by keystroke"_s, {}, true},
        Editor{"gnome-text-editor",
               {u"--standalone"_s},
               u"gnome-text-editor"_s,
               u"accessibility"_s,
               u"copied by the menu item"_s,
               {},
               true},
        Editor{"featherpad",
               {u"--standalone"_s},
               u"FeatherPad"_s,
               u"accessibility"_s,
               u"menu item disabled"_s,
               {},
               false}),
    [](const auto &parameter) {
        std::string name = parameter.param.name;
        std::erase(name, '-');
        return name;
    });

TEST_P(LightEditors, GivesExactlyWhatIsSelectedAndIsNotDisturbed)
{
    copyPicture();
    openDocument(sample);
    selectAll(sample);
    const QByteArray before = clipboard();
    const auto primary = desktop->selections().text(Selection::primary);
    const xcb_window_t focus = desktop->windows().rawInputFocus();
    for (const auto hold : {0ms, 300ms, 3000ms}) {
        const Captured captured = capture(hold);
        note(QString::fromLatin1(GetParam().name) + u", held for %1 ms"_s.arg(hold.count()), captured);
        EXPECT_EQ(captured.text, sample);
        EXPECT_EQ(captured.strategy, GetParam().strategy);
        EXPECT_EQ(clipboard(), before);
        EXPECT_EQ(desktop->selections().text(Selection::primary), primary);
        EXPECT_EQ(desktop->windows().rawInputFocus(), focus);
        EXPECT_EQ(desktop->windows().active(), window());
    }
    desktop->keyboard().press(u"x"_s);
    waitUntil([this] { return m_content.text() == u"x"_s; }, u"typing to replace the selection"_s);
}

TEST_P(LightEditors, GivesNothingWhenNothingIsSelected)
{
    // Another window holds an earlier selection, and this one has just lost its own.
    copyPicture();
    open(u"mousepad"_s, {u"--disable-server"_s, desktop->folders().write(u"home/older.txt"_s, "older text")},
         u"Mousepad"_s);
    desktop->keyboard().press(u"Ctrl+a"_s);
    desktop->selections().awaitText(Selection::primary, u"older text"_s);
    const Process &editor = openDocument(sample);
    waitUntil([&] { return desktop->windows().pid(desktop->windows().active()) == editor.pid(); }, u"the editor"_s);
    const QByteArray before = clipboard();
    Captured captured = capture();
    note(QString::fromLatin1(GetParam().name) + u", nothing selected"_s, captured);
    EXPECT_EQ(captured.message, nothingSelected);
    EXPECT_EQ(captured.strategy, GetParam().emptyStrategy);
    EXPECT_EQ(clipboard(), before);

    selectAll(sample);
    desktop->keyboard().press(u"Right"_s);
    waitUntil([this] { return m_content.selectedText().isEmpty(); }, u"the selection to go"_s);
    captured = capture();
    EXPECT_EQ(captured.message, nothingSelected);
    EXPECT_EQ(clipboard(), before);
}

class GTK4Editor : public CaptureStage {
protected:
    void SetUp() override { setUp(); }

    Accessible openDocument(const QString &text)
    {
        const Process &process =
            open(u"gnome-text-editor"_s,
                 {u"--standalone"_s, desktop->folders().write(u"home/document.txt"_s, text.toUtf8())},
                 u"gnome-text-editor"_s);
        const Accessible content = awaitFocusedText(process.pid());
        waitUntil([&] { return content.text() == text; }, u"the document"_s);
        return content;
    }
};

TEST_F(GTK4Editor, CopiesByItsOwnCommandWhatAccessibilityTellsInPart)
{
    // The character stands for something that is no text, so what accessibility tells may not be all of it.
    const QString text = u"before \uFFFC after\n  世界 👩‍👩‍👧‍👦"_s;
    copyPicture();
    const Accessible content = openDocument(text);
    desktop->keyboard().press(u"Ctrl+a"_s);
    desktop->selections().awaitText(Selection::primary, text);
    const QByteArray before = clipboard();
    const xcb_window_t focus = desktop->windows().rawInputFocus();
    for (const auto hold : {0ms, 300ms, 3000ms}) {
        const Captured captured = capture(hold);
        note(u"gnome-text-editor, its own command, held for %1 ms"_s.arg(hold.count()), captured);
        EXPECT_EQ(captured.text, text);
        EXPECT_EQ(captured.strategy, u"copied by the menu item"_s);
        EXPECT_EQ(clipboard(), before);
        EXPECT_EQ(desktop->selections().text(Selection::primary), text);
        EXPECT_EQ(desktop->windows().rawInputFocus(), focus);
    }
    desktop->keyboard().press(u"x"_s);
    waitUntil([&] { return content.text() == u"x"_s; }, u"typing to replace the selection"_s);
}

} // namespace orvesa::desktop
