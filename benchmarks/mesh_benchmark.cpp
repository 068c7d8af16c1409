// Meshing against poly2tri alone on the same outlines: what the check, the report of self-crossings and the copying
// add. Arguments: corners of the outline, of which a third as many again are those of a hole.

#include "geometry/outline_check.h"
#include "geometry/polygon_tests.h"
#include "geometry/triangulate.h"

#include <benchmark/benchmark.h>
#include <poly2tri/poly2tri.h>

#include <cmath>
#include <vector>

namespace {

using namespace jostle;

/// A wavy ring about (500, 500), in pixels.
std::vector<b2Vec2> wave(int count, double radius) {
    std::vector<b2Vec2> ring;
    for (int i = 0; i < count; ++i) {
        const double angle = 6.283185307179586 * i / count;
        const double r = radius * (1.0 + 0.2 * std::sin(7.0 * angle) + 0.05 * std::sin(0.37 * i * i));
        ring.emplace_back(static_cast<float>(500.0 + r * std::cos(angle)),
                          static_cast<float>(500.0 + r * std::sin(angle)));
    }
    return ring;
}

std::vector<ShapeDef> outlines(const benchmark::State& state) {
    const int count = static_cast<int>(state.range(0));
    std::vector<ShapeDef> shapes(2);
    shapes[0].verts = wave(count, 400.0);
    shapes[1].verts = wave(count / 3, 100.0);
    return shapes;
}

void reportPoints(benchmark::State& state, const std::vector<ShapeDef>& shapes) {
    state.SetItemsProcessed(state.iterations() * static_cast<int>(shapes[0].verts.size() + shapes[1].verts.size()));
}

/// The library and what one cannot do without: points in its own form, triangles out of it.
void poly2triAlone(benchmark::State& state) {
    const std::vector<ShapeDef> shapes = outlines(state);
    for (auto _ : state) {
        std::vector<std::vector<p2t::Point*>> polylines;
        for (const ShapeDef& shape : shapes) {
            polylines.emplace_back();
            for (const b2Vec2 point : shape.verts) {
                polylines.back().push_back(new p2t::Point(static_cast<double>(point.x), static_cast<double>(point.y)));
            }
        }
        {
            p2t::CDT cdt(polylines[0]);
            cdt.AddHole(polylines[1]);
            cdt.Triangulate();
            benchmark::DoNotOptimize(cdt.GetTriangles());
        }
        for (const std::vector<p2t::Point*>& polyline : polylines) {
            for (p2t::Point* point : polyline) {
                delete point;
            }
        }
    }
    reportPoints(state, shapes);
}

void meshing(benchmark::State& state) {
    const std::vector<ShapeDef> shapes = outlines(state);
    for (auto _ : state) {
        std::vector<Triangle> triangles;
        benchmark::DoNotOptimize(triangulate(shapes, triangles));
        benchmark::DoNotOptimize(triangles);
    }
    reportPoints(state, shapes);
}

void checkAlone(benchmark::State& state) {
    const std::vector<ShapeDef> shapes = outlines(state);
    const std::vector<Ring> rings = {shapes[0].verts, shapes[1].verts};
    for (auto _ : state) {
        const std::vector<std::vector<b2Vec2>> rounded = roundForTriangulation(rings);
        benchmark::DoNotOptimize(isProperPolygon(std::vector<Ring>(rounded.begin(), rounded.end())));
    }
    reportPoints(state, shapes);
}

void selfCrossingAlone(benchmark::State& state) {
    const std::vector<ShapeDef> shapes = outlines(state);
    for (auto _ : state) {
        benchmark::DoNotOptimize(isSelfIntersecting(shapes[0].verts) || isSelfIntersecting(shapes[1].verts));
    }
    reportPoints(state, shapes);
}

BENCHMARK(poly2triAlone)->Arg(30)->Arg(120)->Arg(300)->Arg(600)->Arg(3000)->Arg(20000);
BENCHMARK(meshing)->Arg(30)->Arg(120)->Arg(300)->Arg(600)->Arg(3000)->Arg(20000);
BENCHMARK(checkAlone)->Arg(30)->Arg(120)->Arg(300)->Arg(600)->Arg(3000)->Arg(20000);
BENCHMARK(selfCrossingAlone)->Arg(30)->Arg(120)->Arg(300)->Arg(600)->Arg(3000)->Arg(20000);

} // namespace

BENCHMARK_MAIN();
