#include "standalone/suites/host_state.h"
#include "standalone/suites/structure_edits.h"
#include "standalone/suites/tables.h"
#include "standalone/suites/text.h"

namespace jostle::standalone {

namespace {

A_Err getCompFromItem(AEGP_ItemH handle, AEGP_CompH* comp) {
    const ItemEntry* entry = state().items.find(handle);
    if (entry == nullptr || comp == nullptr)
        return A_Err_PARAMETER;
    if (entry->comp == nullptr) // footage, or the inside of another layer
        return A_Err_GENERIC;
    *comp = entry->comp;
    return A_Err_NONE;
}

A_Err getItemFromComp(AEGP_CompH handle, AEGP_ItemH* item) {
    const CompEntry* comp = state().compOf(handle);
    if (comp == nullptr || item == nullptr)
        return A_Err_PARAMETER;
    *item = comp->item;
    return A_Err_NONE;
}

A_Err getBackground(AEGP_CompH handle, AEGP_ColorVal* color) {
    const CompEntry* comp = state().compOf(handle);
    if (comp == nullptr || color == nullptr)
        return A_Err_PARAMETER;
    const Rgba& background = comp->composition->background;
    *color = {background.alpha, background.red, background.green, background.blue};
    return A_Err_NONE;
}

A_Err getWorkAreaStart(AEGP_CompH handle, A_Time* start) {
    const CompEntry* comp = state().compOf(handle);
    if (comp == nullptr || start == nullptr)
        return A_Err_PARAMETER;
    *start = toHost(comp->composition->clock.timeOf(comp->composition->inFrame));
    return A_Err_NONE;
}

A_Err getWorkAreaDuration(AEGP_CompH handle, A_Time* duration) {
    const CompEntry* comp = state().compOf(handle);
    if (comp == nullptr || duration == nullptr)
        return A_Err_PARAMETER;
    const Composition& composition = *comp->composition;
    *duration = toHost(composition.clock.timeOf(composition.outFrame - composition.inFrame));
    return A_Err_NONE;
}

A_Err setWorkArea(AEGP_CompH handle, const A_Time* start, const A_Time* duration) {
    CompEntry* comp = state().compOf(handle);
    if (comp == nullptr || !state().isValid(start) || !state().isValid(duration) || duration->value <= 0)
        return A_Err_PARAMETER;
    Composition& composition = *comp->composition;
    const double inFrame = frameAt(*comp, *start);
    const double outFrame = FrameClock::snap(inFrame + frameAt(*comp, *duration));
    if (inFrame == FrameClock::snap(composition.inFrame) && outFrame == FrameClock::snap(composition.outFrame))
        return A_Err_NONE;
    state().journal.touchComposition(*comp);
    composition.inFrame = inFrame;
    composition.outFrame = outFrame;
    composition.changed = true;
    return A_Err_NONE;
}

A_Err getSelection(AEGP_PluginID, AEGP_CompH handle, AEGP_Collection2H* selection) {
    const CompEntry* comp = state().compOf(handle);
    if (comp == nullptr || selection == nullptr)
        return A_Err_PARAMETER;
    Collection collection;
    for (const SelectedPlace& place : state().selectionOf(*comp)) {
        AEGP_CollectionItemV2 item{};
        if (place.node != nullptr) {
            item.type = AEGP_CollectionItemType_STREAMREF;
            item.stream_refH = state().giveStream(place.layer, *place.node);
            state().streams.find(item.stream_refH)->owned = true;
        } else {
            item.type = AEGP_CollectionItemType_LAYER;
            item.u.layer = place.layer;
        }
        collection.items.push_back(item);
    }
    *selection = state().collections.add(std::move(collection));
    return A_Err_NONE;
}

A_Err setSelection(AEGP_CompH handle, AEGP_Collection2H selection) {
    CompEntry* comp = state().compOf(handle);
    const Collection* collection = state().collections.find(selection);
    if (collection == nullptr)
        state().noteUnknown(state().collections, selection);
    if (comp == nullptr || collection == nullptr)
        return A_Err_PARAMETER;
    std::vector<SelectedPlace> places;
    for (const AEGP_CollectionItemV2& item : collection->items) {
        SelectedPlace place{item.u.layer, nullptr};
        if (item.type == AEGP_CollectionItemType_STREAMREF) {
            const StreamRef* ref = state().usableStream(item.stream_refH);
            if (ref == nullptr)
                return A_Err_PARAMETER;
            place = {ref->layerHandle, ref->node};
        }
        const LayerEntry* layer = state().layerOf(place.layer);
        if (layer == nullptr || layer->comp != comp)
            return A_Err_PARAMETER;
        places.push_back(place);
    }
    comp->selection = std::move(places);
    return A_Err_NONE;
}

A_Err createNullInComp(const A_UTF16Char* name, AEGP_CompH handle, const A_Time* duration, AEGP_LayerH* layer) {
    CompEntry* comp = state().compOf(handle);
    if (comp == nullptr || layer == nullptr)
        return A_Err_PARAMETER;
    std::optional<double> frames; // the composition's length, also where a host has a preference for stills
    if (duration != nullptr && duration->scale != 0) {
        if (duration->value <= 0)
            return A_Err_PARAMETER;
        frames = frameAt(*comp, *duration);
    }
    *layer = createNull(*comp, name == nullptr ? std::string() : utf8Of(name), frames);
    return A_Err_NONE;
}

A_Err createVectorLayerInComp(AEGP_CompH handle, AEGP_LayerH* layer) {
    CompEntry* comp = state().compOf(handle);
    if (comp == nullptr || layer == nullptr)
        return A_Err_PARAMETER;
    *layer = createShapeLayer(*comp);
    return A_Err_NONE;
}

A_Err duplicateComp(AEGP_CompH handle, AEGP_CompH* duplicate) {
    const CompEntry* comp = state().compOf(handle);
    if (comp == nullptr || duplicate == nullptr)
        return A_Err_PARAMETER;
    auto copy = std::make_unique<Composition>(*comp->composition);
    Item item = *copy->item;
    if (!item.name.empty()) {
        item.name += " 2";
        copy->changed = true;
    }
    copy->item = std::make_shared<const Item>(std::move(item));
    *duplicate = state().open(std::move(copy));
    state().journal.noteDuplicate(*duplicate);
    return A_Err_NONE;
}

A_Err getFrameDuration(AEGP_CompH handle, A_Time* duration) {
    const CompEntry* comp = state().compOf(handle);
    if (comp == nullptr || duration == nullptr)
        return A_Err_PARAMETER;
    *duration = toHost(comp->composition->clock.frameDuration());
    return A_Err_NONE;
}

} // namespace

const AEGP_CompSuite15 compSuite{
    .AEGP_GetCompFromItem = getCompFromItem,
    .AEGP_GetItemFromComp = getItemFromComp,
    .AEGP_GetCompBGColor = getBackground,
    .AEGP_GetCompWorkAreaStart = getWorkAreaStart,
    .AEGP_GetCompWorkAreaDuration = getWorkAreaDuration,
    .AEGP_SetCompWorkAreaStartAndDuration = setWorkArea,
    .AEGP_GetNewCollectionFromCompSelection = getSelection,
    .AEGP_SetSelection = setSelection,
    .AEGP_CreateNullInComp = createNullInComp,
    .AEGP_DuplicateComp = duplicateComp,
    .AEGP_GetCompFrameDuration = getFrameDuration,
    .AEGP_CreateVectorLayerInComp = createVectorLayerInComp,
};

} // namespace jostle::standalone
