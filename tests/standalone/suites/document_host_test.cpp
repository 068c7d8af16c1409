#include <algorithm>
#include <cmath>

#include "tests/standalone/suites/session.h"

namespace jostle::standalone {
namespace {

using namespace test;

AEGP_StreamRefH layerStream(Session& s, AEGP_LayerStream which) {
    return s.stream(s.layer(child), which);
}
AEGP_StreamRefH rotation(Session& s) {
    return layerStream(s, AEGP_LayerStream_ROTATION);
}
AEGP_StreamRefH position(Session& s) {
    return layerStream(s, AEGP_LayerStream_POSITION);
}
AEGP_StreamRefH leader(Session& s) {
    return s.stream(s.layer(separated), AEGP_LayerStream_POSITION);
}
AEGP_StreamRefH disposed(Session& s) {
    const AEGP_StreamRefH stream = rotation(s);
    s.dispose({stream});
    return stream;
}
/// Another stream has its place by now, and must not be taken for it.
AEGP_StreamRefH replaced(Session& s) {
    const AEGP_StreamRefH stream = disposed(s);
    (void)layerStream(s, AEGP_LayerStream_SCALE);
    return stream;
}
AEGP_StreamRefH ofDeletedMask(Session& s) {
    const AEGP_StreamRefH shape = s.place(child, "0/0/0");
    s.remove(s.place(child, "0/0"));
    return shape;
}
AEGP_MaskRefH disposedMask(Session& s) {
    const AEGP_MaskRefH mask = s.mask(s.layer(child), 0);
    EXPECT_EQ(s.masks().AEGP_DisposeMask(mask), A_Err_NONE);
    return mask;
}
AEGP_LayerH deletedLayer(Session& s) {
    const AEGP_LayerH layer = s.layer(child);
    EXPECT_EQ(s.layers().AEGP_DeleteLayer(layer), A_Err_NONE);
    return layer;
}
AEGP_MemHandle text(Session& s) {
    return got(s.layers().AEGP_GetLayerName, 1, s.layer(child), nullptr);
}
AEGP_MemHandle freedText(Session& s) {
    const AEGP_MemHandle name = text(s);
    (void)s.takeText(name);
    return name;
}
AEGP_MaskOutlineValH closedOutline(Session& s) {
    return s.value(s.place(child, "0/0/0"), 0).mask;
}
A_Err read(Session& s, AEGP_StreamRefH stream, A_Time time = {0, 1}) {
    return asked(s.streams().AEGP_GetNewStreamValue, 1, stream, AEGP_LTimeMode_CompTime, &time, A_Boolean{1}).first;
}
A_Err setFrom(Session& s, AEGP_StreamValue2 value, AEGP_StreamRefH stream) {
    return s.streams().AEGP_SetStreamValue(1, stream, &value);
}
constexpr A_Time noTime{0, 0};
constexpr std::nullopt_t unnoted = std::nullopt;

using enum Misuse;

/// Name, what is noted, unless it is refused without being a misuse, and what is done.
using MisuseCase = std::tuple<const char*, std::optional<Misuse>, A_Err (*)(Session&)>;

const MisuseCase misuseCases[] = {
    {"a stream read after its disposal", UsedAfterDisposal, [](Session& s) { return read(s, disposed(s)); }},
    {"a stream read whose place another has taken", UsedAfterDisposal, [](Session& s) { return read(s, replaced(s)); }},
    {"a stream disposed of twice", DisposedTwice,
     [](Session& s) { return s.streams().AEGP_DisposeStream(disposed(s)); }},
    {"a stream disposed of that belongs to a collection", DisposedOfOwned,
     [](Session& s) {
         const AEGP_StreamRefH stream = rotation(s);
         (void)s.collectionOf(stream);
         return s.streams().AEGP_DisposeStream(stream);
     }},
    {"a stream of a deleted mask", UsedAfterDeletion, [](Session& s) { return read(s, ofDeletedMask(s)); }},
    {"a stream of a deleted layer", UsedAfterDeletion,
     [](Session& s) {
         const AEGP_StreamRefH stream = rotation(s);
         (void)deletedLayer(s);
         return read(s, stream);
     }},
    {"a deleted mask", UsedAfterDeletion,
     [](Session& s) {
         const AEGP_MaskRefH mask = s.mask(s.layer(child), 0);
         (void)ofDeletedMask(s);
         return s.masks().AEGP_SetMaskIsRotoBezier(mask, 1);
     }},
    {"a mask after its disposal", UsedAfterDisposal,
     [](Session& s) { return s.masks().AEGP_SetMaskIsRotoBezier(disposedMask(s), 1); }},
    {"a mask disposed of twice", DisposedTwice, [](Session& s) { return s.masks().AEGP_DisposeMask(disposedMask(s)); }},
    {"a value set after its disposal", ValueAfterDisposal,
     [](Session& s) {
         const AEGP_StreamRefH stream = rotation(s);
         AEGP_StreamValue2 value = s.open(stream);
         const AEGP_StreamValue2 kept = value;
         s.close(value);
         return setFrom(s, kept, stream);
     }},
    {"a value disposed of twice", ValueAfterDisposal,
     [](Session& s) {
         AEGP_StreamValue2 value = s.open(rotation(s));
         s.close(value);
         return s.streams().AEGP_DisposeStreamValue(&value);
     }},
    {"an outline after its value's disposal", UsedAfterDisposal,
     [](Session& s) { return asked(s.outlines().AEGP_GetMaskOutlineNumSegments, closedOutline(s)).first; }},
    {"an angle set as a position", ValueOfAnotherType,
     [](Session& s) { return setFrom(s, s.open(rotation(s)), position(s)); }},
    {"what is no number", unnoted,
     [](Session& s) {
         return s.set(position(s), AEGP_ThreeDVal{std::nan(""), 0, 0});
     }},
    {"a value of a group", WrongStreamType, [](Session& s) { return read(s, s.root(s.layer(child))); }},
    {"children of a leaf", WrongStreamType,
     [](Session& s) { return asked(s.tree().AEGP_GetNumStreamsInGroup, rotation(s)).first; }},
    {"a child of a list by its name", WrongStreamType,
     [](Session& s) {
         return asked(s.tree().AEGP_GetNewStreamRefByMatchname, 1, s.place(child, "0"), "ADBE Mask Atom").first;
     }},
    {"deleting what is not of a list", WrongStreamType,
     [](Session& s) { return s.tree().AEGP_DeleteStream(rotation(s)); }},
    {"copying a root", unnoted, [](Session& s) { return s.copy(s.root(s.layer(child))); }},
    {"pasting nothing", unnoted, [](Session& s) { return s.command(hostCommandPaste); }},
    {"pasting a group where there are no contents", unnoted,
     [](Session& s) {
         EXPECT_EQ(s.copy(s.place(separated, "0/0")), A_Err_NONE);
         return s.paste(s.root(s.layer(holder)));
     }},
    {"keys of a separated leader", KeysOfSeparatedLeader,
     [](Session& s) { return asked(s.keyframes().AEGP_GetStreamNumKFs, leader(s)).first; }},
    {"new keys of a separated leader", KeysOfSeparatedLeader,
     [](Session& s) { return asked(s.keyframes().AEGP_StartAddKeyframes, leader(s)).first; }},
    {"a value over keys", ValueSetOverKeys,
     [](Session& s) {
         const AEGP_StreamRefH stream = rotation(s);
         s.addKeys(stream, {{0, 1}, {4, 2}});
         return s.set(stream, {5, 0, 0});
     }},
    {"a value over the keys of a follower", ValueSetOverKeys,
     [](Session& s) {
         return s.set(leader(s), AEGP_ThreeDVal{1, 2, 3});
     }},
    {"deleting a key that is not there", unnoted,
     [](Session& s) { return s.keyframes().AEGP_DeleteKeyframe(rotation(s), 0); }},
    {"a time without a scale", TimeWithoutScale, [](Session& s) { return read(s, rotation(s), noTime); }},
    {"a matrix at a time without a scale", TimeWithoutScale,
     [](Session& s) { return asked(s.layers().AEGP_GetLayerToWorldXform, s.layer(child), &noTime).first; }},
    {"a batch ended twice", UsedAfterDisposal,
     [](Session& s) {
         const AEGP_AddKeyframesInfoH batch = got(s.keyframes().AEGP_StartAddKeyframes, rotation(s));
         EXPECT_EQ(s.keyframes().AEGP_EndAddKeyframes(1, batch), A_Err_NONE);
         return s.keyframes().AEGP_EndAddKeyframes(1, batch);
     }},
    {"a text freed twice", DisposedTwice, [](Session& s) { return s.memory().AEGP_FreeMemHandle(freedText(s)); }},
    {"a text read after it was freed", UsedAfterDisposal,
     [](Session& s) { return asked(s.memory().AEGP_LockMemHandle, freedText(s)).first; }},
    {"a text freed while it is locked", UnbalancedLock,
     [](Session& s) {
         const AEGP_MemHandle name = text(s);
         (void)got(s.memory().AEGP_LockMemHandle, name);
         return s.memory().AEGP_FreeMemHandle(name);
     }},
    {"a text unlocked that is not locked", UnbalancedLock,
     [](Session& s) { return s.memory().AEGP_UnlockMemHandle(text(s)); }},
    {"a group in a group", UndoGroupNested,
     [](Session& s) {
         EXPECT_EQ(s.utility().AEGP_StartUndoGroup("outer"), A_Err_NONE);
         return s.utility().AEGP_StartUndoGroup("inner");
     }},
    {"a group ended that was not begun", UndoGroupNotBegun, [](Session& s) { return s.utility().AEGP_EndUndoGroup(); }},
    {"undoing nothing", unnoted, [](Session& s) { return s.undo(); }},
    {"a suite released too often", SuiteNotAcquired,
     [](Session& s) { return s.host.basic()->ReleaseSuite("PF Path Data Suite", 1); }},
    {"a suite at a version that it does not have", unnoted,
     [](Session& s) { return asked(s.host.basic()->AcquireSuite, "AEGP Layer Suite", 12).first; }},
    {"a flag that a file does not hold", unnoted,
     [](Session& s) {
         const auto set = [&] { return s.layers().AEGP_SetLayerFlag(s.layer(child), AEGP_LayerFlag_GUIDE_LAYER, 1); };
         EXPECT_EQ(set(), set());
         EXPECT_EQ(s.host.reports().size(), 1u) << "told in words, once";
         return set();
     }},
    {"a layer moved below the last", unnoted, [](Session& s) { return s.layers().AEGP_ReorderLayer(s.layer(1), 3); }},
    {"a layer moved above the first", unnoted, [](Session& s) { return s.layers().AEGP_ReorderLayer(s.layer(1), -2); }},
    {"two flags at once", unnoted, [](Session& s) { return s.layers().AEGP_SetLayerFlag(s.layer(child), 9, 1); }},
    {"a parent that hangs on the layer", unnoted,
     [](Session& s) { return s.layers().AEGP_SetLayerParent(s.layer(holder), s.layer(child)); }},
    {"a layer beyond the last", unnoted,
     [](Session& s) { return asked(s.layers().AEGP_GetCompLayerByIndex, s.comp(), layerCount).first; }},
    {"a layer deleted twice", unnoted, [](Session& s) { return s.layers().AEGP_DeleteLayer(deletedLayer(s)); }},
};

TEST(Misuse, IsRefusedAndNoted) {
    for (const auto& [name, noted, call] : misuseCases) {
        SCOPED_TRACE(name);
        Session session;
        EXPECT_NE(call(session), A_Err_NONE);
        EXPECT_EQ(session.host.misuses(), noted ? std::vector{*noted} : std::vector<Misuse>{});
        EXPECT_TRUE(!noted || *textOf(*noted) != '\0');
    }
}

TEST(Misuse, WhatIsStillOutIsNotedWhenAskedFor) {
    Session session;
    const AEGP_StreamRefH stream = rotation(session);
    (void)session.open(stream);
    (void)session.mask(session.layer(child), 0);
    (void)text(session);
    (void)got(session.keyframes().AEGP_StartAddKeyframes, stream);
    EXPECT_EQ(session.utility().AEGP_StartUndoGroup("left open"), A_Err_NONE);
    EXPECT_EQ(session.host.balance().text(),
              "1 streams, 1 values, 1 masks, 1 memory handles, 1 key batches, 7 suites, 1 undo groups");
    session.host.noteWhatIsOut();
    const std::vector<Misuse>& noted = session.host.misuses();
    for (const Misuse misuse :
         {StreamNotDisposed, ValueNotDisposed, MaskNotDisposed, MemoryNotFreed, KeyBatchNotEnded, UndoGroupNotEnded})
        EXPECT_EQ(std::count(noted.begin(), noted.end(), misuse), 1) << textOf(misuse);
    EXPECT_GT(std::count(noted.begin(), noted.end(), SuiteNotReleased), 1);
}

TEST(DocumentHost, ShowsTheDocumentAsItsProject) {
    // 46 letters and one of two bytes fill 48 bytes: with the terminator the last character does not fit.
    const std::string letters(46, 'a');
    for (const auto& [given, shown] :
         {std::pair(letters + "\xC3\xA9", letters), std::pair(letters + "b", letters + "b")}) {
        Session session(richDocument(), given);
        const AEGP_ItemH item = got(session.items().AEGP_GetActiveItem);
        EXPECT_EQ(session.takeText(got(session.items().AEGP_GetItemName, session.id(), item)), u"Scene");
        const A_Ratio ratio = got(session.items().AEGP_GetItemPixelAspectRatio, item);
        EXPECT_EQ(ratio.num, 12);
        EXPECT_EQ(ratio.den, 11u);
        const auto& projects = session.table<AEGP_ProjSuite8>();
        const AEGP_ProjectH project = got(projects.AEGP_GetProjectByIndex, 0);
        EXPECT_EQ(session.takeText(got(projects.AEGP_GetProjectPath, project)), u"/films/scene.json");
        A_char name[AEGP_MAX_PROJ_NAME_SIZE];
        EXPECT_EQ(projects.AEGP_GetProjectName(project, name), A_Err_NONE);
        EXPECT_EQ(name, shown);
    }
}

// One that a hook has enabled is picked: Entry.PutsACommandIntoTheMenuThatLaunches.
TEST(DocumentHost, PicksNoMenuItemThatNoHookHasEnabled) {
    Session session;
    const auto& commands = session.table<AEGP_CommandSuite1>();
    const AEGP_Command ours = got(commands.AEGP_GetUniqueCommand);
    EXPECT_EQ(commands.AEGP_InsertMenuCommand(ours, "Jostle", AEGP_Menu_WINDOW, AEGP_MENU_INSERT_SORTED), A_Err_NONE);
    const AEGP_CommandHook handle = [](AEGP_GlobalRefcon, AEGP_CommandRefcon, AEGP_Command, AEGP_HookPriority,
                                       A_Boolean, A_Boolean* handled) {
        *handled = 1;
        return A_Err{A_Err_NONE};
    };
    const auto& hooks = session.table<AEGP_RegisterSuite6>();
    EXPECT_EQ(hooks.AEGP_RegisterCommandHook(1, AEGP_HP_BeforeAE, AEGP_Command_ALL, handle, nullptr), A_Err_NONE);
    EXPECT_FALSE(session.host.chooseCommand(ours));
}

TEST(Selection, IsKeptButForWhatIsDeleted) {
    Session session;
    const auto& collections = session.collections();
    const AEGP_Collection2H given = session.collectionOf(session.place(child, "0/0"));
    AEGP_CollectionItemV2 layer{};
    layer.type = AEGP_CollectionItemType_LAYER;
    layer.u.layer = session.layer(holder);
    EXPECT_EQ(collections.AEGP_CollectionPushBack(given, &layer), A_Err_NONE);
    EXPECT_EQ(session.comps().AEGP_SetSelection(session.comp(), given), A_Err_NONE);
    EXPECT_EQ(collections.AEGP_DisposeCollection(given), A_Err_NONE);
    for (const A_u_long count : {2u, 1u}) {
        const AEGP_Collection2H read = got(session.comps().AEGP_GetNewCollectionFromCompSelection, 1, session.comp());
        EXPECT_EQ(got(collections.AEGP_GetCollectionNumItems, read), count);
        EXPECT_EQ(got(collections.AEGP_GetCollectionItemByIndex, read, count - 1).u.layer, session.layer(holder));
        EXPECT_EQ(collections.AEGP_DisposeCollection(read), A_Err_NONE);
        if (count > 1)
            session.remove(session.place(child, "0/0"));
    }
    session.expectClean();
}

} // namespace
} // namespace jostle::standalone
