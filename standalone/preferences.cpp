#include "standalone/preferences.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <system_error>

namespace jostle::standalone {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view firstLine = "# Settings of Jostle, version 1\n";
constexpr std::string_view ofNames = "=[]#"; // what names may not show as it is

char hexDigit(unsigned value) {
    return "0123456789abcdef"[value & 0xF];
}

/// Control characters, backslashes and the given characters as \xHH.
std::string escaped(std::string_view text, std::string_view special) {
    std::string result;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte >= 0x20 && byte != 0x7F && c != '\\' && special.find(c) == std::string_view::npos) {
            result += c;
        } else {
            result += "\\x";
            result += hexDigit(byte >> 4u);
            result += hexDigit(byte);
        }
    }
    return result;
}

std::optional<std::string> unescaped(std::string_view text) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\\') {
            result += text[i];
            continue;
        }
        unsigned byte = 0;
        if (text.size() - i < 4 || text[i + 1] != 'x')
            return std::nullopt;
        const char* digits = text.data() + i + 2;
        const auto parsed = std::from_chars(digits, digits + 2, byte, 16);
        if (parsed.ec != std::errc() || parsed.ptr != digits + 2)
            return std::nullopt;
        result += static_cast<char>(byte);
        i += 3;
    }
    return result;
}

template<class Number>
std::optional<Number> numberOf(std::string_view text) {
    Number number{};
    const auto parsed = std::from_chars(text.data(), text.data() + text.size(), number);
    if (parsed.ec != std::errc() || parsed.ptr != text.data() + text.size())
        return std::nullopt;
    return number;
}

std::string textOf(double number) {
    char digits[400]; // the greatest double has 309 before its point
    const auto end = std::to_chars(digits, digits + sizeof digits, number, std::chars_format::fixed, 6).ptr;
    return {digits, end};
}

std::string textOf(const Preferences::Value& value) {
    if (const auto* whole = std::get_if<std::int32_t>(&value))
        return "whole " + std::to_string(*whole);
    if (const auto* number = std::get_if<double>(&value))
        return "number " + textOf(*number);
    return "text " + escaped(std::get<std::string>(value), "");
}

std::optional<Preferences::Value> valueOf(std::string_view text) {
    const std::size_t space = text.find(' ');
    if (space == std::string_view::npos)
        return std::nullopt;
    const std::string_view type = text.substr(0, space);
    const std::string_view rest = text.substr(space + 1);
    if (type == "text") {
        if (auto content = unescaped(rest))
            return std::move(*content);
    } else if (type == "whole") {
        if (const auto whole = numberOf<std::int32_t>(rest))
            return *whole;
    } else if (type == "number") {
        const auto number = numberOf<double>(rest);
        if (number && std::isfinite(*number))
            return *number;
    }
    return std::nullopt;
}

/// An open file that is closed at the end, and with that unlocked.
class Descriptor {
public:
    explicit Descriptor(int number) : number_(number) {}
    ~Descriptor() {
        if (number_ >= 0)
            ::close(number_);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    [[nodiscard]] int get() const { return number_; }
    [[nodiscard]] bool isOpen() const { return number_ >= 0; }

private:
    int number_;
};

/// Keeps other programs from changing a file, for as long as it lives, by a lock on a file beside it: the file itself
/// is replaced each time. Makes the folder if need be.
class Lock {
public:
    explicit Lock(const fs::path& file) : descriptor_(open(file)) {
        int result = descriptor_.isOpen() ? 1 : -1;
        while (result > 0) {
            result = ::flock(descriptor_.get(), LOCK_EX);
            if (result != 0)
                result = errno == EINTR ? 1 : -1;
        }
        held_ = result == 0;
    }

    /// If not, errno tells why.
    [[nodiscard]] bool isHeld() const { return held_; }

private:
    static int open(fs::path file) {
        std::error_code ignored;
        fs::create_directories(file.parent_path(), ignored); // what goes wrong shows next
        file += ".lock";
        return ::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    }

    Descriptor descriptor_;
    bool held_ = false;
};

bool writeAll(int descriptor, std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = ::write(descriptor, text.data(), text.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return false;
        text.remove_prefix(static_cast<std::size_t>(written));
    }
    return ::fsync(descriptor) == 0;
}

bool readAll(const fs::path& file, std::string& text) {
    std::ifstream stream(file, std::ios::binary | std::ios::ate);
    if (!stream)
        return false;
    const auto size = static_cast<std::streamoff>(stream.tellg());
    if (size < 0)
        return false;
    text.resize(static_cast<std::size_t>(size));
    stream.seekg(0);
    return static_cast<bool>(stream.read(text.data(), size));
}

/// A name for a file to be set aside that no other has.
fs::path nameAside(const fs::path& file) {
    std::error_code ignored;
    for (int number = 1;; ++number) {
        fs::path name = file;
        name += number == 1 ? std::string(".broken") : ".broken-" + std::to_string(number);
        if (!fs::exists(name, ignored))
            return name;
    }
}

} // namespace

std::string preferencesText(const Preferences::Values& values) {
    std::string text(firstLine);
    const std::string* section = nullptr;
    for (const auto& [place, value] : values) {
        if (section == nullptr || *section != place.first)
            text += "\n[" + escaped(place.first, ofNames) + "]\n";
        section = &place.first;
        text += escaped(place.second, ofNames) + " = " + textOf(value) + '\n';
    }
    return text;
}

std::optional<Preferences::Values> preferencesFrom(std::string_view text) {
    Preferences::Values values;
    std::optional<std::string> section;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        std::string_view line = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        if (!line.empty() && line.back() == '\r')
            line.remove_suffix(1);
        if (line.empty() || line.front() == '#')
            continue;
        if (line.front() == '[' && line.back() == ']') {
            section = unescaped(line.substr(1, line.size() - 2));
            if (!section)
                return std::nullopt;
            continue;
        }
        const std::size_t equals = line.find(" = ");
        if (equals == std::string_view::npos || !section)
            return std::nullopt;
        const auto key = unescaped(line.substr(0, equals));
        const auto value = valueOf(line.substr(equals + 3));
        if (!key || !value)
            return std::nullopt;
        values[{*section, *key}] = *value;
    }
    return values;
}

fs::path defaultPreferencesFile() {
    const auto variable = [](const char* name) {
        const char* value = std::getenv(name);
        return fs::path(value == nullptr ? "" : value);
    };
    if (fs::path named = variable("JOSTLE_PREFERENCES"); !named.empty())
        return named;
    // A relative folder of settings is to be ignored.
    if (const fs::path folder = variable("XDG_CONFIG_HOME"); folder.is_absolute())
        return folder / "jostle" / "preferences.txt";
    if (const fs::path home = variable("HOME"); !home.empty())
        return home / ".config" / "jostle" / "preferences.txt";
    return {};
}

Preferences::Preferences(fs::path file, Report report) : file_(std::move(file)), report_(std::move(report)) {}

void Preferences::load() {
    if (loaded_)
        return;
    loaded_ = true;
    if (file_.empty())
        file_ = defaultPreferencesFile();
    std::error_code error;
    if (fs::is_symlink(file_, error)) { // to be written through, not replaced
        if (fs::path target = fs::canonical(file_, error); !error)
            file_ = std::move(target);
    }
    if (auto values = read(false))
        values_ = std::move(*values);
}

bool Preferences::has(const std::string& section, const std::string& key) {
    return find(section, key) != nullptr;
}

const Preferences::Value* Preferences::find(const std::string& section, const std::string& key) {
    load();
    const auto found = values_.find({section, key});
    return found == values_.end() ? nullptr : &found->second;
}

bool Preferences::set(const std::string& section, const std::string& key, Value value) {
    if (double* number = std::get_if<double>(&value)) {
        if (!std::isfinite(*number))
            return false;
        *number = numberOf<double>(textOf(*number)).value_or(*number);
    }
    load();
    const auto present = values_.find({section, key});
    const auto pending = changes_.find({section, key});
    // A default that is confirmed counts as chosen.
    if (present == values_.end() || present->second != value ||
        (pending != changes_.end() && pending->second.isDefault))
        change({section, key}, {std::move(value), false});
    return true;
}

void Preferences::erase(const std::string& section, const std::string& key) {
    if (has(section, key))
        change({section, key}, {std::nullopt, false});
}

void Preferences::apply(Values& values, const Place& place, const Change& change) {
    if (!change.value)
        values.erase(place);
    else if (!change.isDefault || values.count(place) == 0)
        values[place] = *change.value;
}

void Preferences::change(const Place& place, Change change) {
    apply(values_, place, change);
    const auto pending = changes_.find(place);
    if (pending != changes_.end() && !pending->second.isDefault)
        change.isDefault = false; // what it was before is known to be unwanted
    changes_[place] = std::move(change);
}

std::optional<Preferences::Values> Preferences::read(bool isLocked) {
    std::error_code error;
    if (file_.empty() || !fs::exists(file_, error))
        return error ? std::nullopt : std::optional<Values>(std::in_place);
    std::string text;
    if (!fs::is_regular_file(file_, error) || !readAll(file_, text)) { // a folder, or a pipe that nobody writes to
        complain("it cannot be read");
        return std::nullopt;
    }
    if (auto values = preferencesFrom(text))
        return values;
    if (!isLocked) { // another program may be about to set it aside
        const Lock lock(file_);
        if (lock.isHeld())
            return read(true);
        complain("what it holds cannot be made out");
        return std::nullopt;
    }
    const fs::path aside = nameAside(file_);
    fs::rename(file_, aside, error);
    if (error) {
        complain("what it holds cannot be made out");
        return std::nullopt;
    }
    report_("The settings in " + file_.string() + " cannot be made out. They were set aside as " + aside.string() +
            ", and defaults are taken.");
    return Values{};
}

bool Preferences::write(const Values& values) {
    std::string temporary = file_.string() + ".XXXXXX";
    const Descriptor file(::mkstemp(temporary.data()));
    if (!file.isOpen())
        return false;
    if (!writeAll(file.get(), preferencesText(values)) || ::rename(temporary.c_str(), file_.c_str()) != 0) {
        const int reason = errno;
        ::unlink(temporary.c_str());
        errno = reason;
        return false;
    }
    const Descriptor folder(::open(file_.parent_path().empty() ? "." : file_.parent_path().c_str(), O_RDONLY));
    if (folder.isOpen())
        ::fsync(folder.get()); // what the rename did; where folders cannot be synchronised it will do without
    return true;
}

void Preferences::flush() {
    if (changes_.empty())
        return;
    if (file_.empty()) {
        complain("the environment names no place for them");
        return;
    }
    const Lock lock(file_);
    if (!lock.isHeld()) {
        complain(std::strerror(errno));
        return;
    }
    std::optional<Values> present = read(true);
    if (!present)
        return;
    Values wanted = *present;
    for (const auto& [place, change] : changes_)
        apply(wanted, place, change);
    if (wanted != *present && !write(wanted)) {
        complain(std::strerror(errno));
        return;
    }
    values_ = std::move(wanted);
    changes_.clear();
}

void Preferences::complain(const std::string& reason) {
    if (!complained_)
        report_("Settings cannot be kept in " + (file_.empty() ? std::string("a file") : file_.string()) + ": " +
                reason + ". They hold until the program ends.");
    complained_ = true;
}

} // namespace jostle::standalone
