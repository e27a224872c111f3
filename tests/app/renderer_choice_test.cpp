// SPDX-License-Identifier: MIT
#include "app/windows/renderer_choice.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace halvane::test {
namespace {

using namespace Qt::StringLiterals;

TEST(RendererChoice, IsTheEnvironmentsThenTheMachines) {
    struct Row {
        QStringList environment;
        bool hasGraphicsCard;
        bool needsSoftware;
    };
    const Row table[]{
        {{}, false, true},
        {{}, true, false},
        {{u"QT_QUICK_BACKEND=software"_s}, false, false}, // the toolkit reads it itself
        {{u"QT_QUICK_BACKEND=rhi"_s}, false, false},
        {{u"QMLSCENE_DEVICE=rhi"_s}, false, false},
        {{u"QSG_RHI_BACKEND=vulkan"_s}, false, false},
        {{u"QSG_RHI_PREFER_SOFTWARE_RENDERER=1"_s}, false, false},
        {{u"LIBGL_ALWAYS_SOFTWARE=1"_s}, true, true},
        {{u"LIBGL_ALWAYS_SOFTWARE=True"_s}, true, true},
        {{u"LIBGL_ALWAYS_SOFTWARE=0"_s}, true, false},
        {{u"LIBGL_ALWAYS_SOFTWARE=1"_s, u"QSG_RHI_BACKEND=opengl"_s}, true, false},
    };
    for (const Row& row : table) {
        SCOPED_TRACE(qPrintable(row.environment.join(u' ')));
        SCOPED_TRACE(row.hasGraphicsCard ? "with a card" : "without a card");
        QProcessEnvironment environment;
        for (const QString& setting : row.environment)
            environment.insert(setting.section(u'=', 0, 0), setting.section(u'=', 1));
        EXPECT_EQ(needsSoftwareRenderer(environment, row.hasGraphicsCard), row.needsSoftware);
    }
}

TEST(GraphicsCard, IsWhatDrawsBehindItsNode) {
    const QString node = u"dev/dri/renderD128"_s;
    const QString device = u"sys/class/drm/renderD128/device/"_s;
    struct File {
        QString path;
        QByteArray content;
    };
    struct Row {
        const char* what;
        QList<File> files;
        bool expected;
    };
    const Row table[]{
        {"nothing", {}, false},
        {"a display without a render node", {{u"dev/dri/card0"_s, {}}}, false},
        {"a card", {{node, {}}, {device + u"vendor"_s, "0x8086\n"}}, true},
        {"the second node is a card",
         {{node, {}}, {device + u"features"_s, "0100\n"}, {u"dev/dri/renderD129"_s, {}}},
         true},
        {"a virtio display without 3D", {{node, {}}, {device + u"features"_s, "0100\n"}}, false},
        {"the same below its bus", {{node, {}}, {device + u"virtio2/features"_s, "0100\n"}}, false},
        {"a virtio display with 3D",
         {{node, {}}, {device + u"virtio2/features"_s, "1100\n"}},
         true},
        {"NVIDIA's own driver", {{u"dev/nvidiactl"_s, {}}}, true},
        {"WSL", {{u"dev/dxg"_s, {}}}, true},
    };
    for (const Row& row : table) {
        SCOPED_TRACE(row.what);
        const QTemporaryDir root;
        for (const auto& [path, content] : row.files) {
            QFile file(root.filePath(path));
            ASSERT_TRUE(QDir().mkpath(QFileInfo(file).path()));
            ASSERT_TRUE(file.open(QIODevice::WriteOnly));
            file.write(content);
        }
        EXPECT_EQ(hasGraphicsCard(root.path()), row.expected);
    }
}

} // namespace
} // namespace halvane::test
