#include "persistence/target_file.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include <sys/stat.h>

#include "tests/support/own_path.h"

namespace jostle {
namespace {

namespace fs = std::filesystem;

class TargetFileTest : public testing::Test {
protected:
    TargetFileTest() { fs::create_directories(folder_); }
    ~TargetFileTest() override { fs::remove_all(folder_); }

    std::string path(const char* name) const { return (folder_ / name).string(); }
    void put(const char* name, const char* text) const { std::ofstream(folder_ / name) << text; }
    std::string contents(const char* name) const {
        std::ifstream file(folder_ / name);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    std::ptrdiff_t fileCount() const { return std::distance(fs::directory_iterator(folder_), {}); }

    fs::path folder_ = test::ownPath();
};

TEST_F(TargetFileTest, ReplacesWholeAndLeavesNothingBeside) {
    put("out.json", "an old and longer text");
    fs::permissions(path("out.json"), fs::perms::owner_read | fs::perms::owner_write);
    TargetFile target;
    ASSERT_EQ(target.open(path("out.json")), std::nullopt);
    EXPECT_EQ(contents("out.json"), "an old and longer text");
    ASSERT_EQ(target.commit("new"), std::nullopt);
    EXPECT_EQ(contents("out.json"), "new");
    EXPECT_EQ(fileCount(), 1);
    EXPECT_EQ(fs::status(path("out.json")).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(TargetFileTest, WithoutACommitTheOldFileStays) {
    put("out.json", "old");
    {
        TargetFile target;
        ASSERT_EQ(target.open(path("out.json")), std::nullopt);
    }
    EXPECT_EQ(contents("out.json"), "old");
    EXPECT_EQ(fileCount(), 1);
}

TEST_F(TargetFileTest, ALeftoverOfAKilledRunIsTakenOver) {
    put(".out.json.jostle-part", "half of a much longer result");
    TargetFile target;
    ASSERT_EQ(target.open(path("out.json")), std::nullopt);
    ASSERT_EQ(target.commit("whole"), std::nullopt);
    EXPECT_EQ(contents("out.json"), "whole");
    EXPECT_EQ(fileCount(), 1);
}

TEST_F(TargetFileTest, ASecondRunIsTurnedAway) {
    TargetFile first;
    TargetFile second;
    ASSERT_EQ(first.open(path("out.json")), std::nullopt);
    const std::optional<std::string> error = second.open(path("out.json"));
    ASSERT_TRUE(error.has_value());
    EXPECT_NE(error->find("another run"), std::string::npos);
    EXPECT_EQ(first.commit("first"), std::nullopt);
    EXPECT_EQ(contents("out.json"), "first");
}

TEST_F(TargetFileTest, WhatStandsInPlaceOfTheTemporaryIsNotWrittenThrough) {
    put("victim.txt", "dear");
    fs::create_symlink("victim.txt", path(".a.json.jostle-part"));
    fs::create_hard_link(path("victim.txt"), path(".b.json.jostle-part"));
    ASSERT_EQ(::mkfifo(path(".c.json.jostle-part").c_str(), 0600), 0);
    for (const char* name : {"a.json", "b.json", "c.json"}) {
        TargetFile target;
        EXPECT_NE(target.open(path(name)), std::nullopt) << name;
    }
    EXPECT_EQ(contents("victim.txt"), "dear");
}

TEST_F(TargetFileTest, LongNamesHaveATemporaryToo) {
    const std::string name(250, 'x');
    TargetFile target;
    ASSERT_EQ(target.open(path(name.c_str())), std::nullopt);
    ASSERT_EQ(target.commit("whole"), std::nullopt);
    EXPECT_EQ(contents(name.c_str()), "whole");
}

TEST_F(TargetFileTest, ASymbolicLinkIsFollowed) {
    fs::create_symlink("later.json", path("dangling.json"));
    TargetFile dangling;
    ASSERT_EQ(dangling.open(path("dangling.json")), std::nullopt);
    ASSERT_EQ(dangling.commit("new"), std::nullopt);
    EXPECT_EQ(contents("later.json"), "new");
    put("real.json", "old");
    fs::create_symlink("real.json", path("link.json"));
    TargetFile target;
    ASSERT_EQ(target.open(path("link.json")), std::nullopt);
    ASSERT_EQ(target.commit("new"), std::nullopt);
    EXPECT_TRUE(fs::is_symlink(path("link.json")));
    EXPECT_EQ(contents("real.json"), "new");
}

TEST_F(TargetFileTest, WhatCannotBeATargetIsRefused) {
    TargetFile target;
    EXPECT_NE(target.open(folder_.string()), std::nullopt);
    EXPECT_NE(target.open(path("no/such/folder/out.json")), std::nullopt);
    EXPECT_NE(target.open("/dev/null"), std::nullopt);
    EXPECT_EQ(fileCount(), 0);
}

TEST_F(TargetFileTest, ReadingTellsWhatIsWrong) {
    put("small.json", "{}");
    EXPECT_EQ(readFile(path("small.json"), 2).text, "{}");
    EXPECT_NE(readFile(path("small.json"), 1).error.find("larger"), std::string::npos);
    EXPECT_NE(readFile(folder_.string(), 100).error.find("directory"), std::string::npos);
    ASSERT_EQ(::mkfifo(path("pipe.json").c_str(), 0600), 0);
    EXPECT_NE(readFile(path("pipe.json"), 100).error.find("is no regular file"), std::string::npos);
    EXPECT_NE(readFile("/dev/zero", 100).error.find("is no regular file"), std::string::npos);
    EXPECT_NE(readFile(path("missing.json"), 100).error.find("cannot be opened"), std::string::npos);
}

} // namespace
} // namespace jostle
