#include "standalone/commands/json_line.h"

#include <cstdio>

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

namespace jostle::standalone {

void printJsonLine(std::initializer_list<std::pair<const char*, std::string>> texts,
                   std::initializer_list<std::pair<const char*, std::uint64_t>> numbers) {
    rapidjson::StringBuffer buffer;
    rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
    writer.StartObject();
    for (const auto& [name, text] : texts) {
        writer.Key(name);
        writer.String(text.c_str());
    }
    for (const auto& [name, number] : numbers) {
        writer.Key(name);
        writer.Uint64(number);
    }
    writer.EndObject();
    std::printf("%s\n", buffer.GetString());
}

} // namespace jostle::standalone
