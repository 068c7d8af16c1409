#include "standalone/suites/misuse.h"

namespace jostle::standalone {

const char* textOf(Misuse misuse) {
    switch (misuse) {
    case Misuse::UsedAfterDisposal:
        return "used after it was disposed of";
    case Misuse::DisposedTwice:
        return "disposed of twice";
    case Misuse::UsedAfterDeletion:
        return "used after what it refers to was deleted";
    case Misuse::ValueAfterDisposal:
        return "a value that is not out";
    case Misuse::ValueOfAnotherType:
        return "a value of another type than the stream's";
    case Misuse::WrongStreamType:
        return "a stream of the wrong kind";
    case Misuse::KeysOfSeparatedLeader:
        return "keys of a stream with separated dimensions";
    case Misuse::ValueSetOverKeys:
        return "a value set on a stream that has keys";
    case Misuse::TimeWithoutScale:
        return "a time with a scale of 0";
    case Misuse::DisposedOfOwned:
        return "a stream disposed of that belongs to a collection";
    case Misuse::UnbalancedLock:
        return "locks and unlocks that do not balance";
    case Misuse::UndoGroupNested:
        return "an undo group begun in another";
    case Misuse::UndoGroupNotBegun:
        return "an undo group ended that was not begun";
    case Misuse::SuiteNotAcquired:
        return "a suite released that was not acquired";
    case Misuse::StreamNotDisposed:
        return "a stream not disposed of";
    case Misuse::ValueNotDisposed:
        return "a value not disposed of";
    case Misuse::MaskNotDisposed:
        return "a mask not disposed of";
    case Misuse::OutlinesNotDisposed:
        return "text outlines not disposed of";
    case Misuse::CollectionNotDisposed:
        return "a collection not disposed of";
    case Misuse::KeyBatchNotEnded:
        return "a batch of keys not ended";
    case Misuse::MemoryNotFreed:
        return "a memory handle not freed";
    case Misuse::UndoGroupNotEnded:
        return "an undo group not ended";
    case Misuse::SuiteNotReleased:
        return "a suite not released";
    }
    return "";
}

} // namespace jostle::standalone
