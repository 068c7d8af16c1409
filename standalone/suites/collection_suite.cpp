#include "standalone/suites/host_state.h"
#include "standalone/suites/tables.h"

namespace jostle::standalone {

namespace {

Collection* collectionOf(AEGP_Collection2H handle) {
    Collection* collection = state().collections.find(handle);
    if (collection == nullptr)
        state().noteUnknown(state().collections, handle);
    return collection;
}

A_Err newCollection(AEGP_PluginID, AEGP_Collection2H* collection) {
    if (collection == nullptr)
        return A_Err_PARAMETER;
    *collection = state().collections.add({});
    return A_Err_NONE;
}

A_Err disposeCollection(AEGP_Collection2H handle) {
    const Collection* collection = state().collections.find(handle);
    if (collection == nullptr) {
        state().noteUnknown(state().collections, handle, Misuse::DisposedTwice);
        return A_Err_PARAMETER;
    }
    for (const AEGP_CollectionItemV2& item : collection->items) {
        if (item.type == AEGP_CollectionItemType_STREAMREF)
            state().disposeStream(item.stream_refH);
    }
    state().collections.remove(handle);
    return A_Err_NONE;
}

A_Err getCollectionNumItems(AEGP_Collection2H handle, A_u_long* count) {
    const Collection* collection = collectionOf(handle);
    if (collection == nullptr || count == nullptr)
        return A_Err_PARAMETER;
    *count = static_cast<A_u_long>(collection->items.size());
    return A_Err_NONE;
}

A_Err getCollectionItemByIndex(AEGP_Collection2H handle, A_u_long index, AEGP_CollectionItemV2* item) {
    const Collection* collection = collectionOf(handle);
    if (collection == nullptr || index >= collection->items.size() || item == nullptr)
        return A_Err_PARAMETER;
    *item = collection->items[index];
    return A_Err_NONE;
}

A_Err collectionPushBack(AEGP_Collection2H handle, const AEGP_CollectionItemV2* item) {
    Collection* collection = collectionOf(handle);
    if (collection == nullptr || item == nullptr)
        return A_Err_PARAMETER;
    if (item->type == AEGP_CollectionItemType_LAYER) {
        if (state().layerOf(item->u.layer) == nullptr)
            return A_Err_PARAMETER;
    } else if (item->type == AEGP_CollectionItemType_STREAMREF) {
        StreamRef* ref = state().usableStream(item->stream_refH);
        if (ref == nullptr)
            return A_Err_PARAMETER;
        if (ref->owned)
            return state().note(Misuse::DisposedOfOwned);
        ref->owned = true;
    } else {
        return state().refuse("AEGP_CollectionPushBack of anything but layers and streams");
    }
    collection->items.push_back(*item);
    return A_Err_NONE;
}

} // namespace

const AEGP_CollectionSuite2 collectionSuite{
    .AEGP_NewCollection = newCollection,
    .AEGP_DisposeCollection = disposeCollection,
    .AEGP_GetCollectionNumItems = getCollectionNumItems,
    .AEGP_GetCollectionItemByIndex = getCollectionItemByIndex,
    .AEGP_CollectionPushBack = collectionPushBack,
};

} // namespace jostle::standalone
