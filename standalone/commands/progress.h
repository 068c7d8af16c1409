#pragma once

#include <chrono>
#include <string>
#include <string_view>

namespace jostle::standalone {

/// Tells a person how far long work has got, on standard error: on a terminal one line that is written over, with rate
/// and time left; otherwise one line for each phase; nothing when quiet.
class Progress {
public:
    /// @param quiet  say nothing at all
    explicit Progress(bool quiet);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// Starts a phase.
    /// @param name   shown before the counter, as in "Solving..."
    /// @param total  number of steps, at least 0
    /// @param unit   what a step is, as in "frames"
    void begin(std::string_view name, long long total, std::string_view unit);

    /// Steps done in this phase. Cheap enough for every frame: the line is drawn a few times a second.
    void update(long long done);

    /// Ends the phase.
    void end();

    /// Ends the phase without a word, for a message to follow.
    void abandon();

private:
    void draw(long long done, double seconds);
    void clearLine() const;

    bool quiet_;
    bool terminal_;
    bool active_ = false;
    std::string name_;
    std::string unit_;
    long long total_ = 0;
    long long done_ = 0;
    std::chrono::steady_clock::time_point started_;
    std::chrono::steady_clock::time_point drawn_;
};

} // namespace jostle::standalone
