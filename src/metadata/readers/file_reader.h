// SPDX-License-Identifier: MIT
#pragma once

#include "metadata/readers/bounded_file.h"
#include "metadata/readers/tag_fields.h"
#include "model/sound_identity.h"

namespace halvane {

struct AudioFileReading {
    FileMetadata metadata;
    qint64 fileSize = -1;        ///< bytes; -1 when the file can't be opened
    double modificationDate = 0; ///< seconds since 2001-01-01 UTC
    SoundIdentity identity;
    bool isFinished = true; ///< false: the length is a guess, or the sound not identified yet
    bool isLate = false;    ///< the file took too much work and was given up
    bool isMissing = false; ///< there is no such file
};

/// Reads the tags and stream facts of one audio file with the reader that its bytes call for. Never
/// fails: fields that can't be read stay empty. Any thread.
AudioFileReading readAudioFile(const QString& path, const ReadingLimits& limits = {});

/// Finishes what was left because it would have kept an import waiting. Puts the length in the
/// place of a guess, by counting frames through the whole file; the guess stays where frames don't
/// follow one another, for which only a decoder knows. Identifies the sound. Any thread.
void finishReading(const QString& path, AudioFileReading& reading);

} // namespace halvane
