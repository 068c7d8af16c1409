#include <QImage>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "tests/cli/program.h"

namespace jostle::test {
namespace {

QImage png(const std::string& bytes) {
    return QImage::fromData(QByteArray::fromStdString(bytes), "PNG");
}

// A box of 20 by 10 pixels falls freely, as in the tests of solve: its middle is at (50, 50) on frame 0 and at (50, 75)
// on frame 2. With --size 100 a margin of 2.5 pixels leaves 0.95 for each pixel of the composition.
TEST(Render, ShowsAFrameOfTheSimulation) {
    const TestFolder folder(document(solid("box", 1)));
    expectHas(folder.succeed({"render", "in.json", "-o", "a.png", "--size", "100"}).out, "frame 0, 1 body");
    folder.succeed({"render", "in.json", "-o", "b.png", "--size", "100", "--frame", "2", "-q"});
    const QImage start = png(folder.contents("a.png"));
    const QImage later = png(folder.contents("b.png"));
    const QRgb background = qRgb(38, 38, 38);
    ASSERT_EQ(start.size(), QSize(100, 100));
    EXPECT_NE(start.pixel(50, 50), background);
    EXPECT_EQ(start.pixel(50, 73), background);
    EXPECT_EQ(later.pixel(50, 50), background);
    EXPECT_NE(later.pixel(50, 73), background);
}

TEST(Render, SizeAndLookAreAsAskedFor) {
    const TestFolder folder(document(solid("box", 1)));
    folder.succeed(
        {"render", "in.json", "-o", "a.png", "--size", "64x32", "--background", "#102030", "--hide", "shapes,bounds"});
    const QImage image = png(folder.contents("a.png"));
    EXPECT_EQ(image.size(), QSize(64, 32));
    EXPECT_EQ(image.pixel(32, 16), qRgb(0x10, 0x20, 0x30));
    folder.succeed({"render", "in.json", "-o", "b.png", "--set", "box.type=Static"});
    EXPECT_EQ(png(folder.contents("b.png")).size(), QSize(960, 960));
}

TEST(Render, TheUsersPreferencesColourIt) {
    const TestFolder folder(document(solid("box", 1)));
    const auto hasCyan = [&](const char* option, const char* what) {
        folder.succeed({"render", "in.json", "-o", "a.png", "--set", "box.type=Static", option, what});
        const QImage image = png(folder.contents("a.png"));
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixel(x, image.height() / 2) == qRgb(0, 255, 255)) {
                return true;
            }
        }
        return false;
    };
    EXPECT_FALSE(hasCyan("--show", "shapes"));
    EXPECT_FALSE(std::filesystem::exists(folder.preferences())) << "looking at them leaves no file";
    std::ofstream(folder.preferences()) << "# Settings of Jostle, version 1\n\n[QF Jostle 2]\n"
                                           "Static Body Highlight Red = whole 0\n"
                                           "Static Body Highlight Green = whole 255\n"
                                           "Static Body Highlight Blue = whole 255\n";
    EXPECT_TRUE(hasCyan("--show", "shapes"));
    EXPECT_FALSE(hasCyan("--hide", "shapes"));
}

TEST(Render, FilmsAreTheSameTwiceAndAsSolveShowsThem) {
    const TestFolder folder(document(solid("box", 1)));
    expectHas(folder.succeed({"render", "in.json", "-o", "a.gif", "--start", "2", "--end", "6", "--size", "80"}).out,
              "5 pictures");
    folder.succeed({"solve", "in.json", "-o", "out.json", "--start", "2", "--end", "6", "--preview", "b.gif", "--size",
                    "80", "-q"});
    folder.succeed({"solve", "in.json", "-o", "plain.json", "--start", "2", "--end", "6", "-q"});
    EXPECT_EQ(folder.contents("a.gif").substr(0, 6), "GIF89a");
    EXPECT_EQ(folder.contents("a.gif"), folder.contents("b.gif"));
    EXPECT_EQ(folder.contents("out.json"), folder.contents("plain.json"));
    expectHas(folder.succeed({"render", "in.json", "-o", "c.gif", "--every", "3"}).out, "frames 0 to 9 in 4 pictures");
}

TEST(Render, TellsMachinesHowFarItHasGot) {
    const TestFolder folder(document(solid("box", 1)));
    const ProgramRun run = folder.succeed({"render", "in.json", "-o", "a.gif", "--start", "3", "--json"});
    EXPECT_EQ(run.out, R"({"input":"in.json","output":"a.gif","bodies":1,"startFrame":3,"endFrame":9,"pictures":7})"
                       "\n");
    for (const char* part :
         {R"("phase":"Simulating","done":0,"total":3,)", R"("phase":"Simulating","done":3,"total":3,)",
          R"("phase":"Rendering","done":0,"total":7,)", R"("phase":"Rendering","done":7,"total":7,)"}) {
        expectHas(run.err, part);
    }
}

TEST(Render, RefusesInOneLineWhatItCannotDo) {
    const auto still = [](const char* option, const char* value) {
        return std::vector<std::string>{"render", "in.json", "-o", "a.png", option, value};
    };
    const std::vector<RefusedCommand> cases{
        {{"render", "in.json", "-o", "a.jpg"}, "ends in .png or .gif"},
        {still("--start", "2"), "--frame"},
        {{"render", "in.json", "-o", "a.gif", "--frame", "2"}, "--start and --end"},
        {still("--frame", "10"), "last frame, 9"},
        {still("--size", "8x8"), "--size 8x8"},
        {still("--size", "100x"), "--size 100x"},
        {still("--background", "reddish"), "#20242c"},
        {still("--show", "mesh,grid"), "grid"},
        {still("--set", "box.kind=1"), "--set box.kind=1"},
        {still("--settings", "no.xml"), "no.xml", 1},
        {{"render", "in.json", "-o", "there/a.png"}, "cannot be written", 1},
        {{"render", "out.json", "-o", "a.png"}, "out.json", 1},
        {{"solve", "in.json", "--preview", "a.png"}, ".gif"},
        {{"solve", "in.json", "in2.json", "--preview", "a.gif"}, "one input"},
        {{"solve", "in.json", "-o", "out/", "--sweep", "gravity.magnitude=1:2:1", "--preview", "a.gif"},
         "without --sweep"},
        {{"solve", "in.json", "-o", "a.gif", "--preview", "a.gif"}, "another file"},
        {{"solve", "in.json", "--size", "80"}, "--preview"},
    };
    expectRefused(TestFolder(document(solid("box", 1))), cases);
}

} // namespace
} // namespace jostle::test
