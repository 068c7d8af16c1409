#include "host/separation.h"

#include <algorithm>
#include <array>
#include <utility>

#include "host/composition.h"
#include "host/host_time.h"
#include "host/layer_filter.h"
#include "host/mask.h"
#include "host/undo_group.h"

namespace jostle {

namespace {

constexpr std::array<AEGP_LayerStream, 4> transformStreams{AEGP_LayerStream_ANCHORPOINT, AEGP_LayerStream_POSITION,
                                                           AEGP_LayerStream_SCALE, AEGP_LayerStream_ROTATION};

int groupCount(HostChain& chain, const Layer& layer) {
    const std::vector<NamedStream> elements = childrenOf(layer.vectorContents(chain));
    return static_cast<int>(std::count_if(elements.begin(), elements.end(), [](const NamedStream& element) {
        return element.matchName == "ADBE Vector Shape - Group" || element.matchName == "ADBE Vector Group";
    }));
}

/// The separation of the layers of one composition.
class Separation {
public:
    Separation(HostChain& chain, Composition composition, const std::function<void(const SeparationProgress&)>& tell,
               SeparationReport& report)
        : chain_(chain), composition_(composition), tell_(tell), report_(report) {}

    /// @param isShapeLayer  receives the layer's kind
    /// @return how many layers were made
    int separate(int layerIndex, bool& isShapeLayer);

private:
    int separateShapes(const Layer& source, int sourceIndex);
    int separateMasks(const Layer& source, int sourceIndex);
    void makeShapeLayer(const Layer& source, int groupIndex, int place);
    void makeMaskedLayer(const Layer& source, const Layer& bare, int maskIndex, int place);
    void noteMasks(const Layer& source, int sourceIndex);
    void select(Stream stream);
    void tell(int part, int parts, bool isMask);

    HostChain& chain_;
    Composition composition_;
    const std::function<void(const SeparationProgress&)>& tell_;
    SeparationReport& report_;
    int layersBegun_ = 0;
};

void Separation::tell(int part, int parts, bool isMask) {
    if (tell_)
        tell_({layersBegun_, part, parts, isMask});
}

int Separation::separate(int layerIndex, bool& isShapeLayer) {
    ++layersBegun_;
    const Layer source = composition_.layer(chain_, layerIndex);
    isShapeLayer = source.objectType(chain_) == AEGP_ObjectType_VECTOR;
    if (chain_.failed())
        return 0;
    return isShapeLayer ? separateShapes(source, layerIndex) : separateMasks(source, layerIndex);
}

/// Makes a stream the composition's only selection. The collection takes the reference over.
void Separation::select(Stream stream) {
    AEGP_Collection2H collection = nullptr;
    if (!stream.exists() || !chain_.canDispose<&AEGP_CollectionSuite2::AEGP_DisposeCollection>() ||
        !chain_.call<&AEGP_CollectionSuite2::AEGP_NewCollection>(chain_.pluginId(), &collection))
        return;
    AEGP_CollectionItemV2 item{};
    item.type = AEGP_CollectionItemType_STREAMREF;
    item.stream_refH = stream.handle();
    if (chain_.call<&AEGP_CollectionSuite2::AEGP_CollectionPushBack>(collection, &item)) {
        (void)stream.release();
        chain_.call<&AEGP_CompSuite15::AEGP_SetSelection>(composition_.handle(), collection);
    }
    chain_.dispose<&AEGP_CollectionSuite2::AEGP_DisposeCollection>(collection);
}

void Separation::makeShapeLayer(const Layer& source, int groupIndex, int place) {
    const Layer layer = composition_.createShapeLayer(chain_);
    layer.moveTo(chain_, place);
    // The source's values are measured from its parent: without it the part would stand somewhere else.
    const Layer parent = source.parent(chain_);
    if (parent.exists())
        layer.setParent(chain_, parent);
    for (const AEGP_LayerStream which : transformStreams)
        layer.stream(chain_, which).setValue(source.stream(chain_, which).valueAt(sampleTime, Expressions::Applied));
    // A part is as transparent as its source was. Not so of one that fades: held at time 0 it might never be seen.
    const Stream opacity = source.stream(chain_, AEGP_LayerStream_OPACITY);
    if (!opacity.isTimeVarying())
        layer.stream(chain_, AEGP_LayerStream_OPACITY).setValue(opacity.valueAt(sampleTime, Expressions::Applied));
    Stream group = source.vectorContents(chain_).childAt(groupIndex);
    layer.setName(chain_, group.shownName());
    select(std::move(group));
    chain_.call<&AEGP_CommandSuite1::AEGP_DoCommand>(AEGP_Command{hostCommandCopy});
    select(layer.vectorContents(chain_));
    chain_.call<&AEGP_CommandSuite1::AEGP_DoCommand>(AEGP_Command{hostCommandPaste});
}

int Separation::separateShapes(const Layer& source, int sourceIndex) {
    const std::vector<NamedStream> elements = childrenOf(source.vectorContents(chain_));
    const int count = static_cast<int>(elements.size());
    int made = 0;
    for (int index = 0; index < count && !chain_.failed(); ++index) {
        tell(index + 1, count, false);
        if (elements[static_cast<std::size_t>(index)].matchName != "ADBE Vector Group")
            continue;
        // The place of the group counts the shapes between the groups, which make no layer. Past the hidden source it
        // would go below layers that the source was above of, and be covered by them: there it ends.
        makeShapeLayer(source, index, sourceIndex + std::min(index, made + 1));
        made += chain_.failed() ? 0 : 1;
    }
    // Of paths alone no layer is made: they count as parts, but hiding them would leave nothing to be seen.
    if (made > 0) {
        noteMasks(source, sourceIndex);
        source.setFlag(chain_, AEGP_LayerFlag_VIDEO_ACTIVE, false);
    }
    return made;
}

void Separation::noteMasks(const Layer& source, int sourceIndex) {
    const int masks = source.maskCount(chain_);
    if (masks == 0)
        return;
    UnmaskedParts parts{sourceIndex, source.names(chain_).shown(), masks};
    if (!chain_.failed()) // from the last layer to the first
        report_.unmasked.insert(report_.unmasked.begin(), std::move(parts));
}

void Separation::makeMaskedLayer(const Layer& source, const Layer& bare, int maskIndex, int place) {
    const Stream sourceMask = source.root(chain_).child("ADBE Mask Parade").childAt(maskIndex);
    const auto valueOf = [&sourceMask](const char* matchName) {
        return sourceMask.child(matchName).valueAt(sampleTime, Expressions::Applied);
    };
    const StreamValue outline = valueOf("ADBE Mask Shape");
    const StreamValue feather = valueOf("ADBE Mask Feather");
    const StreamValue opacity = valueOf("ADBE Mask Opacity");
    const StreamValue offset = valueOf("ADBE Mask Offset");
    const bool isRotoBezier = Mask::at(chain_, source, maskIndex).isRotoBezier();

    const Layer layer = bare.duplicate(chain_);
    layer.moveTo(chain_, place);
    {
        const Mask mask = Mask::create(chain_, layer);
        const auto set = [&](AEGP_MaskStream which, const StreamValue& value) {
            if (value.exists())
                mask.stream(which).setValue(value);
        };
        mask.setRotoBezier(isRotoBezier);
        set(AEGP_MaskStream_OUTLINE, outline);
        set(AEGP_MaskStream_FEATHER, feather);
        set(AEGP_MaskStream_OPACITY, opacity);
        set(AEGP_MaskStream_EXPANSION, offset);
    }
    layer.setName(chain_, sourceMask.shownName());
}

int Separation::separateMasks(const Layer& source, int sourceIndex) {
    const int count = source.maskCount(chain_);
    if (count == 0)
        return 0;
    const Layer bare = source.duplicate(chain_);
    {
        const Stream masks = bare.root(chain_).child("ADBE Mask Parade");
        for (int index = masks.childCount() - 1; index >= 0 && !chain_.failed(); --index)
            masks.childAt(index).remove();
    }
    int made = 0;
    for (int index = 0; index < count && !chain_.failed(); ++index) {
        tell(index + 1, count, true);
        makeMaskedLayer(source, bare, index, sourceIndex + index);
        made += chain_.failed() ? 0 : 1;
    }
    source.setFlag(chain_, AEGP_LayerFlag_VIDEO_ACTIVE, false);
    bare.remove(chain_);
    return made;
}

} // namespace

std::vector<int> findSeparableLayers(const HostContext& context) {
    HostChain chain(context);
    const Composition composition = activeComposition(chain);
    const int count = composition.layerCount(chain);
    std::vector<int> found;
    for (int index = 0; index < count; ++index) {
        const Layer layer = composition.layer(chain, index);
        const AEGP_ObjectType type = layer.objectType(chain);
        if (visibilityOf(chain, layer, type) == LayerOutcome::Body) {
            if (layer.maskCount(chain) >= 2)
                found.push_back(index);
            if (type == AEGP_ObjectType_VECTOR && groupCount(chain, layer) >= 2)
                found.push_back(index);
        }
        (void)chain.restart();
    }
    return found;
}

SeparationReport separateLayers(const HostContext& context, std::span<const int> layerIndices, MessageSink* messages,
                                const std::function<void(const SeparationProgress&)>& progress) {
    HostChain chain(context);
    SeparationReport report;
    const Composition composition = activeComposition(chain);
    if (!composition.exists()) {
        report.error = chain.code();
        return report;
    }
    const UndoGroup group(chain, "Jostle - Shapes Separation");
    Separation separation(chain, composition, progress, report);
    // From the last to the first: new layers go above their source and move none that is still to come.
    for (std::size_t i = layerIndices.size(); i-- > 0;) {
        if (i + 1 < layerIndices.size() && layerIndices[i] == layerIndices[i + 1])
            continue;
        bool isShapeLayer = false;
        const int made = separation.separate(layerIndices[i], isShapeLayer);
        report.layersMade += made;
        const A_Err error = chain.restart();
        if (error == A_Err_NONE) {
            ++report.layersSeparated;
            continue;
        }
        ++report.layersFailed;
        report.error = report.error == A_Err_NONE ? error : report.error;
        if (messages != nullptr)
            messages->inform(messageTitle, isShapeLayer ? "Error occurred when separating shapes."
                                                        : "Error occurred when separating masks.");
    }
    return report;
}

} // namespace jostle
