#include "persistence/target_file.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace jostle {

namespace {

std::string reason(int error) {
    return std::strerror(error);
}

bool writeAll(int descriptor, std::string_view contents) {
    while (!contents.empty()) {
        const ssize_t written = ::write(descriptor, contents.data(), contents.size());
        if (written < 0 && errno == EINTR) {
            continue;
        }
        if (written < 0) {
            return false;
        }
        contents.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

/// The file at the end of a row of symbolic links, be it there or not; nothing if the row is endless.
std::optional<std::filesystem::path> followLinks(std::filesystem::path path) {
    constexpr int mostLinks = 40;
    std::error_code error;
    for (int i = 0; i < mostLinks; ++i) {
        if (!std::filesystem::is_symlink(path, error)) {
            return path;
        }
        path = path.parent_path() / std::filesystem::read_symlink(path, error);
    }
    return std::nullopt;
}

/// Whether an open file is a regular one that has no second name.
bool isOrdinary(int descriptor) {
    struct stat status {};
    return ::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) && status.st_nlink <= 1;
}

/// Whether the open file is still the one of that name: another run may have renamed it away before we got the lock.
bool isStillThere(int descriptor, const std::string& path) {
    struct stat opened {};
    struct stat named {};
    return ::fstat(descriptor, &opened) == 0 && ::stat(path.c_str(), &named) == 0 && opened.st_ino == named.st_ino &&
           opened.st_dev == named.st_dev;
}

} // namespace

FileText readFile(const std::string& path, std::size_t mostBytes) {
    // Without waiting: nobody may ever write into a pipe.
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (descriptor < 0) {
        return {{}, "cannot be opened: " + reason(errno), false};
    }
    FileText file;
    struct stat status {};
    if (::fstat(descriptor, &status) == 0 && !S_ISREG(status.st_mode)) {
        file.error = S_ISDIR(status.st_mode) ? "is a directory; name a file in it"
                                             : "is no regular file; save what comes from a pipe or a device first";
    } else {
        // One byte past the announced size, so that a plain file ends with a short read and no second growth.
        std::size_t filled = 0;
        file.text.resize(static_cast<std::size_t>(status.st_size > 0 ? status.st_size : 0) + 1);
        while (file.error.empty()) {
            const ssize_t count = ::read(descriptor, file.text.data() + filled, file.text.size() - filled);
            if (count < 0 && errno == EINTR) {
                continue;
            }
            if (count < 0) {
                file.error = "cannot be read: " + reason(errno);
            } else if (count == 0) {
                break;
            }
            filled += count > 0 ? static_cast<std::size_t>(count) : 0;
            if (filled > mostBytes) {
                file.error = "is larger than " + std::to_string(mostBytes >> 20U) + " MB";
            } else if (filled == file.text.size()) {
                file.text.resize(2 * filled);
            }
        }
        file.text.resize(filled);
    }
    ::close(descriptor);
    return file;
}

TargetFile::~TargetFile() {
    discard();
}

std::optional<std::string> TargetFile::open(const std::string& path) {
    discard();
    std::error_code error;
    const std::optional<std::filesystem::path> followed = followLinks(path);
    if (!followed) {
        return "is a ring of symbolic links; name another file";
    }
    const std::filesystem::path resolved = std::filesystem::weakly_canonical(*followed, error);
    target_ = error ? followed->string() : resolved.string();
    const std::filesystem::file_status status = std::filesystem::status(target_, error);
    if (std::filesystem::is_directory(status)) {
        return "is a directory; name a file in it";
    }
    if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status)) {
        return "is no regular file; name one that can be replaced";
    }
    if (std::filesystem::exists(status) && ::access(target_.c_str(), W_OK) != 0) {
        return "is write-protected; name another file or change its permissions";
    }
    const std::filesystem::path folder = std::filesystem::path(target_).parent_path();
    constexpr std::size_t longestBeginning = 200; // of a name that may have 255 bytes with what is put around it
    const std::string name = std::filesystem::path(target_).filename().string().substr(0, longestBeginning);
    temporary_ = (folder / ("." + name + ".jostle-part")).string();
    for (;;) {
        // Whatever somebody else put there under that name is not followed, waited for or written through.
        descriptor_ = ::open(temporary_.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0666);
        if (descriptor_ < 0) {
            return "cannot be written: " + reason(errno) + " (folder " + folder.string() + ")";
        }
        if (!isOrdinary(descriptor_)) {
            ::close(std::exchange(descriptor_, -1));
            return "cannot be written: remove " + temporary_ + ", which is no ordinary file";
        }
        if (::flock(descriptor_, LOCK_EX | LOCK_NB) != 0) {
            ::close(std::exchange(descriptor_, -1));
            return "is being written by another run; wait for it or name another file";
        }
        if (isStillThere(descriptor_, temporary_)) {
            break;
        }
        ::close(std::exchange(descriptor_, -1));
    }
    // One that a killed run left behind may hold anything.
    error_ = ::ftruncate(descriptor_, 0) == 0 ? 0 : errno;
    if (std::filesystem::exists(status)) {
        // Only a courtesy: a file system without permissions takes the default.
        (void)::fchmod(descriptor_, static_cast<mode_t>(status.permissions()) & 07777);
    }
    return std::nullopt;
}

void TargetFile::write(std::string_view block) {
    // The disk's places are asked for ahead, many at a time: one by one, as a large file grows, they cost as much as
    // the writing. Only a courtesy again, for file systems that can.
    constexpr std::size_t ahead = std::size_t{8} << 20U;
    constexpr std::size_t small = std::size_t{1} << 20U;
    if (written_ + block.size() > std::max(reserved_, small)) {
        (void)::fallocate(descriptor_, FALLOC_FL_KEEP_SIZE, static_cast<off_t>(written_),
                          static_cast<off_t>(block.size() + ahead));
        reserved_ = written_ + block.size() + ahead;
    }
    if (error_ == 0 && !writeAll(descriptor_, block)) {
        error_ = errno;
    }
    written_ += block.size();
}

std::optional<std::string> TargetFile::commit() {
    if (error_ == 0 && reserved_ > written_ && ::ftruncate(descriptor_, static_cast<off_t>(written_)) != 0) {
        error_ = errno;
    }
    if (error_ == 0 && ::fsync(descriptor_) != 0) {
        error_ = errno;
    }
    if (error_ != 0) {
        const int error = error_;
        discard();
        return "cannot be written: " + reason(error) + "; the file is as it was";
    }
    if (::rename(temporary_.c_str(), target_.c_str()) != 0) {
        const int error = errno;
        discard();
        return "cannot be replaced: " + reason(error) + "; the file is as it was";
    }
    ::close(std::exchange(descriptor_, -1));
    return std::nullopt;
}

std::optional<std::string> TargetFile::commit(std::string_view contents) {
    write(contents);
    return commit();
}

void TargetFile::discard() {
    if (descriptor_ >= 0) {
        ::unlink(temporary_.c_str());
        ::close(std::exchange(descriptor_, -1));
    }
    error_ = 0;
    written_ = reserved_ = 0;
}

} // namespace jostle
