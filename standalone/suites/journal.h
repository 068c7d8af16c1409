#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "standalone/document/composition.h"
#include "standalone/suites/stream_nodes.h"

namespace jostle::standalone {

struct CompEntry;
struct LayerEntry;

/// What undo groups need to take their changes back: images of what they touched, taken before the first touch.
///
/// Changes made while no group is open are not recorded. Groups do not nest.
class Journal {
public:
    [[nodiscard]] bool isOpen() const { return open_; }

    /// @return false, with nothing done, if a group is open
    bool begin(std::string name);

    /// @return false if no group is open
    bool end();

    // To be called before a change to a stream, to the fields of a layer or to those of a composition.
    void touchStream(LayerEntry& entry, StreamNode node);
    void touchLayer(LayerEntry& entry);
    void touchComposition(CompEntry& entry);
    /// Notes a composition made in the open group.
    void noteDuplicate(AEGP_CompH duplicate);

    /// Takes the last group's changes back, an empty group's too.
    /// @param dropped  receives the compositions that the group had made and that are now to be dropped
    /// @return false, with nothing done, if a group is open or there is none
    bool undo(std::vector<AEGP_CompH>& dropped);

private:
    struct StreamImage {
        LayerEntry* entry;
        StreamNode node;
        Stream before;
    };
    struct LayerImage {
        LayerEntry* entry;
        Layer* parent;
        int parentId;
        bool hidden, autoOrient, motionBlur, changed;
    };
    struct CompositionImage {
        CompEntry* entry;
        double inFrame, outFrame;
        bool changed;
    };
    struct Group {
        std::string name;
        std::vector<StreamImage> streams;
        std::vector<LayerImage> layers;
        std::vector<CompositionImage> compositions;
        std::vector<AEGP_CompH> duplicates;
    };

    /// Whether this is the first touch in the open group; `stamp` remembers the group that touched last.
    bool isFirstTouch(std::uint64_t& stamp);

    std::vector<Group> groups_;
    std::uint64_t groupNumber_ = 0;
    bool open_ = false;
};

} // namespace jostle::standalone
