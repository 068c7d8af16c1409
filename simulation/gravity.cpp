#include "simulation/gravity.h"

#include "simulation/numbers.h"

namespace jostle {

b2Vec2 panelGravity(const GlobalProperties& globals) {
    return polarVector(static_cast<float>(globals.magnitude), static_cast<float>(globals.direction));
}

b2Vec2 currentGravity(const GlobalProperties& globals, LayerMotion& layers, double simTime) {
    return globals.takeValueFrom ? bounded(layers.gravity(globals.layerIndex, simTime)) : panelGravity(globals);
}

} // namespace jostle
