#pragma once

#include "host/chain.h"
#include "host/import_report.h"
#include "simulation/scene.h"

#include <functional>

namespace jostle {

/// What is done with the scene as read from the host, before it is shown; false calls the window off.
using PrepareScene = std::function<bool(Scene& scene, const ImportReport& report)>;

enum class LaunchOutcome {
    Closed,    ///< the window was shown, and its user has closed it
    NotRead,   ///< the host did not tell about its layers
    CalledOff, ///< by the preparation
};

/// Reads the host's active composition and shows it in the main window. Comes back when the window has been closed;
/// nothing of the host is held then.
///
/// Makes the application object if there is none. [user-interface thread]
[[nodiscard]] LaunchOutcome launch(const HostContext& context, const PrepareScene& prepare);

} // namespace jostle
