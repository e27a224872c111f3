// SPDX-License-Identifier: MIT
#include "app/remote/remote_action.h"

#include "library/playback/sleep_timer.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace halvane {

using namespace Qt::StringLiterals;

namespace {

using Kind = RemoteAction::Kind;

struct ActionSpec {
    Kind kind;
    QString name;
    QString argument; ///< as the help writes it; in brackets where it may be left out
    QString does;
};

const std::vector<ActionSpec>& actionTable() {
    static const auto onOff = u"[=on|off]"_s;
    static const std::vector<ActionSpec> table{
        {Kind::playPause, u"PlayPause"_s, {}, u"play, or pause"_s},
        {Kind::play, u"Play"_s, {}, u"play"_s},
        {Kind::pause, u"Pause"_s, {}, u"pause"_s},
        {Kind::stop, u"Stop"_s, {}, u"stop, and go back to the start of the track"_s},
        {Kind::next, u"Next"_s, {}, u"the next track"_s},
        {Kind::previous, u"Previous"_s, {}, u"the previous track"_s},
        {Kind::seek, u"Seek"_s, u"=[+|-]SECONDS"_s, u"to a place, or on or back by so much"_s},
        {Kind::volume, u"Volume"_s, u"=[+|-]PERCENT"_s, u"the volume, or louder or softer"_s},
        {Kind::mute, u"Mute"_s, onOff, u"silence, or the volume of before"_s},
        {Kind::shuffle, u"Shuffle"_s, onOff, u"shuffle"_s},
        {Kind::repeat, u"Repeat"_s, u"[=off|all|one]"_s, u"the repeat mode, or the next one"_s},
        {Kind::love, u"Love"_s, onOff, u"love the current track, or do not"_s},
        {Kind::rate, u"Rate"_s, u"=0...5"_s, u"rate the current track by stars"_s},
        {Kind::stopAfterCurrent, u"StopAfterCurrent"_s, onOff, u"stop when the track has ended"_s},
        {Kind::sleepTimer, u"SleepTimer"_s, u"=MINUTES"_s,
         u"pause after so long; 0 turns it off"_s},
        {Kind::showHide, u"ShowHide"_s, {}, u"bring the window forward, or hide it"_s},
        {Kind::fullPlayer, u"FullPlayer"_s, onOff, u"the full-screen player"_s},
    };
    return table;
}

Failure needs(const ActionSpec& spec) {
    return {u"%1 is written as %1%2"_s.arg(spec.name, spec.argument)};
}

// A number, perhaps with a sign, which makes it relative; seconds also as minutes:seconds.
std::optional<double> number(const QString& text) {
    const bool isNegative = text.startsWith(u'-');
    const QString digits = text.mid(text.startsWith(u'+') || isNegative ? 1 : 0);
    double value = 0;
    for (const QString& part : digits.split(u':')) {
        bool ok = false;
        const double unit = part.toDouble(&ok);
        if (!ok || !std::isfinite(unit) || !part.front().isDigit())
            return {};
        value = value * 60 + unit;
    }
    return isNegative ? -value : value;
}

bool readNumber(const ActionSpec& spec, QString argument, RemoteAction& action) {
    const bool isVolume = spec.kind == Kind::volume;
    if (isVolume && argument.endsWith(u'%'))
        argument.chop(1);
    const auto value = number(argument);
    if (!value || (argument.contains(u':') && spec.kind != Kind::seek))
        return false;
    action.isRelative = !argument.front().isDigit();
    action.amount = isVolume ? *value / 100 : *value;
    if (isVolume)
        return std::abs(action.amount) <= 1;
    if (spec.kind == Kind::seek)
        return true;
    const double most = spec.kind == Kind::rate ? 5 : SleepTimer::longestMinutes;
    return !action.isRelative && *value <= most && *value == std::floor(*value);
}

bool readSwitch(const QString& argument, RemoteAction& action) {
    action.on = argument == "on"_L1;
    return *action.on || argument == "off"_L1;
}

bool readRepeat(const QString& argument, RemoteAction& action) {
    static const QStringList modes{u"off"_s, u"all"_s, u"one"_s}; // as PlaybackRepeatMode has them
    const auto mode = modes.indexOf(argument);
    action.repeat = static_cast<PlaybackRepeatMode>(std::max(mode, qsizetype(0)));
    return mode >= 0;
}

bool readArgument(const ActionSpec& spec, const QString& argument, RemoteAction& action) {
    switch (spec.kind) {
    case Kind::seek:
    case Kind::volume:
    case Kind::rate:
    case Kind::sleepTimer:
        return readNumber(spec, argument, action);
    case Kind::mute:
    case Kind::shuffle:
    case Kind::love:
    case Kind::fullPlayer:
    case Kind::stopAfterCurrent:
        return readSwitch(argument, action);
    case Kind::repeat:
        return readRepeat(argument, action);
    default:
        return false; // takes none
    }
}

} // namespace

Result<RemoteAction> readAction(const QString& text) {
    const auto name = text.section(u'=', 0, 0);
    const auto& table = actionTable();
    const auto spec = std::ranges::find(table, name, &ActionSpec::name);
    if (spec == table.end())
        return Failure{u"\"%1\" is no action"_s.arg(name)};
    RemoteAction action;
    action.kind = spec->kind;
    const bool hasArgument = text.contains(u'=');
    if (!hasArgument && spec->argument.startsWith(u'='))
        return needs(*spec);
    if (hasArgument && !readArgument(*spec, text.section(u'=', 1), action))
        return needs(*spec);
    return action;
}

QString actionHelp() {
    QString help;
    for (const auto& spec : actionTable())
        help += u"  %1 %2\n"_s.arg(spec.name + spec.argument, -24).arg(spec.does);
    return help;
}

QStringList actionNames() {
    QStringList names;
    for (const auto& spec : actionTable())
        names.append(spec.name);
    return names;
}

bool isDoneByOpening(const RemoteAction& action) {
    return action.kind == Kind::playPause || action.kind == Kind::play ||
           action.kind == Kind::next || action.kind == Kind::previous;
}

bool isAboutTracks(const RemoteAction& action) {
    switch (action.kind) {
    case Kind::volume:
    case Kind::mute:
    case Kind::shuffle:
    case Kind::repeat:
    case Kind::showHide:
    case Kind::fullPlayer:
    case Kind::stopAfterCurrent:
    case Kind::sleepTimer:
        return false;
    default:
        return true;
    }
}

} // namespace halvane
