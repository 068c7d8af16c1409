#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace jostle::test {

/// What one run of the real program gave.
struct ProgramRun {
    int exitStatus = -1;
    std::string out;
    std::string err;
};

/// Runs the program with arguments, in a folder, without a terminal.
[[nodiscard]] ProgramRun runProgram(const std::filesystem::path& folder, const std::vector<std::string>& arguments);

/// An empty folder of the running test's own, removed at its end.
class TestFolder {
public:
    TestFolder();
    ~TestFolder();
    TestFolder(const TestFolder&) = delete;
    TestFolder& operator=(const TestFolder&) = delete;

    [[nodiscard]] const std::filesystem::path& path() const { return path_; }
    void put(const std::string& name, const std::string& text) const;
    [[nodiscard]] std::string contents(const std::string& name) const;
    /// Names of all that lies in it, sorted.
    [[nodiscard]] std::vector<std::string> names() const;

private:
    std::filesystem::path path_;
};

/// Contents of a file of tests/data/lottie.
[[nodiscard]] std::string sample(const std::string& name);

} // namespace jostle::test
