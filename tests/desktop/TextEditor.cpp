#include "desktop/TextEditor.h"

#include <QUuid>

namespace orvesa::desktop {

using namespace Qt::StringLiterals;

namespace {

QStringList arguments(const Desktop &desktop, const QString &text)
{
    if (text.isEmpty())
        return {u"--disable-server"_s};
    const QString name = QUuid::createUuid().toString(QUuid::WithoutBraces);
    return {u"--disable-server"_s, desktop.folders().write(u"home/%1.txt"_s.arg(name), text.toUtf8())};
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
