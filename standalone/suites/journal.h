#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_set>
#include <vector>

#include "host/suites.h"
#include "standalone/document/composition.h"

namespace jostle::standalone {

struct CompEntry;
struct LayerEntry;

/// What undo groups need to take their changes back: images of what they touched, taken before the first touch.
///
/// Changes made while no group is open are not recorded. Groups do not nest. Whatever is taken out of a document stays
/// with its entry, so that images may name layers, nodes and streams by their addresses.
class Journal {
public:
    [[nodiscard]] bool isOpen() const { return open_; }

    /// @return false, with nothing done, if a group is open
    bool begin(std::string name);

    /// @return false if no group is open
    bool end();

    /// Grows with every change of the document, in a group or not.
    [[nodiscard]] std::uint64_t changes() const { return changes_; }

    // To be called before a change.
    void touchStream(LayerEntry& entry, Stream& stream);
    void touchPath(LayerEntry& entry, PathStream& path);
    /// Of its list of children and of its own fields.
    void touchNode(LayerEntry& entry, TreeNode& node);
    /// Of the layer's own fields.
    void touchLayer(LayerEntry& entry);
    /// Of the composition's fields and of its list of layers.
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
        Stream* stream;
        Stream before;
    };
    struct PathImage {
        LayerEntry* entry;
        PathStream* path;
        PathStream before;
    };
    struct NodeImage {
        LayerEntry* entry;
        TreeNode* node;
        NodeChildren::List children;
        bool rotoBezier, listChanged;
    };
    struct LayerImage {
        LayerEntry* entry;
        std::string name;
        Layer* parent;
        int parentId;
        bool hidden, autoOrient, motionBlur, separated, changed;
    };
    struct CompositionImage {
        CompEntry* entry;
        double inFrame, outFrame;
        bool changed;
        std::vector<AEGP_LayerH> layers;
    };
    struct Group {
        std::string name;
        std::vector<StreamImage> streams;
        std::vector<PathImage> paths;
        std::vector<NodeImage> nodes;
        std::vector<LayerImage> layers;
        std::vector<CompositionImage> compositions;
        std::vector<AEGP_CompH> duplicates;
    };

    /// Whether this is the first touch of a thing in the open group.
    bool isFirstTouch(const void* thing);
    static void restore(CompositionImage& image);
    static void restore(NodeImage& image);
    static void restore(const LayerImage& image);

    std::vector<Group> groups_;
    std::unordered_set<const void*> touched_; ///< in the open group
    std::uint64_t changes_ = 0;
    bool open_ = false;
};

} // namespace jostle::standalone
