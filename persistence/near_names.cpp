#include "persistence/near_names.h"

#include <algorithm>
#include <numeric>

namespace jostle {

namespace {

char lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

std::size_t editDistance(std::string_view a, std::string_view b) {
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < a.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i + 1;
        for (std::size_t j = 0; j < b.size(); ++j) {
            const std::size_t replaced = diagonal + (lower(a[i]) == lower(b[j]) ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({replaced, row[j] + 1, row[j + 1] + 1});
        }
    }
    return row.back();
}

bool beginsAlike(std::string_view a, std::string_view b) {
    const std::size_t length = std::min(a.size(), b.size());
    return length >= 3 && equalWithoutCase(a.substr(0, length), b.substr(0, length));
}

} // namespace

bool equalWithoutCase(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) { return lower(x) == lower(y); });
}

std::vector<std::string> nearNames(std::string_view name, std::span<const std::string> candidates) {
    struct Near {
        std::size_t distance;
        std::string name;
    };
    constexpr std::size_t longestName = 200; // the table is quadratic, and nobody types more
    constexpr std::size_t most = 3;
    std::vector<Near> found;
    for (const std::string& candidate : candidates) {
        if (candidate.size() > longestName || name.size() > longestName) {
            continue;
        }
        const std::size_t distance = editDistance(name, candidate);
        if ((distance <= name.size() / 3 + 1 && distance < name.size()) || beginsAlike(name, candidate)) {
            found.push_back({distance, candidate});
        }
    }
    std::stable_sort(found.begin(), found.end(), [](const Near& a, const Near& b) { return a.distance < b.distance; });
    std::vector<std::string> names;
    for (Near& near : found) {
        if (names.size() < most && std::find(names.begin(), names.end(), near.name) == names.end()) {
            names.push_back(std::move(near.name));
        }
    }
    return names;
}

} // namespace jostle
