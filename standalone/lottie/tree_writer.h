#pragma once

#include <deque>
#include <string>
#include <vector>

#include "standalone/document/composition.h"
#include "standalone/lottie/property_writer.h"
#include "standalone/lottie/splice.h"

namespace jostle::standalone {

/// Writes masks and shapes from a layer's tree.
class TreeWriter {
public:
    explicit TreeWriter(PropertyWriter& properties) : properties_{properties} {}

    /// Writes what has changed of a layer's masks and shapes.
    /// @param layerEdit  of the layer's object
    /// @param edits      takes what changes within it
    void write(const Layer& layer, ObjectEdit& layerEdit, TextEdits& edits);

    /// Adds the masks and shapes of a layer that is in no file yet to its text.
    void add(const Layer& layer, ObjectText& text);

private:
    void writeNode(const TreeNode& node, TextEdits& edits);
    void writeLeaves(const TreeNode& node, ObjectEdit& edit, TextEdits& edits);
    void writeGroup(const TreeNode& group, ObjectEdit& edit, TextEdits& edits);
    void writeMasks(const TreeNode& parade, ObjectEdit& layerEdit, TextEdits& edits);

    /// The entries of a list as text: those of the file with what has changed in them, and new ones.
    [[nodiscard]] std::vector<std::string> entriesOf(const TreeNode& list, const TextStyle& style);
    [[nodiscard]] std::string nodeText(const TreeNode& node, const TextStyle& style);
    /// Of a mask, or of a group's transform: all else that is new in a list is a copy of what the file has.
    [[nodiscard]] std::string newNode(const TreeNode& node, const TextStyle& style);
    void addLeaves(const TreeNode& node, ObjectText& text);
    [[nodiscard]] TextStyle styleWithin(const JsonValue& list, const TextStyle& owner) const;
    [[nodiscard]] const Stream& asInFile(const TreeNode& leaf);

    PropertyWriter& properties_;
    std::deque<Stream> converted_; ///< colours in the numbers of the file
};

} // namespace jostle::standalone
