#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "host/suites.h"
#include "standalone/document/composition.h"
#include "standalone/suites/misuse.h"

namespace jostle::standalone {

class HostState;

/// Counts of what was handed out and has not come back.
struct HandOuts {
    int streams = 0;
    int values = 0;
    int masks = 0;
    int maskOutlines = 0; ///< each in a value
    int textOutlines = 0;
    int memory = 0;
    int collections = 0;
    int keyBatches = 0;
    int suites = 0;
    int undoGroups = 0;

    [[nodiscard]] bool allReturned() const;
    /// The families that are not zero, as in "2 streams, 1 suites"; empty if all is returned.
    [[nodiscard]] std::string text() const;
};

/// An entry that the plug-in has put into a menu.
struct MenuItem {
    AEGP_Command command = 0;
    std::string name;
    AEGP_MenuID menu = AEGP_Menu_NONE;
    bool enabled = false;
};

/// A compositing host over one document: serves the suites from a composition in memory.
///
/// The suites are plain C functions without a context, so that one host at most lives in a process at a time, and
/// everything that was got from its tables ends with it. Layer time is taken for composition time throughout.
/// [user-interface thread]
class DocumentHost {
public:
    /// @param root         the document's composition; always the active item
    /// @param projectName  UTF-8, shown as the project's name
    /// @param projectPath  UTF-8, empty for a document never saved
    /// @param preferences  file of the persistent data; empty for the user's own, see standalone/preferences.h
    DocumentHost(std::unique_ptr<Composition> root, std::string projectName, std::string projectPath,
                 std::filesystem::path preferences = {});
    /// Runs the death hooks and writes the persistent data.
    ~DocumentHost();
    DocumentHost(const DocumentHost&) = delete;
    DocumentHost& operator=(const DocumentHost&) = delete;

    [[nodiscard]] const SPBasicSuite* basic() const;
    [[nodiscard]] AEGP_PluginID pluginId() const { return 1; }

    /// Calls a plug-in's entry point, as a host does at its start.
    /// @return the plug-in's error
    A_Err start(AEGP_EntryPoint entry);

    /// Acts as the user who opens a menu: the plug-in sets its items' states.
    void updateMenus();
    [[nodiscard]] const std::vector<MenuItem>& menuItems() const;
    /// Acts as the user who opens a menu and picks an item.
    /// @return whether the item is enabled and the plug-in handled the command
    bool chooseCommand(AEGP_Command command);

    /// What is to be written: the duplicate made last, else the root.
    [[nodiscard]] Composition& outcome();
    [[nodiscard]] bool duplicated() const;

    /// Texts for the user, in the order they were given.
    [[nodiscard]] const std::vector<std::string>& reports() const;

    [[nodiscard]] HandOuts balance() const;

    /// What the plug-in did that it must not do, in order. Each call among them was refused.
    [[nodiscard]] const std::vector<Misuse>& misuses() const;
    /// Notes among the misuses what is still out, as is done whenever the plug-in gives control back.
    void noteWhatIsOut();

private:
    /// What follows every call into the plug-in.
    void settle();

    std::unique_ptr<HostState> state_;
};

} // namespace jostle::standalone
