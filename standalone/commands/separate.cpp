#include "standalone/commands/separate.h"

#include <cstdio>

#include "persistence/target_file.h"
#include "standalone/commands/load.h"
#include "standalone/commands/message_printer.h"
#include "standalone/commands/plugin_session.h"
#include "standalone/commands/result.h"
#include "standalone/commands/solve_plan.h"

namespace jostle::standalone {

namespace {

void printSummary(const SeparateOptions& options, const std::string& output, const SeparationReport& report) {
    if (options.quiet) {
        return;
    }
    if (report.layersMade == 0) {
        std::printf("%s: no layer has several masks or groups, so it is the input as it was\n", output.c_str());
        return;
    }
    std::printf("%s: %d %s separated into %d\n", output.c_str(), report.layersSeparated,
                report.layersSeparated == 1 ? "layer" : "layers", report.layersMade);
}

} // namespace

SeparationReport separateAll(const HostContext& context, MessageSink* messages) {
    return separateLayers(context, findSeparableLayers(context), messages, {});
}

void printUnmasked(const SeparationReport& report, const std::string& input) {
    for (const UnmaskedParts& parts : report.unmasked) {
        complain(input, "the groups of layer " + std::to_string(parts.layerIndex + 1) + " \"" + parts.layerName +
                            "\" are separated without its " + (parts.masks == 1 ? "mask" : "masks"));
    }
}

int runSeparate(const SeparateOptions& options) {
    const std::string output = options.output.value_or(besideInput(options.input, "-separated"));
    if (const std::optional<Refusal> refusal = checkOutput(options.input, output)) {
        return refuse(*refusal);
    }
    std::optional<LoadedDocument> document = loadDocument(options.input, options.animation);
    if (!document) {
        return exitFailed;
    }
    TargetFile target;
    if (const std::optional<std::string> error = target.open(output)) {
        return fail({output, *error});
    }
    DocumentHost host = hostOf(*document);
    MessagePrinter messages(options.input);
    SeparationReport report;
    if (!runPlugin(host, options.input,
                   [&](const HostContext& context) { report = separateAll(context, &messages); })) {
        return exitFailed;
    }
    if (report.error != A_Err_NONE) {
        return fail({options.input, "the layers cannot be separated (host error " + std::to_string(report.error) +
                                        "); nothing was saved"});
    }
    if (const std::optional<Refusal> refusal = writeResult(*document, host, output, target)) {
        return fail(*refusal);
    }
    if (const std::optional<std::string> error = target.commit()) {
        return fail({output, *error});
    }
    if (!options.quiet) {
        printReports(host, options.input);
        printUnmasked(report, options.input);
    }
    printSummary(options, output, report);
    return exitDone;
}

} // namespace jostle::standalone
