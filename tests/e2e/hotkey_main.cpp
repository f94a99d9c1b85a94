#include <QApplication>

#include <gtest/gtest.h>

/// Unlike the others, these tests run on the display that is there.
int main(int argc, char **argv)
{
    testing::InitGoogleTest(&argc, argv);
    const QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
