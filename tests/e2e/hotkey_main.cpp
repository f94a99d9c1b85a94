#include <QApplication>

#include <gtest/gtest.h>

/// On the display that stands ready, unlike the other tests.
int main(int argc, char **argv)
{
    testing::InitGoogleTest(&argc, argv);
    const QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
