#include <gtest/gtest.h>

#include "standalone/lottie/archive.h"
#include "tests/cli/program.h"

namespace jostle::test {
namespace {

using standalone::isArchive;
using standalone::newArchive;
using standalone::readArchive;

constexpr std::size_t plenty = std::size_t{1} << 24;

const std::string falling = document(solid("box", 1)), resting = document(R"({"ty":3,"ind":1,"ks":{}})");

std::string animationOf(const std::string& archive) {
    return readArchive(archive, "", plenty).text;
}

TEST(Archives, AreWhatTheNameOfTheResultSays) {
    struct Case {
        const char* name;
        const char* input;
        std::string contents;
        const char* output;
        bool archive;
    };
    const Case cases[] = {
        {"archive to archive", "in.lottie", newArchive(falling), "out.lottie", true},
        {"archive to text", "in.lottie", newArchive(falling), "out.json", false},
        {"text to archive", "in.json", falling, "out.LOTTIE", true},
        {"text to text", "in.json", falling, "out.json", false},
        {"archive by another name", "in.zip", newArchive(falling), "out.zip", true},
        {"text by the archives' name", "in.lottie", falling, "out.lottie", false},
    };
    std::string text;
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const TestFolder folder;
        folder.put(c.input, c.contents);
        const ProgramRun run = folder.succeed({"solve", c.input, "-o", c.output, "-q"});
        EXPECT_EQ(run.out + run.err, "");
        const std::string result = folder.contents(c.output);
        EXPECT_EQ(isArchive(result), c.archive);
        const std::string written = c.archive ? animationOf(result) : result;
        expectHas(written, R"({"t":9,)");
        EXPECT_TRUE(text.empty() || written == text) << "the same animation each time";
        text = written;
    }
}

TEST(Archives, ComeBackToTheByteWithoutAChange) {
    const TestFolder folder;
    const std::string archive = newArchive(resting);
    folder.put("in.lottie", archive);
    folder.succeed({"solve", "in.lottie"});
    folder.succeed({"solve", "in.lottie", "--in-place"});
    EXPECT_EQ(folder.contents("in.lottie"), archive);
    EXPECT_EQ(folder.contents("in-solved.lottie"), archive);
}

TEST(Archives, KeepWhatElseIsInThem) {
    const TestFolder folder;
    const std::string before = sample("ios-issue_2265.lottie");
    folder.put("in.lottie", before);
    for (const char* out : {"a.lottie", "b.lottie"})
        folder.succeed({"solve", "in.lottie", "-o", out, "-q"});
    const std::string after = folder.contents("a.lottie");
    EXPECT_EQ(after, folder.contents("b.lottie"));
    EXPECT_NE(animationOf(after), animationOf(before));
    // The animation is the fifth of fourteen entries: its header begins after the first four, and the image follows.
    const std::string entry = readArchive(before, "", plenty).entry;
    EXPECT_EQ(after.find(entry), before.find(entry));
    EXPECT_EQ(after.substr(0, before.find(entry) - 30), before.substr(0, before.find(entry) - 30));
    const std::size_t image = before.find("images/fr_0.png") - 30, directory = before.find("PK\1\2");
    EXPECT_NE(after.find(before.substr(image, directory - image)), std::string::npos);
}

TEST(Archives, ThatCannotBeUsedAreRefused) {
    const TestFolder folder;
    folder.put("plain.json", falling);
    folder.put("in.lottie", newArchive(falling));
    folder.put("cut.lottie", newArchive(falling).substr(0, 200));
    const std::vector<std::string> cases[] = {{"solve", "in.lottie", "--animation", "other"},
                                              {"inspect", "plain.json", "--animation", "one"},
                                              {"inspect", "cut.lottie"}};
    for (const std::vector<std::string>& arguments : cases) {
        const ProgramRun run = folder.run(arguments);
        EXPECT_EQ(run.exitStatus, 1);
        expectHas(run.err, arguments[1]);
        expectOneLine(run.err);
    }
    EXPECT_EQ(folder.names().size(), 3U);
}

TEST(Matrices, TellWhereLayersStand) {
    const TestFolder folder(R"({"fr":10,"ip":1,"op":4,"w":9,"h":9,"layers":[{"ty":3,"ind":5,"nm":"a","parent":7,"ks":)"
                            R"({"p":{"k":[1,2]},"s":{"k":[200,50]}}},{"ty":3,"ddd":1,"ind":7,"ks":{"p":{"k":)"
                            R"([{"t":0,"s":[0,0]},{"t":10,"s":[10,40]}]}}}]})");
    const auto matrices = [&](const char* frames) { return folder.run({"inspect", "in.json", "--matrices", frames}); };
    EXPECT_EQ(matrices("0,2.5").out, "{\"frames\":[0,2.5],\"layers\":[\n"
                                     R"({"number":1,"id":5,"name":"a","threeD":false,"matrices":[[2,0,0,0.5,1,2],)"
                                     "[2,0,0,0.5,3.5,12]]},\n"
                                     R"({"number":2,"id":7,"name":"","threeD":true,"matrices":[[1,0,0,1,0,0],)"
                                     "[1,0,0,1,2.5,10]]}\n]}\n");
    EXPECT_EQ(matrices("1e300").exitStatus, 0); // a frame so far away that the next one is the same number
    EXPECT_EQ(matrices("all").out, matrices("1-3").out);
    for (const char* wrong : {"x", "1,", ",", "3-1", "1--", "1e999", "0-1e9", "1;2"})
        EXPECT_EQ(matrices(wrong).exitStatus, 2) << wrong;
}

} // namespace
} // namespace jostle::test
