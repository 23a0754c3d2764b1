#include "App/MainMenu.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QLineEdit>
#include <QMenu>

namespace orvesa {

using namespace Qt::StringLiterals;

namespace {

/// "Title key" of every item, a line each, menus by their titles.
QStringList described(MainMenu &menu)
{
    QStringList lines;
    for (const QAction *const entry : menu.bar().actions()) {
        lines.append(u"["_s + entry->text() + u"]"_s);
        for (const QAction *const item : entry->menu()->actions()) {
            lines.append(item->isSeparator()
                             ? u"-"_s
                             : item->text() + u" "_s + item->shortcut().toString(QKeySequence::PortableText));
        }
    }
    return lines;
}

QAction *item(MainMenu &menu, const QString &title)
{
    for (const QAction *const entry : menu.bar().actions()) {
        for (QAction *const candidate : entry->menu()->actions()) {
            if (candidate->text() == title) {
                return candidate;
            }
        }
    }
    ADD_FAILURE() << "no item " << title.toStdString();
    return nullptr;
}

} // namespace

TEST(MainMenuTest, HasTheseItemsInThisOrder)
{
    MainMenu menu;
    EXPECT_EQ(described(menu),
              (QStringList{u"[]"_s, u"Quit Orvesa Translate Ctrl+Q"_s, u"[Edit]"_s, u"Undo Ctrl+Z"_s,
                           u"Redo Ctrl+Shift+Z"_s, u"-"_s, u"Cut Ctrl+X"_s, u"Copy Ctrl+C"_s, u"Paste Ctrl+V"_s,
                           u"Select All Ctrl+A"_s, u"[Window]"_s, u"Close Window Ctrl+W"_s}));
    EXPECT_EQ(item(menu, u"Quit Orvesa Translate"_s)->menuRole(), QAction::QuitRole);
}

TEST(MainMenuTest, ReachesTheControlWithTheKeyboard)
{
    MainMenu menu;
    QLineEdit field;
    field.show();
    QApplication::setActiveWindow(&field);
    field.setFocus();
    ASSERT_EQ(QApplication::focusWidget(), &field);
    field.insert(u"one"_s);
    item(menu, u"Select All"_s)->trigger();
    EXPECT_EQ(field.selectedText(), u"one"_s);
    field.insert(u"two"_s);
    item(menu, u"Undo"_s)->trigger();
    EXPECT_EQ(field.text(), u"one"_s);
    item(menu, u"Redo"_s)->trigger();
    EXPECT_EQ(field.text(), u"two"_s);
    item(menu, u"Close Window"_s)->trigger();
    EXPECT_FALSE(field.isVisible());
}

TEST(MainMenuTest, LeavesControlsAloneThatDoNotEdit)
{
    MainMenu menu;
    QWidget plain;
    plain.setFocusPolicy(Qt::StrongFocus);
    plain.show();
    QApplication::setActiveWindow(&plain);
    plain.setFocus();
    for (const QString &title : {u"Undo"_s, u"Cut"_s, u"Paste"_s}) {
        item(menu, title)->trigger();
    }
    EXPECT_TRUE(plain.isVisible());
}

} // namespace orvesa
