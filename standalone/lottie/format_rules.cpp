#include "standalone/lottie/format_rules.h"

#include <array>
#include <charconv>
#include <limits>
#include <string>

#include "standalone/lottie/fields.h"

namespace jostle::standalone {

namespace {

using Version = std::array<int, 3>;

/// The three numbers of "5.7.4"; what is none counts as newest.
Version versionFrom(const JsonValue& value) {
    constexpr int newest = std::numeric_limits<int>::max();
    Version version{newest, newest, newest};
    const std::string text = value.string();
    const char* at = text.data();
    const char* const end = at + text.size();
    for (int& number : version) {
        const auto [after, error] = std::from_chars(at, end, number);
        if (error != std::errc{})
            return {newest, newest, newest};
        at = after < end && *after == '.' ? after + 1 : after;
    }
    return version;
}

} // namespace

FormatRules formatRules(const JsonValue& root) {
    DocumentMembers members;
    readFields(documentFields, root, members);
    const Version version = versionFrom(members.version);
    return {version < Version{4, 1, 9}, version < Version{4, 4, 18}, members.complete.flag()};
}

} // namespace jostle::standalone
