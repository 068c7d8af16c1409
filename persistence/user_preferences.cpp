#include "persistence/user_preferences.h"

#include <algorithm>
#include <array>
#include <type_traits>
#include <variant>

#include "host/persistent_store.h"
#include "persistence/attribute.h"

namespace jostle {

namespace {

/// How one preference is kept in the host's store.
struct PreferenceRow {
    using Whole = std::int32_t& (*)(UserPreferences&);
    using Real = double& (*)(UserPreferences&);
    using Text = std::string& (*)(UserPreferences&);

    const char* key;
    std::variant<Whole, Real, Text> field;
    double least = 0; ///< numbers of the store are brought within these
    double greatest = 0;
    bool inDialog = true; ///< chosen in the dialog of preferences; else kept by the settings files
};

template<auto First, auto... Rest>
constexpr auto field = [](UserPreferences& preferences) -> auto& {
    return detail::through<First, Rest...>(preferences);
};

template<auto member>
constexpr PreferenceRow whole(const char* key, double least, double greatest) {
    return {key, PreferenceRow::Whole(field<member>), least, greatest};
}

template<auto member, auto channel>
constexpr PreferenceRow channelOf(const char* key) {
    return {key, PreferenceRow::Whole(field<member, channel>), 0, 255};
}

template<auto member>
constexpr PreferenceRow strokeWidth(const char* key) {
    return {key, PreferenceRow::Real(field<member>), 0.1, 5};
}

template<auto member>
constexpr PreferenceRow path(const char* key) {
    return {key, PreferenceRow::Text(field<member>), 0, 0, false};
}

using P = UserPreferences;
constexpr auto red = &ByteColor::red;
constexpr auto green = &ByteColor::green;
constexpr auto blue = &ByteColor::blue;

constexpr std::array table{
    whole<&P::levelsOfUndo>("Levels of Undo", 0, 999),
    whole<&P::uiTheme>("UI Theme", 0, 2),
    channelOf<&P::bodySelectionHighlight, red>("Body Selection Highlight Red"),
    channelOf<&P::bodySelectionHighlight, green>("Body Selection Highlight Green"),
    channelOf<&P::bodySelectionHighlight, blue>("Body Selection Highlight Blue"),
    strokeWidth<&P::selectionStrokeWidth>("Selection Stroke Width"),
    channelOf<&P::staticBodyHighlight, red>("Static Body Highlight Red"),
    channelOf<&P::staticBodyHighlight, green>("Static Body Highlight Green"),
    channelOf<&P::staticBodyHighlight, blue>("Static Body Highlight Blue"),
    channelOf<&P::distanceJointColor, red>("Distance Joint Color Red"),
    channelOf<&P::distanceJointColor, green>("Distance Joint Color Green"),
    channelOf<&P::distanceJointColor, blue>("Distance Joint Color Blue"),
    channelOf<&P::pivotJointColor, red>("Pivot Joint Color Red"),
    channelOf<&P::pivotJointColor, green>("Pivot Joint Color Green"),
    channelOf<&P::pivotJointColor, blue>("Pivot Joint Color Blue"),
    channelOf<&P::pistonJointColor, red>("Piston Joint Color Red"),
    channelOf<&P::pistonJointColor, green>("Piston Joint Color Green"),
    channelOf<&P::pistonJointColor, blue>("Piston Joint Color Blue"),
    channelOf<&P::springJointColor, red>("Spring Joint Color Red"),
    channelOf<&P::springJointColor, green>("Spring Joint Color Green"),
    channelOf<&P::springJointColor, blue>("Spring Joint Color Blue"),
    channelOf<&P::selectedJointColor, red>("Selected Joint Red"),
    channelOf<&P::selectedJointColor, green>("Selected Joint Green"),
    channelOf<&P::selectedJointColor, blue>("Selected Joint Blue"),
    strokeWidth<&P::jointStrokeWidth>("Joint Stroke Width"),
    whole<&P::kinematicBehavior>("Kinematic Behavior", 0, 1),
    whole<&P::dormantBehavior>("Dormant Behavior", 0, 1),
    PreferenceRow{autoLoadSaveKey, PreferenceRow::Whole(field<&P::autoLoadSaveSettings>), 0, 1, false},
    path<&P::autoSavedSettingsFile>(autoSavedFileKey),
    path<&P::mostRecentSettingsFile>(mostRecentFileKey),
};

template<class Value>
void readRow(PersistentStore& store, const PreferenceRow& row, Value& value) {
    value = store.read(row.key, value);
    if constexpr (std::is_arithmetic_v<Value>) {
        value = std::clamp(value, static_cast<Value>(row.least), static_cast<Value>(row.greatest));
    }
}

} // namespace

UserPreferences readPreferences(const HostContext& context) {
    HostChain chain(context);
    PersistentStore store(chain);
    UserPreferences preferences;
    for (const PreferenceRow& row : table) {
        std::visit([&](auto fieldOf) { readRow(store, row, fieldOf(preferences)); }, row.field);
    }
    return preferences;
}

void writePreferences(const HostContext& context, const UserPreferences& preferences) {
    HostChain chain(context);
    PersistentStore store(chain);
    UserPreferences values = preferences;
    for (const PreferenceRow& row : table) {
        if (row.inDialog) {
            std::visit([&](auto fieldOf) { store.write(row.key, fieldOf(values)); }, row.field);
        }
    }
}

} // namespace jostle
