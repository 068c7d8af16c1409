#include "tests/cli/program.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

#include <sys/wait.h>

namespace jostle::test {

namespace fs = std::filesystem;

namespace {

std::string quoted(const std::string& word) {
    std::string text = "'";
    for (const char c : word)
        text += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return text + "'";
}

/// Runs the program from a shell.
/// @param folder  in which it runs; its preferences are in the file beside it
/// @param after  what the shell does after starting it in the background; empty: it waits for it
ProgramRun runInShell(const std::string& folder, const std::vector<std::string>& arguments, const std::string& after) {
    const std::string out = folder + ".out", err = folder + ".err";
    std::string command = "cd " + quoted(folder) + " && { JOSTLE_PREFERENCES=" + quoted(folder + ".preferences") + " " +
                          quoted(JOSTLE_PROGRAM);
    for (const std::string& argument : arguments) {
        command += " " + quoted(argument);
    }
    command += " >" + quoted(out) + " 2>" + quoted(err) + " </dev/null";
    command += (after.empty() ? "" : " & " + after) + "; }";
    ProgramRun run;
    const int status = std::system(command.c_str()); // NOLINT(cert-env33-c): the command is made right above
    run.exitStatus = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    run.out = textOfFile(out);
    run.err = textOfFile(err);
    return run;
}

} // namespace

TestFolder::~TestFolder() {
    std::error_code ignored;
    for (const char* beside : {".preferences", ".preferences.lock", ".out", ".err"})
        fs::remove(path() + beside, ignored);
}

ProgramRun TestFolder::run(const std::vector<std::string>& arguments) const {
    return runInShell(path(), arguments, {});
}

ProgramRun TestFolder::interrupt(const std::vector<std::string>& arguments, const std::string& onceThere) const {
    // Ends too if the program does.
    return runInShell(path(), arguments,
                      "while [ ! -e " + quoted(onceThere) + " ] && kill -0 $!; do :; done; kill -TERM $!; wait $!");
}

ProgramRun TestFolder::succeed(const std::vector<std::string>& arguments) const {
    ProgramRun result = run(arguments);
    EXPECT_EQ(result.exitStatus, 0) << testing::PrintToString(arguments) << ": " << result.err;
    return result;
}

std::string sample(const std::string& name) {
    return textOfFile(fs::path(JOSTLE_TEST_DATA) / "lottie" / name);
}

std::string document(const std::string& layers) {
    return R"({"v":"5.7.4","fr":10,"ip":0,"op":10,"w":100,"h":100,"nm":"test","assets":[],"layers":[)" + layers + "]}";
}

std::string solid(const std::string& name, int number, const std::string& position) {
    return R"({"ty":1,"nm":")" + name + R"(","ind":)" + std::to_string(number) + R"(,"ks":{"p":{"a":0,"k":)" +
           position + R"(},"a":{"a":0,"k":[10,5,0]}},"sw":20,"sh":10,"sc":"#ff0000","ip":0,"op":10,"st":0})";
}

std::string slowDocument() {
    std::string layers = solid("box", 1);
    for (int number = 2; number <= 60; ++number)
        layers += "," + solid("box", number);
    return document(layers);
}

void expectRefused(const TestFolder& folder, const std::vector<RefusedCommand>& commands) {
    const auto files = folder.files();
    for (const RefusedCommand& command : commands) {
        SCOPED_TRACE(testing::PrintToString(command.arguments));
        const ProgramRun run = folder.run(command.arguments);
        EXPECT_EQ(run.exitStatus, command.exitStatus);
        EXPECT_EQ(run.out, "");
        expectOneLine(run.err);
        expectHas(run.err, command.says);
        EXPECT_EQ(folder.files(), files);
    }
}

void expectHas(const std::string& text, const std::string& part) {
    EXPECT_NE(text.find(part), std::string::npos) << part << " in " << text;
}

void expectOneLine(const std::string& text) {
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 1) << text;
    EXPECT_TRUE(text.ends_with('\n')) << text;
}

} // namespace jostle::test
