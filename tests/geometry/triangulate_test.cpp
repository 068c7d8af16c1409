#include "geometry/triangulate.h"

#include "geometry/outline_check.h"
#include "tests/support/even_odd_area.h"

#include <gtest/gtest.h>
#include <poly2tri/poly2tri.h>

#include <algorithm>
#include <cmath>
#include <deque>
#include <initializer_list>
#include <limits>
#include <tuple>
#include <vector>

namespace jostle {
namespace {

using Outline = std::vector<b2Vec2>;

Outline square(float lower, float upper) {
    return {{lower, lower}, {upper, lower}, {upper, upper}, {lower, upper}};
}

/// From x, y, x, y, ...
Outline points(std::initializer_list<float> numbers) {
    Outline outline;
    for (auto it = numbers.begin(); it != numbers.end(); it += 2) {
        outline.emplace_back(it[0], it[1]);
    }
    return outline;
}

struct Mesh {
    std::vector<Triangle> triangles;
    bool failed = false;
    double area = 0.0;
};

Mesh meshOf(const std::vector<Outline>& outlines) {
    std::vector<ShapeDef> shapes;
    for (const Outline& outline : outlines) {
        shapes.emplace_back().verts = outline;
    }
    Mesh mesh;
    mesh.failed = triangulate(shapes, mesh.triangles);
    for (const Triangle& t : mesh.triangles) {
        mesh.area += std::abs(orientation(t[0], t[1], t[2])) / 2.0;
    }
    return mesh;
}

TEST(Triangulate, decidesHolesByTheFirstCorner) {
    const Outline bowTie = {{0, 0}, {40, 40}, {40, 0}, {0, 40}};
    const Outline broken = {{0, 0}, {std::nanf(""), 5}, {40, 0}, {40, 40}, {0, 40}};
    const Outline touching = {{40, 20}, {20, 5}, {5, 20}, {20, 35}}; // diagonals 35 and 30
    // The first corner lies left of all of the triangle by 1e-10, which is lost where the edge at its height is worked
    // out: 10 + 30 * (1e-9 - 10) / 30 is 0.
    const std::vector<Outline> byRounding = {points({10, 0, 1e-9f, 30, 20, 30}), points({0.9e-9f, 30, 10, 20, 10, 28})};
    const std::vector<Outline> cross = {points({0, 10, 40, 10, 40, 20, 0, 20}), points({10, 0, 20, 0, 20, 40, 10, 40})};
    const std::vector<Outline> overlap = {{{30, 30}, {0, 30}, {0, 0}, {30, 0}}, square(20, 50)};
    const std::tuple<const char*, double, bool, std::vector<Outline>> cases[] = {
        {"one without points", 0, false, {{}}},
        {"a ring, the hole first", 1200, false, {square(10, 30), square(0, 40)}},
        {"an island, innermost first", 1200, false, {square(15, 25), square(10, 30), square(0, 40)}},
        {"two that cross, the first corners apart", 800, false, cross},
        {"two with their first corners in each other", 0, false, overlap},
        // Odd winding: the triangle above the crossing and the one below, 40 by 20 by a half each.
        {"a bow tie beside a square is tried and reported", 900, true, {bowTie, square(50, 60)}},
        {"a line has no area", 100, true, {{{0, 0}, {20, 0}, {40, 0}}, square(50, 60)}},
        {"a point, three times", 0, true, {{{5, 5}, {5, 5}, {5, 5}}}},
        {"a spike", 1600, false, {{{0, 0}, {40, 0}, {40, 40}, {20, 40}, {20, 60}, {20, 40}, {0, 40}}}},
        // The part of the hole outside, 10 by 20, is enclosed once and so is filled.
        {"a hole that leaves", 1400, false, {square(0, 40), {{20, 10}, {50, 10}, {50, 30}, {20, 30}}}},
        {"a hole in an outline with a point that is no number", 1200, false, {broken, square(10, 30)}},
        {"a hole with its first corner inside by rounding", 260, false, byRounding},
        {"two holes that coincide cancel out", 1600, false, {square(0, 40), square(10, 30), square(10, 30)}},
        {"an island in a hole that touches", 1075, false, {square(0, 40), touching, square(15, 25)}},
    };
    for (const auto& [name, area, failed, outlines] : cases) {
        SCOPED_TRACE(name);
        const Mesh mesh = meshOf(outlines);
        EXPECT_NEAR(mesh.area, area, 1e-3);
        EXPECT_EQ(mesh.failed, failed);
    }
}

std::vector<Triangle> trianglesOfTheLibrary(const Outline& outline) {
    std::deque<p2t::Point> points;
    std::vector<p2t::Point*> polyline;
    for (const b2Vec2 point : outline) {
        polyline.push_back(&points.emplace_back(static_cast<double>(point.x), static_cast<double>(point.y)));
    }
    p2t::CDT cdt(polyline);
    cdt.Triangulate();
    const auto corner = [](const p2t::Point* p) { return b2Vec2(static_cast<float>(p->x), static_cast<float>(p->y)); };
    std::vector<Triangle> triangles;
    for (p2t::Triangle* t : cdt.GetTriangles()) {
        triangles.push_back({corner(t->GetPoint(0)), corner(t->GetPoint(1)), corner(t->GetPoint(2))});
    }
    return triangles;
}

/// A gear: corners alternate between two radii, or keep one. They are so many steps of a full turn apart.
Outline gear(int count, double inner, double outer, int step = 1) {
    Outline outline;
    for (int i = 0; i < count; ++i) {
        const double angle = 6.283185307179586 * (i * step % count) / count;
        const double radius = i % 2 == 0 ? outer : inner;
        outline.emplace_back(static_cast<float>(radius * std::cos(angle)),
                             static_cast<float>(radius * std::sin(angle)));
    }
    return outline;
}

TEST(Triangulate, leavesTheLibrarysTrianglesAsTheyAre) {
    const Outline outlines[] = {square(0, 40), gear(24, 50, 50), gear(40, 20, 50),
                                points({0, 0, 10, 0, 20, 0, 30, 0, 30, 10, 30, 20, 15, 20, 0, 20})};
    for (const Outline& outline : outlines) {
        EXPECT_EQ(meshOf({outline}).triangles, trianglesOfTheLibrary(outline));
        EXPECT_EQ(meshOf({outline}).triangles.size(), outline.size() - 2);
    }
}

TEST(Triangulate, survivesWhatTheLibraryDoesNot) {
    const float inf = std::numeric_limits<float>::infinity();
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const std::tuple<const char*, Outline, bool> cases[] = {
        {"a corner of more than 180 degrees in the advancing front",
         points({74.0910034f, -87.6598587f, 87.0555649f, -81.739418f, 78.0735016f, -77.9495316f, 78.2568359f,
                 -76.6283264f, 77.9394302f, -77.9393311f, 76.3564606f, -71.542984f, 77.9389572f, -77.9383163f,
                 73.88694f, -74.7634277f}),
         true},
        {"columns of points that differ by less than the library's tolerance",
         points({0, 0, -9344, 8.12753109e-44f, 7.88366069e-16f, -25388.8867f, 30, 60}), true},
        {"a spike of 196,862 pixels without area, among edges of all scales",
         // clang-format off
         points({0, 2.35098898e-38f, 40, 130, 0, 2.35098898e-38f, 150, 150, -1.40129846e-45f, 2.35098898e-38f, 150,
                 150, 1.54254935e-41f, 3.58732407e-43f, 1.54240922e-41f, 3.58732407e-43f, 70, 60, 40, 10, 40, 130,
                 70, 60, 40, 10, 10, -40, 39.9999962f, 10, 3.00392151f, 3.00392151f, 3.00392151f, 196865,
                 3.00392151f, 3.00392151f, 3.00392342f, 3.00392151f, 3.00392151f, 3.00440979f, 70, 60, 40, 10, 10,
                 -40, -20, -90}),
         // clang-format on
         true},
        {"a sliver beyond all rounding",
         points({9.77634253e+30f, 2.80498274e+11f, 20, 0, 30, 30, 30, 60, 0, 0, -533.234619f, -8.92980996e+21f}),
         false},
        {"an edge that runs along the closing one",
         points({0,           0,           8.14814854f, 15.3703699f, 28.5185184f, 22.9629612f, 55,          25,
                 81.4814758f, 23.7036972f, 101.85186f,  21.2963028f, 110,         20,          141.064819f, 23.5648155f,
                 171.851852f, 38.5185204f, 198.75f,     56.25f,      218.148148f, 68.1481552f, 226.435181f, 65.6018524f,
                 220,         40,          330,         60,          381.203705f, 52.4537048f, 409.629639f, 42.9629631f,
                 422.5f,      36.25f,      427.037048f, 37.0370407f, 430.462952f, 50.0463028f, 440,         80}),
         true},
        {"a millionth of a pixel", points({0, 0, 1e-6f, 0, 1e-6f, 1e-6f, 0, 1e-6f}), true},
        {"points that are not finite are left out", points({0, 0, nan, 5, 9, 0, 9, inf, 9, 9, -inf, nan}), true},
        {"nothing finite", points({nan, 0, 0, nan, inf, inf}), false},
    };
    for (const auto& [name, outline, hasTriangles] : cases) {
        SCOPED_TRACE(name);
        const Mesh mesh = meshOf({outline});
        EXPECT_EQ(!mesh.triangles.empty(), hasTriangles);
        EXPECT_TRUE(std::isfinite(mesh.area));
        const Ring ring = outline;
        if (std::all_of(ring.begin(), ring.end(), [](b2Vec2 p) { return p.Length() < 1e6f; })) {
            EXPECT_NEAR(mesh.area, evenOddArea({&ring, 1}), 0.1);
        }
    }
}

TEST(Triangulate, scribblesBeyondAllMeasureAreRefusedButNotRepeats) {
    // 301 corners of a circle, each joined to the one almost opposite: all 301 * 298 / 2 pairs cross.
    const Outline star = gear(301, 500, 500, 150);
    Outline zigzag; // there and back: 10,000 spikes whose tips cross, which took the tessellator half a minute
    for (int i = 0; i < 20'000; ++i) {
        const int tooth = i < 10'000 ? i : 19'999 - i;
        const float back = i < 10'000 ? 0.0f : 1.0f;
        zigzag.emplace_back(static_cast<float>(tooth) * 0.1f + back * 0.02f,
                            (tooth % 2 == 0 ? -2000.0f : -1000.0f) + back * 10.0f);
    }
    for (const Outline& scribble : {star, zigzag}) {
        const Mesh mesh = meshOf({scribble, square(600, 610)});
        EXPECT_TRUE(mesh.failed);
        EXPECT_NEAR(mesh.area, 100.0, 1e-3) << "the other outline keeps its triangles";
    }
    Outline twice; // a circle, of more points than the tessellator takes with as many turns
    for (const b2Vec2 point : gear(16'000, 1000, 1000)) {
        twice.insert(twice.end(), 2, point);
    }
    EXPECT_NEAR(meshOf({twice}).area, 3.14159265e6, 10.0);
}

TEST(OutlineCheck, signsAreExact) {
    // On y = x / 3 at scales that 64 bits cannot hold at once, and beside it by one last place.
    const b2Vec2 far = {3e15f, 1e15f};
    const b2Vec2 on = {far.x / 0x1p60f, far.y / 0x1p60f};
    EXPECT_EQ(orientation({0, 0}, far, on), 0.0);
    EXPECT_GT(orientation({0, 0}, far, {on.x, std::nextafter(on.y, 1.0f)}), 0.0);
    EXPECT_LT(orientation({0, 0}, far, {on.x, std::nextafter(on.y, 0.0f)}), 0.0);
}

TEST(OutlineCheck, knowsProperPolygons) {
    const std::tuple<const char*, std::vector<Outline>, bool> cases[] = {
        {"a hole", {square(0, 40), square(10, 30)}, true},
        {"a hole in a hole", {square(0, 40), square(10, 30), square(15, 25)}, true},
        {"a hole outside", {square(0, 40), square(50, 60)}, false},
        {"a hole around", {square(10, 30), square(0, 40)}, false},
        {"an edge through a corner", {{{0, 0}, {40, 0}, {20, 20}, {40, 40}, {0, 40}, {20, 20}}}, false},
        {"vertical edges that overlap", {{{0, 0}, {10, 0}, {10, 30}, {10, 10}, {0, 10}}}, false},
        {"a crossing in the midst", {{{0, 0}, {40, 0}, {40, 40}, {20, -10}, {0, 40}}}, false},
        {"points along the edges", {{{0, 0}, {20, 0}, {40, 0}, {40, 20}, {40, 40}, {0, 40}, {0, 10}}}, true},
    };
    for (const auto& [name, outlines, isProper] : cases) {
        EXPECT_EQ(isProperPolygon(std::vector<Ring>(outlines.begin(), outlines.end())), isProper) << name;
    }
    Outline comb; // with its teeth on their sides: all tips stand in one column and all roots in another
    for (int i = 0; i < 4000; ++i) {
        comb.emplace_back(0.1f, static_cast<float>(i) * 0.2f);
        comb.emplace_back(1000.1f, static_cast<float>(i) * 0.2f + 0.1f);
    }
    comb.emplace_back(2000.0f, 800.0f);
    comb.emplace_back(2000.0f, 0.0f);
    EXPECT_TRUE(isProperPolygon(std::vector<Ring>{comb}));
}

} // namespace
} // namespace jostle
