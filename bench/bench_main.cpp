#include "core/process.h"

#include <QApplication>

#include <benchmark/benchmark.h>

int main(int argc, char **argv)
{
    lx::StartWithHugePageHeap(argv);
    // Lists are filled without a window, so no screen is needed.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    QApplication app(argc, argv);
    lx::KeepLargeBuffersInHeap();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
