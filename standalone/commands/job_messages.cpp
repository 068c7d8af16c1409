#include "standalone/commands/job_messages.h"

#include <algorithm>
#include <cstdio>

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include "standalone/document/printable.h"

namespace jostle::standalone {

namespace {

constexpr std::string_view program = "jostle: ";

/// Takes a beginning off a text, if it has it.
bool takeOff(std::string_view& text, std::string_view beginning) {
    if (!text.starts_with(beginning)) {
        return false;
    }
    text.remove_prefix(beginning.size());
    return true;
}

} // namespace

std::string namedLines(std::string_view lines, std::string_view name) {
    const std::string named = std::string(program) + printable(name) + ": ";
    std::string text;
    while (!lines.empty()) {
        std::string_view line = lines.substr(0, lines.find('\n'));
        lines.remove_prefix(std::min(line.size() + 1, lines.size()));
        if (!takeOff(line, named)) {
            (void)takeOff(line, program);
        }
        text.append(named).append(line).append("\n");
    }
    return text;
}

std::string reasonOf(const JobOutcome& outcome, std::string_view name) {
    if (!outcome.started && outcome.err.empty()) {
        return "interrupted before its turn";
    }
    std::string_view lines = outcome.err;
    while (lines.ends_with('\n')) {
        lines.remove_suffix(1);
    }
    lines.remove_prefix(lines.rfind('\n') + 1); // 0 if there is none before
    (void)takeOff(lines, program);
    (void)takeOff(lines, printable(name) + ": ");
    return std::string(lines);
}

void printLines(const std::string& lines) {
    std::fwrite(lines.data(), 1, lines.size(), stderr);
    std::fflush(stderr);
}

std::string jsonString(std::string_view text) {
    rapidjson::StringBuffer buffer;
    rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
    writer.String(text.data(), static_cast<rapidjson::SizeType>(text.size()));
    return buffer.GetString();
}

std::string_view withoutLineEnd(std::string_view text) {
    while (text.ends_with('\n')) {
        text.remove_suffix(1);
    }
    return text;
}

} // namespace jostle::standalone
