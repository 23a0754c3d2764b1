#include <gtest/gtest.h>

#include <QApplication>

int main(int argc, char *argv[])
{
    // Never a window on whatever display is there; nor does listing the tests need one.
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QApplication application(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
