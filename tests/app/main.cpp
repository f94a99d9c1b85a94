#include "app/Translations.h"

#include <QApplication>

#include <gtest/gtest.h>

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    testing::InitGoogleTest(&argc, argv);
    Q_INIT_RESOURCE(quillon);
    QApplication application(argc, argv);
    quillon::translateApplication(application, {u"en"_qs});
    return RUN_ALL_TESTS();
}
