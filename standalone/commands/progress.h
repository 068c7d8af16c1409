#pragma once

#include <chrono>
#include <string>
#include <string_view>

#include "standalone/commands/options.h"

namespace jostle::standalone {

/// Tells how far long work has got, on standard error.
///
/// People get phase, count, percentage, rate and time left: on a terminal in one line that is written over, otherwise
/// in a line every few seconds; and a line when a phase is done. Machines get a JSON object a line, at the start of a
/// phase, at most once a second, and at its end, of the members event ("progress"), phase, done, total, unit, percent,
/// perSecond and secondsLeft, the last two null until they are known.
class Progress {
public:
    explicit Progress(ProgressFor whom);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// Starts a phase.
    /// @param name   as in "Solving"
    /// @param total  number of steps, at least 0
    /// @param unit   what a step is, as in "frames"
    void begin(std::string_view name, long long total, std::string_view unit);

    /// Steps done in this phase. Costs a comparison nearly always: the clock is looked at the less often, the faster
    /// the steps come.
    void update(long long done) {
        done_ = done;
        if (done >= nextLook_) {
            look();
        }
    }

    /// As update, for work that comes seldom: looks at the clock each time.
    void updateNow(long long done);

    /// Takes the line off the terminal, for other lines to be printed; the next update draws it again.
    void hide();

    /// Ends the phase.
    void end();

    /// Ends the phase without a word, for a message to follow.
    void abandon();

private:
    using Clock = std::chrono::steady_clock;

    void look();
    /// @param ended  for the last word on a phase
    void tell(Clock::time_point now, bool ended);
    void tellPeople(double seconds, bool ended);
    void tellMachines(double seconds, bool ended) const;

    ProgressFor whom_;
    bool terminal_;
    bool active_ = false;
    bool shown_ = false; ///< a line stands on the terminal
    std::string name_;
    std::string unit_;
    long long total_ = 0;
    long long done_ = 0;
    long long nextLook_ = 0;   ///< step at which the clock is looked at
    long long stepsApart_ = 1; ///< between two looks
    Clock::time_point started_;
    Clock::time_point looked_;
    Clock::time_point told_;
};

} // namespace jostle::standalone
