// Meshes every glyph of some fonts the way a text layer is meshed, and holds the triangles against the outlines' area.
//
//     glyph_check [--precision N] FONT...            N is a body's mesh precision, 2 unless given
//
// Built with the benchmarks where FreeType is found; for instance
//     build/release/bin/glyph_check /usr/share/fonts/truetype/dejavu/DejaVuSans.ttf
// Glyphs are 100 pixels high and not hinted. Of a collection all faces are taken. Prints for each face how many
// outlines (each with its holes) poly2tri took and how many went to the tessellator, the worst error of area, and the
// time for flattening and meshing. Status 1 if the mesh of a glyph whose outlines do not cross is off
// by more than a ten-thousandth of its area, or the glyph is reported as failed.

#include "geometry/assemble.h"
#include "geometry/outline.h"
#include "geometry/outline_check.h"
#include "geometry/polygon_tests.h"
#include "geometry/projection.h"
#include "tests/support/even_odd_area.h"

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_OUTLINE_H

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace jostle;

constexpr float pixelsPerEm = 100.0f;
constexpr double tolerance = 1e-4;

/// Collects a glyph's contours as Bezier outlines in pixels, y down.
class Contours {
public:
    Contours(FT_Outline& outline, float unitsPerEm) : scale_(pixelsPerEm / unitsPerEm) {
        const FT_Outline_Funcs funcs = {moveTo, lineTo, conicTo, cubicTo, 0, 0};
        FT_Outline_Decompose(&outline, &funcs, this);
        close();
    }

    std::vector<ShapeDef> shapes;

private:
    static Contours& self(void* user) { return *static_cast<Contours*>(user); }

    static int moveTo(const FT_Vector* to, void* user) {
        self(user).close();
        self(user).shapes.emplace_back().closed = true;
        self(user).add(self(user).point(*to));
        return 0;
    }

    static int lineTo(const FT_Vector* to, void* user) {
        self(user).add(self(user).point(*to));
        return 0;
    }

    static int conicTo(const FT_Vector* control, const FT_Vector* to, void* user) {
        Contours& c = self(user);
        const b2Vec2 handle = c.point(*control);
        const b2Vec2 end = c.point(*to);
        c.shapes.back().outTangents.back() = (2.0f / 3.0f) * (handle - c.shapes.back().verts.back());
        c.add(end);
        c.shapes.back().inTangents.back() = (2.0f / 3.0f) * (handle - end);
        return 0;
    }

    static int cubicTo(const FT_Vector* first, const FT_Vector* second, const FT_Vector* to, void* user) {
        Contours& c = self(user);
        const b2Vec2 end = c.point(*to);
        c.shapes.back().outTangents.back() = c.point(*first) - c.shapes.back().verts.back();
        c.add(end);
        c.shapes.back().inTangents.back() = c.point(*second) - end;
        return 0;
    }

    [[nodiscard]] b2Vec2 point(const FT_Vector& v) const {
        return {static_cast<float>(v.x) * scale_, -static_cast<float>(v.y) * scale_};
    }

    void add(b2Vec2 vert) {
        shapes.back().verts.push_back(vert);
        shapes.back().inTangents.push_back(b2Vec2_zero);
        shapes.back().outTangents.push_back(b2Vec2_zero);
    }

    /// A contour that leads back to its start has no vertex of its own there.
    void close() {
        if (!shapes.empty() && shapes.back().verts.size() > 1 &&
            shapes.back().verts.front() == shapes.back().verts.back()) {
            ShapeDef& shape = shapes.back();
            shape.inTangents.front() = shape.inTangents.back();
            shape.verts.pop_back();
            shape.inTangents.pop_back();
            shape.outTangents.pop_back();
        }
    }

    float scale_;
};

struct Tally {
    std::size_t glyphs = 0;
    std::size_t empty = 0;
    std::size_t proper = 0;      ///< outlines, with their holes, that poly2tri took
    std::size_t tessellated = 0; ///< and those that went to the tessellator
    std::size_t crossing = 0;    ///< glyphs with an outline that crosses itself or another
    std::size_t failed = 0;      ///< glyphs without a crossing that got a wrong mesh or were reported
    std::size_t triangles = 0;
    double worst = 0.0;         ///< relative error of area without crossings
    double worstCrossing = 0.0; ///< and with them
    double microseconds = 0.0;
    double slowest = 0.0;
};

/// The area that triangles should have, by the rules for holes: an outline within another is a hole of it, one within
/// a hole gets nothing.
double expectedArea(const std::vector<ShapeDef>& shapes, Tally& tally) {
    const auto isIn = [&](const ShapeDef& inner, const ShapeDef& outer) {
        return &inner != &outer && !inner.verts.empty() && pointInPolygon(inner.verts.front(), outer.verts);
    };
    const auto isAllIn = [&](const ShapeDef& inner, const ShapeDef& outer) {
        return isIn(inner, outer) && std::all_of(inner.verts.begin(), inner.verts.end(),
                                                 [&](b2Vec2 corner) { return pointInPolygon(corner, outer.verts); });
    };
    double area = 0.0;
    for (const ShapeDef& outer : shapes) {
        if (outer.verts.empty() ||
            std::any_of(shapes.begin(), shapes.end(), [&](const ShapeDef& other) { return isIn(outer, other); })) {
            continue;
        }
        std::vector<Ring> all = {outer.verts};
        std::vector<Ring> enclosing = {outer.verts};
        for (const ShapeDef& hole : shapes) {
            if (!isIn(hole, outer)) {
                continue;
            }
            all.emplace_back(hole.verts);
            if (std::none_of(shapes.begin(), shapes.end(), [&](const ShapeDef& other) {
                    return &other != &outer && isIn(other, outer) && isAllIn(hole, other);
                })) {
                enclosing.emplace_back(hole.verts);
            }
        }
        const std::vector<std::vector<b2Vec2>> rounded = roundForTriangulation(all);
        ++(isProperPolygon(std::vector<Ring>(rounded.begin(), rounded.end())) ? tally.proper : tally.tessellated);
        area += evenOddArea(enclosing);
    }
    return area;
}

void checkGlyph(std::vector<ShapeDef> shapes, int subdivisions, const std::string& name, Tally& tally) {
    ++tally.glyphs;
    if (shapes.empty()) {
        ++tally.empty;
        return;
    }
    const auto start = std::chrono::steady_clock::now();
    for (ShapeDef& shape : shapes) {
        flatten(shape, subdivisions);
    }
    const BodyMesh mesh = assemble({}, {}, {shapes}, {});
    const double took = std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - start).count();
    tally.microseconds += took;
    tally.slowest = std::max(tally.slowest, took);
    tally.triangles += mesh.shapes.front().size();

    double filled = 0.0;
    for (const ShapeDef& piece : mesh.shapes.front()) {
        filled += std::abs(orientation(piece.verts[0], piece.verts[1], piece.verts[2])) / 2.0;
    }
    const double metre = static_cast<double>(pixelsPerMetre);
    filled *= metre * metre;
    std::erase_if(shapes, [](const ShapeDef& shape) { return shape.verts.size() < 3; });
    const double expected = expectedArea(shapes, tally);
    const double error = std::abs(filled - expected) / std::max(expected, 1e-9);
    std::vector<Ring> rings;
    for (const ShapeDef& shape : shapes) {
        rings.emplace_back(shape.verts);
    }
    const bool crosses = countCrossings(rings, 0) != std::size_t{0};
    if (crosses) {
        ++tally.crossing;
        tally.worstCrossing = std::max(tally.worstCrossing, error);
        return;
    }
    tally.worst = std::max(tally.worst, error);
    if (mesh.triangulationFailed || error > tolerance) {
        ++tally.failed;
        std::printf("  %s: area %.4f instead of %.4f%s\n", name.c_str(), filled, expected,
                    mesh.triangulationFailed ? ", reported as failed" : "");
    }
}

Tally checkFace(FT_Face face, int subdivisions) {
    Tally tally;
    for (FT_ULong glyph = 0; glyph < static_cast<FT_ULong>(face->num_glyphs); ++glyph) {
        if (FT_Load_Glyph(face, static_cast<FT_UInt>(glyph), FT_LOAD_NO_SCALE | FT_LOAD_NO_BITMAP) != 0 ||
            face->glyph->format != FT_GLYPH_FORMAT_OUTLINE) {
            continue;
        }
        Contours contours(face->glyph->outline, static_cast<float>(face->units_per_EM));
        checkGlyph(std::move(contours.shapes), subdivisions, "glyph " + std::to_string(glyph), tally);
    }
    return tally;
}

void print(const FT_Face face, const Tally& t) {
    const double meshed = std::max(1.0, static_cast<double>(t.glyphs - t.empty));
    std::printf("%s %s: %zu glyphs, %zu of them empty, %zu with crossings, %zu failed\n", face->family_name,
                face->style_name, t.glyphs, t.empty, t.crossing, t.failed);
    std::printf("  outlines: poly2tri %zu, tessellator %zu; triangles: %zu\n", t.proper, t.tessellated, t.triangles);
    std::printf("  worst error of area: %.2g, with crossings %.2g\n", t.worst, t.worstCrossing);
    std::printf("  %.1f us a glyph, %.0f glyphs a second, slowest %.0f us\n", t.microseconds / meshed,
                1e6 * meshed / t.microseconds, t.slowest);
}

} // namespace

int main(int argc, char** argv) {
    int precision = 2;
    bool passed = true;
    std::size_t fonts = 0;
    FT_Library library = nullptr;
    if (FT_Init_FreeType(&library) != 0) {
        return 2;
    }
    for (int i = 1; i < argc; ++i) {
        if (std::string_view(argv[i]) == "--precision" && i + 1 < argc) {
            precision = std::atoi(argv[++i]);
            continue;
        }
        FT_Face face = nullptr;
        for (FT_Long index = 0; index == 0 || (face != nullptr && index < face->num_faces); ++index) {
            FT_Done_Face(face);
            face = nullptr;
            if (FT_New_Face(library, argv[i], index, &face) != 0) {
                std::fprintf(stderr, "%s: not a font that can be read\n", argv[i]);
                passed = false;
                break;
            }
            const Tally tally = checkFace(face, precision + 2);
            print(face, tally);
            passed = passed && tally.failed == 0;
            ++fonts;
        }
        FT_Done_Face(face);
    }
    FT_Done_FreeType(library);
    return passed && fonts > 0 ? 0 : 1;
}
