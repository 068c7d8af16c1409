#pragma once

#include "persistence/user_preferences.h"
#include "preview/draw_style.h"

namespace jostle {

/// Gives a style the colours and widths that the user prefers. What is no matter of preferences, such as the
/// background, stays.
void applyPreferences(const UserPreferences& preferences, DrawStyle& style);

} // namespace jostle
