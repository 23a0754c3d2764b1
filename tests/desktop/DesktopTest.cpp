#include "desktop/Desktop.h"

#include <gtest/gtest.h>

namespace orvesa::desktop {

TEST(Desktop, StartsUnderOpenbox)
{
    Desktop desktop{DesktopOptions{}};
}

} // namespace orvesa::desktop
