#include "standalone/suites/document_host.h"

#include "tests/standalone/suites/session.h"

namespace jostle::standalone {
namespace {

using namespace test;

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
