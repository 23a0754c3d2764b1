#include "UI/RecorderTest.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QVBoxLayout>

namespace orvesa {

RecorderTest::RecorderTest()
{
    auto *column = new QVBoxLayout(&window);
    column->addWidget(&translate);
    column->addWidget(&polish);
    column->addWidget(&prompt);
    window.show();
    window.activateWindow();
    QCoreApplication::processEvents();
    EXPECT_TRUE(window.isActiveWindow());
}

RecorderTest::~RecorderTest()
{
    // Children of the window by its layout, members here: the window must not delete them.
    for (QWidget *child :
         {static_cast<QWidget *>(&translate), static_cast<QWidget *>(&polish), static_cast<QWidget *>(&prompt)}) {
        child->setParent(nullptr);
    }
}

KeyComboRecorderView::Feedback RecorderTest::feedback()
{
    return [this](const std::optional<QString> &message) { messages.push_back(message); };
}

void RecorderTest::clickWithMouse(QWidget &widget)
{
    const QPointF place = widget.rect().center();
    QMouseEvent press(QEvent::MouseButtonPress, place, widget.mapToGlobal(place), Qt::LeftButton, Qt::LeftButton,
                      Qt::NoModifier);
    QMouseEvent release(QEvent::MouseButtonRelease, place, widget.mapToGlobal(place), Qt::LeftButton, Qt::NoButton,
                        Qt::NoModifier);
    QCoreApplication::sendEvent(&widget, &press);
    QCoreApplication::sendEvent(&widget, &release);
}

void RecorderTest::type(QWidget &widget, Qt::Key key)
{
    QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier);
    QKeyEvent release(QEvent::KeyRelease, key, Qt::NoModifier);
    QCoreApplication::sendEvent(&widget, &press);
    QCoreApplication::sendEvent(&widget, &release);
}

void RecorderTest::expectIdle() const
{
    EXPECT_FALSE(translate.isRecording());
    EXPECT_FALSE(polish.isRecording());
    EXPECT_FALSE(prompt.isRecording());
    EXPECT_FALSE(state.isRecording());
    EXPECT_FALSE(keys.isMonitored());
}

} // namespace orvesa
