#include "desktop/TextEditor.h"

#include <QFileInfo>

namespace orvesa::desktop {

using namespace Qt::StringLiterals;

namespace {

QStringList arguments(const Desktop &desktop, const QString &text)
{
    if (text.isEmpty())
        return {u"--disable-server"_s};
    QString name = u"home/document.txt"_s;
    for (int number = 2; QFileInfo::exists(desktop.folders().top() + u'/' + name); ++number)
        name = u"home/document-%1.txt"_s.arg(number);
    return {u"--disable-server"_s, desktop.folders().write(name, text.toUtf8())};
}

} // namespace

TextEditor::TextEditor(Desktop &desktop, const QString &text)
    : m_desktop(desktop), m_process(desktop.launch(u"mousepad"_s, arguments(desktop, text))),
      m_window(desktop.windows().awaitWindow({.pid = m_process.pid(), .title = u"Mousepad"_s}))
{
    desktop.windows().awaitActive(m_window);
    m_content = desktop.accessibles().await(m_process.pid(), u"text"_s);
    waitUntil([this] { return m_content.has(AccessibleState::focused); }, u"the editor's text to have the focus"_s);
    waitUntil([&] { return m_content.text() == text; }, u"the editor to show its document"_s);
}

void TextEditor::replaceText(const QString &text)
{
    if (!m_content.text().isEmpty())
        selectAll();
    m_desktop.keyboard().type(text);
    waitUntil([&] { return m_content.text() == text; }, u"the editor to hold what was typed"_s);
    selectAll();
}

bool TextEditor::choose(const QString &menuEntry)
{
    const Accessible entry =
        m_desktop.accessibles().application(m_process.pid()).find([&](const Accessible &accessible) {
            return accessible.role().endsWith(u"menu item"_s) && accessible.name().trimmed() == menuEntry;
        });
    return entry.doAction(u"click"_s);
}

void TextEditor::selectAll()
{
    const QString text = m_content.text();
    m_desktop.keyboard().press(u"Ctrl+a"_s);
    m_desktop.selections().awaitText(Selection::primary, text);
}

QPoint TextEditor::middle() const
{
    return m_desktop.windows().geometry(m_window).center();
}

bool TextEditor::isInUse() const
{
    return m_desktop.windows().active() == m_window && m_desktop.windows().inputFocus() == m_window &&
           m_content.has(AccessibleState::focused);
}

} // namespace orvesa::desktop
