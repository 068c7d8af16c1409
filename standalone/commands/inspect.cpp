#include "standalone/commands/inspect.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <string>
#include <utility>
#include <vector>

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include "host/layer_import.h"
#include "standalone/commands/body_text.h"
#include "standalone/commands/layer_matrices.h"
#include "standalone/commands/load.h"
#include "standalone/commands/plugin_session.h"
#include "standalone/document/printable.h"
#include "standalone/suites/document_host.h"

namespace jostle::standalone {

namespace {

using JsonWriter = rapidjson::Writer<rapidjson::StringBuffer>;

std::string kindText(LayerKind kind) {
    static constexpr std::array<const char*, 16> names{
        "precomposition", "solid", "image", "null",  "shape",      "text",   "audio", "video",
        "image sequence", "video", "image", "guide", "adjustment", "camera", "light", "data"};
    const auto index = static_cast<std::size_t>(kind);
    return kind == LayerKind::Unknown || index >= names.size() ? "unknown" : names.at(index);
}

/// How many characters a terminal shows for a UTF-8 text, taking each code point for one.
std::size_t shownWidth(std::string_view text) {
    return static_cast<std::size_t>(std::count_if(
        text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; }));
}

std::string joined(const std::vector<std::string>& texts) {
    std::string all;
    for (const std::string& text : texts) {
        all += (all.empty() ? "" : "; ") + text;
    }
    return all;
}

const BodyRecord& bodyOf(const LayerReport& layer, const Scene& scene) {
    return scene.bodies[static_cast<std::size_t>(layer.bodyIndex)];
}

/// When the body is there, where that is not from the composition's start to its end.
std::string spanText(const BodyRecord& body, const Scene& scene) {
    const std::string from = body.inPoint > 0 ? " from frame " + std::to_string(body.inPoint) : "";
    // One that outlasts the composition has an end far behind it.
    const std::string until = body.outPoint < scene.compFrames ? " until frame " + std::to_string(body.outPoint) : "";
    return from.empty() && until.empty() ? "" : "," + from + until;
}

std::string becameText(const LayerReport& layer, const Scene& scene) {
    if (layer.outcome != LayerOutcome::Body) {
        return "no body: " + std::string(outcomeText(layer.outcome));
    }
    const BodyRecord& body = bodyOf(layer, scene);
    return shapeText(body) + spanText(body, scene);
}

std::string warningText(const LayerReport& layer, const Scene& scene) {
    return layer.outcome == LayerOutcome::Body ? joined(warningsOf(layer, bodyOf(layer, scene))) : "";
}

void printTable(const Composition& composition, const ImportReport& report, const Scene& scene) {
    std::vector<std::array<std::string, 5>> rows{{"#", "name", "kind", "becomes", "warnings"}};
    for (const LayerReport& layer : report.layers) {
        const auto index = static_cast<std::size_t>(layer.layerIndex);
        rows.push_back({std::to_string(index + 1), printable(layer.name), kindText(composition.layers[index]->kind),
                        becameText(layer, scene), warningText(layer, scene)});
    }
    std::array<std::size_t, 5> widths{};
    for (const auto& row : rows) {
        for (std::size_t column = 0; column < row.size(); ++column) {
            widths.at(column) = std::max(widths.at(column), shownWidth(row.at(column)));
        }
    }
    for (const auto& row : rows) {
        std::string line;
        for (std::size_t column = 0; column < row.size(); ++column) {
            const std::string& cell = row.at(column);
            const bool isNumber = column == 0;
            const std::string gap(widths.at(column) - shownWidth(cell), ' ');
            line.append(column == 0 ? "" : "  ").append(isNumber ? gap + cell : cell + gap);
        }
        line.erase(line.find_last_not_of(' ') + 1);
        std::printf("%s\n", line.c_str());
    }
}

void writePoint(JsonWriter& writer, b2Vec2 point) {
    writer.StartArray();
    for (const float coordinate : {point.x, point.y}) {
        writer.Double(std::isfinite(coordinate) ? static_cast<double>(coordinate) : 0.0);
    }
    writer.EndArray();
}

/// The pieces of a body where they stand at frame 0: circles, polygons and open lines, in composition pixels.
void writeOutlines(JsonWriter& writer, const BodyRecord& body, const Scene& scene) {
    const b2Transform placed(body.position, b2Rot(body.angle));
    writer.Key("outlines");
    writer.StartArray();
    for (const std::vector<ShapeDef>& group : body.outlines) {
        for (const ShapeDef& shape : group) {
            writer.StartObject();
            if (shape.isCircle) {
                b2Vec2 middle(0.0f, 0.0f);
                for (const b2Vec2& vertex : shape.verts) {
                    middle += 1.0f / static_cast<float>(shape.verts.size()) * vertex;
                }
                writer.Key("centre");
                writePoint(writer, scene.worldToPixels(b2Mul(placed, middle)));
                writer.Key("radius");
                writer.Double(static_cast<double>(shape.radius * pixelsPerMetre));
            } else {
                writer.Key("closed");
                writer.Bool(shape.closed || shape.isBox || body.isBox);
                writer.Key("points");
                writer.StartArray();
                for (const b2Vec2& vertex : shape.verts) {
                    writePoint(writer, scene.worldToPixels(b2Mul(placed, vertex)));
                }
                writer.EndArray();
            }
            writer.EndObject();
        }
    }
    writer.EndArray();
}

void writeBody(JsonWriter& writer, const LayerReport& layer, const Scene& scene, bool withOutlines) {
    const BodyRecord& body = bodyOf(layer, scene);
    const BodyPieces pieces = piecesOf(body);
    writer.Key("shape");
    writer.String(shapeText(body).c_str());
    writer.Key("readFrom");
    writer.String(originText(layer.origin).c_str());
    const std::pair<const char*, int> counts[] = {{"circles", pieces.circles},
                                                  {"boxes", pieces.boxes},
                                                  {"triangles", pieces.triangles},
                                                  {"openLines", pieces.openLines}};
    for (const auto& [name, count] : counts) {
        writer.Key(name);
        writer.Int(count);
    }
    writer.Key("warnings");
    writer.StartArray();
    for (const std::string& warning : warningsOf(layer, body)) {
        writer.String(warning.c_str());
    }
    writer.EndArray();
    writer.Key("position");
    writePoint(writer, scene.worldToPixels(body.position));
    writer.Key("rotation");
    writer.Double(static_cast<double>(radiansToDegrees(body.angle)));
    writer.Key("inPoint");
    writer.Int(body.inPoint);
    writer.Key("outPoint");
    writer.Int(body.outPoint);
    if (withOutlines) {
        writeOutlines(writer, body, scene);
    }
}

void writeLayer(JsonWriter& writer, const LayerReport& layer, const Composition& composition, const Scene& scene,
                bool withOutlines) {
    const Layer& source = *composition.layers[static_cast<std::size_t>(layer.layerIndex)];
    const bool isBody = layer.outcome == LayerOutcome::Body;
    writer.StartObject();
    writer.Key("number");
    writer.Int(layer.layerIndex + 1);
    writer.Key("id");
    writer.Int(source.id);
    writer.Key("name");
    writer.String(layer.name.c_str());
    writer.Key("kind");
    writer.String(kindText(source.kind).c_str());
    writer.Key("body");
    writer.Bool(isBody);
    if (isBody) {
        writeBody(writer, layer, scene, withOutlines);
    } else {
        writer.Key("reason");
        writer.String(std::string(outcomeText(layer.outcome)).c_str());
    }
    writer.EndObject();
}

void printJson(const Composition& composition, const ImportReport& report, const Scene& scene, bool withOutlines) {
    rapidjson::StringBuffer buffer;
    JsonWriter writer(buffer);
    writer.SetMaxDecimalPlaces(4);
    writer.StartObject();
    writer.Key("name");
    writer.String(composition.item->name.c_str());
    writer.Key("width");
    writer.Int(scene.compWidth);
    writer.Key("height");
    writer.Int(scene.compHeight);
    writer.Key("frameRate");
    writer.Double(scene.fps);
    writer.Key("frames");
    writer.Int(scene.compFrames);
    writer.Key("bodies");
    writer.Int(scene.bodyCount());
    writer.Key("layers");
    writer.StartArray();
    for (const LayerReport& layer : report.layers) {
        writeLayer(writer, layer, composition, scene, withOutlines);
    }
    writer.EndArray();
    writer.EndObject();
    std::printf("%s\n", buffer.GetString());
}

void printHeading(const Composition& composition, const Scene& scene) {
    std::array<char, 32> rate{};
    const auto end = std::to_chars(rate.data(), rate.data() + rate.size(), scene.fps, std::chars_format::general, 6);
    std::printf("%s: %d x %d pixels, %d frames at %s a second, %d %s\n\n",
                printable(composition.item->name.empty() ? "composition" : composition.item->name).c_str(),
                scene.compWidth, scene.compHeight, scene.compFrames, std::string(rate.data(), end.ptr).c_str(),
                scene.bodyCount(), scene.bodyCount() == 1 ? "body" : "bodies");
}

int printMatrices(const InspectOptions& options, const Composition& composition) {
    const std::optional<std::vector<double>> frames = parseFrameList(options.matrices, composition);
    if (!frames) {
        complain("--matrices " + options.matrices, "is no list of frames; give one such as 0,12.5,30-60, or \"all\"");
        return exitWrongUse;
    }
    std::printf("%s\n", matricesText(composition, *frames).c_str());
    return exitDone;
}

} // namespace

int runInspect(const InspectOptions& options) {
    std::optional<LoadedDocument> document = loadDocument(options.input, options.animation);
    if (!document) {
        return exitFailed;
    }
    if (!options.matrices.empty()) {
        return printMatrices(options, *document->composition);
    }
    DocumentHost host = hostOf(*document);
    Scene scene;
    const ImportReport report = initFromComposition({host.basic(), host.pluginId()}, scene);
    if (report.error != A_Err_NONE) {
        complain(options.input, "the layers cannot be read (host error " + std::to_string(report.error) + ")");
        return exitFailed;
    }
    for (int body = 0; options.precision && body < scene.bodyCount(); ++body) {
        scene.bodies[static_cast<std::size_t>(body)].meshPrecision = *options.precision;
        (void)refreshBody({host.basic(), host.pluginId()}, scene, body);
    }
    printReports(host, options.input);
    const Composition& composition = host.outcome();
    if (options.json) {
        printJson(composition, report, scene, options.outlines);
        return exitDone;
    }
    printHeading(composition, scene);
    printTable(composition, report, scene);
    for (const std::string& note : document->notes) {
        std::printf("\n%s\n", printable(note).c_str());
    }
    return exitDone;
}

} // namespace jostle::standalone
