// The screen action over what real applications show: a page of a browser and of a document viewer.

#include "desktop/ScreenTextFixture.h"
#include "desktop/apps/ReadingMatter.h"

namespace orvesa::desktop {

using namespace Qt::StringLiterals;

class ScreenTextApplications : public ScreenTextFixture, public ::testing::WithParamInterface<const char *> {};

INSTANTIATE_TEST_SUITE_P(Scenes, ScreenTextApplications, ::testing::Values("sc08", "sc10", "sc12", "sc13", "sc04"),
                         [](const auto &parameter) { return std::string(parameter.param); });

TEST_P(ScreenTextApplications, TranslatesWhatIsDraggedAround)
{
    setUpScreen();
    ReadingMatter matter(*desktop);
    const Scene scene = sceneNamed(QString::fromLatin1(GetParam()));
    const QRect area = matter.show(scene);
    startCapture();
    dragAround(area, -1);
    const QString text = scene.lines.join(u'\n');
    EXPECT_EQ(awaitSource(), text);
    ASSERT_EQ(service.requests().size(), 1U);
    EXPECT_TRUE(service.requests().front().body.contains(scene.lines.last().toUtf8().right(12)));
}

} // namespace orvesa::desktop
