#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace jostle {

/// Contents of a whole file, or a message that says why it could not be read.
struct FileText {
    std::string text;
    std::string error;   ///< empty if it was read
    bool isThere = true; ///< false if no such file could be opened
};

/// Reads a regular file into memory; never waits for anybody, as to read from a pipe would.
/// @param path       UTF-8
/// @param mostBytes  larger files are refused
[[nodiscard]] FileText readFile(const std::string& path, std::size_t mostBytes);

/// A file to be replaced whole or not at all.
///
/// Opening makes a temporary file beside the target, which tells early that the folder cannot be written to and keeps
/// a second run away from the same target. Only `commit` touches the target, by renaming the flushed temporary over
/// it. Without a commit the temporary is removed; one that a killed run left behind is taken over by the next.
class TargetFile {
public:
    TargetFile() = default;
    ~TargetFile();
    TargetFile(const TargetFile&) = delete;
    TargetFile& operator=(const TargetFile&) = delete;

    /// @param path  UTF-8; a symbolic link is followed, so that the file it names is replaced
    /// @return nothing if it is open; else why not and what to do
    [[nodiscard]] std::optional<std::string> open(const std::string& path);

    /// Adds to what the file will hold, at best in large blocks. What cannot be written is told by `commit`.
    void write(std::string_view block);

    /// Flushes what was written to the disk and renames; keeps the permissions of a file that stood there.
    /// @return nothing if the target now holds what was written; else a message, and the target is as it was
    [[nodiscard]] std::optional<std::string> commit();
    /// The same of a file that holds this and no more.
    [[nodiscard]] std::optional<std::string> commit(std::string_view contents);

private:
    void discard();

    int descriptor_ = -1;
    int error_ = 0;            ///< of the first write that failed
    std::size_t written_ = 0;  ///< bytes
    std::size_t reserved_ = 0; ///< up to where places on the disk were asked for
    std::string target_;
    std::string temporary_;
};

} // namespace jostle
