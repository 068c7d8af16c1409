#include "standalone/commands/settings_input.h"

#include "persistence/apply_settings.h"
#include "persistence/overrides.h"
#include "persistence/settings_file.h"
#include "standalone/commands/layer_names.h"
#include "standalone/commands/message_printer.h"
#include "standalone/commands/refusal.h"

namespace jostle::standalone {

LayerAccess layerAccess(const HostContext& context, Scene& scene, const ImportReport& report, MessageSink* messages) {
    LayerAccess layers;
    layers.layerCount = static_cast<std::int32_t>(report.layers.size());
    layers.refreshBody = [context, &scene, messages](std::int32_t bodyIndex) {
        (void)refreshBody(context, scene, bodyIndex, messages);
    };
    return layers;
}

bool applySettingsFile(const HostContext& context, const std::string& path, const SettingsTarget& target, bool quiet) {
    MessagePrinter messages(path);
    switch (loadSettings(context, path, false, target, &messages)) {
    case LoadResult::Complete:
        return true;
    case LoadResult::NoBodyMatched:
        if (!quiet) {
            complain(path, "names no layer of the composition that is a body, so all settings have their defaults; "
                           "\"jostle inspect --json\" tells the layers' identifiers");
        }
        return true;
    case LoadResult::Unreadable:
    case LoadResult::NotSettings:
    case LoadResult::GlobalsMissing:
    case LoadResult::BodiesMissing:
        break;
    }
    return false;
}

std::optional<Refusal> applySets(const std::string& option, const std::vector<std::string>& sets,
                                 const ImportReport& report, const SettingsTarget& target) {
    const std::vector<NamedLayer> layers = namedLayers(report);
    const MeshSettings before(target.scene);
    for (const std::string& text : sets) {
        const std::optional<SettingOverride> setting = parseOverride(text);
        if (!setting) {
            return Refusal{option + " " + text, "is not KEY=VALUE with a key such as floor.type or gravity.magnitude"};
        }
        if (const std::optional<std::string> error = applyOverride(*setting, target.scene, layers)) {
            return Refusal{option + " " + text, *error};
        }
    }
    before.remeshChanged(target.scene, target.layers);
    return std::nullopt;
}

} // namespace jostle::standalone
