#ifdef LEXARBOR_TEST_WIDGETS
#include <QApplication>
using TestApplication = QApplication;
#else
#include <QCoreApplication>
using TestApplication = QCoreApplication;
#endif

#include "support/working_folder.h"

#include <QSettings>
#include <QTemporaryDir>

#include <gtest/gtest.h>

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    if (qEnvironmentVariableIsEmpty("QTWEBENGINE_DISABLE_SANDBOX"))
        qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");
#ifdef LEXARBOR_TEST_WIDGETS
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
#endif
    TestApplication app(argc, argv);
    // Whatever a test writes to a relative path goes to a folder removed at the end of the run.
    const WorkingFolder runFolder;
    // Settings the tests write go to a folder of their own, never into the user's.
    const QTemporaryDir settings;
    for (QSettings::Format format : {QSettings::NativeFormat, QSettings::IniFormat})
        QSettings::setPath(format, QSettings::UserScope, settings.path());
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
