#include <gtest/gtest.h>

#include <tuple>

#include "standalone/lottie/archive.h"
#include "tests/cli/program.h"

namespace jostle::test {
namespace {

using namespace standalone;

constexpr std::size_t plenty = std::size_t{1} << 24;

const std::string falling = document(solid("box", 1));

std::string animationOf(const std::string& archive) {
    return readArchive(archive, "", plenty).text;
}

TEST(Archives, AreWhatTheNameOfTheResultSays) {
    // The input's name and contents, the result's name, and whether that is an archive.
    const std::tuple<const char*, const char*, std::string, const char*, bool> cases[] = {
        {"archive to archive", "in.lottie", newArchive(falling), "out.lottie", true},
        {"archive to text", "in.lottie", newArchive(falling), "out.json", false},
        {"text to archive", "in.json", falling, "out.LOTTIE", true},
        {"text to text", "in.json", falling, "out.json", false},
        {"archive by another name", "in.zip", newArchive(falling), "out.zip", true},
        {"text by the archives' name", "in.lottie", falling, "out.lottie", false},
    };
    std::string text;
    for (const auto& [name, input, contents, output, archive] : cases) {
        SCOPED_TRACE(name);
        const TestFolder folder;
        folder.put(input, contents);
        const ProgramRun run = folder.succeed({"solve", input, "-o", output, "-q"});
        EXPECT_EQ(run.out + run.err, "");
        const std::string result = folder.contents(output);
        EXPECT_EQ(isArchive(result), archive);
        const std::string written = archive ? animationOf(result) : result;
        expectHas(written, R"({"t":9,)");
        EXPECT_TRUE(text.empty() || written == text) << "the same animation each time";
        text = written;
    }
}

TEST(Archives, KeepWhatElseIsInThem) {
    const TestFolder folder;
    const std::string before = sample("ios-issue_2265.lottie");
    folder.put("in.lottie", before);
    folder.succeed({"solve", "in.lottie", "-o", "out.lottie"});
    const std::string after = folder.contents("out.lottie");
    EXPECT_NE(animationOf(after), animationOf(before));
    // The animation is the fifth of fourteen entries: before its header nothing moves, and the image follows.
    const std::size_t header = before.find(readArchive(before, "", plenty).entry) - 30;
    EXPECT_EQ(after.substr(0, header), before.substr(0, header));
    const std::size_t image = before.find("images/fr_0.png") - 30, directory = before.find("PK\1\2");
    EXPECT_NE(after.find(before.substr(image, directory - image)), std::string::npos);
}

TEST(Archives, ThatCannotBeUsedAreRefused) {
    const TestFolder folder;
    folder.put("plain.json", falling);
    folder.put("in.lottie", newArchive(falling));
    folder.put("cut.lottie", newArchive(falling).substr(0, 200));
    expectRefused(folder, {{{"solve", "in.lottie", "--animation", "other"}, "in.lottie", 1},
                           {{"inspect", "plain.json", "--animation", "one"}, "plain.json", 1},
                           {{"inspect", "cut.lottie"}, "cut.lottie", 1}});
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
