#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>

namespace jostle::standalone {

/// The user's settings: sections of keys with a whole number, a number or a text each, in a text file.
///
/// The file is read at first use. Changes are gathered and written by `flush`, into what the file holds by then, so
/// that two programs that run at once keep each other's. A file that cannot be made out is set aside under another
/// name; where nothing can be written, settings hold until the program ends. Either is reported.
class Preferences {
public:
    using Value = std::variant<std::int32_t, double, std::string>;
    using Report = std::function<void(std::string)>;

    /// @param file    empty for defaultPreferencesFile()
    /// @param report  takes texts for the user
    Preferences(std::filesystem::path file, Report report);

    [[nodiscard]] bool has(const std::string& section, const std::string& key);

    /// The value; null if there is none.
    [[nodiscard]] const Value* find(const std::string& section, const std::string& key);

    /// The value, or the default, which is kept if there is no value. A value of another type stays as it is.
    template<class Type>
    [[nodiscard]] Type get(const std::string& section, const std::string& key, Type byDefault) {
        const Value* value = find(section, key);
        if (value == nullptr)
            change({section, key}, {Value(byDefault), true});
        const Type* known = value == nullptr ? nullptr : std::get_if<Type>(value);
        return known == nullptr ? byDefault : *known;
    }

    /// Numbers are kept with six decimals.
    /// @return false, with nothing done, for what is no finite number
    bool set(const std::string& section, const std::string& key, Value value);
    void erase(const std::string& section, const std::string& key);

    /// Writes what was changed since the last time.
    void flush();

private:
    using Place = std::pair<std::string, std::string>; // section and key
    using Values = std::map<Place, Value>;
    struct Change {
        std::optional<Value> value; ///< none takes the entry away
        bool isDefault = false;     ///< counts only where there is no value
    };

    void load();
    void change(const Place& place, Change change);
    static void apply(Values& values, const Place& place, const Change& change);
    /// Reads the file; a broken one is set aside. @return none if it is there but cannot be read or set aside
    std::optional<Values> read(bool isLocked);
    bool write(const Values& values);
    void complain(const std::string& reason);

    friend std::string preferencesText(const Values& values);
    friend std::optional<Values> preferencesFrom(std::string_view text);

    std::filesystem::path file_;
    Report report_;
    Values values_;
    std::map<Place, Change> changes_;
    bool loaded_ = false;
    bool complained_ = false;
};

/// What JOSTLE_PREFERENCES names; else jostle/preferences.txt in XDG_CONFIG_HOME, or in ~/.config. Empty if the
/// environment names no place at all.
[[nodiscard]] std::filesystem::path defaultPreferencesFile();

} // namespace jostle::standalone
