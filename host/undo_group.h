#pragma once

#include "host/chain.h"

namespace jostle {

/// Brackets changes under one name in the host's undo list. Groups do not nest.
class UndoGroup {
public:
    /// @param name  ASCII
    UndoGroup(HostChain& chain, const char* name) : chain_(&chain) {
        if (!chain.call<&AEGP_UtilitySuite11::AEGP_StartUndoGroup>(name))
            chain_ = nullptr;
    }
    ~UndoGroup() { close(); }
    UndoGroup(const UndoGroup&) = delete;
    UndoGroup& operator=(const UndoGroup&) = delete;

    /// Ends the group before the end of this object's life, as a cancel needs.
    void close() {
        if (chain_ != nullptr)
            chain_->dispose<&AEGP_UtilitySuite11::AEGP_EndUndoGroup>();
        chain_ = nullptr;
    }

private:
    HostChain* chain_; ///< null once the group is closed
};

} // namespace jostle
