// Reads arbitrary bytes as a Lottie document. What reads must evaluate, import, write back to the byte, and read again
// after an edit. Start from tests/data/lottie as the corpus.

#include <cstdlib>
#include <string>

#include "host/layer_import.h"
#include "standalone/document/evaluate.h"
#include "standalone/lottie/reader.h"
#include "standalone/lottie/writer.h"
#include "standalone/suites/document_host.h"

namespace {

using namespace jostle;
using namespace jostle::standalone;

void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

void evaluateAll(const standalone::Composition& composition) {
    for (const auto& layer : composition.layers) {
        for (const double frame : {-1.0, 0.0, 0.5, 17.0, 1e6}) {
            (void)worldMatrix(*layer, frame);
        }
    }
}

void editAndReadAgain(const LottieSource& source, standalone::Composition& composition) {
    for (const auto& layer : composition.layers) {
        Stream& position = layer->transform.separated ? layer->transform.positionX : layer->transform.position;
        position.keys.frames = {0, 1};
        position.keys.values.assign(2 * static_cast<std::size_t>(position.components), 1.5);
        position.keys.segments.clear();
        position.changed = true;
    }
    const ReadResult again = readLottie(writeLottie(source, composition), "edited");
    require(static_cast<bool>(again));
    require(again.composition->layers.size() == composition.layers.size());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    ReadResult read = readLottie(std::string(reinterpret_cast<const char*>(data), size), "input");
    if (!read) {
        require(!read.error.empty());
        return 0;
    }
    evaluateAll(*read.composition);
    require(writeLottie(*read.source, *read.composition) == read.source->text);
    DocumentHost host(std::move(read.composition), "input", "");
    Scene scene;
    (void)initFromComposition({host.basic(), host.pluginId()}, scene);
    require(host.balance().allReturned());
    editAndReadAgain(*read.source, host.outcome());
    return 0;
}
