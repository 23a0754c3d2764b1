#include "App/WarmUp.h"

#include "fakes/Happening.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QStringList>

#include <memory>

using namespace Qt::StringLiterals;

namespace orvesa {
namespace {

TEST(WarmUpTest, DoesNothingAtOnceAndEverythingInOrder)
{
    QStringList done;
    WarmUp warmUp;
    warmUp.start({[&] { done += u"first"_s; }, [&] { done += u"second"_s; }, [&] { done += u"third"_s; }});
    EXPECT_TRUE(done.isEmpty());
    EXPECT_FALSE(warmUp.isDone());
    ASSERT_TRUE(happens([&] { return warmUp.isDone(); }));
    EXPECT_EQ(done, (QStringList{u"first"_s, u"second"_s, u"third"_s}));
}

TEST(WarmUpTest, ServesAShortcutBeforeTheNextPiece)
{
    QStringList done;
    QObject desktop;
    WarmUp warmUp;
    // A press comes as an event that a thread of the adapter posts, and is itself handed on by another one.
    const auto press = [&] {
        done += u"press"_s;
        QMetaObject::invokeMethod(
            &desktop, [&] { done += u"served"_s; }, Qt::QueuedConnection);
    };
    warmUp.start({[&] {
                      QMetaObject::invokeMethod(&desktop, press, Qt::QueuedConnection);
                      done += u"first"_s;
                  },
                  [&] { done += u"second"_s; }});
    ASSERT_TRUE(happens([&] { return warmUp.isDone(); }));
    EXPECT_EQ(done, (QStringList{u"first"_s, u"press"_s, u"served"_s, u"second"_s}));
}

TEST(WarmUpTest, EndsWithTheObject)
{
    QStringList done;
    auto warmUp = std::make_unique<WarmUp>();
    warmUp->start({[&] { done += u"first"_s; }, [&] { done += u"second"_s; }});
    ASSERT_TRUE(happens([&] { return !done.isEmpty(); }));
    warmUp.reset();
    QCoreApplication::processEvents();
    EXPECT_EQ(done, QStringList{u"first"_s});
}

} // namespace
} // namespace orvesa
