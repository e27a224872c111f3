// SPDX-License-Identifier: MIT
#include "metadata/file_dates.h"

#include <sys/stat.h>

namespace halvane {

FileFacts fileFacts(const QString& path) {
    struct stat facts;
    if (path.isEmpty() || ::stat(path.toUtf8().constData(), &facts) != 0)
        return {};
    return {true, referenceDate(facts.st_mtim), facts.st_size};
}

} // namespace halvane
