#pragma once

#include <box2d/box2d.h>

#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

/// A world that is built and driven by rule, so that two builds of the engine can be held against each other.
class EngineScene {
public:
    EngineScene() = default;
    EngineScene(const EngineScene&) = delete;
    EngineScene& operator=(const EngineScene&) = delete;
    virtual ~EngineScene() = default;

    /// Moves the world on by one frame of 1/60 s in two steps.
    virtual void advance();

    /// A hash over the bits of all positions, angles and velocities, of what sleeps, and of what the scene's listener
    /// has heard.
    [[nodiscard]] virtual std::uint64_t hash() const;

protected:
    b2World world_{b2Vec2(0.0f, -10.0f)};
};

/// Names of all scenes.
[[nodiscard]] const std::vector<std::string_view>& engineSceneNames();

/// The scene of that name, or null. `size` of 100 is the full one; smaller ones have that many hundredths of its
/// bodies. The engine's tolerances must be set before.
[[nodiscard]] std::unique_ptr<EngineScene> makeEngineScene(std::string_view name, int size);
