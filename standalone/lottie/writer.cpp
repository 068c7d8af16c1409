#include "standalone/lottie/writer.h"

#include "standalone/lottie/fields.h"
#include "standalone/lottie/layer_references.h"
#include "standalone/lottie/number_text.h"
#include "standalone/lottie/property_writer.h"
#include "standalone/lottie/splice.h"
#include "standalone/lottie/transform_writer.h"
#include "standalone/lottie/tree_writer.h"

namespace jostle::standalone {

namespace {

std::string numberText(double number) {
    std::string text;
    appendShortest(text, number);
    return text;
}

/// Rotation that was made for this layer is all of it: players would turn the layer along its way on top.
bool turnsAlongItsWay(const Layer& layer) {
    const Stream& rotation = layer.transform.rotation;
    return layer.autoOrient && !(rotation.changed && isAnimated(rotation));
}

class DocumentWriter {
public:
    DocumentWriter(const LottieSource& source, const Composition& composition)
        : source_{source},
          composition_{composition},
          root_{source.tree.root()},
          properties_{source},
          trees_{properties_},
          references_{root_["layers"], composition} {}

    void write(TextSink& out) {
        ObjectEdit root(root_, properties_.style());
        if (composition_.changed)
            writeComposition(root);
        const bool listed = references_.isReordered();
        if (listed)
            writeList(root);
        root.commit(edits_);
        std::uint32_t reached = 0;
        // Each layer is done with before the next one begins: their keys may come to far more text than the file had.
        for (const auto& layer : composition_.layers) {
            TextEdits own;
            if (!listed)
                writeLayer(*layer, own);
            if (own.empty())
                continue;
            edits_.apply(source_.text, {reached, layer->source.begin}, out);
            own.apply(source_.text, layer->source, out);
            reached = layer->source.end;
        }
        edits_.apply(source_.text, {reached, static_cast<std::uint32_t>(source_.text.size())}, out);
    }

private:
    void writeComposition(ObjectEdit& root) {
        DocumentMembers members;
        readFields(documentFields, root_, members);
        if (composition_.item && composition_.item->name != members.name.string())
            root.setString("nm", composition_.item->name);
        if (composition_.inFrame != FrameClock::snap(members.inFrame.number(0)))
            root.set("ip", numberText(composition_.inFrame));
        if (composition_.outFrame != FrameClock::snap(members.outFrame.number(0)))
            root.set("op", numberText(composition_.outFrame));
        writeDuration(root, members.extension);
    }

    // The format knows no end but that of what is shown: a length is told where it goes on after that.
    void writeDuration(ObjectEdit& root, const JsonValue& extension) {
        const double present = FrameClock::snap(extension["duration"].number(0));
        if (composition_.durationFrames <= composition_.outFrame || composition_.durationFrames == present)
            return;
        const std::string duration = numberText(composition_.durationFrames);
        if (extension.isObject()) {
            ObjectEdit edit(extension, properties_.style());
            edit.set("duration", duration);
            edit.commit(edits_);
        } else {
            root.set("jostle", "{\"version\"" + properties_.style().colon + '1' + properties_.style().comma +
                                   "\"duration\"" + properties_.style().colon + duration + '}');
        }
    }

    /// The list of layers anew, each of those that have not changed with its bytes.
    void writeList(ObjectEdit& root) {
        const JsonValue array = root_["layers"];
        const TextStyle style = entryStyle(array, root.style(), properties_.style());
        std::vector<std::string> entries;
        for (const auto& layer : composition_.layers) {
            if (layer->source.empty()) {
                entries.push_back(newLayer(*layer, style));
                continue;
            }
            TextEdits own;
            writeLayer(*layer, own);
            entries.push_back(own.applied(source_.text, layer->source));
        }
        root.set("layers", listText(array, root.style(), entries));
    }

    void writeLayer(const Layer& layer, TextEdits& edits) {
        const LayerReferences::Needs needs = references_.needsOf(layer);
        const bool moved = isChanged(layer.transform);
        if (!layer.changed && !moved && !layer.tree && needs.empty())
            return;
        const JsonValue object = source_.tree.valueAt(layer.source);
        if (!object.isObject())
            return;
        ObjectEdit edit(object, properties_.style());
        if (layer.changed && edit.member("nm").string() != layer.name)
            edit.setString("nm", layer.name);
        if (layer.changed || moved) {
            writeFlags(layer, edit);
            writeParent(layer, edit);
        } else if (needs.dropsParent) {
            edit.remove("parent");
        }
        if (needs.id)
            edit.set("ind", std::to_string(layer.id));
        if (needs.dropsMatte) {
            edit.remove("tt");
            edit.remove("tp");
        } else if (needs.matte) {
            edit.set("tp", std::to_string(*needs.matte));
        }
        writeTransform(properties_, layer, edit, edits);
        trees_.write(layer, edit, edits);
        edit.commit(edits);
    }

    static void writeFlags(const Layer& layer, ObjectEdit& edit) {
        for (const auto& field : layerFields) {
            if (field.use != FieldUse::Write)
                continue;
            const bool digit = field.form == FieldForm::ZeroOne; // of auto-orientation alone
            if (!digit && !layer.changed)
                continue;
            const JsonValue member = edit.member(field.name);
            const bool before = digit ? member.flag() : member.boolean(false);
            const bool value = digit ? turnsAlongItsWay(layer) : layer.*std::get<bool Layer::*>(field.member);
            if (value != before)
                edit.set(field.name, digit ? (value ? "1" : "0") : (value ? "true" : "false"));
        }
    }

    // Also of a layer whose motion alone has changed: that was made without the parent which the file names but the
    // reader dropped, as one of a ring or one that is not there.
    static void writeParent(const Layer& layer, ObjectEdit& edit) {
        if (!layer.parent)
            edit.remove("parent");
        else if (edit.member("parent").integer(noParent) != layer.parent->id)
            edit.set("parent", std::to_string(layer.parent->id));
    }

    [[nodiscard]] std::string newLayer(const Layer& layer, const TextStyle& style) {
        ObjectText text(style);
        text.add("ddd", "0");
        text.add("ind", std::to_string(layer.id));
        text.add("ty", std::to_string(static_cast<int>(layer.kind)));
        text.addString("nm", layer.name);
        if (layer.parent)
            text.add("parent", std::to_string(layer.parent->id));
        if (layer.hidden)
            text.add("hd", "true");
        text.add("sr", numberText(layer.stretch));
        text.add("ks", newTransformText(layer, text.innerStyle()));
        text.add("ao", turnsAlongItsWay(layer) ? "1" : "0");
        trees_.add(layer, text);
        text.add("ip", numberText(layer.inFrame));
        text.add("op", numberText(layer.outFrame));
        text.add("st", numberText(layer.startFrame));
        text.add("bm", "0");
        if (layer.motionBlur)
            text.add("mb", "true");
        return text.text();
    }

    const LottieSource& source_;
    const Composition& composition_;
    JsonValue root_;
    PropertyWriter properties_;
    TreeWriter trees_;
    LayerReferences references_;
    TextEdits edits_; ///< of the document, outside of its layers
};

} // namespace

void writeLottie(const LottieSource& source, const Composition& composition, TextSink& out) {
    DocumentWriter(source, composition).write(out);
}

std::string writeLottie(const LottieSource& source, const Composition& composition) {
    StringSink out;
    writeLottie(source, composition, out);
    return out.text();
}

} // namespace jostle::standalone
