#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "standalone/document/composition.h"
#include "standalone/document/path.h"
#include "standalone/lottie/fields.h"
#include "standalone/lottie/format_rules.h"
#include "standalone/lottie/json_tree.h"

namespace jostle::standalone {

/// Largest magnitude of a number in a transform. Players hold such numbers in single precision, and sums and products
/// of larger ones leave its range.
constexpr double transformNumberLimit = 1e15;

/// Most that all properties of a document may take from its slots together, in bytes of its text. A slot counts each
/// time that a property refers to it, as what it holds is read as often.
constexpr std::size_t slotBytesLimit = std::size_t{64} << 20;

/// Whether a position's value has separated dimensions.
[[nodiscard]] bool isSeparated(const JsonValue& property);

/// The name of the member of a transform that holds the rotation.
/// @param transform  its members
[[nodiscard]] std::string_view rotationMember(const JsonMembers& transform, bool threeD);

/// Makes streams of properties, old and new forms alike, looking up slots.
class PropertyReader {
public:
    /// @param slots  the document's slots by name, or Missing
    explicit PropertyReader(const JsonValue& slots);

    /// The stream of a property; the default if it is missing or of a wrong type. A key's frame is snapped to the
    /// whole frame it means.
    /// @param form  any of those of properties with components
    [[nodiscard]] Stream stream(const JsonValue& property, FieldForm form);

    /// The transform of a layer, defaults if it is missing.
    [[nodiscard]] Transform transform(const JsonValue& object, bool threeD);

    /// The stream of a property that holds a path; an empty path if it is missing or of a wrong type.
    ///
    /// Two keys may stand at one frame: the way before them leads to the first, the way after them from the second.
    /// @param closedOutside  whether the path is closed, where that is not told by the path itself
    [[nodiscard]] PathStream path(const JsonValue& property, const FormatRules& rules,
                                  std::optional<bool> closedOutside);

    /// What holds in place of a property: what the slot that it names holds, or the property itself.
    [[nodiscard]] JsonValue resolved(const JsonValue& property) const;

    /// The same for reading it; Missing once slotBytesLimit is reached.
    [[nodiscard]] JsonValue taken(const JsonValue& property);

    /// The first value met so far that cannot be read: with a number beyond transformNumberLimit, or where
    /// slotBytesLimit was reached; Missing if all was well.
    [[nodiscard]] const JsonValue& fault() const { return fault_; }
    [[nodiscard]] bool isOverSlotLimit() const { return slotBytes_ && *slotBytes_ > slotBytesLimit; }

private:
    class TrackBuilder;

    std::size_t take(const JsonValue& value, double* out, std::size_t most);
    [[nodiscard]] double frameOf(const JsonValue& time);
    [[nodiscard]] KeySegment segment(const KeyframeMembers& members, FieldForm form, int components);
    bool takeHandle(const JsonValue& handle, Components& x, Components& y);
    void readKeys(const JsonValue& list, FieldForm form, Stream& stream);
    /// @param count  of the keys
    /// @return false if the keys are out of order or have more components than the stream
    bool readKeysInOrder(const JsonValue& list, FieldForm form, std::size_t count, Stream& stream);
    /// @return how many components the key gives
    int addKey(const KeyframeMembers& members, double frame, FieldForm form, TrackBuilder& track);

    std::shared_ptr<const std::map<std::string, JsonValue, std::less<>>> slots_; ///< null without any
    std::shared_ptr<std::size_t> slotBytes_;                                     ///< of all copies
    JsonValue fault_;
};

} // namespace jostle::standalone
