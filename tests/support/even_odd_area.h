#pragma once

#include <box2d/b2_math.h>

#include <algorithm>
#include <cstddef>
#include <span>
#include <utility>
#include <vector>

namespace jostle {

/// Area that closed outlines of finite points enclose an odd number of times, worked out without any triangles: columns
/// between all corners and crossings hold only trapezoids. Cost grows with the square of the corners, times crossings.
inline double evenOddArea(std::span<const std::span<const b2Vec2>> rings) {
    struct Edge {
        double x0, y0, x1, y1; // from left to right
        [[nodiscard]] double at(double x) const { return y0 + (y1 - y0) * ((x - x0) / (x1 - x0)); }
    };
    std::vector<Edge> edges;
    std::vector<double> columns;
    for (const std::span<const b2Vec2> ring : rings) {
        for (std::size_t i = 0; i < ring.size(); ++i) {
            b2Vec2 a = ring[i];
            b2Vec2 b = ring[(i + 1) % ring.size()];
            columns.push_back(static_cast<double>(a.x));
            if (b.x < a.x) {
                std::swap(a, b);
            }
            if (a.x < b.x) {
                edges.push_back({static_cast<double>(a.x), static_cast<double>(a.y), static_cast<double>(b.x),
                                 static_cast<double>(b.y)});
            }
        }
    }
    for (const Edge& a : edges) {
        for (const Edge& b : edges) {
            const double left = std::max(a.x0, b.x0);
            const double right = std::min(a.x1, b.x1);
            const double before = a.at(left) - b.at(left);
            const double after = a.at(right) - b.at(right);
            if (left < right && before * after < 0.0) {
                columns.push_back(left + (right - left) * (before / (before - after)));
            }
        }
    }
    std::sort(columns.begin(), columns.end());
    double area = 0.0;
    std::vector<double> heights;
    for (std::size_t i = 1; i < columns.size(); ++i) {
        const double middle = (columns[i - 1] + columns[i]) / 2.0;
        heights.clear();
        for (const Edge& edge : edges) {
            if (edge.x0 < middle && middle < edge.x1) {
                heights.push_back(edge.at(middle));
            }
        }
        std::sort(heights.begin(), heights.end());
        for (std::size_t k = 0; k + 1 < heights.size(); k += 2) {
            area += (heights[k + 1] - heights[k]) * (columns[i] - columns[i - 1]);
        }
    }
    return area;
}

} // namespace jostle
