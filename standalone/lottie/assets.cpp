#include "standalone/lottie/assets.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace jostle::standalone {

namespace {

constexpr std::size_t nowhere = static_cast<std::size_t>(-1);

/// A size in pixels; 0 for what is none.
int pixels(double size) {
    return static_cast<int>(std::lround(std::clamp(size, 0.0, 1e9)));
}

} // namespace

Rgba colourFromHex(std::string_view hex) {
    std::uint32_t code = 0;
    if (hex.empty() || hex.front() != '#')
        return {1, 1, 1, 1};
    hex.remove_prefix(1);
    const auto [end, error] = std::from_chars(hex.data(), hex.data() + hex.size(), code, 16);
    if (error != std::errc{} || end != hex.data() + hex.size())
        return {1, 1, 1, 1};
    if (hex.size() == 3)
        return {(code >> 8) / 15.0, (code >> 4 & 15) / 15.0, (code & 15) / 15.0, 1};
    if (hex.size() == 8)
        code >>= 8;
    else if (hex.size() != 6)
        return {1, 1, 1, 1};
    return {(code >> 16) / 255.0, (code >> 8 & 255) / 255.0, (code & 255) / 255.0, 1};
}

AssetTable::AssetTable(const JsonValue& assets) {
    if (!assets.isArray())
        return;
    forEachChild(assets, [&](const JsonValue& object) {
        AssetMembers asset;
        readFields(assetFields, object, asset);
        if (asset.id.type() == JsonType::String)
            indices_.emplace(asset.id.string(), assets_.size());
        assets_.push_back(asset);
    });
    findEndless();
}

// Takes away what refers to nothing that is left, again and again; what cannot be taken away is endless.
void AssetTable::findEndless() {
    std::vector<std::vector<std::size_t>> users(assets_.size());
    std::vector<std::size_t> pending(assets_.size(), 0);
    for (std::size_t user = 0; user < assets_.size(); ++user) {
        if (!assets_[user].layers.isArray())
            continue;
        forEachChild(assets_[user].layers, [&](const JsonValue& layer) {
            if (const std::size_t used = indexOf(layer["refId"]); used != nowhere) {
                users[used].push_back(user);
                ++pending[user];
            }
        });
    }
    std::vector<std::size_t> done;
    for (std::size_t asset = 0; asset < assets_.size(); ++asset) {
        if (pending[asset] == 0)
            done.push_back(asset);
    }
    endless_.assign(assets_.size(), true);
    while (!done.empty()) {
        const std::size_t asset = done.back();
        done.pop_back();
        endless_[asset] = false;
        for (const std::size_t user : users[asset]) {
            if (--pending[user] == 0)
                done.push_back(user);
        }
    }
}

std::size_t AssetTable::indexOf(const JsonValue& reference) const {
    if (reference.type() != JsonType::String)
        return nowhere;
    const auto found = indices_.find(reference.string());
    return found == indices_.end() ? nowhere : found->second;
}

std::shared_ptr<const Item> AssetTable::shared(std::size_t asset, Item item) {
    auto& known = shared_[{asset, item.width, item.height}];
    if (!known)
        known = std::make_shared<const Item>(std::move(item));
    return known;
}

std::shared_ptr<const Item> AssetTable::itemOf(const JsonValue& layer, LayerKind kind) {
    Item item;
    switch (kind) {
    case LayerKind::Shape:
    case LayerKind::Text:
    case LayerKind::Camera:
    case LayerKind::Light:
        return nullptr;
    case LayerKind::Null:
    case LayerKind::Guide:
        item.width = item.height = 100;
        break;
    case LayerKind::Solid:
    case LayerKind::Adjustment:
        item.isSolid = kind == LayerKind::Solid;
        item.name = item.isSolid ? "Solid" : "";
        item.width = pixels(layer["sw"].number(0));
        item.height = pixels(layer["sh"].number(0));
        item.solidColor = colourFromHex(layer["sc"].string());
        break;
    default: {
        if (kind == LayerKind::Precomposition)
            item.kind = Item::Kind::Composition;
        const std::size_t index = indexOf(layer["refId"]);
        if (index == nowhere)
            break;
        const AssetMembers& asset = assets_[index];
        item.name = asset.name.string(asset.id.string());
        const bool composition = kind == LayerKind::Precomposition;
        const bool sized = kind != LayerKind::Audio && kind != LayerKind::Data && kind != LayerKind::Unknown;
        if (sized && !endless_[index]) {
            item.width = pixels(composition ? layer["w"].number(0) : asset.width);
            item.height = pixels(composition ? layer["h"].number(0) : asset.height);
        }
        return shared(index, std::move(item));
    }
    }
    return std::make_shared<const Item>(std::move(item));
}

} // namespace jostle::standalone
