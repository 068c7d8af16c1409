// Builds outlines of all kinds from arbitrary bytes, flattens and assembles them. Nothing may crash or hang, and no
// triangle may have a corner that is not finite. Triangles must cover what one or two outlines enclose an odd number
// of times; those of one proper outline lie within it and do not overlap, which is so if each lies within and the sum
// of their areas is the outline's.

#include "geometry/assemble.h"
#include "geometry/convex_hull.h"
#include "geometry/outline.h"
#include "geometry/outline_check.h"
#include "geometry/polygon_tests.h"
#include "geometry/primitives.h"
#include "geometry/triangulate.h"
#include "tests/support/even_odd_area.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <vector>

namespace {

using namespace jostle;

void require(bool holds, const char* what) {
    if (!holds) {
        std::fprintf(stderr, "does not hold: %s\n", what);
        std::abort();
    }
}

class Bytes {
public:
    Bytes(const std::uint8_t* bytes, std::size_t size) : at_(bytes), end_(bytes + size) {}

    [[nodiscard]] bool isEmpty() const { return at_ == end_; }

    std::uint8_t byte() { return isEmpty() ? std::uint8_t{0} : *at_++; }

    float number() {
        float value = 0.0f;
        std::uint8_t bits[sizeof value];
        for (std::uint8_t& part : bits) {
            part = byte();
        }
        std::memcpy(&value, bits, sizeof value);
        return value;
    }

    b2Vec2 point() {
        const float x = number();
        return {x, number()};
    }

    /// A point on a small grid, where coincidences abound.
    b2Vec2 gridPoint() {
        const std::uint8_t both = byte();
        return {static_cast<float>(both & 15) * 10.0f, static_cast<float>(both >> 4) * 10.0f};
    }

private:
    const std::uint8_t* at_;
    const std::uint8_t* end_;
};

/// One more vertex, mostly made from those that are there.
b2Vec2 nextVertex(Bytes& bytes, const std::vector<b2Vec2>& all) {
    const std::uint8_t kind = bytes.byte();
    const auto earlier = [&](std::size_t back) {
        return all.empty() ? b2Vec2_zero : all[all.size() - 1 - back % all.size()];
    };
    switch (kind % 8) {
    case 0:
        return bytes.point();
    case 1: // a repeat, or a path that leads back
        return earlier(bytes.byte());
    case 2: { // on an edge, or close to one
        const float t = static_cast<float>(bytes.byte()) / 256.0f;
        const std::uint8_t back = bytes.byte();
        return (1.0f - t) * earlier(back) + t * earlier(back + std::size_t{1});
    }
    case 3: { // a run in one direction
        return 2.0f * earlier(0) - earlier(1);
    }
    case 4: { // a last place beside an earlier point
        b2Vec2 point = earlier(bytes.byte());
        point.x = std::nextafter(point.x, (kind & 8) != 0 ? 1e9f : -1e9f);
        return point;
    }
    default:
        return bytes.gridPoint();
    }
}

ShapeDef readOutline(Bytes& bytes, std::vector<b2Vec2>& all) {
    ShapeDef shape;
    const std::uint8_t flags = bytes.byte();
    shape.closed = (flags & 7) != 0;
    const std::size_t count = bytes.byte() % 32;
    const bool isCurved = (flags & 24) == 8;
    for (std::size_t i = 0; i < count && !bytes.isEmpty(); ++i) {
        all.push_back(nextVertex(bytes, all));
        shape.verts.push_back(all.back());
        if (isCurved) {
            shape.inTangents.push_back(bytes.gridPoint() - bytes.gridPoint());
            shape.outTangents.push_back(bytes.gridPoint() - bytes.gridPoint());
        }
    }
    return shape;
}

/// A copy of an outline, moved or turned round or scaled about its first corner: holes that touch, nest and coincide.
ShapeDef similar(ShapeDef shape, Bytes& bytes) {
    const std::uint8_t kind = bytes.byte();
    if ((kind & 1) != 0) {
        std::reverse(shape.verts.begin(), shape.verts.end());
    }
    const float scale = (kind & 2) != 0 ? 0.5f : 1.0f;
    const b2Vec2 offset = (kind & 4) != 0 ? 0.25f * bytes.gridPoint() : b2Vec2_zero;
    const b2Vec2 centre = shape.verts.empty() ? b2Vec2_zero : shape.verts.front();
    for (b2Vec2& vert : shape.verts) {
        vert = centre + scale * (vert - centre) + offset;
    }
    return shape;
}

ShapeDef readPrimitive(Bytes& bytes, int subdivisions) {
    AccumulatedTransform accumulated;
    LayerFrame layer;
    const std::uint8_t kind = bytes.byte();
    if ((kind & 8) != 0) {
        accumulated.scale = bytes.point();
        accumulated.rotation = static_cast<double>(bytes.number());
        layer.matrix.m[0][0] = static_cast<double>(bytes.number());
        layer.scale = bytes.point();
    }
    if ((kind & 3) == 0) {
        const b2Vec2 size = bytes.point();
        return makeRect({size, bytes.point(), bytes.number()}, accumulated, layer, subdivisions).shape;
    }
    if ((kind & 3) == 1) {
        const b2Vec2 size = bytes.point();
        return makeEllipse({size, bytes.point()}, accumulated, layer, subdivisions).shape;
    }
    if ((kind & 3) == 2) {
        StarParameters star;
        star.type = (kind >> 4) & 1;
        star.pointCount =
            (kind & 32) != 0 ? static_cast<double>(bytes.byte() % 32) : static_cast<double>(bytes.number());
        star.pointCount = star.pointCount > 40.0 ? 40.0 : star.pointCount;
        star.outerRadius = static_cast<double>(bytes.number());
        star.innerRadius = static_cast<double>(bytes.number());
        star.outerRoundness = static_cast<double>(bytes.byte());
        star.innerRoundness = static_cast<double>(bytes.number());
        return makeStar(star, accumulated, layer, subdivisions).shape;
    }
    FreePath path;
    std::vector<b2Vec2> all;
    const ShapeDef outline = readOutline(bytes, all);
    for (const b2Vec2 vert : outline.verts) {
        path.vertices.push_back({vert, (kind & 16) != 0 ? bytes.point() : b2Vec2_zero, b2Vec2_zero});
    }
    path.closed = outline.closed;
    path.segmentCount = static_cast<int>(path.vertices.size()) - static_cast<int>(!path.closed) + (kind >> 6) - 1;
    return makeFreePath(path, accumulated, layer, subdivisions).placed.shape;
}

/// Whether triangles have the area of a proper outline, as far as the mesher's rounding lets it.
bool fills(double filled, const Ring& ring) {
    double twice = 0.0;
    double product = 0.0;
    for (std::size_t i = 1; i + 1 < ring.size(); ++i) {
        twice += orientation(ring[0], ring[i], ring[i + 1]);
        product +=
            static_cast<double>(b2Distance(ring[0], ring[i])) * static_cast<double>(b2Distance(ring[0], ring[i + 1]));
    }
    const double area = std::abs(twice) / 2.0;
    return std::abs(filled - area) <= 1e-4 * area + 1e-6 * product;
}

/// The area that one or two outlines must get, by the corner that decides which lies in which.
double expectedArea(const std::vector<Ring>& rings) {
    if (rings.size() == 1) {
        return evenOddArea(rings);
    }
    const bool secondInFirst = pointInPolygon(rings[1].front(), rings[0]);
    const bool firstInSecond = pointInPolygon(rings[0].front(), rings[1]);
    if (secondInFirst && firstInSecond) {
        return 0.0;
    }
    return secondInFirst || firstInSecond ? evenOddArea(rings)
                                          : evenOddArea({&rings[0], 1}) + evenOddArea({&rings[1], 1});
}

/// Square of the largest coordinate: what rounding is measured by. 0 if there are too many points to look at, or they
/// are so small or so large that single precision has nothing to say about areas.
double measure(const std::vector<Ring>& rings) {
    double largest = 0.0;
    std::size_t count = 0;
    for (const Ring& ring : rings) {
        count += ring.size();
        for (const b2Vec2 point : ring) {
            largest =
                std::max({largest, std::abs(static_cast<double>(point.x)), std::abs(static_cast<double>(point.y))});
            largest = point.IsValid() ? largest : 1e30;
        }
    }
    return count > 80 || largest < 1e-3 || largest > 1e6 ? 0.0 : largest * largest;
}

/// Whether a ray to the right crosses a ring an odd number of times, decided by exact signs: among edges a million
/// times longer than the triangle, single precision does not tell.
bool encloses(const Ring& ring, b2Vec2 point) {
    bool inside = false;
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const b2Vec2 a = ring[i];
        const b2Vec2 b = ring[i + 1 < ring.size() ? i + 1 : 0];
        const bool isRising = b.y > point.y;
        if ((a.y > point.y) != isRising && (orientation(a, b, point) > 0.0) == isRising) {
            inside = !inside;
        }
    }
    return inside;
}

/// Whether the middle of a triangle lies in a polygon, or so close to its edges that it may.
bool isWithin(const Triangle& t, const std::vector<Ring>& rings) {
    const b2Vec2 middle = (1.0f / 3.0f) * (t[0] + t[1] + t[2]);
    bool inside = false;
    for (const Ring& ring : rings) {
        inside = inside != encloses(ring, middle);
    }
    const double size = static_cast<double>(b2Max(b2Distance(t[0], t[1]), b2Distance(t[1], t[2])) + middle.Length());
    return inside || std::abs(orientation(t[0], t[1], t[2])) <= 1e-4 * size * size;
}

void checkTriangles(const std::vector<ShapeDef>& closed) {
    std::vector<Triangle> triangles;
    const bool failed = triangulate(closed, triangles);
    double filled = 0.0;
    for (const Triangle& triangle : triangles) {
        require(triangle[0].IsValid() && triangle[1].IsValid() && triangle[2].IsValid(), "corners are finite");
        filled += std::abs(orientation(triangle[0], triangle[1], triangle[2])) / 2.0;
    }
    const std::vector<Ring> rings(1, closed.empty() ? Ring() : Ring(closed[0].verts));
    const std::vector<std::vector<b2Vec2>> rounded = roundForTriangulation(rings);
    if (closed.size() == 1 && isProperPolygon(std::vector<Ring>(rounded.begin(), rounded.end()))) {
        // Of many points only the rounded ones are looked at.
        require(rings[0].size() > 100 || failed == (isSelfIntersecting(rings[0]) || triangles.empty()),
                "others than crossing ones fail");
        require(fills(filled, rings[0]), "the area of a proper outline");
        require(measure(rings) == 0.0 || std::all_of(triangles.begin(), triangles.end(),
                                                     [&](const Triangle& t) { return isWithin(t, rings); }),
                "triangles lie within");
    }
    if (closed.empty() || closed.size() > 2 ||
        std::any_of(closed.begin(), closed.end(), [](const ShapeDef& s) { return s.verts.empty(); })) {
        return;
    }
    std::vector<Ring> all;
    for (const ShapeDef& shape : closed) {
        all.emplace_back(shape.verts);
    }
    const double size = measure(all);
    if (size > 0.0) {
        // The tessellator errs a little where edges all but coincide; proper outlines are held to more above.
        require(std::abs(filled - expectedArea(all)) <= 1e-3 * size, "the area of odd winding");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Bytes bytes(data, size);
    const std::uint8_t flags = bytes.byte();
    const int subdivisions = 2 + flags % 6 - static_cast<int>((flags & 64) != 0) * 3;
    ShapeDefList groups(1);
    std::vector<b2Vec2> all;
    std::size_t points = 0;
    for (int outlines = 0; outlines < 12 && points < 600 && !bytes.isEmpty(); ++outlines) {
        const std::uint8_t kind = bytes.byte();
        std::vector<ShapeDef>& group = groups.back();
        if (kind % 8 == 0) {
            group.push_back(readPrimitive(bytes, subdivisions));
        } else if (kind % 8 < 3 && !group.empty()) {
            group.push_back(similar(group.back(), bytes));
        } else {
            group.push_back(readOutline(bytes, all));
            flatten(group.back(), subdivisions);
        }
        points += group.back().verts.size();
        if ((kind & 128) != 0) {
            groups.emplace_back();
        }
    }
    std::vector<ShapeDef> closed;
    for (const std::vector<ShapeDef>& group : groups) {
        std::copy_if(group.begin(), group.end(), std::back_inserter(closed),
                     [](const ShapeDef& s) { return s.closed; });
    }
    checkTriangles(closed);
    if ((flags & 128) != 0) {
        wrapInHulls(static_cast<OutlineSource>((flags >> 4) % 3), groups);
    }
    (void)assemble({}, {}, groups, {bytes.point(), bytes.point()});
    return 0;
}
