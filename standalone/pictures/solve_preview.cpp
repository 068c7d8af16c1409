#include "standalone/pictures/solve_preview.h"

#include <cstdio>
#include <filesystem>
#include <optional>
#include <utility>

#include "persistence/target_file.h"
#include "standalone/commands/load.h"
#include "standalone/commands/solve_batch.h"
#include "standalone/pictures/film.h"

namespace jostle::standalone {

namespace {

std::optional<Refusal> checkPreview(const SolveRequest& request, const std::string& preview,
                                    const PictureOptions& picture, PictureLook& look) {
    if (request.inputs.size() != 1 || !request.sweeps.empty()) {
        return Refusal{"--preview",
                       "goes with one input and without --sweep; \"jostle render\" makes further pictures"};
    }
    if (pictureKind(preview) != PictureKind::Moving) {
        return Refusal{preview, "is no name for a moving picture; give --preview one that ends in .gif"};
    }
    for (const std::string& other :
         {request.inputs.front(), request.options.output.value_or(""), request.options.samples}) {
        if (!other.empty() && checkOutput(other, preview)) {
            return Refusal{preview, "is the input, the result or the samples; give --preview another file"};
        }
    }
    return chooseLook(picture, look);
}

} // namespace

int runWithPreview(SolveRequest request, const std::string& preview, const PictureOptions& picture) {
    if (preview.empty()) {
        return runSolveRequest(request);
    }
    PictureLook look;
    if (const std::optional<Refusal> refusal = checkPreview(request, preview, picture, look)) {
        complain(refusal->about, refusal->message);
        return exitWrongUse;
    }
    if (const std::optional<std::string> error = TargetFile().open(preview)) {
        complain(preview, *error);
        return exitFailed;
    }
    Film film(look, 0);
    request.options.watch = [&film](const Scene& scene, int frame) { film.add(scene, frame); };
    const int status = runSolveRequest(request);
    if (status != exitDone) {
        return status;
    }
    const std::string contents = film.finish();
    if (contents.empty()) {
        complain(preview, film.isEmpty() ? "was not made, as there is nothing to simulate"
                                         : "cannot be made; give a smaller --size");
        return film.isEmpty() ? exitDone : exitFailed;
    }
    TargetFile target;
    std::optional<std::string> error = target.open(preview);
    if (!error) {
        error = target.commit(contents);
    }
    if (error) {
        complain(preview, *error);
        return exitFailed;
    }
    if (!request.options.quiet && !request.options.json) {
        std::printf("%s: the same in %d pictures\n", preview.c_str(), film.pictures());
    }
    return exitDone;
}

} // namespace jostle::standalone
