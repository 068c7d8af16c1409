#include "standalone/suites/document_host.h"

#include <limits>

#include "tests/standalone/suites/small_document.h"

namespace jostle::standalone {
namespace {

using namespace test;

TEST(DocumentHost, ShowsTheDocumentAsItsProject) {
    Session session;
    AEGP_ItemH item = nullptr;
    AEGP_MemHandle text = nullptr;
    const auto& items = session.table<AEGP_ItemSuite13>();
    ASSERT_EQ(items.AEGP_GetActiveItem(&item), A_Err_NONE);
    ASSERT_EQ(items.AEGP_GetItemName(session.id(), item, &text), A_Err_NONE);
    EXPECT_EQ(session.takeText(text), u"Scene");
    A_Time time{};
    ASSERT_EQ(items.AEGP_GetItemDuration(item, &time), A_Err_NONE);
    EXPECT_DOUBLE_EQ(static_cast<double>(time.value) / time.scale, 4); // 100 frames at 25
    A_Ratio ratio{};
    ASSERT_EQ(items.AEGP_GetItemPixelAspectRatio(item, &ratio), A_Err_NONE);
    EXPECT_EQ(ratio.num, 12); // 1 + 1/11
    EXPECT_EQ(ratio.den, 11u);

    const auto& projects = session.table<AEGP_ProjSuite8>();
    AEGP_ProjectH project = nullptr;
    A_char name[AEGP_MAX_PROJ_NAME_SIZE];
    ASSERT_EQ(projects.AEGP_GetProjectByIndex(0, &project), A_Err_NONE);
    ASSERT_EQ(projects.AEGP_GetProjectName(project, name), A_Err_NONE);
    EXPECT_STREQ(name, "scene.json");
    ASSERT_EQ(projects.AEGP_GetProjectPath(project, &text), A_Err_NONE);
    EXPECT_EQ(session.takeText(text), u"/films/scene.json");
}

TEST(DocumentHost, CutsLongProjectNamesBetweenCharacters) {
    // 46 letters and one of two bytes fill 48 bytes: with the terminator the last character does not fit.
    DocumentHost host(smallDocument(), std::string(46, 'a') + "\xC3\xA9", "");
    AEGP_SuiteHandler suites(host.basic());
    const auto* projects = suites.get<AEGP_ProjSuite8>();
    AEGP_ProjectH project = nullptr;
    A_char name[AEGP_MAX_PROJ_NAME_SIZE];
    ASSERT_EQ(projects->AEGP_GetProjectByIndex(0, &project), A_Err_NONE);
    ASSERT_EQ(projects->AEGP_GetProjectName(project, name), A_Err_NONE);
    EXPECT_EQ(std::string(name), std::string(46, 'a'));
}

TEST(DocumentHost, TellsASolidFromOtherSources) {
    Session session;
    AEGP_ItemH item = nullptr;
    AEGP_FootageH footage = nullptr;
    AEGP_FootageSignature signature = 0;
    AEGP_ColorVal color{};
    const auto& layers = session.table<AEGP_LayerSuite13>();
    const auto& footages = session.table<AEGP_FootageSuite11>();
    ASSERT_EQ(layers.AEGP_GetLayerSourceItem(session.layer(child), &item), A_Err_NONE);
    ASSERT_EQ(footages.AEGP_GetMainFootageFromItem(item, &footage), A_Err_NONE);
    ASSERT_EQ(footages.AEGP_GetFootageSignature(footage, &signature), A_Err_NONE);
    EXPECT_EQ(signature, static_cast<AEGP_FootageSignature>(AEGP_FootageSignature_SOLID));
    ASSERT_EQ(footages.AEGP_GetSolidFootageColor(item, 0, &color), A_Err_NONE);
    EXPECT_EQ(color.greenF, 0.5);
    ASSERT_EQ(layers.AEGP_GetLayerSourceItem(session.layer(separated), &item), A_Err_NONE);
    EXPECT_EQ(item, nullptr) << "a shape has no source";
}

TEST(DocumentHost, RefusesSuitesItDoesNotHave) {
    Session session;
    const void* table = nullptr;
    EXPECT_NE(session.host.basic()->AcquireSuite("AEGP Layer Suite", 12, &table), 0) << "a version of its own";
    EXPECT_NE(session.host.basic()->ReleaseSuite("AEGP Comp Suite", 15), 0) << "never acquired";
}

TEST(DocumentHost, CountsWhatIsStillOut) {
    DocumentHost host(smallDocument(), "", "");
    AEGP_StreamRefH position = nullptr;
    AEGP_StreamValue2 value{};
    AEGP_MemHandle name = nullptr;
    const A_Time start{0, 1};
    {
        AEGP_SuiteHandler suites(host.basic());
        const auto* streams = suites.get<AEGP_StreamSuite9>();
        const auto* layers = suites.get<AEGP_LayerSuite13>();
        AEGP_ItemH item = nullptr;
        AEGP_CompH comp = nullptr;
        AEGP_LayerH layer = nullptr;
        suites.get<AEGP_ItemSuite13>()->AEGP_GetActiveItem(&item);
        suites.get<AEGP_CompSuite15>()->AEGP_GetCompFromItem(item, &comp);
        ASSERT_EQ(layers->AEGP_GetCompLayerByIndex(comp, 0, &layer), A_Err_NONE);
        ASSERT_EQ(streams->AEGP_GetNewLayerStream(1, layer, AEGP_LayerStream_POSITION, &position), A_Err_NONE);
        ASSERT_EQ(streams->AEGP_GetNewStreamValue(1, position, 1, &start, 1, &value), A_Err_NONE);
        ASSERT_EQ(layers->AEGP_GetLayerName(1, layer, &name, nullptr), A_Err_NONE);
        EXPECT_EQ(host.balance().text(), "1 streams, 1 values, 1 memory handles, 4 suites");
        // In this order too: the value outlives the reference it was read through.
        EXPECT_EQ(streams->AEGP_DisposeStream(position), A_Err_NONE);
        EXPECT_EQ(streams->AEGP_DisposeStreamValue(&value), A_Err_NONE);
        EXPECT_EQ(suites.get<AEGP_MemorySuite1>()->AEGP_FreeMemHandle(name), A_Err_NONE);
    }
    EXPECT_TRUE(host.balance().allReturned()) << host.balance().text();
}

TEST(DocumentHost, RefusesMisuse) {
    Session session;
    const auto& streams = session.table<AEGP_StreamSuite9>();
    const auto& keyframes = session.table<AEGP_KeyframeSuite4>();
    const AEGP_LayerH layer = session.layer(child);
    const AEGP_StreamRefH live = session.stream(layer, AEGP_LayerStream_POSITION);
    const AEGP_StreamRefH dead = session.stream(layer, AEGP_LayerStream_POSITION);
    session.dispose(dead);
    // Takes the place of the one disposed of, and must not be taken for it.
    const AEGP_StreamRefH later = session.stream(layer, AEGP_LayerStream_SCALE);
    const AEGP_StreamRefH leader = session.stream(session.layer(separated), AEGP_LayerStream_POSITION);
    const A_Time start{0, 1}, noTime{0, 0};
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    AEGP_StreamValue2 value{};
    A_Matrix4 matrix{};
    A_long number = 0;
    AEGP_LayerH beyond = nullptr;
    AEGP_AddKeyframesInfoH batch = nullptr;
    const auto read = [&](AEGP_StreamRefH stream, const A_Time& time) {
        return streams.AEGP_GetNewStreamValue(1, stream, AEGP_LTimeMode_CompTime, &time, 1, &value);
    };
    const auto& layers = session.table<AEGP_LayerSuite13>();
    const struct {
        const char* name;
        A_Err result;
    } cases[] = {
        {"disposing twice", streams.AEGP_DisposeStream(dead)},
        {"reading a stream that was disposed of", read(dead, start)},
        {"reading at a time without a scale", read(live, noTime)},
        {"matrix at a time without a scale", layers.AEGP_GetLayerToWorldXform(layer, &noTime, &matrix)},
        {"disposing of a value never read", streams.AEGP_DisposeStreamValue(&value)},
        {"setting what is no number", session.set(live, {nan, 0, 0})},
        {"deleting a key that is not there", keyframes.AEGP_DeleteKeyframe(live, 0)},
        {"keys of a separated leader", keyframes.AEGP_StartAddKeyframes(leader, &batch)},
        {"count of a separated leader's keys", keyframes.AEGP_GetStreamNumKFs(leader, &number)},
        {"setting a separated leader with keys below it", session.set(leader, {1, 2, 3})},
        {"two flags at once", layers.AEGP_SetLayerFlag(layer, 9, 1)},
        {"a parent that hangs on the layer", layers.AEGP_SetLayerParent(session.layer(holder), layer)},
        {"a layer beyond the last", layers.AEGP_GetCompLayerByIndex(session.comp(), layerCount, &beyond)},
        {"ending an undo group never begun", session.utility().AEGP_EndUndoGroup()},
        {"undoing nothing", session.undo()},
    };
    for (const auto& c : cases)
        EXPECT_NE(c.result, A_Err_NONE) << c.name;
    session.dispose(live);
    session.dispose(later);
    session.dispose(leader);
    EXPECT_EQ(session.host.balance().streams, 0);
    EXPECT_EQ(session.host.balance().values, 0);
}

TEST(DocumentHost, WalksTheTreeOfStreams) {
    Session session;
    const auto& tree = session.table<AEGP_DynamicStreamSuite5>();
    AEGP_StreamRefH root = nullptr, masks = nullptr, transform = nullptr, rotation = nullptr, up = nullptr;
    AEGP_StreamRefH missing = nullptr;
    ASSERT_EQ(tree.AEGP_GetNewStreamRefForLayer(1, session.layer(child), &root), A_Err_NONE);
    ASSERT_EQ(tree.AEGP_GetNewStreamRefByMatchname(1, root, "ADBE Mask Parade", &masks), A_Err_NONE);
    ASSERT_EQ(tree.AEGP_GetNewStreamRefByMatchname(1, root, "ADBE Transform Group", &transform), A_Err_NONE);
    ASSERT_EQ(tree.AEGP_GetNewStreamRefByIndex(1, transform, 3, &rotation), A_Err_NONE);
    ASSERT_EQ(tree.AEGP_GetNewParentStreamRef(1, rotation, &up), A_Err_NONE);
    EXPECT_EQ(tree.AEGP_GetNewStreamRefByMatchname(1, root, "ADBE Root Vectors Group", &missing), A_Err_NONE);
    EXPECT_EQ(missing, nullptr);
    A_long number = -1;
    EXPECT_EQ(tree.AEGP_GetNumStreamsInGroup(masks, &number), A_Err_NONE);
    EXPECT_EQ(number, 0);
    EXPECT_NE(tree.AEGP_GetNumStreamsInGroup(rotation, &number), A_Err_NONE) << "a leaf has no children";
    EXPECT_EQ(tree.AEGP_GetStreamDepth(rotation, &number), A_Err_NONE);
    EXPECT_EQ(number, 2);
    A_char matchName[AEGP_MAX_STREAM_MATCH_NAME_SIZE];
    EXPECT_EQ(tree.AEGP_GetMatchName(up, matchName), A_Err_NONE);
    EXPECT_STREQ(matchName, "ADBE Transform Group");
    for (const AEGP_StreamRefH stream : {root, masks, transform, rotation, up})
        session.dispose(stream);
}

A_Err hookThatHandles(AEGP_GlobalRefcon, AEGP_CommandRefcon refcon, AEGP_Command command, AEGP_HookPriority, A_Boolean,
                      A_Boolean* handled) {
    *handled = command == *reinterpret_cast<AEGP_Command*>(refcon);
    return A_Err_NONE;
}

TEST(DocumentHost, RunsTheHooksOfAPlugIn) {
    Session session;
    static AEGP_Command ours = 0;
    static const AEGP_CommandSuite1* commands = nullptr;
    commands = session.suites.get<AEGP_CommandSuite1>();
    const auto& hooks = session.table<AEGP_RegisterSuite6>();
    ASSERT_EQ(commands->AEGP_GetUniqueCommand(&ours), A_Err_NONE);
    ASSERT_EQ(commands->AEGP_InsertMenuCommand(ours, "Jostle", AEGP_Menu_WINDOW, AEGP_MENU_INSERT_SORTED), A_Err_NONE);
    ASSERT_EQ(hooks.AEGP_RegisterCommandHook(1, AEGP_HP_BeforeAE, AEGP_Command_ALL, hookThatHandles,
                                             reinterpret_cast<AEGP_CommandRefcon>(&ours)),
              A_Err_NONE);
    EXPECT_FALSE(session.host.chooseCommand(ours)) << "no hook has enabled the item yet";
    const auto enable = [](AEGP_GlobalRefcon, AEGP_UpdateMenuRefcon, AEGP_WindowType) {
        return commands->AEGP_EnableCommand(ours);
    };
    ASSERT_EQ(hooks.AEGP_RegisterUpdateMenuHook(1, enable, nullptr), A_Err_NONE);
    EXPECT_TRUE(session.host.chooseCommand(ours));
    EXPECT_FALSE(session.host.chooseCommand(ours + 1)) << "in no menu";
}

TEST(DocumentHost, KeepsASelectionThatItWasGiven) {
    Session session;
    const auto& collections = session.table<AEGP_CollectionSuite2>();
    const auto& comps = session.table<AEGP_CompSuite15>();
    AEGP_Collection2H given = nullptr, read = nullptr;
    ASSERT_EQ(collections.AEGP_NewCollection(1, &given), A_Err_NONE);
    AEGP_CollectionItemV2 item{};
    item.type = AEGP_CollectionItemType_LAYER;
    item.u.layer = session.layer(holder);
    EXPECT_EQ(collections.AEGP_CollectionPushBack(given, &item), A_Err_NONE);
    item = {};
    item.type = AEGP_CollectionItemType_STREAMREF;
    item.stream_refH = session.stream(session.layer(child), AEGP_LayerStream_SCALE);
    EXPECT_EQ(collections.AEGP_CollectionPushBack(given, &item), A_Err_NONE);
    EXPECT_NE(session.table<AEGP_StreamSuite9>().AEGP_DisposeStream(item.stream_refH), A_Err_NONE)
        << "it belongs to the collection";
    EXPECT_EQ(comps.AEGP_SetSelection(session.comp(), given), A_Err_NONE);
    EXPECT_EQ(collections.AEGP_DisposeCollection(given), A_Err_NONE);

    ASSERT_EQ(comps.AEGP_GetNewCollectionFromCompSelection(1, session.comp(), &read), A_Err_NONE);
    A_u_long count = 0;
    EXPECT_EQ(collections.AEGP_GetCollectionNumItems(read, &count), A_Err_NONE);
    EXPECT_EQ(count, 2u);
    EXPECT_EQ(collections.AEGP_GetCollectionItemByIndex(read, 0, &item), A_Err_NONE);
    EXPECT_EQ(item.u.layer, session.layer(holder));
    EXPECT_EQ(collections.AEGP_DisposeCollection(read), A_Err_NONE);
    EXPECT_EQ(session.host.balance().streams + session.host.balance().collections, 0);
}

} // namespace
} // namespace jostle::standalone
