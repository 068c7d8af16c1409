#include <algorithm>
#include <limits>

#include "tests/standalone/suites/rich_document.h"

namespace jostle::standalone {
namespace {

using namespace test;

struct MisuseCase {
    const char* name;
    Misuse misuse;
    A_Err (*call)(RichSession&);
};

AEGP_StreamRefH rotation(RichSession& session) {
    return session.stream(session.layer(child), AEGP_LayerStream_ROTATION);
}
AEGP_StreamRefH disposed(RichSession& session) {
    const AEGP_StreamRefH stream = rotation(session);
    session.dispose(stream);
    return stream;
}
AEGP_StreamRefH ofDeletedMask(RichSession& session) {
    const AEGP_StreamRefH mask = session.below(session.root(session.layer(child)), {"0", "0"});
    const AEGP_StreamRefH shape = session.below(session.root(session.layer(child)), {"0", "0", "0"});
    EXPECT_EQ(session.tree().AEGP_DeleteStream(mask), A_Err_NONE);
    session.dispose(mask);
    return shape;
}
A_Err read(RichSession& session, AEGP_StreamRefH stream, A_Time time = {0, 1}) {
    AEGP_StreamValue2 value{};
    return session.streams().AEGP_GetNewStreamValue(1, stream, AEGP_LTimeMode_CompTime, &time, 1, &value);
}
A_Err countKeys(RichSession& session, AEGP_StreamRefH stream) {
    A_long count = 0;
    return session.table<AEGP_KeyframeSuite4>().AEGP_GetStreamNumKFs(stream, &count);
}
AEGP_MemHandle text(RichSession& session) {
    AEGP_MemHandle name = nullptr;
    EXPECT_EQ(session.layers().AEGP_GetLayerName(1, session.layer(child), &name, nullptr), A_Err_NONE);
    return name;
}

const MisuseCase misuseCases[] = {
    {"a stream read after its disposal", Misuse::UsedAfterDisposal,
     [](RichSession& s) { return read(s, disposed(s)); }},
    {"keys of a stream after its disposal", Misuse::UsedAfterDisposal,
     [](RichSession& s) { return countKeys(s, disposed(s)); }},
    {"a stream disposed of twice", Misuse::DisposedTwice,
     [](RichSession& s) { return s.streams().AEGP_DisposeStream(disposed(s)); }},
    {"a stream of a deleted mask", Misuse::UsedAfterDeletion, [](RichSession& s) { return read(s, ofDeletedMask(s)); }},
    {"a stream of a deleted layer", Misuse::UsedAfterDeletion,
     [](RichSession& s) {
         const AEGP_StreamRefH stream = rotation(s);
         EXPECT_EQ(s.layers().AEGP_DeleteLayer(s.layer(child)), A_Err_NONE);
         return read(s, stream);
     }},
    {"a deleted mask", Misuse::UsedAfterDeletion,
     [](RichSession& s) {
         const AEGP_MaskRefH mask = s.mask(s.layer(child), 0);
         (void)ofDeletedMask(s);
         return s.masks().AEGP_SetMaskIsRotoBezier(mask, 1);
     }},
    {"a mask after its disposal", Misuse::UsedAfterDisposal,
     [](RichSession& s) {
         const AEGP_MaskRefH mask = s.mask(s.layer(child), 0);
         EXPECT_EQ(s.masks().AEGP_DisposeMask(mask), A_Err_NONE);
         return s.masks().AEGP_SetMaskIsRotoBezier(mask, 1);
     }},
    {"a mask disposed of twice", Misuse::DisposedTwice,
     [](RichSession& s) {
         const AEGP_MaskRefH mask = s.mask(s.layer(child), 0);
         EXPECT_EQ(s.masks().AEGP_DisposeMask(mask), A_Err_NONE);
         return s.masks().AEGP_DisposeMask(mask);
     }},
    {"a value set after its disposal", Misuse::ValueAfterDisposal,
     [](RichSession& s) {
         const AEGP_StreamRefH stream = rotation(s);
         AEGP_StreamValue2 value = s.open(stream);
         AEGP_StreamValue2 kept = value;
         s.close(value);
         return s.streams().AEGP_SetStreamValue(1, stream, &kept);
     }},
    {"a value disposed of twice", Misuse::ValueAfterDisposal,
     [](RichSession& s) {
         AEGP_StreamValue2 value = s.open(rotation(s));
         s.close(value);
         return s.streams().AEGP_DisposeStreamValue(&value);
     }},
    {"an outline after its value's disposal", Misuse::UsedAfterDisposal,
     [](RichSession& s) {
         AEGP_StreamValue2 value = s.open(s.below(s.root(s.layer(child)), {"0", "0", "0"}));
         const AEGP_MaskOutlineValH outline = value.val.mask;
         s.close(value);
         A_long count = 0;
         return s.table<AEGP_MaskOutlineSuite3>().AEGP_GetMaskOutlineNumSegments(outline, &count);
     }},
    {"an angle set as a position", Misuse::ValueOfAnotherType,
     [](RichSession& s) {
         AEGP_StreamValue2 value = s.open(rotation(s));
         return s.streams().AEGP_SetStreamValue(1, s.stream(s.layer(child), AEGP_LayerStream_POSITION), &value);
     }},
    {"a scale set as a colour", Misuse::ValueOfAnotherType,
     [](RichSession& s) {
         AEGP_StreamValue2 value = s.open(s.stream(s.layer(child), AEGP_LayerStream_SCALE));
         return s.streams().AEGP_SetStreamValue(
             1, s.below(s.root(s.layer(separated)), {"0", "0", "0", "1", "ADBE Vector Fill Color"}), &value);
     }},
    {"a value of a group", Misuse::WrongStreamType, [](RichSession& s) { return read(s, s.root(s.layer(child))); }},
    {"children of a leaf", Misuse::WrongStreamType,
     [](RichSession& s) {
         A_long count = 0;
         return s.tree().AEGP_GetNumStreamsInGroup(rotation(s), &count);
     }},
    {"a child of a list by its name", Misuse::WrongStreamType,
     [](RichSession& s) {
         AEGP_StreamRefH found = nullptr;
         return s.tree().AEGP_GetNewStreamRefByMatchname(1, s.below(s.root(s.layer(child)), {"0"}), "ADBE Mask Atom",
                                                         &found);
     }},
    {"deleting what is not of a list", Misuse::WrongStreamType,
     [](RichSession& s) { return s.tree().AEGP_DeleteStream(rotation(s)); }},
    {"keys of a separated leader", Misuse::KeysOfSeparatedLeader,
     [](RichSession& s) { return countKeys(s, s.stream(s.layer(separated), AEGP_LayerStream_POSITION)); }},
    {"a value over keys", Misuse::ValueSetOverKeys,
     [](RichSession& s) {
         const AEGP_StreamRefH stream = rotation(s);
         s.addKeys(stream, {{0, 1}, {4, 2}});
         return s.set(stream, {5, 0, 0});
     }},
    {"a time without a scale", Misuse::TimeWithoutScale,
     [](RichSession& s) {
         return read(s, rotation(s), {0, 0});
     }},
    {"a batch ended twice", Misuse::UsedAfterDisposal,
     [](RichSession& s) {
         AEGP_AddKeyframesInfoH batch = nullptr;
         const auto& keyframes = s.table<AEGP_KeyframeSuite4>();
         EXPECT_EQ(keyframes.AEGP_StartAddKeyframes(rotation(s), &batch), A_Err_NONE);
         EXPECT_EQ(keyframes.AEGP_EndAddKeyframes(1, batch), A_Err_NONE);
         return keyframes.AEGP_EndAddKeyframes(1, batch);
     }},
    {"a text freed twice", Misuse::DisposedTwice,
     [](RichSession& s) {
         const AEGP_MemHandle name = text(s);
         (void)s.takeText(name);
         return s.table<AEGP_MemorySuite1>().AEGP_FreeMemHandle(name);
     }},
    {"a text read after it was freed", Misuse::UsedAfterDisposal,
     [](RichSession& s) {
         const AEGP_MemHandle name = text(s);
         (void)s.takeText(name);
         void* content = nullptr;
         return s.table<AEGP_MemorySuite1>().AEGP_LockMemHandle(name, &content);
     }},
    {"a text freed while it is locked", Misuse::UnbalancedLock,
     [](RichSession& s) {
         const AEGP_MemHandle name = text(s);
         void* content = nullptr;
         EXPECT_EQ(s.table<AEGP_MemorySuite1>().AEGP_LockMemHandle(name, &content), A_Err_NONE);
         return s.table<AEGP_MemorySuite1>().AEGP_FreeMemHandle(name);
     }},
    {"a text unlocked that is not locked", Misuse::UnbalancedLock,
     [](RichSession& s) { return s.table<AEGP_MemorySuite1>().AEGP_UnlockMemHandle(text(s)); }},
    {"a group in a group", Misuse::UndoGroupNested,
     [](RichSession& s) {
         s.undoGroup("outer");
         return s.utility().AEGP_StartUndoGroup("inner");
     }},
    {"a group ended that was not begun", Misuse::UndoGroupNotBegun,
     [](RichSession& s) { return s.utility().AEGP_EndUndoGroup(); }},
    {"a suite released too often", Misuse::SuiteNotAcquired,
     [](RichSession& s) { return s.host.basic()->ReleaseSuite("PF Path Data Suite", 1); }},
};

TEST(Misuse, IsRefusedAndNoted) {
    for (const MisuseCase& c : misuseCases) {
        SCOPED_TRACE(c.name);
        RichSession session;
        EXPECT_NE(c.call(session), A_Err_NONE);
        EXPECT_EQ(session.host.misuses(), std::vector<Misuse>{c.misuse});
        EXPECT_STRNE(textOf(c.misuse), "");
    }
}

TEST(Misuse, WhatIsStillOutIsNotedWhenAskedFor) {
    RichSession session;
    const AEGP_StreamRefH stream = rotation(session);
    (void)session.open(stream);
    (void)session.mask(session.layer(child), 0);
    (void)text(session);
    AEGP_AddKeyframesInfoH batch = nullptr;
    EXPECT_EQ(session.table<AEGP_KeyframeSuite4>().AEGP_StartAddKeyframes(stream, &batch), A_Err_NONE);
    session.undoGroup("left open");
    session.host.noteWhatIsOut();
    const std::vector<Misuse>& noted = session.host.misuses();
    for (const Misuse misuse : {Misuse::StreamNotDisposed, Misuse::ValueNotDisposed, Misuse::MaskNotDisposed,
                                Misuse::MemoryNotFreed, Misuse::KeyBatchNotEnded, Misuse::UndoGroupNotEnded})
        EXPECT_EQ(std::count(noted.begin(), noted.end(), misuse), 1) << textOf(misuse);
    EXPECT_GT(std::count(noted.begin(), noted.end(), Misuse::SuiteNotReleased), 1);
}

} // namespace
} // namespace jostle::standalone
