#include <QApplication>

#include <gtest/gtest.h>

/// The tests run on the display that stands ready, unlike the others.
int main(int argc, char **argv)
{
    testing::InitGoogleTest(&argc, argv);
    const QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
