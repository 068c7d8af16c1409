#include "standalone/lottie/reader.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <unordered_set>

#include "standalone/document/printable.h"
#include "standalone/lottie/assets.h"
#include "standalone/lottie/fields.h"
#include "standalone/lottie/layer_details_reader.h"
#include "standalone/lottie/property_reader.h"

namespace jostle::standalone {

namespace {

constexpr double largestSize = 1e6;   ///< pixels, either way
constexpr double farthestFrame = 1e9; ///< of a layer's span; beyond it host times lose whole frames
/// Layers of a document, masks and shape elements of all of them: each takes far more memory than the few bytes it may
/// have in a text.
constexpr std::size_t mostLayers = 100000, mostMasks = 100000, mostElements = 200000;

std::string placed(const LottieSource& source, std::size_t offset) {
    const TextPlace place = placeInText(source.text, offset);
    return "line " + std::to_string(place.line) + ", column " + std::to_string(place.column);
}

/// The value as it stands in the text, cut short, for messages.
std::string excerpt(const JsonValue& value) {
    constexpr std::size_t most = 40;
    std::string text = printable(value.text());
    if (text.size() <= most)
        return text;
    std::size_t end = most;
    while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U)
        --end; // not within a character
    return text.substr(0, end) + "...";
}

std::string layerTitle(const Layer& layer, std::size_t index) {
    std::string title = "layer " + std::to_string(index + 1);
    if (!layer.name.empty())
        title += " \"" + layer.name + '"';
    return title;
}

LayerKind kindFrom(const JsonValue& value) {
    const int number = value.integer(-1);
    return number >= 0 && number <= static_cast<int>(LayerKind::Data) ? static_cast<LayerKind>(number)
                                                                      : LayerKind::Unknown;
}

std::size_t countObjects(const JsonValue& list) {
    std::size_t count = 0;
    if (list.isArray())
        forEachChild(list, [&](const JsonValue& entry) { count += entry.isObject() ? 1 : 0; });
    return count;
}

/// Shape elements of a list and of the groups in it.
std::size_t countElements(const JsonValue& list, int depth = 0) {
    std::size_t count = 0;
    if (list.isArray() && depth <= deepestGroup) {
        forEachChild(list, [&](const JsonValue& entry) {
            if (entry.isObject())
                count += 1 + countElements(entry["it"], depth + 1);
        });
    }
    return count;
}

class DocumentReader {
public:
    DocumentReader(const LottieSource& source, const DocumentMembers& members)
        : source_{source}, members_{members}, properties_{members.slots}, assets_{members.assets} {}

    /// Why the document cannot be read; empty if it can.
    [[nodiscard]] std::string refusal() const {
        if (!members_.layers.isArray())
            return "\"layers\" is missing or no array, so this is no Lottie animation; export it again";
        for (const auto& [value, name] :
             {std::pair{members_.frameRate, "fr"}, std::pair{members_.width, "w"}, std::pair{members_.height, "h"}}) {
            if (!(value.number(0) > 0))
                return std::string("\"") + name + "\" has to be a number above 0, but " +
                       (value ? "is " + excerpt(value) : "is missing") + "; set it and try again";
        }
        if (members_.width.number(0) > largestSize || members_.height.number(0) > largestSize)
            return "\"w\" and \"h\" are at most 1000000 pixels; make the composition smaller";
        return {};
    }

    [[nodiscard]] std::string read(Composition& composition, std::vector<std::string>& notes) {
        readSettings(composition);
        std::string refused;
        forEachChild(members_.layers, [&](const JsonValue& object) {
            if (refused.empty())
                refused = readLayer(composition, object);
        });
        if (!refused.empty())
            return refused;
        numberLayers(composition);
        relinkParents(composition);
        findMattes(composition);
        readLength(composition);
        noteExpressions(composition, notes);
        return {};
    }

private:
    void readSettings(Composition& composition) const {
        Item item;
        item.kind = Item::Kind::Composition;
        item.name = members_.name.string();
        item.width = std::max(1, static_cast<int>(std::lround(members_.width.number(1))));
        item.height = std::max(1, static_cast<int>(std::lround(members_.height.number(1))));
        composition.item = std::make_shared<const Item>(std::move(item));
        composition.clock = FrameClock(members_.frameRate.number(1));
        composition.inFrame = FrameClock::snap(members_.inFrame.number(0));
        composition.outFrame = FrameClock::snap(members_.outFrame.number(0));

        double aspect[2], background[3];
        if (members_.extension["pixelAspect"].numbers(aspect, 2) == 2 && aspect[0] > 0 && aspect[1] > 0 &&
            std::isfinite(aspect[0] / aspect[1]))
            composition.pixelAspect = aspect[0] / aspect[1];
        if (members_.extension["background"].numbers(background, 3) == 3) {
            for (double& share : background)
                share = std::clamp(share, 0.0, 1.0);
            composition.background = {background[0], background[1], background[2], 1};
        }
    }

    // A document without an end lasts as long as its layers.
    void readLength(Composition& composition) const {
        if (members_.outFrame.type() != JsonType::Number) {
            for (const auto& layer : composition.layers)
                composition.outFrame = std::max(composition.outFrame, layer->outFrame);
        }
        const double full = FrameClock::snap(members_.extension["duration"].number(0));
        composition.durationFrames = std::max(composition.outFrame, full);
    }

    [[nodiscard]] std::string readLayer(Composition& composition, const JsonValue& object) {
        if (composition.layers.size() == mostLayers)
            return "\"layers\" holds more than " + std::to_string(mostLayers) + " layers; split the animation";
        auto layer = std::make_unique<Layer>();
        layer->source = object.span();
        layer->outFrame = composition.outFrame;
        LayerMembers members;
        if (object.isObject()) {
            forEachChild(object, [&](const JsonValue& member) {
                readField(layerFields, member, *layer);
                readField(layerMemberFields, member, members);
            });
        }
        layer->kind = kindFrom(members.type);
        layer->name = members.name.string();
        layer->id = members.id.integer(noParent);
        for (double* frame : {&layer->inFrame, &layer->outFrame, &layer->startFrame})
            *frame = std::clamp(FrameClock::snap(*frame), -farthestFrame, farthestFrame);
        if (layer->stretch == 0)
            layer->stretch = 1;
        layer->parentId = members.parent.integer(noParent);
        layer->usesMatteAbove = members.matte.flag() && members.matteId.type() != JsonType::Number;
        layer->shapesSource = members.shapes.span();
        const std::size_t masks = countObjects(members.masks);
        if (masks > 0)
            layer->masksSource = members.masks.span();
        masks_ += masks;
        if (masks_ > mostMasks)
            return layerTitle(*layer, composition.layers.size()) + ", " + members.masks.pointer() +
                   ": there are more than " + std::to_string(mostMasks) + " masks up to here; remove some";
        if (layer->kind == LayerKind::Shape && mayHaveTooManyElements())
            elements_ += countElements(members.shapes);
        if (elements_ > mostElements)
            return layerTitle(*layer, composition.layers.size()) + ", " + members.shapes.pointer() +
                   ": there are more than " + std::to_string(mostElements) +
                   " shape elements up to here; split the animation";
        const JsonValue& extension = members.extension;
        layer->label = std::clamp(extension["label"].integer(0), 0, 16);
        layer->guide = layer->kind == LayerKind::Guide || extension["guide"].boolean(false);
        layer->adjustment = layer->kind == LayerKind::Adjustment || extension["adjustment"].boolean(false);
        layer->item = assets_.itemOf(object, layer->kind);
        layer->transform = properties_.transform(members.transform, layer->threeD);
        if (const JsonValue& fault = properties_.fault()) {
            const std::string place = layerTitle(*layer, composition.layers.size()) + ", " + fault.pointer() + " (" +
                                      placed(source_, fault.span().begin) + "): ";
            if (properties_.isOverSlotLimit())
                return place + "slots stand for more than 64 MiB of text; let fewer properties refer to large slots";
            return place + excerpt(fault) +
                   " is beyond what a transform can hold; keep its numbers between -1e15 and 1e15";
        }
        composition.layers.push_back(std::move(layer));
        return {};
    }

    /// Only then they are worth counting: the shortest element and its comma take three bytes.
    [[nodiscard]] bool mayHaveTooManyElements() const { return source_.text.size() > 3 * mostElements; }

    /// Layers have the identifier of the file, or noParent, before.
    static void numberLayers(const Composition& composition) {
        int greatest = 0;
        std::unordered_set<int> taken;
        for (const auto& layer : composition.layers) {
            if (layer->id == noParent)
                continue;
            greatest = std::max(greatest, layer->id);
            layer->idInFile = taken.insert(layer->id).second;
        }
        for (const auto& layer : composition.layers) {
            if (!layer->idInFile)
                layer->id = ++greatest;
        }
    }

    static void findMattes(const Composition& composition) {
        for (std::size_t index = 1; index < composition.layers.size(); ++index) {
            if (composition.layers[index]->usesMatteAbove)
                composition.layers[index]->matteId = composition.layers[index - 1]->id;
        }
    }

    static void noteExpressions(const Composition& composition, std::vector<std::string>& notes) {
        constexpr std::size_t most = 20; // named; files have thousands of layers
        std::string names;
        std::size_t count = 0;
        for (std::size_t index = 0; index < composition.layers.size(); ++index) {
            const Layer& layer = *composition.layers[index];
            const Transform& t = layer.transform;
            const auto streams = {&t.anchor, &t.position, &t.dimensions->x, &t.dimensions->y, &t.dimensions->z,
                                  &t.scale,  &t.rotation, &t.skew,          &t.skewAxis,      &t.opacity};
            if (std::any_of(streams.begin(), streams.end(), [](const Stream* s) { return s->hasExpression; }))
                names += ++count > most ? "" : (names.empty() ? "" : ", ") + layerTitle(layer, index);
        }
        if (count > most)
            names += " and " + std::to_string(count - most) + " more";
        if (!names.empty())
            notes.push_back("Expressions are not evaluated; the values below them count: " + names + '.');
    }

    const LottieSource& source_;
    const DocumentMembers& members_;
    PropertyReader properties_;
    AssetTable assets_;
    std::size_t masks_ = 0; ///< of the layers read so far, as the next one
    std::size_t elements_ = 0;
};

std::string readInto(ReadResult& result, LottieSource& source) {
    if (const auto error = source.tree.parse(source.text))
        return placed(source, error->offset) + ": " + error->what + "; mend the text or export it again";
    const JsonValue root = source.tree.root();
    if (!root.isObject())
        return "the document is no object, so this is no Lottie animation; export it again";
    DocumentMembers members;
    readFields(documentFields, root, members);
    DocumentReader reader(source, members);
    std::string error = reader.refusal();
    if (!error.empty())
        return error;
    auto composition = std::make_unique<Composition>();
    error = reader.read(*composition, result.notes);
    if (error.empty())
        result.composition = std::move(composition);
    return error;
}

} // namespace

ReadResult readLottie(std::string text, std::string fileName) {
    ReadResult result;
    auto source = std::make_shared<LottieSource>();
    source->text = std::move(text);
    source->fileName = std::move(fileName);
    const std::string error = readInto(result, *source);
    if (error.empty()) {
        result.composition->details = std::make_shared<const LottieDetails>(source);
        result.source = std::move(source);
    } else {
        result.error = printable((source->fileName.empty() ? std::string() : source->fileName + ": ") + error);
    }
    for (std::string& note : result.notes)
        note = printable(note); // names from the file are in it
    return result;
}

} // namespace jostle::standalone
