// SPDX-License-Identifier: MIT
// restored_library HOME: restores the library kept in HOME, without a window, says how many tracks
// it has when all its albums are published, and ends. restored_library HOME FOLDER: makes it first,
// of the files in a folder.
#include "../support/event_loop.h"
#include "../support/real_environment.h"
#include "library/library_concerns.h"
#include "library/library_view_model.h"
#include "library/user/settings_keys.h"

#include <QCoreApplication>
#include <QDir>

#include <cstdio>

using namespace halvane;
using bench::until;

namespace {

void import(LibraryViewModel& library, const QString& folder) {
    library.importing()->importDroppedURLs({QUrl::fromLocalFile(folder)});
    until([&] { return !library.importing()->isImporting() && library.catalog()->isCurrent(); });
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication app(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() < 2 || !QDir().mkpath(arguments[1]))
        return 2;
    bench::RealEnvironment environment(arguments[1]);
    LibraryViewModel library(environment);
    if (arguments.size() > 2) {
        import(library, arguments[2]);
        std::printf("%zu\n", library.store()->size());
        return 0;
    }
    const auto paths =
        environment.preferences().strings(SettingsKey::importedAudioPaths).value_or(QStringList());
    const auto size = static_cast<std::size_t>(paths.size());
    library.restoration()->restoreImportedAudio();
    until([&] { return library.catalog()->published()->rows->size() == size; });
    std::printf("%zu\n", size);
    std::fflush(stdout);
    return 0; // whoever waits for the line waits no longer for this
}
