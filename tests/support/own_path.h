#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <string>

namespace jostle::test {

/// A path for files of the running test alone, whatever else runs at the same time. Nothing is there unless the test
/// puts it there, and the test removes it.
inline std::filesystem::path ownPath() {
    const testing::TestInfo* test = testing::UnitTest::GetInstance()->current_test_info();
    return std::filesystem::path(testing::TempDir()) /
           (std::string("jostle_") + test->test_suite_name() + "_" + test->name() + "_" + std::to_string(::getpid()));
}

} // namespace jostle::test
