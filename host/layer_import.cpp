#include "host/layer_import.h"

#include <cstdint>
#include <numeric>

#include "host/body_import.h"
#include "host/composition.h"
#include "host/label_colors.h"
#include "host/layer_filter.h"
#include "host/undo_group.h"

namespace jostle {

namespace {

Rgb rgbOf(const Color& color) {
    return {static_cast<float>(color.red), static_cast<float>(color.green), static_cast<float>(color.blue)};
}

void setFacts(const ImportFacts& facts, Scene& scene) {
    scene.compWidth = facts.compWidth;
    scene.compHeight = facts.compHeight;
    scene.frameDurationValue = facts.frameDuration.value;
    scene.frameDurationScale = facts.frameDuration.scale;
    scene.fps = static_cast<double>(facts.frameDuration.scale) / facts.frameDuration.value;
    scene.compFrames = facts.compFrames;
}

void setUserData(int bodyIndex, BodyRecord& body) {
    BodyUserData data;
    data.bodyIndex = bodyIndex;
    data.color = rgbOf(body.color);
    data.labelColor = rgbOf(body.importColor); // grey without a label
    data.isStatic = body.staticOnImport;
    data.outOfTime = body.inPoint > 0;
    *body.userData = data;
}

void importBody(HostChain& chain, const Layer& layer, AEGP_ObjectType type, const ImportFacts& facts,
                LayerReport& report, MessageSink* messages, Scene& scene) {
    report.bodyIndex = scene.bodyCount();
    BodyRecord& body = scene.bodies.emplace_back();
    importLayer(chain, layer, type, facts, report, messages, body);
    setUserData(report.bodyIndex, body);
    scene.layerIndices.push_back(report.layerIndex);
    const std::int64_t length = std::int64_t{body.outPoint} - body.inPoint;
    scene.hasShortLayers = scene.hasShortLayers || length < scene.compFrames;
}

} // namespace

ImportReport initFromComposition(const HostContext& context, Scene& scene, MessageSink* messages) {
    HostChain chain(context);
    ImportReport report;
    scene.bodies.clear();
    scene.layerIndices.clear();
    const Composition composition = activeComposition(chain);
    if (!composition.exists()) {
        report.error = chain.code();
        return report;
    }
    const ImportFacts facts = readFacts(chain, composition);
    if (chain.failed()) {
        report.error = chain.code();
        return report;
    }
    setFacts(facts, scene);
    {
        const UndoGroup group(chain, "Jostle Initialization");
        const int count = composition.layerCount(chain);
        report.error = chain.code();
        for (int index = 0; index < count; ++index) {
            LayerReport& entry = report.layers.emplace_back();
            entry.layerIndex = index;
            const Layer layer = composition.layer(chain, index);
            entry.name = layer.names(chain).shown();
            const AEGP_ObjectType type = layer.objectType(chain);
            entry.outcome = outcomeOf(chain, layer, type);
            if (entry.outcome == LayerOutcome::Body)
                importBody(chain, layer, type, facts, entry, messages, scene);
            // One layer that cannot be read does not keep the others from being bodies.
            entry.error = chain.restart();
        }
    }
    if (messages != nullptr) {
        std::vector<int> all(scene.bodies.size());
        std::iota(all.begin(), all.end(), 0);
        reportSelfIntersections(scene, all, *messages);
    }
    return report;
}

std::optional<LayerReport> refreshBody(const HostContext& context, Scene& scene, int bodyIndex, MessageSink* messages) {
    const auto record = static_cast<std::size_t>(bodyIndex);
    if (bodyIndex < 0 || record >= scene.bodies.size() || record >= scene.layerIndices.size())
        return std::nullopt;
    HostChain chain(context);
    const Composition composition = activeComposition(chain);
    LayerReport report;
    report.layerIndex = scene.layerIndices[record];
    report.bodyIndex = bodyIndex;
    if (report.layerIndex < 0 || report.layerIndex >= composition.layerCount(chain))
        return std::nullopt;
    const ImportFacts facts = readFacts(chain, composition);
    const Layer layer = composition.layer(chain, report.layerIndex);
    report.name = layer.names(chain).shown();
    const AEGP_ObjectType type = layer.objectType(chain);
    // What cannot even be begun leaves the body as it is.
    if (!chain.failed()) {
        BodyRecord& body = scene.bodies[record];
        const b2Vec2 position = body.position;
        const float angle = body.angle;
        report.outcome = LayerOutcome::Body;
        importLayer(chain, layer, type, facts, report, messages, body);
        body.position = position;
        body.angle = angle;
    }
    report.error = chain.code();
    return report;
}

void reportSelfIntersections(const Scene& scene, std::span<const int> bodyIndices, MessageSink& messages) {
    std::string bodies;
    for (const int index : bodyIndices) {
        const auto record = static_cast<std::size_t>(index);
        if (index >= 0 && record < scene.bodies.size() && scene.bodies[record].triangulationFailed)
            bodies += "Body #" + std::to_string(index + 1) + " (" + scene.bodies[record].name + ")  ";
    }
    if (!bodies.empty())
        messages.inform(messageTitle, "Self-intersecting shapes are not supported.\n\n"
                                      "Triangulation failed for the following bodies:\n" +
                                          bodies);
}

} // namespace jostle
