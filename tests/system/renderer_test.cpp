// SPDX-License-Identifier: MIT
// What draws the real program's windows.
#include "system/desktop_session.h"

#include <QFile>

#include <gtest/gtest.h>

namespace halvane::test {
namespace {

using namespace Qt::StringLiterals;

// Mesa's drivers, by the names of all its versions.
bool hasLoadedGraphicsDriver(qint64 processId) {
    QFile maps(u"/proc/%1/maps"_s.arg(processId));
    if (!maps.open(QIODevice::ReadOnly))
        return false;
    const QByteArray libraries = maps.readAll();
    return libraries.contains("_dri.so") || libraries.contains("libgallium");
}

TEST(RealProgram, LoadsAGraphicsDriverOnlyWhereThereIsACardOrTheEnvironmentSaysSo) {
    for (const bool asksForOpenGl : {false, true}) {
        SCOPED_TRACE(asksForOpenGl);
        DesktopSession session; // on which Mesa leaves any card alone
        if (asksForOpenGl)
            session.environment.insert(u"QSG_RHI_BACKEND"_s, u"opengl"_s);
        RunningProgram program(session);
        ASSERT_TRUE(program.isReady());
        EXPECT_EQ(waitFor([&] { return hasLoadedGraphicsDriver(program.processId()); },
                          asksForOpenGl ? 20'000 : 3'000),
                  asksForOpenGl);
    }
}

} // namespace
} // namespace halvane::test
