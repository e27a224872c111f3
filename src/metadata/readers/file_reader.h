// SPDX-License-Identifier: MIT
#pragma once

#include "metadata/readers/bounded_file.h"
#include "metadata/readers/tag_fields.h"

namespace halvane {

struct AudioFileReading {
    FileMetadata metadata;
    qint64 fileSize = -1;        ///< bytes; -1 when the file can't be opened
    double modificationDate = 0; ///< seconds since 2001-01-01 UTC
    bool isLate = false;         ///< the file took too much work and was given up
    bool isMissing = false;      ///< there is no such file
};

/// Reads the tags and stream facts of one audio file with the reader that its bytes call for. Never
/// fails: fields that can't be read stay empty. Any thread.
AudioFileReading readAudioFile(const QString& path, const ReadingLimits& limits = {});

/// Puts the length in the place of a guess, by counting frames through the whole file. A guess
/// stays where frames don't follow one another, for which only a decoder knows. Any thread.
void countLength(const QString& path, StreamFacts& stream);

} // namespace halvane
