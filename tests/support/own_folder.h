#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <vector>

namespace jostle::test {

/// What a file holds; nothing if there is none.
inline std::string textOfFile(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// A folder of the running test alone, whatever else runs at the same time; removed at its end.
class OwnFolder {
public:
    OwnFolder() {
        const testing::TestInfo* test = testing::UnitTest::GetInstance()->current_test_info();
        folder_ = std::filesystem::path(testing::TempDir()) / (std::string("jostle_") + test->test_suite_name() + "_" +
                                                               test->name() + "_" + std::to_string(::getpid()));
        std::filesystem::create_directories(folder_);
    }
    ~OwnFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }
    OwnFolder(const OwnFolder&) = delete;
    OwnFolder& operator=(const OwnFolder&) = delete;

    /// Of the folder itself, or of something in it.
    [[nodiscard]] std::string path(const std::string& name = "") const {
        return (name.empty() ? folder_ : folder_ / name).string();
    }

    /// Writes a file, in a folder of its own if the name says so.
    void put(const std::string& name, const std::string& text) const {
        std::filesystem::create_directories((folder_ / name).parent_path());
        std::ofstream(folder_ / name, std::ios::binary) << text;
    }
    /// What a file holds; nothing if there is none.
    [[nodiscard]] std::string contents(const std::string& name) const { return textOfFile(folder_ / name); }
    /// Names of all that lies in it or in a folder in it, sorted.
    [[nodiscard]] std::vector<std::string> names(const std::string& within = "") const {
        std::vector<std::string> found;
        for (const std::filesystem::directory_entry& entry : std::filesystem::directory_iterator(folder_ / within)) {
            found.push_back(entry.path().filename().string());
        }
        std::sort(found.begin(), found.end());
        return found;
    }

    /// What each file holds, by its name; those in folders too.
    [[nodiscard]] std::map<std::string, std::string> files() const {
        std::map<std::string, std::string> found;
        for (const std::filesystem::directory_entry& entry : std::filesystem::recursive_directory_iterator(folder_)) {
            const std::string name = std::filesystem::relative(entry.path(), folder_).string();
            found[name] = entry.is_directory() ? "" : contents(name);
        }
        return found;
    }

private:
    std::filesystem::path folder_;
};

} // namespace jostle::test
