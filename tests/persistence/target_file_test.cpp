#include "persistence/target_file.h"

#include <gtest/gtest.h>

#include <filesystem>

#include <sys/stat.h>

#include "tests/support/own_folder.h"

namespace jostle {
namespace {

namespace fs = std::filesystem;

struct TargetFileTest : testing::Test, test::OwnFolder {};

TEST_F(TargetFileTest, ReplacesWholeAndLeavesNothingBeside) {
    put("out.json", "an old and longer text");
    fs::permissions(path("out.json"), fs::perms::owner_read | fs::perms::owner_write);
    TargetFile target;
    ASSERT_EQ(target.open(path("out.json")), std::nullopt);
    EXPECT_EQ(contents("out.json"), "an old and longer text");
    ASSERT_EQ(target.commit("new"), std::nullopt);
    EXPECT_EQ(contents("out.json"), "new");
    EXPECT_EQ(names().size(), 1u);
    EXPECT_EQ(fs::status(path("out.json")).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(TargetFileTest, WithoutACommitTheOldFileStays) {
    put("out.json", "old");
    {
        TargetFile target;
        ASSERT_EQ(target.open(path("out.json")), std::nullopt);
    }
    EXPECT_EQ(contents("out.json"), "old");
    EXPECT_EQ(names().size(), 1u);
}

TEST_F(TargetFileTest, ALeftoverOfAKilledRunIsTakenOver) {
    put(".out.json.jostle-part", "half of a much longer result");
    TargetFile target;
    ASSERT_EQ(target.open(path("out.json")), std::nullopt);
    ASSERT_EQ(target.commit("whole"), std::nullopt);
    EXPECT_EQ(contents("out.json"), "whole");
    EXPECT_EQ(names().size(), 1u);
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
    ASSERT_EQ(target.open(path(name)), std::nullopt);
    ASSERT_EQ(target.commit("whole"), std::nullopt);
    EXPECT_EQ(contents(name), "whole");
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
    EXPECT_NE(target.open(path()), std::nullopt);
    EXPECT_NE(target.open(path("no/such/folder/out.json")), std::nullopt);
    EXPECT_NE(target.open("/dev/null"), std::nullopt);
    EXPECT_EQ(names().size(), 0u);
}

TEST_F(TargetFileTest, ReadingTellsWhatIsWrong) {
    put("small.json", "{}");
    EXPECT_EQ(readFile(path("small.json"), 2).text, "{}");
    EXPECT_NE(readFile(path("small.json"), 1).error.find("larger"), std::string::npos);
    EXPECT_NE(readFile(path(), 100).error.find("directory"), std::string::npos);
    ASSERT_EQ(::mkfifo(path("pipe.json").c_str(), 0600), 0);
    EXPECT_NE(readFile(path("pipe.json"), 100).error.find("is no regular file"), std::string::npos);
    EXPECT_NE(readFile("/dev/zero", 100).error.find("is no regular file"), std::string::npos);
    EXPECT_NE(readFile(path("missing.json"), 100).error.find("cannot be opened"), std::string::npos);
}

} // namespace
} // namespace jostle
