#pragma once

#include <cstdint>
#include <string>

#include "host/chain.h"
#include "simulation/color.h"
#include "simulation/joint_record.h"
#include "simulation/scene.h"

namespace jostle {

/// What the user has chosen once for all projects. Colours are those of the preview's lines.
struct UserPreferences {
    std::int32_t levelsOfUndo = 100;
    std::int32_t uiTheme = 0; ///< 0 dark grey, 1 light grey, 2 white
    ByteColor bodySelectionHighlight{191, 140, 0};
    double selectionStrokeWidth = 2.0;
    ByteColor staticBodyHighlight{217, 46, 207};
    // Bytes of the colours of new joints, and thus slightly darker.
    ByteColor distanceJointColor = byteColor(jointColor(JointType::Distance));
    ByteColor pivotJointColor = byteColor(jointColor(JointType::Pivot));
    ByteColor pistonJointColor = byteColor(jointColor(JointType::Piston));
    ByteColor springJointColor = byteColor(jointColor(JointType::Spring));
    ByteColor selectedJointColor{255, 0, 0};
    double jointStrokeWidth = 1.0;
    std::int32_t kinematicBehavior = 0; ///< of `KinematicBehavior`
    std::int32_t dormantBehavior = 0;   ///< of `DormantBehavior`
    // Those below belong to the settings files.
    std::int32_t autoLoadSaveSettings = 0;
    std::string autoSavedSettingsFile;
    std::string mostRecentSettingsFile;

    [[nodiscard]] BehaviorPreferences behavior() const {
        return {static_cast<KinematicBehavior>(kinematicBehavior), static_cast<DormantBehavior>(dormantBehavior)};
    }
};

inline constexpr const char* autoLoadSaveKey = "Auto Load/Save Settings";
inline constexpr const char* autoSavedFileKey = "Auto Saved Settings File";
inline constexpr const char* mostRecentFileKey = "Most Recent Settings File";

/// Reads all preferences from the host's store. From the first call on that the host refuses they have their defaults.
[[nodiscard]] UserPreferences readPreferences(const HostContext& context);

/// Writes what the dialog of preferences has to the host's store, up to the first call that the host refuses.
void writePreferences(const HostContext& context, const UserPreferences& preferences);

/// The store of the windows' own geometry, which is none of the host's: a user's settings of this organization and
/// application.
namespace window_store {
inline constexpr const char* organization = "Quill Forge";
inline constexpr const char* application = "Jostle 2.0";
inline constexpr const char* mainGeometry = "jostleDlgGeometry";
inline constexpr const char* mainState = "jostleDlgWindowState";
inline constexpr const char* mainDefaultState = "jostleDlgDfltWindowState";
inline constexpr const char* preferencesGeometry = "preferencesDlgGeometry";
inline constexpr const char* shortcutsGeometry = "keyboardShortcutsDlgGeometry";
} // namespace window_store

} // namespace jostle
