#include "standalone/commands/samples_file.h"

#include <array>
#include <charconv>

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

namespace jostle::standalone {

namespace {

constexpr std::array<const char*, 6> typeNames{"Static", "Kinematic", "Dynamic", "Dormant", "AEmatic", "Dead"};

template<class Number>
void append(std::string& text, Number number) {
    std::array<char, 32> buffer{};
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number);
    text.append(buffer.data(), result.ptr);
}

void appendString(std::string& text, const std::string& value) {
    rapidjson::StringBuffer buffer;
    rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
    writer.String(value.data(), static_cast<rapidjson::SizeType>(value.size()));
    text.append(buffer.GetString(), buffer.GetSize());
}

template<class Number>
void appendMember(std::string& text, const char* name, Number number) {
    text.append(",\"").append(name).append("\":");
    append(text, number);
}

void appendPair(std::string& text, b2Vec2 value) {
    text += '[';
    append(text, value.x);
    text += ',';
    append(text, value.y);
    text += ']';
}

void appendBody(std::string& text, const BodyRecord& body, const ExportResult& result, const WrittenStance& stance,
                int layerIndex, const Layer& layer) {
    text.append("{\"index\":");
    append(text, layerIndex);
    appendMember(text, "id", body.layerID);
    text.append(",\"name\":");
    appendString(text, body.name);
    text.append(",\"type\":\"").append(typeNames.at(static_cast<std::size_t>(body.type))).append("\"");
    appendMember(text, "width", layer.item ? layer.item->width : 0);
    appendMember(text, "height", layer.item ? layer.item->height : 0);
    text.append(",\"anchor\":");
    appendPair(text, stance.anchor);
    text.append(",\"scale\":");
    appendPair(text, body.layerScale);
    text.append(",\"positions\":[");
    for (std::size_t i = 0; i < result.positions.size(); ++i) {
        text.append(i == 0 ? "" : ",");
        appendPair(text, result.positions[i]);
    }
    text.append("],\"rotations\":[");
    for (std::size_t i = 0; i < result.rotations.size(); ++i) {
        text.append(i == 0 ? "" : ",");
        append(text, result.rotations[i] + stance.turn);
    }
    text.append("]}");
}

} // namespace

std::string samplesText(const Scene& scene, const ExportRun& run, const Composition& composition,
                        std::span<const WrittenStance> stances) {
    std::string text = "{\"start\":";
    append(text, run.startFrame());
    appendMember(text, "end", run.endFrame());
    appendMember(text, "frameRate", scene.fps);
    appendMember(text, "width", scene.compWidth);
    appendMember(text, "height", scene.compHeight);
    appendMember(text, "pixelAspect", composition.pixelAspect);
    text.append(",\"layers\":[");
    for (std::size_t i = 0; i < run.bodyCount(); ++i) {
        const int layerIndex = scene.layerIndices[i];
        text.append(i == 0 ? "\n" : ",\n");
        appendBody(text, scene.bodies[i], run.result(run.bodyCount() - 1 - i), stances[i], layerIndex,
                   *composition.layers[static_cast<std::size_t>(layerIndex)]);
    }
    text.append("\n]}\n");
    return text;
}

} // namespace jostle::standalone
