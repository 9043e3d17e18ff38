#include <QApplication>
#include <gtest/gtest.h>

// One main for all test programs: a Qt application, so that timers, signals and widgets work.
int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    const QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
