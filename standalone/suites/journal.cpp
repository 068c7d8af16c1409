#include "standalone/suites/journal.h"

#include "standalone/suites/host_state.h"

namespace jostle::standalone {

bool Journal::begin(std::string name) {
    if (open_)
        return false;
    open_ = true;
    ++groupNumber_;
    groups_.emplace_back().name = std::move(name);
    return true;
}

bool Journal::end() {
    return std::exchange(open_, false);
}

bool Journal::isFirstTouch(std::uint64_t& stamp) {
    if (!open_ || stamp == groupNumber_)
        return false;
    stamp = groupNumber_;
    return true;
}

void Journal::touchStream(LayerEntry& entry, StreamNode node) {
    if (isFirstTouch(entry.streamStamps[static_cast<std::size_t>(node)]))
        groups_.back().streams.push_back({&entry, node, *streamAt(*entry.layer, node)});
}

void Journal::touchLayer(LayerEntry& entry) {
    if (!isFirstTouch(entry.stamp))
        return;
    const Layer& layer = *entry.layer;
    groups_.back().layers.push_back(
        {&entry, layer.parent, layer.parentId, layer.hidden, layer.autoOrient, layer.motionBlur, layer.changed});
}

void Journal::touchComposition(CompEntry& entry) {
    if (!isFirstTouch(entry.stamp))
        return;
    const Composition& composition = *entry.composition;
    groups_.back().compositions.push_back({&entry, composition.inFrame, composition.outFrame, composition.changed});
}

void Journal::noteDuplicate(AEGP_CompH duplicate) {
    if (open_)
        groups_.back().duplicates.push_back(duplicate);
}

bool Journal::undo(std::vector<AEGP_CompH>& dropped) {
    if (open_ || groups_.empty())
        return false;
    Group& group = groups_.back();
    for (StreamImage& image : group.streams) {
        if (image.entry->layer != nullptr)
            *streamAt(*image.entry->layer, image.node) = std::move(image.before);
    }
    for (const LayerImage& image : group.layers) {
        Layer* layer = image.entry->layer;
        if (layer == nullptr)
            continue;
        layer->parent = image.parent;
        layer->parentId = image.parentId;
        layer->hidden = image.hidden;
        layer->autoOrient = image.autoOrient;
        layer->motionBlur = image.motionBlur;
        layer->changed = image.changed;
    }
    for (const CompositionImage& image : group.compositions) {
        if (image.entry->composition == nullptr)
            continue;
        image.entry->composition->inFrame = image.inFrame;
        image.entry->composition->outFrame = image.outFrame;
        image.entry->composition->changed = image.changed;
    }
    dropped = std::move(group.duplicates);
    groups_.pop_back();
    return true;
}

} // namespace jostle::standalone
