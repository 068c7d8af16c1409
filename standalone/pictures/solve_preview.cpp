#include "standalone/pictures/solve_preview.h"

#include <cstdio>
#include <filesystem>
#include <optional>
#include <utility>

#include "standalone/commands/load.h"
#include "standalone/commands/solve.h"
#include "standalone/commands/target_file.h"
#include "standalone/pictures/film.h"

namespace jostle::standalone {

namespace {

std::optional<Refusal> checkPreview(const SolveOptions& options, const std::string& preview,
                                    const PictureOptions& picture, PictureLook& look) {
    if (pictureKind(preview) != PictureKind::Moving) {
        return Refusal{preview, "is no name for a moving picture; give --preview one that ends in .gif"};
    }
    std::string output;
    if (std::optional<Refusal> refusal = choosePaths(options, output)) {
        return refusal;
    }
    for (const std::string& other : {options.input, output, options.samples}) {
        if (!other.empty() && checkOutput(other, preview)) {
            return Refusal{preview, "is the input, the result or the samples; give --preview another file"};
        }
    }
    return chooseLook(picture, look);
}

} // namespace

int runSolveWithPreview(SolveOptions options, const std::string& preview, const PictureOptions& picture) {
    if (preview.empty()) {
        return runSolve(options);
    }
    PictureLook look;
    if (const std::optional<Refusal> refusal = checkPreview(options, preview, picture, look)) {
        complain(refusal->about, refusal->message);
        return exitWrongUse;
    }
    if (const std::optional<std::string> error = TargetFile().open(preview)) {
        complain(preview, *error);
        return exitFailed;
    }
    Film film(look, 0);
    options.watch = [&film](const Scene& scene, int frame) { film.add(scene, frame); };
    const int status = runSolve(options);
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
    if (!options.quiet && !options.json) {
        std::printf("%s: the same in %d pictures\n", preview.c_str(), film.pictures());
    }
    return exitDone;
}

} // namespace jostle::standalone
