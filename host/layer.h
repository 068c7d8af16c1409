#pragma once

#include <string>

#include "geometry/projection.h"
#include "host/chain.h"
#include "host/item.h"
#include "host/stream.h"

namespace jostle {

/// A layer of a composition. Borrowed: holds for one call of a hook.
///
/// Times are composition times. After the chain has failed, questions are answered with zero, false or none, and
/// changes are not made.
class Layer {
public:
    struct Names {
        std::string own;    ///< empty if the user never gave one
        std::string source; ///< empty for a layer without a source
        /// What the tables show. UTF-8, as the others.
        [[nodiscard]] const std::string& shown() const { return own.empty() ? source : own; }
    };

    Layer() = default;
    explicit Layer(AEGP_LayerH handle) : handle_(handle) {}

    [[nodiscard]] bool exists() const { return handle_ != nullptr; }
    [[nodiscard]] AEGP_LayerH handle() const { return handle_; }

    /// Lasts for the life of the project.
    [[nodiscard]] AEGP_LayerIDVal id(HostChain& chain) const;
    [[nodiscard]] Names names(HostChain& chain) const;
    [[nodiscard]] AEGP_ObjectType objectType(HostChain& chain) const;
    [[nodiscard]] AEGP_LayerFlags flags(HostChain& chain) const;
    [[nodiscard]] bool is3D(HostChain& chain) const;
    /// Whether its picture is shown, solo and the like taken into account.
    [[nodiscard]] bool isVideoReallyOn(HostChain& chain) const;
    /// 0 without a label, else 1 to 16.
    [[nodiscard]] int label(HostChain& chain) const;
    [[nodiscard]] A_Time inPoint(HostChain& chain) const;
    [[nodiscard]] A_Time duration(HostChain& chain) const;
    [[nodiscard]] Item source(HostChain& chain) const;
    [[nodiscard]] Layer parent(HostChain& chain) const;

    /// Where the layer stands, with its parents' transforms and all expressions applied.
    /// @param time  composition time
    /// @return layer pixels to composition pixels; the identity if the chain has failed
    [[nodiscard]] Matrix4 toWorld(HostChain& chain, A_Time time) const;

    [[nodiscard]] Stream stream(HostChain& chain, AEGP_LayerStream which) const;
    /// The root of the tree of all its streams.
    [[nodiscard]] Stream root(HostChain& chain) const;
    /// The group of the tree that a shape layer's groups and paths are in; none for other layers.
    [[nodiscard]] Stream vectorContents(HostChain& chain) const;
    /// How many masks there are, whatever their mode.
    [[nodiscard]] int maskCount(HostChain& chain) const;

    /// Takes the parent away; the host keeps the layer in its place as far as its keyframes let it.
    void clearParent(HostChain& chain) const;
    /// The host keeps the layer in its place, as it does for `clearParent`.
    void setParent(HostChain& chain, const Layer& parent) const;
    /// @param flag  exactly one
    void setFlag(HostChain& chain, AEGP_LayerFlags flag, bool on) const;
    /// As `setFlag`, of a flag that not every host lets a plug-in set: a refusal is no error.
    void trySetFlag(HostChain& chain, AEGP_LayerFlags flag, bool on) const;

    /// Place in the composition, 0 the topmost.
    [[nodiscard]] int index(HostChain& chain) const;
    void moveTo(HostChain& chain, int index) const;
    void setName(HostChain& chain, const std::u16string& name) const;
    /// A copy with all its streams, placed by the host.
    [[nodiscard]] Layer duplicate(HostChain& chain) const;
    /// Takes it out of its composition, also in a chain that has failed.
    void remove(HostChain& chain) const;

private:
    AEGP_LayerH handle_ = nullptr;
};

} // namespace jostle
