// SPDX-License-Identifier: MIT
#include "platform/cloud/desktop_cloud_files.h"
#include "platform/cloud/sync_client_files.h"
#include "platform/cloud/sync_client_socket.h"
#include "sync_client.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/inotify.h>
#include <sys/xattr.h>
#include <unistd.h>

using namespace halvane;
using namespace halvane::test;
using namespace Qt::StringLiterals;

namespace {

class CloudFilesTest : public testing::Test {
  protected:
    QString write(const QString& name, const QByteArray& content) {
        const QString path = folder.filePath(name);
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
        return path;
    }
    bool setAttribute(const QString& path, const char* name, const QByteArray& value) {
        return ::setxattr(path.toUtf8().constData(), name, value.constData(),
                          static_cast<std::size_t>(value.size()), 0) == 0;
    }

    QTemporaryDir folder;
};

} // namespace

TEST_F(CloudFilesTest, PlaceholdersStandForFilesThatAreNotHere) {
    const DesktopCloudFiles cloud{QString()};
    write(u".dot.mp3.icloud"_s, "x");
    write(u"suffix.mp3.nextcloud"_s, " ");
    write(u"other.flac.owncloud"_s, " ");
    write(u"notes.mp3.nextcloud"_s, "a real file of this odd name");
    write(u"stale.mp3.nextcloud"_s, " ");
    write(u"stale.mp3"_s, "downloaded meanwhile");
    write(u"here.mp3"_s, "music");
    const struct {
        QString name;
        bool evicted;
    } cases[] = {{u"dot.mp3"_s, true},    {u"suffix.mp3"_s, true}, {u"other.flac"_s, true},
                 {u"notes.mp3"_s, false}, {u"stale.mp3"_s, false}, {u"here.mp3"_s, false},
                 {u"gone.mp3"_s, false}};
    QStringList paths;
    for (const auto& c : cases) {
        paths += folder.filePath(c.name);
        EXPECT_EQ(cloud.isEvicted(paths.last()), c.evicted) << c.name.toStdString();
    }
    paths += folder.filePath(u"no such folder/gone.mp3"_s);
    const auto together = cloud.presences(paths);
    for (qsizetype i = 0; i < paths.size(); ++i)
        EXPECT_EQ(together[static_cast<std::size_t>(i)], cloud.presence(paths[i]))
            << paths[i].toStdString();
}

TEST_F(CloudFilesTest, AttributesAreReadAndTheFileIsNeverOpened) {
    const QString waiting = write(u"waiting.mp3"_s, "full size");
    if (!setAttribute(waiting, "user.nextcloud.hydrate_exec", QByteArray(600, 'x')))
        GTEST_FAIL() << "the temporary folder keeps no extended attributes";
    const int watch = ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    ASSERT_GE(::inotify_add_watch(watch, waiting.toUtf8().constData(), IN_OPEN), 0);

    const DesktopCloudFiles cloud{QString()};
    EXPECT_TRUE(cloud.isEvicted(waiting));
    EXPECT_TRUE(cloud.blocksWhenOpened(waiting));

    char events[256];
    EXPECT_LT(::read(watch, events, sizeof events), 0) << "opening waits for the whole download";
    ::close(watch);
}

TEST_F(CloudFilesTest, StateRecordsCountOnlyOnTheirOwnFileSystem) {
    const QByteArray here("\x82\xa4size\x07\xa5state\x00", 14), away("\x81\xa5state\x01", 8);
    const QString file = write(u"on-demand.mp3"_s, "size");
    ASSERT_TRUE(setAttribute(file, "user.openvfs.data", away));
    const QString onDemand =
        write(u"mounts"_s, "30 1 0:30 / / rw - ext4 /dev/x rw\n31 30 0:31 / " +
                               folder.path().toUtf8() + " rw shared:1 - fuse.openvfs openvfs rw\n");
    MountTable plain, openvfs(onDemand.toUtf8().constData());
    EXPECT_EQ(presenceBySyncClient(file, &plain), FilePresence::here);
    EXPECT_EQ(presenceBySyncClient(file, &openvfs), FilePresence::evicted);
    ASSERT_TRUE(setAttribute(file, "user.openvfs.data", here));
    EXPECT_EQ(presenceBySyncClient(file, &openvfs), FilePresence::here);
    for (const QByteArray& broken : {QByteArray(), QByteArray("\x81"), QByteArray("\x81\xa5state")})
        EXPECT_TRUE(stateRecordSaysEvicted(broken)) << broken.toHex().toStdString();
}

TEST_F(CloudFilesTest, MountsAreFoundByTheirLongestPoint) {
    const QString listing =
        write(u"mounts"_s, "1 0 8:1 / / rw - ext4 /dev/a rw\n"
                           "2 1 0:40 / /mnt/my\\040music rw - fuse.rclone r rw\n"
                           "3 2 0:41 / /mnt/my\\040music/usb rw - vfat u rw\n"
                           "not a mount\n"
                           "4 1 0:42 / /mnt/nas rw master:2 - nfs4 nas:/ rw\n"
                           "5 4 0:43 / /mnt/nas/box rw - cifs //box/music rw\n"
                           "6 1 0:44 / /mnt/ssh rw - fuse.sshfs me@box: rw\n"
                           "7 1 0:45 / /mnt/dav rw - davfs https://box rw\n"
                           "8 1 0:46 / /mnt/union rw - fuse.mergerfs a:b rw\n");
    MountTable mounts(listing.toUtf8().constData());
    const struct {
        QString path;
        QByteArray type;
        Storage storage;
    } cases[] = {{u"/home/a.mp3"_s, "ext4", Storage::disk},
                 {u"/mnt/my music/a.mp3"_s, "fuse.rclone", Storage::cloudMount},
                 {u"/mnt/my musical/a.mp3"_s, "ext4", Storage::disk},
                 {u"/mnt/my music/usb/a.mp3"_s, "vfat", Storage::disk},
                 {u"/mnt/nas"_s, "nfs4", Storage::networkShare},
                 {u"/mnt/nas/box/a.mp3"_s, "cifs", Storage::networkShare},
                 {u"/mnt/ssh/a.mp3"_s, "fuse.sshfs", Storage::networkShare},
                 {u"/mnt/dav/a.mp3"_s, "davfs", Storage::cloudMount},
                 {u"/mnt/union/a.mp3"_s, "fuse.mergerfs", Storage::disk}};
    for (const auto& c : cases) {
        EXPECT_EQ(mounts.typeOf(c.path), c.type) << c.path.toStdString();
        EXPECT_EQ(storageOf(mounts.typeOf(c.path)), c.storage) << c.path.toStdString();
    }
    EXPECT_EQ(MountTable("/nowhere").typeOf(u"/a"_s), QByteArray());
}

TEST_F(CloudFilesTest, DownloadsAreAskedOfTheClientWhoseFolderItIs) {
    for (const char* name : {"run/Nextcloud", "run/Branded", "run/dead"})
        ASSERT_TRUE(QDir().mkpath(folder.filePath(QString::fromLatin1(name))));
    write(u"run/dead/socket"_s, "not a socket");
    SyncClient mine(folder.filePath(u"run/Nextcloud/socket"_s), u"/sync/mine"_s);
    SyncClient other(folder.filePath(u"run/Branded/socket"_s), u"/sync/other/"_s);

    const int asked =
        requestDownloads(folder.filePath(u"run"_s),
                         {u"/sync/mine/歌 one.mp3"_s, u"/sync/other/two.mp3"_s,
                          u"/sync/mine/b/three.mp3.nextcloud"_s, u"/sync/mineral/four.mp3"_s},
                         std::chrono::seconds(30));

    EXPECT_EQ(asked, 3);
    const auto lines = mine.waitForLines(2);
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[1], "MAKE_AVAILABLE_LOCALLY:/sync/mine/歌 one.mp3\x1e"
                        "/sync/mine/b/three.mp3.nextcloud");
    const auto others = other.waitForLines(2);
    ASSERT_EQ(others.size(), 2u);
    EXPECT_EQ(others[1], "MAKE_AVAILABLE_LOCALLY:/sync/other/two.mp3");
}

TEST_F(CloudFilesTest, SilentClientsAreLeftAlone) {
    ASSERT_TRUE(QDir().mkpath(folder.filePath(u"run/Nextcloud"_s)));
    SyncClient silent(folder.filePath(u"run/Nextcloud/socket"_s), u"/sync"_s,
                      SyncClient::Manner::silent);
    EXPECT_EQ(requestDownloads(folder.filePath(u"run"_s), {u"/sync/a.mp3"_s},
                               std::chrono::milliseconds(50)),
              0);
    EXPECT_EQ(requestDownloads(folder.filePath(u"nothing"_s), {u"/sync/a.mp3"_s},
                               std::chrono::milliseconds(50)),
              0);
}
