// A box of one metre falls onto a floor: fill a scene, run its clock, print where the box is.

#include "simulation/simulation_clock.h"
#include "tests/support/scenes.h"

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

} // namespace

int main() {
    jostle::Scene scene = jostle::emptyScene(25);
    jostle::addBox(scene, {0.0f, -2.0f}, 1.0f, 1.0f).angle = 0.5f;
    jostle::addBox(scene, {0.0f, 4.0f}, 20.0f, 1.0f, jostle::BodyType::Static);

    jostle::StillLayers layers;
    jostle::FreePacer pacer;
    jostle::SimulationClock clock(scene, layers, pacer);
    clock.playFromStart();
    while (clock.frame() <= 50) {
        if (clock.frame() % 5 == 0) {
            const b2Body& box = *scene.bodies[0].body;
            std::cout << "frame " << clock.frame();
            print("  y ", box.GetPosition().y);
            print(" m  angle ", jostle::radiansToDegrees(box.GetAngle()));
            std::cout << " degrees\n";
        }
        clock.tick();
    }
}
