#include "persistence/target_file.h"

#include <gtest/gtest.h>

#include <filesystem>

#include <sys/stat.h>

#include "tests/support/own_folder.h"

namespace jostle {
namespace {

namespace fs = std::filesystem;

struct TargetFileTest : testing::Test, test::OwnFolder {};

// That without a commit the old file stays: Batch.AnInterruptionEndsAllInOrder.
TEST_F(TargetFileTest, WritesWholeAndLeavesNothingBeside) {
    put("old.json", "an old and longer text");
    fs::permissions(path("old.json"), fs::perms::owner_read | fs::perms::owner_write);
    put(".left.json.jostle-part", "half of a much longer result, of a run that was killed");
    fs::create_symlink("later.json", path("dangling.json"));
    put("real.json", "old");
    fs::create_symlink("real.json", path("link.json"));
    const std::string longest(250, 'x'); // no room for an ending
    // What is opened, and the file that then holds the text.
    const std::pair<std::string, std::string> cases[] = {{"old.json", "old.json"},
                                                         {"left.json", "left.json"},
                                                         {"dangling.json", "later.json"},
                                                         {"link.json", "real.json"},
                                                         {longest, longest}};
    for (const auto& [name, written] : cases) {
        SCOPED_TRACE(name);
        const std::string before = contents(written);
        TargetFile target;
        ASSERT_EQ(target.open(path(name)), std::nullopt);
        EXPECT_EQ(contents(written), before);
        ASSERT_EQ(target.commit("new"), std::nullopt);
        EXPECT_EQ(contents(written), "new");
    }
    EXPECT_EQ(names(), (std::vector<std::string>{"dangling.json", "later.json", "left.json", "link.json", "old.json",
                                                 "real.json", longest}));
    EXPECT_EQ(fs::status(path("old.json")).permissions(), fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_TRUE(fs::is_symlink(path("link.json")));
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

TEST_F(TargetFileTest, WhatCannotBeATargetIsRefused) {
    TargetFile target;
    for (const std::string& file : {path(), path("no/such/folder/out.json"), std::string("/dev/null")})
        EXPECT_NE(target.open(file), std::nullopt) << file;
    EXPECT_EQ(names().size(), 0u);
}

TEST_F(TargetFileTest, ReadingTellsWhatIsWrong) {
    put("small.json", "{}");
    EXPECT_EQ(readFile(path("small.json"), 2).text, "{}");
    ASSERT_EQ(::mkfifo(path("pipe.json").c_str(), 0600), 0);
    const std::pair<std::string, const char*> cases[] = {{path("small.json"), "larger"},
                                                         {path(), "directory"},
                                                         {path("pipe.json"), "is no regular file"},
                                                         {"/dev/zero", "is no regular file"},
                                                         {path("missing.json"), "cannot be opened"}};
    for (const auto& [file, says] : cases)
        EXPECT_NE(readFile(file, 1).error.find(says), std::string::npos) << file;
}

} // namespace
} // namespace jostle
