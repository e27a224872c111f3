// SPDX-License-Identifier: MIT
#include "app/windows/renderer_choice.h"

#include <QDir>
#include <QFileInfo>
#include <QQuickWindow>

#include <algorithm>
#include <array>

namespace halvane {

using namespace Qt::StringLiterals;

namespace {

// A virtio display tells its features as a string of bits, of which the first is 3D.
bool isPlainVirtualDisplay(const QString& device) {
    const QDir folder(device);
    QStringList places{device};
    for (const QString& name : folder.entryList({u"virtio*"_s}, QDir::Dirs))
        places.append(folder.filePath(name));
    return std::any_of(places.begin(), places.end(), [](const QString& place) {
        QFile features(place + u"/features"_s);
        return features.open(QIODevice::ReadOnly) && features.read(1) == "0";
    });
}

bool draws(const QString& root, const QString& node) {
    const QFileInfo file(root + u"/dev/dri/"_s + node);
    return file.isReadable() && file.isWritable() &&
           !isPlainVirtualDisplay(root + u"/sys/class/drm/"_s + node + u"/device"_s);
}

} // namespace

bool hasGraphicsCard(const QString& root) {
    if (QFileInfo::exists(root + u"/dev/nvidiactl"_s) || QFileInfo::exists(root + u"/dev/dxg"_s))
        return true;
    const auto nodes =
        QDir(root + u"/dev/dri"_s).entryList({u"renderD*"_s}, QDir::Files | QDir::System);
    return std::any_of(nodes.begin(), nodes.end(),
                       [&](const QString& node) { return draws(root, node); });
}

bool needsSoftwareRenderer(const QProcessEnvironment& environment, bool hasGraphicsCard) {
    constexpr std::array choices{"QT_QUICK_BACKEND", "QMLSCENE_DEVICE", "QSG_RHI_BACKEND",
                                 "QSG_RHI_PREFER_SOFTWARE_RENDERER"};
    const bool isChosen = std::any_of(choices.begin(), choices.end(), [&](const char* name) {
        return environment.contains(QString::fromLatin1(name));
    });
    if (isChosen)
        return false;
    // Mesa is told to leave the card alone.
    const bool leavesCardAlone = QStringList{u"1"_s, u"y"_s, u"yes"_s, u"t"_s, u"true"_s}.contains(
        environment.value(u"LIBGL_ALWAYS_SOFTWARE"_s), Qt::CaseInsensitive);
    return leavesCardAlone || !hasGraphicsCard;
}

void chooseRenderer() {
    if (needsSoftwareRenderer(QProcessEnvironment::systemEnvironment(), hasGraphicsCard({})))
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
}

} // namespace halvane
