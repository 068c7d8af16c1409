#include "standalone/pictures/picture_look.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string_view>
#include <utility>

#include "persistence/user_preferences.h"
#include "preview/preferred_style.h"
#include "standalone/commands/plugin_session.h"
#include "standalone/suites/document_host.h"

namespace jostle::standalone {

namespace {

constexpr int leastSide = 16;
constexpr int greatestSide = 8192;

bool isSide(int pixels) {
    return leastSide <= pixels && pixels <= greatestSide;
}

/// A whole number that takes up all of a text.
template<class Number>
bool parseWhole(std::string_view text, Number& number, int base) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, base);
    return error == std::errc() && end == text.data() + text.size();
}

bool parseSize(std::string_view text, PictureLook& look) {
    if (text.empty()) {
        return true;
    }
    const std::size_t cross = text.find('x');
    if (!parseWhole(text.substr(0, cross), look.width, 10) || !isSide(look.width)) {
        return false;
    }
    return cross == std::string_view::npos ||
           (parseWhole(text.substr(cross + 1), look.height, 10) && isSide(look.height));
}

bool parseColor(std::string_view text, jostle::Rgba& color) {
    if (text == "dark" || text == "light") {
        color = text == "dark" ? DrawStyle().background : jostle::Rgba{244, 244, 244, 255};
        return true;
    }
    if (text.starts_with('#')) {
        text.remove_prefix(1);
    }
    std::uint32_t digits = 0;
    if (text.size() != 6 || !parseWhole(text, digits, 16)) {
        return false;
    }
    color = {static_cast<std::uint8_t>(digits >> 16U), static_cast<std::uint8_t>(digits >> 8U),
             static_cast<std::uint8_t>(digits), 255};
    return true;
}

std::optional<Refusal> turn(const std::vector<std::string>& names, const char* option, bool value,
                            ViewOptions& options) {
    const std::pair<std::string_view, bool*> things[] = {
        {"shapes", &options.shapes},   {"mesh", &options.mesh},     {"boxes", &options.boundingBox},
        {"axes", &options.localAxes},  {"joints", &options.joints}, {"bounds", &options.compBounds},
        {"signs", &options.stateSigns}};
    for (const std::string& name : names) {
        const auto* const found = std::find_if(std::begin(things), std::end(things),
                                               [&name](const auto& thing) { return thing.first == name; });
        if (found == std::end(things)) {
            return Refusal{std::string(option) + " " + name,
                           "is none of shapes, mesh, boxes, axes, joints, bounds, signs"};
        }
        *found->second = value;
    }
    return std::nullopt;
}

/// What the window would take from the store of preferences.
UserPreferences storedPreferences() {
    DocumentHost host(std::make_unique<Composition>(), "", "");
    const UserPreferences preferences = readPreferences({host.basic(), host.pluginId()});
    printReports(host, "preferences");
    return preferences;
}

} // namespace

std::optional<Refusal> chooseLook(const PictureOptions& options, PictureLook& look) {
    if (!parseSize(options.size, look)) {
        return Refusal{"--size " + options.size, "is no size in pixels; give one such as 1280x720 or 640, of " +
                                                     std::to_string(leastSide) + " to " + std::to_string(greatestSide) +
                                                     " on each side"};
    }
    if (!parseColor(options.background, look.style.background)) {
        return Refusal{"--background " + options.background, "is no colour; give dark, light or one such as #20242c"};
    }
    std::optional<Refusal> refusal = turn(options.show, "--show", true, look.options);
    refusal = refusal ? refusal : turn(options.hide, "--hide", false, look.options);
    if (!refusal) {
        applyPreferences(storedPreferences(), look.style);
    }
    return refusal;
}

ViewTransform viewOf(const Scene& scene, const PictureLook& look, int longestSide) {
    ViewTransform view;
    view.compWidth = std::max(scene.compWidth, 1);
    view.compHeight = std::max(scene.compHeight, 1);
    const double longest = longestSide;
    const double width = look.width > 0 ? look.width : longest * std::min(1.0, view.compWidth / view.compHeight);
    const double height = look.height > 0 ? look.height : width * view.compHeight / view.compWidth;
    view.width = std::clamp(std::round(width), double{leastSide}, double{greatestSide});
    view.height = std::clamp(std::round(height), double{leastSide}, double{greatestSide});
    view.fitExactly(std::min(view.width, view.height) / 40.0);
    return view;
}

} // namespace jostle::standalone
