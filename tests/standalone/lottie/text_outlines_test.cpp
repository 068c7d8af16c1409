#include "standalone/lottie/text_outlines.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <tuple>
#include <vector>

namespace jostle::standalone {
namespace {

// Glyphs made by hand for a size of 100: A is a square of 50 at the pen, 60 wide; B a triangle 10 to the right of the
// pen, 40 wide; a blank is 30 wide. Texts are of size 50, so that all of it counts half: A is 30 pixels wide, B 20, a
// blank 15, and B's first vertex is 5 right of its pen.
std::string chars(const std::string& more = {}) {
    const auto glyph = [](const char* ch, const char* w, const char* v) {
        return std::string(R"({"ch":")") + ch + R"(","fFamily":"Hand","style":"Bold","size":12,"w":)" + w +
               R"(,"data":{"shapes":[{"ty":"gr","it":[{"ty":"sh","ks":{"a":0,"k":{"c":true,"v":)" + v +
               R"(,"i":[[1,2]],"o":[[3,4]]}}}]}]}})";
    };
    return R"("chars":[{"ch":" ","fFamily":"Hand","style":"Bold","w":30,"data":{}},)" +
           glyph("A", "60", "[[0,0],[50,0],[50,-50],[0,-50]]") + "," + glyph("B", "40", "[[10,0],[20,0],[20,-10]]") +
           "," + glyph("\\ud83d\\ude00", "100", "[[0,0],[90,0],[90,-90]]") + more + "]";
}

const std::string fonts = R"("fonts":{"list":[{"fName":"Hand-Bold","fFamily":"Hand","fStyle":"Bold","ascent":80}]})";

/// A document with one text layer, whose text document has these members.
std::string document(const std::string& members, const std::string& root = fonts + "," + chars()) {
    return "{" + root + R"(,"layers":[{"ty":3},{"ty":5,"nm":"title","t":{"d":)" + members + "}}]}";
}

std::string keyed(const std::string& members) {
    return R"({"k":[{"t":0,"s":{)" + members + "}}]}";
}

TextOutlines outlinesOf(const std::string& text, double frame = 0, FontLibrary* library = nullptr) {
    JsonTree tree;
    if (tree.parse(text)) {
        ADD_FAILURE() << "no JSON: " << text;
        return {};
    }
    const JsonValue root = tree.root(), null = root["layers"].firstChild();
    const JsonValue layer = null.nextSibling(root["layers"]);
    EXPECT_TRUE(readTextOutlines(root, null, frame).outlines.empty());
    return library ? readTextOutlines(root, layer, frame, *library) : readTextOutlines(root, layer, frame);
}

/// First vertices of the outlines, as in "0,0 35,0".
std::string starts(const TextOutlines& text) {
    std::string shown;
    for (const PathValue& path : text.outlines) {
        EXPECT_TRUE(path.closed);
        const auto whole = [](double number) { return std::to_string(std::lround(number * 10) / 10); };
        shown += (shown.empty() ? "" : " ") + whole(path.vertices[0].x) + "," + whole(path.vertices[0].y);
    }
    return shown;
}

TEST(TextLayout, PlacesGlyphs) {
    // Members besides the font and the size of 50, and where the outlines start.
    constexpr std::tuple<const char*, const char*, const char*> cases[] = {
        {"one after another", R"("t":"AB")", "0,0 35,0"},
        {"right", R"("t":"AB","j":1)", "-50,0 -15,0"},
        {"centre", R"("t":"AB","j":2)", "-25,0 10,0"},
        {"justified is left", R"("t":"AB","j":4)", "0,0 35,0"},
        {"no tracking after the last", R"("t":"AB","j":1,"tr":100)", "-55,0 -15,0"},
        {"trailing blanks do not count", R"("t":"A  ","j":1)", "-30,0"},
        {"line ends by carriage return", R"("t":"A\rB","lh":70)", "0,0 5,70"},
        {"line ends by line feed", R"("t":"A\nB","lh":70)", "0,0 5,70"},
        {"line ends by both", R"("t":"A\r\nB","lh":70)", "0,0 5,70"},
        {"line ends by end of text", R"("t":"A\u0003B","lh":70)", "0,0 5,70"},
        {"empty line", R"("t":"A\r\rB","lh":70)", "0,0 5,140"},
        {"line height is a fifth more than the size", R"("t":"A\rB","lh":0)", "0,0 5,60"},
        {"baseline shift is up", R"("t":"A","ls":10)", "0,-10"},
        {"unknown character takes no room", R"("t":"AxB")", "0,0 35,0"},
        {"surrogate pair", R"("t":"\ud83d\ude00B")", "0,0 55,0"},
        {"unknown font is the first", R"("t":"A","f":"Other")", "0,0"},
        // The box begins at (-10, -20); the ascent of 80 counts half, so the first baseline is at 20.
        {"box wraps", R"("t":"AB AB","sz":[60,9],"ps":[-10,-20])", "-10,20 25,20 -10,80 25,80"},
        {"box wraps at the last blank", R"("t":"A A A","sz":[80,9],"ps":[0,-40])", "0,0 45,0 0,60"},
        {"box right", R"("t":"AB AB","j":1,"sz":[60,9],"ps":[-10,-20])", "0,20 35,20 0,80 35,80"},
        {"box centre", R"("t":"AB AB","j":2,"sz":[60,9],"ps":[-10,-20])", "-5,20 30,20 -5,80 30,80"},
        {"box breaks within long words", R"("t":"AAA","sz":[45,9],"ps":[0,-40])", "0,0 0,60 0,120"},
        {"box narrower than a letter", R"("t":"AA","sz":[5,9],"ps":[0,-40])", "0,0 0,60"},
        {"blanks never break", R"("t":"AB    A","sz":[60,9],"ps":[0,-40])", "0,0 35,0 0,60"},
        {"box without place", R"("t":"A","sz":[60,9])", "0,40"},
        {"nothing to show", R"("t":"")", ""},
        {"wrong types", R"("t":7,"j":"2","tr":[],"lh":{},"ls":null,"sz":"x","ps":3)", ""},
    };
    for (const auto& [name, members, expected] : cases) {
        const TextOutlines text = outlinesOf(document(keyed(R"("f":"Hand-Bold","s":50,)" + std::string(members))));
        EXPECT_EQ(starts(text), expected) << name;
        EXPECT_TRUE(text.notes.empty()) << name;
    }
}

TEST(TextDocument, HoldsFromItsKeyOn) {
    const std::string text = document(R"({"k":[{"t":10,"s":{"t":"AA","s":50}},{"t":0,"s":{"t":"A","s":50}},)"
                                      R"({"t":20,"s":{"t":"","s":50}},{"t":20,"s":{"t":"AAA","s":50}},{"t":30}]})");
    const std::pair<double, std::size_t> cases[] = {{-5, 1}, {0, 1}, {9.5, 1}, {10, 2}, {19, 2}, {20, 3}, {99, 3}};
    for (const auto& [frame, count] : cases)
        EXPECT_EQ(outlinesOf(text, frame).outlines.size(), count) << "frame " << frame;
}

TEST(TextDocument, IsFoundInAllItsForms) {
    const std::string slots = R"(,"slots":{"head":{"p":{"k":[{"t":0,"s":{"t":"AA","s":50}}]}}})";
    EXPECT_EQ(starts(outlinesOf(document(R"({"t":"AB","s":50})"))), "0,0 35,0") << "in place of its keys";
    EXPECT_EQ(starts(outlinesOf(document(R"({"sid":"head","k":[]})", fonts + "," + chars() + slots))), "0,0 30,0");
    EXPECT_EQ(starts(outlinesOf(document(R"({"sid":"none","k":[{"s":{"t":"A","s":50}}]})"))), "0,0");
    for (const char* broken : {"{}", "[]", "7", R"({"k":[]})", R"({"k":[{"t":0}]})", R"({"k":[{"s":{"t":"A"}}]})"})
        EXPECT_TRUE(outlinesOf(document(broken)).outlines.empty()) << broken;
}

TEST(TextOutlines, KeepTangentsRelativeAndHalveThemWithTheRest) {
    const PathValue relative = outlinesOf(document(keyed(R"("t":"B","s":50)"))).outlines.at(0);
    EXPECT_EQ(relative.vertices[0], (PathVertex{5, 0, .5, 1, 1.5, 2}));
    EXPECT_EQ(relative.vertices[1], (PathVertex{10, 0, 0, 0, 0, 0})) << "missing tangents are none";
    // Of a file that a player has worked on they are absolute: (1, 2) and (3, 4) seen from (10, 0).
    const std::string absolute = document(keyed(R"("t":"B","s":50)"), fonts + R"(,"__complete":true,)" + chars());
    EXPECT_EQ(outlinesOf(absolute).outlines.at(0).vertices[0], (PathVertex{5, 0, -4.5, 1, -3.5, 2}));
}

TEST(TextOutlines, OfHostileTextsAreBounded) {
    const std::string huge(300000, 'A');
    const std::string cases[] = {
        R"("s":50,"t":")" + huge + '"',
        R"("s":50,"sz":[100,100],"t":")" + huge + '"',
        R"("s":1e308,"tr":1e308,"lh":-1e308,"ls":1e308,"t":"AB\rAB")",
        R"("s":1e999,"tr":-1e999,"t":"AB","sz":[1e999,1e999],"ps":[-1e999,1e999],"j":2)",
        R"("s":-50,"t":"AB")",
        R"("s":50,"tr":-1e9,"sz":[1,1],"t":" A A  AAA  ")",
        R"("s":50,"t":"A\u0000\ud800\udc00\uffffB")",
    };
    for (const std::string& members : cases) {
        const TextOutlines text = outlinesOf(document(keyed(members)));
        EXPECT_LE(text.outlines.size(), mostTextBytes);
        EXPECT_EQ(text.notes.size(), members.size() > huge.size() ? 1U : 0U);
        for (const PathValue& path : text.outlines) {
            for (const PathVertex& vertex : path.vertices)
                EXPECT_LT(std::abs(vertex.x) + std::abs(vertex.y) + std::abs(vertex.inX), 1e18);
        }
    }
    const std::string broken = R"(,{"ch":"C","fFamily":"Hand","style":"Bold","w":1e999,"data":{"shapes":[{"it":[{"it":)"
                               R"([{"ty":"sh","ks":{"k":{"v":[[1e999],7,[],[3,4]],"i":4,"o":[[]]}}}]}]}]}})";
    const TextOutlines text = outlinesOf(document(keyed(R"("t":"C","s":100)"), fonts + "," + chars(broken)));
    ASSERT_EQ(text.outlines.size(), 1U);
    EXPECT_EQ(text.outlines[0].vertices.back(), (PathVertex{3, 4, 0, 0, 0, 0}));
}

TEST(TextOutlines, WithoutGlyphsComeFromAFontAndNotesNameIt) {
    // The file's font, and how the note begins; empty for none.
    const std::tuple<const char*, const char*, std::string> cases[] = {
        {"exact", R"({"fName":"x","fFamily":"DejaVu Sans","fStyle":"Bold"})", ""},
        {"in a list", R"({"fName":"x","fFamily":"'dejavu  sans', serif","fStyle":"bold"})", ""},
        {"by PostScript name", R"({"fName":"DejaVuSans-Bold","fFamily":"?"})", ""},
        {"style", R"({"fName":"x","fFamily":"DejaVu Sans","fStyle":"Thin"})",
         R"(Text of layer 2 "title": font "DejaVu Sans Thin" is not installed; "DejaVu Sans )"},
        {"family", R"({"fName":"x","fFamily":"Nowhere","fStyle":"Bold"})",
         R"(Text of layer 2 "title": font "Nowhere Bold" is not installed; "DejaVu )"},
        {"nothing named", "{}", R"(Text of layer 2 "title": the file names no font; "DejaVu )"},
    };
    FontLibrary library(JOSTLE_TEST_FONTS), empty(JOSTLE_TEST_DATA);
    for (const auto& [name, font, note] : cases) {
        const std::string text =
            document(keyed(R"("t":"Ab","s":20,"f":"x")"), R"("chars":[],"fonts":{"list":[)" + std::string(font) + "]}");
        const TextOutlines found = outlinesOf(text, 0, &library);
        EXPECT_EQ(found.outlines.size(), 4U) << name << ": two contours each";
        const std::string notes = found.notes.empty() ? "" : found.notes.front();
        EXPECT_EQ(notes.substr(0, note.size()), note);
        EXPECT_EQ(found.notes.size(), note.empty() ? 0U : 1U) << notes;
        const TextOutlines none = outlinesOf(text, 0, &empty);
        EXPECT_TRUE(none.outlines.empty());
        ASSERT_EQ(none.notes.size(), 1U);
        EXPECT_NE(none.notes[0].find("no font is installed"), std::string::npos) << none.notes[0];
    }
    // The installed fonts, which live to the end of the program.
    const TextOutlines installed = outlinesOf(document(keyed(R"("t":"Ab","s":20)"), R"("fonts":{"list":[]})"));
    EXPECT_EQ(installed.notes.size(), 1U);
    const std::string missing = document(keyed(R"("t":"A\u0001\ue123","s":20)"), R"("fonts":{"list":[]})");
    EXPECT_NE(outlinesOf(missing, 0, &library).notes.back().find("in no installed font"), std::string::npos);
}

} // namespace
} // namespace jostle::standalone
