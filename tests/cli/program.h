#pragma once

#include <string>
#include <vector>

#include "tests/support/own_folder.h"

namespace jostle::test {

/// What one run of the real program gave.
struct ProgramRun {
    int exitStatus = -1;
    std::string out;
    std::string err;
};

/// A folder in which the program runs.
class TestFolder : public OwnFolder {
public:
    TestFolder() = default;
    /// One that holds a file "in.json".
    explicit TestFolder(const std::string& input) { put("in.json", input); }
    ~TestFolder();
    TestFolder(const TestFolder&) = delete;
    TestFolder& operator=(const TestFolder&) = delete;

    /// The file of preferences for runs of the program, beside the folder.
    [[nodiscard]] std::string preferences() const { return path() + ".preferences"; }

    /// Runs the program with arguments, in this folder, without a terminal.
    [[nodiscard]] ProgramRun run(const std::vector<std::string>& arguments) const;
    /// The same; once a file of that name is there, the program gets a SIGTERM.
    [[nodiscard]] ProgramRun interrupt(const std::vector<std::string>& arguments, const std::string& onceThere) const;
    /// As run(), and expects that all goes well.
    ProgramRun succeed(const std::vector<std::string>& arguments) const;
};

/// Contents of a file of tests/data/lottie.
[[nodiscard]] std::string sample(const std::string& name);

/// A composition of 100 by 100 pixels, 10 frames at 10 per second, with these layers.
[[nodiscard]] std::string document(const std::string& layers);

/// A solid of 20 by 10 pixels at the centre, with its position's value as given.
[[nodiscard]] std::string solid(const std::string& name, int number, const std::string& position = "[50,50,0]");

/// Sixty dynamic bodies in one place, which take long to part.
[[nodiscard]] std::string slowDocument();

/// A command that cannot be done, and what it says on one line.
struct RefusedCommand {
    std::vector<std::string> arguments;
    std::string says;
    int exitStatus = 2;
};
/// Expects of each in turn that it is refused and that nothing in the folder has changed.
void expectRefused(const TestFolder& folder, const std::vector<RefusedCommand>& commands);

void expectHas(const std::string& text, const std::string& part);
void expectOneLine(const std::string& text);

} // namespace jostle::test
