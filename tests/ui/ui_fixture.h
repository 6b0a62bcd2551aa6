#pragma once

#include "core/process.h"
#include "support/scripted_user.h"
#include "ui/forms.h"
#include "ui/window_place.h"

#include <QCoreApplication>
#include <QFile>
#include <QSettings>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace lx::test {

// Deletes what was unloaded: deletion waits for the event loop, which tests don't run.
inline void FlushDeletes()
{
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

// A scripted user, a program folder of its own, and no window or process state left behind.
class UiTest : public ::testing::Test {
protected:
    UiTest() : m_oldHome(qgetenv("LEXARBOR_HOME"))
    {
        qputenv("LEXARBOR_HOME", QFile::encodeName(home.path()));
    }
    ~UiTest() override
    {
        ui::Forms().UnloadAll();
        FlushDeletes();
        ui::ProgramSettings()->remove(QStringLiteral("Windows")); // no window places kept
        ResetProcessState();
        if (m_oldHome.isNull())
            qunsetenv("LEXARBOR_HOME");
        else
            qputenv("LEXARBOR_HOME", m_oldHome);
    }

    QTemporaryDir home;
    ScriptedUser user;

private:
    QByteArray m_oldHome;
};

} // namespace lx::test
