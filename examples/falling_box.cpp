// A box of one metre falls onto a floor: fill a scene, run its clock, print where the box is.

#include "simulation/simulation_clock.h"

#include <box2d/b2_body.h>

#include <charconv>
#include <iostream>
#include <string_view>

namespace {

void print(std::string_view label, float value) {
    char digits[32];
    const auto end = std::to_chars(digits, digits + sizeof digits, value, std::chars_format::fixed, 2).ptr;
    std::cout << label << std::string_view(digits, static_cast<std::size_t>(end - digits));
}

/// A body that is a box, in metres, about its position.
jostle::BodyRecord box(b2Vec2 position, float width, float height) {
    jostle::ShapeDef shape;
    const float x = width / 2.0f;
    const float y = height / 2.0f;
    shape.verts = {{-x, -y}, {x, -y}, {x, y}, {-x, y}};
    jostle::BodyRecord record;
    record.isBox = true;
    record.outlines = {{shape}};
    record.position = position;
    record.outPoint = 1000; // frames
    return record;
}

} // namespace

int main() {
    jostle::Scene scene; // of 25 frames per second
    scene.bodies.push_back(box({0.0f, -2.0f}, 1.0f, 1.0f));
    scene.bodies.back().angle = 0.5f;
    scene.bodies.push_back(box({0.0f, 4.0f}, 20.0f, 1.0f));
    scene.bodies.back().type = jostle::BodyType::Static;

    jostle::StillLayers layers;
    jostle::FreePacer pacer;
    jostle::SimulationClock clock(scene, layers, pacer);
    clock.playFromStart();
    while (clock.frame() <= 50) {
        if (clock.frame() % 5 == 0) {
            const b2Body& body = *scene.bodies[0].body;
            std::cout << "frame " << clock.frame();
            print("  y ", body.GetPosition().y);
            print(" m  angle ", jostle::radiansToDegrees(body.GetAngle()));
            std::cout << " degrees\n";
        }
        clock.tick();
    }
}
