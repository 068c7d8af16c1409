#pragma once

#include <cstdint>

namespace jostle::standalone {

/// What a plug-in must not do: faults that a host of another make punishes sooner or later, often without a word.
/// Each is refused with an error where it is a call, and noted; see DocumentHost::misuses.
enum class Misuse : std::uint8_t {
    UsedAfterDisposal,     ///< a reference, outline, mask, collection or batch that was given back
    DisposedTwice,         ///< or a text freed twice
    UsedAfterDeletion,     ///< a reference to what is no more in the document
    ValueAfterDisposal,    ///< a value that was disposed of, or that was never read
    ValueOfAnotherType,    ///< a value set on a stream of another type
    WrongStreamType,       ///< a group where a leaf is asked for, or the other way round
    KeysOfSeparatedLeader, ///< keys asked of a stream whose dimensions are separated
    ValueSetOverKeys,      ///< a value set on a stream that has keys
    TimeWithoutScale,
    DisposedOfOwned, ///< a stream that belongs to a collection
    UnbalancedLock,  ///< unlocked more often than locked, or freed while locked
    UndoGroupNested,
    UndoGroupNotBegun,
    SuiteNotAcquired, ///< released more often than acquired

    // Still out when the plug-in gave control back:
    StreamNotDisposed,
    ValueNotDisposed,
    MaskNotDisposed,
    OutlinesNotDisposed, ///< of a text
    CollectionNotDisposed,
    KeyBatchNotEnded,
    MemoryNotFreed,
    UndoGroupNotEnded,
    SuiteNotReleased,
};

/// In words, for a report.
[[nodiscard]] const char* textOf(Misuse misuse);

} // namespace jostle::standalone
