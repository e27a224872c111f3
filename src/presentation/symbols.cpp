// SPDX-License-Identifier: MIT
#include "presentation/symbols.h"

#include <algorithm>
#include <iterator>

namespace halvane {

using namespace Qt::StringLiterals;

namespace {

struct Entry {
    QStringView name;
    char16_t glyph;
};

// In the order of the names. The comments are the font's own names for its glyphs.
constexpr Entry table[] = {
    {u"arrow.down", 0xE5DB},                         // arrow_downward
    {u"arrow.down.right.and.arrow.up.left", 0xF1CF}, // close_fullscreen
    {u"arrow.up", 0xE5D8},                           // arrow_upward
    {u"arrow.up.left.and.arrow.down.right", 0xF1CE}, // open_in_full
    {u"backward.fill", 0xE020},                      // fast_rewind
    {u"chart.bar.fill", 0xE26B},                     // bar_chart
    {u"checkmark", 0xE5CA},                          // check
    {u"checkmark.circle.fill", 0xE86C},              // check_circle
    {u"checkmark.seal.fill", 0xEF76},                // verified
    {u"chevron.down", 0xE5CF},                       // expand_more
    {u"chevron.right", 0xE5CC},                      // chevron_right
    {u"chevron.up.chevron.down", 0xE5D7},            // unfold_more
    {u"clock", 0xE8B5},                              // schedule
    {u"clock.arrow.circlepath", 0xE889},             // history
    {u"doc.on.doc", 0xE14D},                         // content_copy
    {u"ellipsis", 0xE5D3},                           // more_horiz
    {u"exclamationmark.circle", 0xE001},             // error_outline
    {u"exclamationmark.triangle.fill", 0xE002},      // warning
    {u"folder", 0xE2C7},                             // folder
    {u"folder.badge.plus", 0xE2CC},                  // create_new_folder
    {u"forward.fill", 0xE01F},                       // fast_forward
    {u"heart", 0xE87E},                              // favorite_border
    {u"heart.fill", 0xE87D},                         // favorite
    {u"heart.slash", 0xEAC2},                        // heart_broken
    {u"hifispeaker.fill", 0xE32D},                   // speaker
    {u"icloud.and.arrow.down", 0xE2C0},              // cloud_download
    {u"info.circle.fill", 0xE88E},                   // info
    {u"keyboard", 0xE312},                           // keyboard
    {u"macwindow", 0xE069},                          // web_asset
    {u"magnifyingglass", 0xE8B6},                    // search
    {u"minus", 0xE15B},                              // remove
    {u"music.note", 0xE405},                         // music_note
    {u"music.note.house", 0xE030},                   // library_music
    {u"music.note.list", 0xE03D},                    // queue_music
    {u"pause.circle.fill", 0xE035},                  // pause_circle_filled
    {u"pause.fill", 0xE034},                         // pause
    {u"pencil", 0xE3C9},                             // edit
    {u"person.2", 0xE7FB},                           // people
    {u"person.fill", 0xE7FD},                        // person
    {u"play.circle", 0xE039},                        // play_circle_outline
    {u"play.fill", 0xE037},                          // play_arrow
    {u"plus", 0xE145},                               // add
    {u"rectangle.3.group", 0xE8F1},                  // view_quilt
    {u"rectangle.split.3x1", 0xE8EC},                // view_column
    {u"repeat", 0xE040},                             // repeat
    {u"repeat.1", 0xE041},                           // repeat_one
    {u"shuffle", 0xE043},                            // shuffle
    {u"sidebar.right", 0xE949},                      // vertical_split
    {u"slider.horizontal.3", 0xE429},                // tune
    {u"speaker.fill", 0xE04E},                       // volume_mute
    {u"speaker.slash", 0xE04F},                      // volume_off
    {u"speaker.wave.2", 0xE050},                     // volume_up
    {u"speaker.wave.2.fill", 0xE050},                // volume_up
    {u"speaker.wave.3.fill", 0xE050},                // volume_up
    {u"square", 0xE3C6},                             // crop_square
    {u"square.and.arrow.up", 0xE2C6},                // file_upload
    {u"square.grid.2x2", 0xE9B0},                    // grid_view
    {u"square.on.square", 0xE3E0},                   // filter_none
    {u"star", 0xE83A},                               // star_border
    {u"star.fill", 0xE838},                          // star
    {u"text.badge.minus", 0xEB80},                   // playlist_remove
    {u"text.badge.plus", 0xE03B},                    // playlist_add
    {u"text.insert", 0xE05F},                        // playlist_play
    {u"text.magnifyingglass", 0xF02F},               // manage_search
    {u"trash", 0xE872},                              // delete
    {u"wand.and.sparkles", 0xE663},                  // auto_fix_high
    {u"waveform", 0xE1B8},                           // graphic_eq
    {u"waveform.path.ecg", 0xEAA2},                  // monitor_heart
    {u"xmark", 0xE5CD},                              // close
    {u"xmark.circle.fill", 0xE5C9},                  // cancel
};

bool before(const Entry& entry, QStringView name) {
    return std::lexicographical_compare(entry.name.begin(), entry.name.end(), name.begin(),
                                        name.end());
}

} // namespace

QString symbolFontFamily() {
    return u"Material Icons"_s;
}

QString symbolGlyph(QStringView name) {
    const auto found = std::lower_bound(std::begin(table), std::end(table), name, before);
    if (found == std::end(table) || found->name != name)
        return {};
    return QString(QChar(found->glyph));
}

} // namespace halvane
