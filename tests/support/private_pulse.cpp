// SPDX-License-Identifier: MIT
#include "support/private_pulse.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocalSocket>

#include <gtest/gtest.h>

#include <chrono>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace halvane::test {

using namespace Qt::StringLiterals;

namespace {

bool answers(const QString& socket) {
    QLocalSocket probe;
    probe.connectToServer(socket);
    return probe.waitForConnected(100);
}

} // namespace

MonitorRecording::MonitorRecording(const QString& server, const QString& sink, int sampleRate,
                                   int channels, int latency, const QString& file)
    : m_file(file)
    , m_channels(channels)
    , m_recorder(std::make_unique<ChildProcess>(
          u"parec"_s,
          QStringList{u"--server="_s + server, u"--device="_s + sink + u".monitor"_s,
                      u"--format=float32le"_s, u"--rate=%1"_s.arg(sampleRate),
                      u"--channels=%1"_s.arg(channels), u"--raw"_s,
                      u"--latency-msec=%1"_s.arg(latency)},
          QProcessEnvironment::systemEnvironment(), file, file + u".log"_s)) {
}

bool MonitorRecording::hasBegun() const {
    return frames() > 0;
}

std::int64_t MonitorRecording::frames() const {
    return QFileInfo(m_file).size() / qint64(sizeof(float)) / m_channels;
}

std::vector<float> MonitorRecording::samples() const {
    QFile file(m_file);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray bytes = file.readAll();
    const std::size_t frame = sizeof(float) * std::size_t(m_channels);
    std::vector<float> samples(std::size_t(bytes.size()) / frame * std::size_t(m_channels));
    std::memcpy(samples.data(), bytes.constData(), samples.size() * sizeof(float));
    return samples;
}

bool MonitorRecording::waitForFrames(std::int64_t more) const {
    const std::int64_t goal = frames() + more;
    return waitFor([&] { return frames() >= goal; }, 20'000);
}

PipeListener::PipeListener(const QString& pipe, int sampleRate)
    : m_pipe(::open(pipe.toUtf8().constData(), O_RDONLY | O_CLOEXEC))
    , m_thread([this, sampleRate] { listen(sampleRate); }) {
    EXPECT_GE(m_pipe, 0);
}

PipeListener::~PipeListener() {
    m_ends = true;
    m_thread.join();
    ::close(m_pipe);
}

std::vector<float> PipeListener::samples() const {
    const std::lock_guard lock(m_mutex);
    return m_heard;
}

void PipeListener::listen(int sampleRate) {
    using Time = std::chrono::steady_clock;
    constexpr std::chrono::milliseconds stride(10);
    std::vector<float> block(std::size_t(2 * sampleRate / 100));
    for (auto next = Time::now(); !m_ends; next += stride) {
        std::this_thread::sleep_until(next);
        pollfd ready{m_pipe, POLLIN, 0};
        std::size_t bytes = 0;
        while (bytes < block.size() * sizeof(float) && ::poll(&ready, 1, 0) == 1) {
            const auto got = ::read(m_pipe, reinterpret_cast<char*>(block.data()) + bytes,
                                    block.size() * sizeof(float) - bytes);
            if (got <= 0)
                break;
            bytes += std::size_t(got);
        }
        const std::lock_guard lock(m_mutex);
        m_heard.insert(m_heard.end(), block.begin(),
                       block.begin() + std::ptrdiff_t(bytes / sizeof(float)));
    }
}

PrivateSoundServer::PrivateSoundServer() {
    EXPECT_TRUE(m_folder.isValid());
    // Clients of the server in this process must not look for, or leave, anything in the home.
    qputenv("PULSE_COOKIE", path(u"cookie"_s).toUtf8());
}

PrivateSoundServer::~PrivateSoundServer() = default;

QProcessEnvironment PrivateSoundServer::environment() const {
    auto environment = QProcessEnvironment::systemEnvironment();
    for (const auto& name : {u"XDG_RUNTIME_DIR"_s, u"PULSE_RUNTIME_PATH"_s, u"PULSE_STATE_PATH"_s,
                             u"HOME"_s, u"XDG_CONFIG_HOME"_s, u"XDG_STATE_HOME"_s})
        environment.insert(name, m_folder.path());
    for (const auto& name : {u"PULSE_SERVER"_s, u"PULSE_SINK"_s, u"DBUS_SESSION_BUS_ADDRESS"_s,
                             u"DISPLAY"_s, u"WAYLAND_DISPLAY"_s})
        environment.remove(name);
    return environment;
}

QString PrivateSoundServer::control(const QStringList& arguments) {
    QProcess pactl;
    auto plain = QProcessEnvironment::systemEnvironment();
    plain.insert(u"LC_ALL"_s, u"C"_s); // its answers are read
    pactl.setProcessEnvironment(plain);
    pactl.start(u"pactl"_s, QStringList{u"--server="_s + address()} + arguments);
    pactl.waitForFinished(30'000);
    EXPECT_EQ(pactl.exitCode(), 0) << "pactl " << qPrintable(arguments.join(u' ')) << ": "
                                   << pactl.readAllStandardError().constData();
    return QString::fromUtf8(pactl.readAllStandardOutput()).trimmed();
}

std::uint32_t PrivateSoundServer::load(const QStringList& module) {
    return control(QStringList{u"load-module"_s} + module).toUInt();
}

std::uint32_t PrivateSoundServer::loadNullSink(const QString& name, int sampleRate,
                                               const QString& description, int channels) {
    const auto module =
        load({u"module-null-sink"_s, u"sink_name="_s + name, u"rate=%1"_s.arg(sampleRate),
              u"channels=%1"_s.arg(channels), u"format=float32le"_s, u"norewinds=1"_s,
              u"sink_properties=\"device.description='%1'\""_s.arg(description)});
    EXPECT_TRUE(waitFor([&] { return sinkIndex(name).has_value(); }));
    return module;
}

void PrivateSoundServer::loadRevisingSink(const QString& name, int sampleRate) {
    load({u"module-null-sink"_s, u"sink_name="_s + name, u"rate=%1"_s.arg(sampleRate),
          u"format=float32le"_s});
    EXPECT_TRUE(waitFor([&] { return sinkIndex(name).has_value(); }));
}

std::unique_ptr<PipeListener> PrivateSoundServer::loadPipeSink(const QString& name,
                                                               int sampleRate) {
    const QString pipe = path(name + u".pipe"_s);
    load({u"module-pipe-sink"_s, u"sink_name="_s + name, u"rate=%1"_s.arg(sampleRate),
          u"channels=2"_s, u"format=float32le"_s, u"file="_s + pipe});
    EXPECT_TRUE(waitFor([&] { return sinkIndex(name).has_value(); }));
    return std::make_unique<PipeListener>(pipe, sampleRate);
}

void PrivateSoundServer::unload(std::uint32_t module) {
    control({u"unload-module"_s, QString::number(module)});
}

void PrivateSoundServer::setDefaultSink(const QString& name) {
    control({u"set-default-sink"_s, name});
}

void PrivateSoundServer::suspendSink(const QString& name, bool suspended) {
    control({u"suspend-sink"_s, name, suspended ? u"1"_s : u"0"_s});
}

bool PrivateSoundServer::hasPausedStream() {
    return control({u"list"_s, u"sink-inputs"_s}).contains(u"Corked: yes"_s);
}

qsizetype PrivateSoundServer::streams() {
    return control({u"list"_s, u"short"_s, u"sink-inputs"_s})
        .split(u'\n', Qt::SkipEmptyParts)
        .size();
}

std::optional<std::uint32_t> PrivateSoundServer::sinkIndex(const QString& name) {
    const auto lines = control({u"list"_s, u"short"_s, u"sinks"_s}).split(u'\n');
    for (const QString& line : lines) {
        const auto fields = line.split(u'\t');
        if (fields.value(1) == name)
            return fields.value(0).toUInt();
    }
    return {};
}

std::unique_ptr<MonitorRecording> PrivateSoundServer::record(const QString& sink, int sampleRate,
                                                             int channels, int latency) {
    auto recording =
        std::make_unique<MonitorRecording>(address(), sink, sampleRate, channels, latency,
                                           path(u"recording%1.raw"_s.arg(++m_recordings)));
    EXPECT_TRUE(waitFor([&] { return recording->hasBegun(); })) << "nothing is recorded";
    return recording;
}

QString PrivateSoundServer::address() const {
    return u"unix:"_s + path(u"native"_s);
}

void PrivatePulse::start() {
    QFile script(path(u"script.pa"_s));
    ASSERT_TRUE(script.open(QIODevice::WriteOnly));
    for (const int rate : {44100, 48000, 96000})
        script.write(
            u"load-module module-null-sink sink_name=null%1 rate=%1 format=float32le norewinds=1 "
            "sink_properties=\"device.description='Null %1'\"\n"_s.arg(rate)
                .toUtf8());
    script.write("set-default-sink null44100\n");
    // The socket comes last: whoever can connect finds everything else in place.
    script.write(u"load-module module-native-protocol-unix auth-anonymous=1 socket=%1\n"_s
                     .arg(path(u"native"_s))
                     .toUtf8());
    script.close();
    m_server = std::make_unique<ChildProcess>(
        u"pulseaudio"_s,
        QStringList{u"-n"_s, u"--daemonize=no"_s, u"--exit-idle-time=-1"_s, u"--use-pid-file=no"_s,
                    u"--high-priority=no"_s, u"-F"_s, script.fileName()},
        environment(), path(u"log"_s));
    ASSERT_TRUE(waitFor([this] { return answers(path(u"native"_s)); })) << "no PulseAudio";
}

std::uint32_t PrivatePulse::loadInputOnly(const QString& name, const QString& description) {
    return load({u"module-null-source"_s, u"source_name="_s + name,
                 u"description='%1'"_s.arg(description)});
}

QProcessEnvironment PrivatePipeWire::sessionEnvironment() const {
    auto session = environment();
    session.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, u"unix:path="_s + path(u"bus"_s));
    return session;
}

std::unique_ptr<ChildProcess> PrivatePulse::call() {
    return std::make_unique<ChildProcess>(u"pacat"_s,
                                          QStringList{u"--server="_s + address(),
                                                      u"--property=media.role=phone"_s, u"--raw"_s,
                                                      u"/dev/zero"_s},
                                          environment(), path(u"call.log"_s));
}

void PrivatePipeWire::start() {
    const auto run = [this](const QString& program, const QString& socket) {
        auto process = std::make_unique<ChildProcess>(program, QStringList{}, sessionEnvironment(),
                                                      path(program + u".log"_s));
        EXPECT_TRUE(waitFor([&] { return answers(path(socket)); })) << qPrintable(program);
        return process;
    };
    m_bus = std::make_unique<ChildProcess>(
        u"dbus-daemon"_s,
        QStringList{u"--session"_s, u"--nofork"_s, u"--address=unix:path="_s + path(u"bus"_s)},
        environment(), path(u"bus.log"_s));
    ASSERT_TRUE(waitFor([this] { return answers(path(u"bus"_s)); }));
    leaveBluetoothOut();
    m_core = run(u"pipewire"_s, u"pipewire-0"_s);
    m_session = run(u"wireplumber"_s, u"pipewire-0"_s);
    m_pulse = run(u"pipewire-pulse"_s, u"native"_s);
    for (const int rate : {44100, 48000, 96000})
        loadNullSink(u"null%1"_s.arg(rate), rate, u"Null %1"_s.arg(rate));
    setDefaultSink(u"null44100"_s);
}

/// The session manager asks logind who sits at the machine's headsets, and ends where there is no
/// logind, as in a container.
void PrivatePipeWire::leaveBluetoothOut() const {
    const QString folder = path(u"wireplumber/bluetooth.lua.d"_s);
    QFile file(folder + u"/80-without.lua"_s);
    ASSERT_TRUE(QDir().mkpath(folder) && file.open(QIODevice::WriteOnly));
    file.write("bluez_monitor.enabled = false\n");
}

void PrivatePipeWire::forceRate(int sampleRate) {
    QProcess set;
    set.setProcessEnvironment(sessionEnvironment());
    set.start(u"pw-metadata"_s,
              {u"-n"_s, u"settings"_s, u"0"_s, u"clock.force-rate"_s, QString::number(sampleRate)});
    EXPECT_TRUE(set.waitForFinished(30'000) && set.exitCode() == 0);
}

void PrivatePipeWire::kill() {
    for (auto* process : {&m_pulse, &m_session, &m_core, &m_bus})
        (*process)->kill();
}

std::uint32_t PrivatePipeWire::loadInputOnly(const QString& name, const QString& description) {
    return load({u"module-null-sink"_s, u"media.class=Audio/Source/Virtual"_s,
                 u"sink_name="_s + name,
                 u"sink_properties=\"device.description='%1'\""_s.arg(description)});
}

} // namespace halvane::test
