#ifdef LEXARBOR_TEST_WIDGETS
#include <QApplication>
using TestApplication = QApplication;
#else
#include <QCoreApplication>
using TestApplication = QCoreApplication;
#endif

#include "support/working_folder.h"

#include <gtest/gtest.h>

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    if (qEnvironmentVariableIsEmpty("QTWEBENGINE_DISABLE_SANDBOX"))
        qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");
    TestApplication app(argc, argv);
    // Whatever a test writes to a relative path goes to a folder removed at the end of the run.
    const WorkingFolder runFolder;
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
