#include "app/widgets/QuillonStyle.h"

#include <QApplication>

#include <gtest/gtest.h>

int main(int argc, char **argv)
{
    testing::InitGoogleTest(&argc, argv);
    Q_INIT_RESOURCE(quillon);
    const QApplication application(argc, argv);
    QApplication::setStyle(new quillon::QuillonStyle);
    return RUN_ALL_TESTS();
}
