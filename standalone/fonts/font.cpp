#include "standalone/fonts/font.h"

#include <array>
#include <map>
#include <utility>

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_OUTLINE_H

#include <hb-ot.h>
#include <hb.h>

#include "standalone/fonts/destroy.h"

namespace jostle::standalone {

namespace {

/// FreeType itself, which all fonts share; it goes with the last of them.
std::shared_ptr<FT_LibraryRec_> freeType() {
    static const std::shared_ptr<FT_LibraryRec_> shared = [] {
        FT_Library library = nullptr;
        return std::shared_ptr<FT_LibraryRec_>(FT_Init_FreeType(&library) == 0 ? library : nullptr, [](FT_Library it) {
            if (it)
                FT_Done_FreeType(it);
        });
    }();
    return shared;
}

/// Takes the pieces of an outline from FreeType, in its 64ths of a font unit with y up.
class OutlineReader {
public:
    OutlineReader(GlyphContours& contours, double scale) : contours_{contours}, scale_{scale} {}

    void read(FT_Outline& outline) {
        const FT_Outline_Funcs callbacks{
            [](const FT_Vector* to, void* self) { return static_cast<OutlineReader*>(self)->moveTo(at(to)); },
            [](const FT_Vector* to, void* self) { return static_cast<OutlineReader*>(self)->lineTo(at(to)); },
            [](const FT_Vector* control, const FT_Vector* to, void* self) {
                return static_cast<OutlineReader*>(self)->conicTo(at(control), at(to));
            },
            [](const FT_Vector* first, const FT_Vector* second, const FT_Vector* to, void* self) {
                return static_cast<OutlineReader*>(self)->cubicTo(at(first), at(second), at(to));
            },
            0,
            0};
        if (FT_Outline_Decompose(&outline, &callbacks, this) != 0)
            contours_.clear();
    }

private:
    struct Point {
        double x, y;
    };

    static Point at(const FT_Vector* vector) {
        return {static_cast<double>(vector->x), -static_cast<double>(vector->y)};
    }

    int moveTo(Point to) {
        contours_.push_back({to.x * scale_, to.y * scale_, {}});
        last_ = to;
        return 0;
    }

    int lineTo(Point to) { return cubicTo(last_, to, to); }

    // A quadratic curve is the cubic one whose control points are two thirds of the way to its own.
    int conicTo(Point control, Point to) {
        const auto towards = [&](Point from) {
            return Point{from.x + (control.x - from.x) * 2 / 3, from.y + (control.y - from.y) * 2 / 3};
        };
        return cubicTo(towards(last_), towards(to), to);
    }

    int cubicTo(Point first, Point second, Point to) {
        contours_.back().curves.push_back(
            {first.x * scale_, first.y * scale_, second.x * scale_, second.y * scale_, to.x * scale_, to.y * scale_});
        last_ = to;
        return 0;
    }

    GlyphContours& contours_;
    double scale_;
    Point last_{};
};

} // namespace

struct Font::Handles {
    std::shared_ptr<FT_LibraryRec_> library = freeType(); // outlives the face
    std::unique_ptr<FT_FaceRec, Destroy<FT_Done_Face>> face;
    std::unique_ptr<hb_font_t, Destroy<hb_font_destroy>> shaper;
    double scale = 0; ///< of a font unit
    std::map<std::uint32_t, GlyphContours> outlines;
};

Font::Font(std::unique_ptr<Handles> handles) : handles_{std::move(handles)} {}
Font::~Font() = default;

std::unique_ptr<Font> Font::open(const std::string& path, long index) {
    auto handles = std::make_unique<Handles>();
    FT_Face face = nullptr;
    if (!handles->library || FT_New_Face(handles->library.get(), path.c_str(), index, &face) != 0)
        return nullptr;
    handles->face.reset(face);
    // At a size of one pixel to a unit FreeType's numbers are the font's own, and nothing is rounded.
    if (!FT_IS_SCALABLE(face) || face->units_per_EM == 0 || FT_Set_Pixel_Sizes(face, 0, face->units_per_EM) != 0)
        return nullptr;
    handles->scale = fontSizeOfOutlines / face->units_per_EM;

    const std::unique_ptr<hb_blob_t, Destroy<hb_blob_destroy>> blob(hb_blob_create_from_file(path.c_str()));
    const auto place = static_cast<unsigned>(index) & 0xFFFFU;
    const auto instance = static_cast<unsigned>(index) >> 16U;
    const std::unique_ptr<hb_face_t, Destroy<hb_face_destroy>> shaped(hb_face_create(blob.get(), place));
    if (hb_face_get_glyph_count(shaped.get()) == 0)
        return nullptr;
    handles->shaper.reset(hb_font_create(shaped.get()));
    const int units = face->units_per_EM;
    hb_font_set_scale(handles->shaper.get(), units, units);
    if (instance > 0)
        hb_font_set_var_named_instance(handles->shaper.get(), instance - 1);
    return std::unique_ptr<Font>(new Font(std::move(handles)));
}

bool Font::covers(char32_t character) const {
    return FT_Get_Char_Index(handles_->face.get(), character) != 0;
}

double Font::ascent() const {
    return handles_->face->ascender * handles_->scale;
}

const GlyphContours& Font::outline(std::uint32_t glyph) {
    const auto [found, isNew] = handles_->outlines.try_emplace(glyph);
    if (isNew && FT_Load_Glyph(handles_->face.get(), glyph, FT_LOAD_NO_HINTING | FT_LOAD_NO_BITMAP) == 0 &&
        handles_->face->glyph->format == FT_GLYPH_FORMAT_OUTLINE)
        OutlineReader(found->second, handles_->scale / 64).read(handles_->face->glyph->outline);
    return found->second;
}

std::vector<PlacedGlyph> Font::place(std::string_view text, std::size_t begin, std::size_t end,
                                     const RunStyle& style) const {
    const std::unique_ptr<hb_buffer_t, Destroy<hb_buffer_destroy>> owner(hb_buffer_create());
    hb_buffer_t* buffer = owner.get();
    hb_buffer_add_utf8(buffer, text.data(), static_cast<int>(text.size()), static_cast<unsigned>(begin),
                       static_cast<int>(end - begin));
    hb_buffer_set_direction(buffer, style.rightToLeft ? HB_DIRECTION_RTL : HB_DIRECTION_LTR);
    if (style.script != 0)
        hb_buffer_set_script(buffer, static_cast<hb_script_t>(style.script));
    // Guessing would ask the environment for the language.
    hb_buffer_set_language(buffer, hb_language_from_string("en", -1));
    hb_buffer_guess_segment_properties(buffer);
    std::vector<hb_feature_t> features;
    const auto set = [&](hb_tag_t tag, std::uint32_t value) {
        features.push_back({tag, value, HB_FEATURE_GLOBAL_START, HB_FEATURE_GLOBAL_END});
    };
    if (!style.ligatures) {
        set(HB_TAG('l', 'i', 'g', 'a'), 0);
        set(HB_TAG('c', 'l', 'i', 'g'), 0);
    }
    if (style.smallCapitals)
        set(HB_TAG('s', 'm', 'c', 'p'), 1);
    hb_shape(handles_->shaper.get(), buffer, features.data(), static_cast<unsigned>(features.size()));

    unsigned count = 0;
    const hb_glyph_info_t* infos = hb_buffer_get_glyph_infos(buffer, &count);
    const hb_glyph_position_t* positions = hb_buffer_get_glyph_positions(buffer, &count);
    std::vector<PlacedGlyph> glyphs;
    glyphs.reserve(count);
    for (unsigned i = 0; i < count; ++i) {
        glyphs.push_back({infos[i].codepoint, infos[i].cluster, positions[i].x_offset * handles_->scale,
                          -positions[i].y_offset * handles_->scale, positions[i].x_advance * handles_->scale});
    }
    return glyphs;
}

} // namespace jostle::standalone
