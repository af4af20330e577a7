#pragma once

#include "support/Environment.h"
#include "support/TemporaryFolder.h"

#include <atomic>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include <sys/types.h>

namespace vantro::test {

/// A private sound server without a sound card: its one device swallows what is played, and its
/// monitor gives it back. Found by libpulse through the environment, so one at a time.
class SoundServer {
  public:
    enum class Kind { pipewire, pulseaudio };

    /// Nothing is running yet; there is a runtime folder without a server.
    explicit SoundServer(Kind kind, int deviceRate = 48'000);
    ~SoundServer();
    SoundServer(const SoundServer&) = delete;
    SoundServer& operator=(const SoundServer&) = delete;

    /// Whether its programs are installed.
    static bool isInstalled(Kind kind);

    /// Returns when it can be played to. Throws std::runtime_error when it does not start.
    void start();
    /// Starts it so that it lets nobody in: PipeWire, by its access rules, leaves whoever comes
    /// without an answer, PulseAudio refuses them.
    void startDenying();
    /// As a crash would end it.
    void crash();
    /// Takes the device away, or adds one; the server stays.
    void removeDevice();
    void addDevice();
    /// Another output, which becomes the default one.
    void addOutput(const std::string& name, int rate = 48'000);
    /// A microphone, which becomes the default one and records what is played to the output
    /// NAME_feed.
    void addMicrophone(const std::string& name);
    void removeMicrophone(const std::string& name);
    /// Takes away what links two ports of PipeWire's graph. Throws std::runtime_error.
    static void unlink(const std::string& output, const std::string& input);
    /// Runs pactl. Throws std::runtime_error when it fails.
    void control(const std::string& arguments);

  private:
    /// Starts it; false when it does not answer soon.
    bool comesUp();
    void startPipeWire();
    void startPulseAudio();
    std::string promptOption() const;
    void launch(std::vector<std::string> command);

    Kind m_kind;
    int m_rate;
    TemporaryFolder m_folder;
    Environment m_environment;
    std::vector<pid_t> m_programs;
};

/// Plays a tone to an output, from construction to destruction. Volume 0.5.
class TonePlayer {
  public:
    /// Returns when it plays. Throws std::runtime_error when it cannot.
    TonePlayer(const std::string& output, double frequency);
    ~TonePlayer();
    TonePlayer(const TonePlayer&) = delete;
    TonePlayer& operator=(const TonePlayer&) = delete;

    /// Whether it is heard; at first it is.
    void setHeard(bool heard) { m_isHeard = heard; }

  private:
    void run(double frequency);

    void* m_stream = nullptr;
    std::atomic<bool> m_isHeard = true;
    std::atomic<bool> m_ending = false;
    std::thread m_thread;
};

/// Records what a server's device plays, from construction on.
class MonitorRecorder {
  public:
    /// Returns when it records. Throws std::runtime_error when it cannot.
    explicit MonitorRecorder(SoundServer::Kind kind, const std::string& output = "speakers");
    ~MonitorRecorder();
    MonitorRecorder(const MonitorRecorder&) = delete;
    MonitorRecorder& operator=(const MonitorRecorder&) = delete;

    /// What was played up to now at 48 kHz; interleaved stereo.
    std::vector<float> sound() const;
    /// CLOCK_MONOTONIC seconds at which a sample of `sound` left the device, as its server tells.
    double timeOf(std::size_t frame) const;
    /// Waits until as many more seconds are recorded.
    void hear(double seconds) const;

  private:
    struct Stamp {
        std::size_t frame;
        double time;
    };

    void run();

    SoundServer::Kind m_kind;
    void* m_stream = nullptr;
    mutable std::mutex m_mutex;
    std::vector<float> m_sound;  // guarded by m_mutex
    std::vector<Stamp> m_stamps; // guarded by m_mutex
    std::atomic<bool> m_ending = false;
    std::thread m_thread;
};

} // namespace vantro::test
