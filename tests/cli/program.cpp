#include "tests/cli/program.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>

#include <sys/wait.h>

namespace jostle::test {

namespace fs = std::filesystem;

namespace {

std::string quoted(const std::string& word) {
    std::string text = "'";
    for (const char c : word) {
        text += c == '\'' ? std::string("'\\''") : std::string(1, c);
    }
    return text + "'";
}

std::string readAll(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

} // namespace

ProgramRun runProgram(const fs::path& folder, const std::vector<std::string>& arguments) {
    const fs::path streams = folder.string() + ".streams";
    fs::create_directories(streams);
    std::string command = "cd " + quoted(folder.string()) + " && " + quoted(JOSTLE_PROGRAM);
    for (const std::string& argument : arguments) {
        command += " " + quoted(argument);
    }
    command += " >" + quoted((streams / "out").string()) + " 2>" + quoted((streams / "err").string()) + " </dev/null";
    ProgramRun run;
    const int status = std::system(command.c_str()); // NOLINT(cert-env33-c): the command is made right above
    run.exitStatus = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    run.out = readAll(streams / "out");
    run.err = readAll(streams / "err");
    fs::remove_all(streams);
    return run;
}

TestFolder::TestFolder() {
    const testing::TestInfo* test = testing::UnitTest::GetInstance()->current_test_info();
    path_ = fs::path(testing::TempDir()) / (std::string("jostle_") + test->test_suite_name() + "_" + test->name());
    fs::remove_all(path_);
    fs::create_directories(path_);
}

TestFolder::~TestFolder() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
}

void TestFolder::put(const std::string& name, const std::string& text) const {
    std::ofstream(path_ / name, std::ios::binary) << text;
}

std::string TestFolder::contents(const std::string& name) const {
    return readAll(path_ / name);
}

std::vector<std::string> TestFolder::names() const {
    std::vector<std::string> found;
    for (const fs::directory_entry& entry : fs::directory_iterator(path_)) {
        found.push_back(entry.path().filename().string());
    }
    std::sort(found.begin(), found.end());
    return found;
}

std::string sample(const std::string& name) {
    return readAll(fs::path(JOSTLE_TEST_DATA) / "lottie" / name);
}

} // namespace jostle::test
