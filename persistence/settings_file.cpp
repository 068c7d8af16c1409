#include "persistence/settings_file.h"

#include "host/persistent_store.h"
#include "persistence/settings_limits.h"
#include "persistence/settings_writer.h"
#include "persistence/target_file.h"
#include "persistence/user_preferences.h"

namespace jostle {

namespace {

void rememberPath(const HostContext& context, const char* key, const std::string& path) {
    HostChain chain(context);
    PersistentStore(chain).write(key, path);
}

std::optional<std::string> writeWhole(const std::string& path, std::string_view text) {
    TargetFile file;
    if (std::optional<std::string> error = file.open(path)) {
        return error;
    }
    return file.commit(text);
}

std::optional<std::string> writeWithinLimits(const std::string& path, const Scene& scene,
                                             const SnapshotStrip& snapshots) {
    std::optional<std::string> excess = excessOfSnapshots(snapshots.items().size(), scene.bodies.size());
    std::string text;
    if (!excess) {
        text = settingsText(scene, snapshots.items());
        excess = excessOfText(text);
    }
    if (excess) {
        return "would have " + *excess + ", and could not be read; remove snapshots and save again";
    }
    return writeWhole(path, text);
}

} // namespace

LoadResult loadSettings(const HostContext& context, const std::string& path, bool remember,
                        const SettingsTarget& target, MessageSink* messages) {
    const FileText file = readFile(path, maximumSettingsBytes);
    if (!file.error.empty()) {
        reportFile(path, file.isThere ? file.error : isUnreadable, messages);
        return LoadResult::Unreadable;
    }
    const LoadResult result = readSettings(file.text, path, target, messages);
    if (remember && result == LoadResult::Complete) {
        rememberPath(context, mostRecentFileKey, path);
    }
    return result;
}

bool saveSettings(const HostContext& context, const std::string& path, const char* key, const Scene& scene,
                  const SnapshotStrip& snapshots, MessageSink* messages) {
    if (const std::optional<std::string> error = writeWithinLimits(path, scene, snapshots)) {
        reportFile(path, *error, messages);
        return false;
    }
    if (key != nullptr) {
        rememberPath(context, key, path);
    }
    return true;
}

std::string autoSavePath(std::string_view homeFolder) {
    return std::string(homeFolder) + "/.jostle_autosave.xml";
}

void autoSaveSettings(const HostContext& context, std::string_view homeFolder, bool loadNextTime, const Scene& scene,
                      const SnapshotStrip& snapshots, MessageSink* messages) {
    (void)saveSettings(context, autoSavePath(homeFolder), autoSavedFileKey, scene, snapshots, messages);
    HostChain chain(context);
    PersistentStore(chain).write(autoLoadSaveKey, loadNextTime ? 1 : 0);
}

bool autoLoadSettings(const HostContext& context, const SettingsTarget& target, MessageSink* messages) {
    std::string path;
    {
        HostChain chain(context);
        PersistentStore store(chain);
        const bool isWanted = store.read(autoLoadSaveKey, 0) != 0;
        path = store.read(autoSavedFileKey, std::string());
        if (!isWanted) {
            return false;
        }
    }
    (void)loadSettings(context, path, false, target, messages);
    return true;
}

} // namespace jostle
