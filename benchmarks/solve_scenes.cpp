#include "benchmarks/solve_scenes.h"

#include <charconv>
#include <cmath>
#include <string_view>

namespace jostle {

namespace {

constexpr double compositionSize = 2400; // pixels, both ways
constexpr double middle = compositionSize / 2;
constexpr double pi = 3.14159265358979323846;

std::string text(double number) {
    char room[64];
    return {room, std::to_chars(room, room + sizeof room, number, std::chars_format::fixed, 3).ptr};
}

std::string pair(double x, double y) {
    return '[' + text(x) + ',' + text(y) + ']';
}

std::string still(const std::string& value) {
    return "{\"a\":0,\"k\":" + value + '}';
}

std::string ellipse(double diameter) {
    return R"({"ty":"el","p":)" + still("[0,0]") + ",\"s\":" + still(pair(diameter, diameter)) + '}';
}

std::string rectangle(double width, double height) {
    return R"({"ty":"rc","p":)" + still("[0,0]") + ",\"s\":" + still(pair(width, height)) + ",\"r\":" + still("0") +
           '}';
}

std::string star(int corners, double outer, double inner) {
    std::string points;
    std::string tangents;
    for (int i = 0; i < corners; ++i) {
        const double angle = 2 * pi * i / corners;
        const double radius = i % 2 == 0 ? outer : inner;
        points += (i > 0 ? "," : "") + pair(radius * std::cos(angle), radius * std::sin(angle));
        tangents += i > 0 ? ",[0,0]" : "[0,0]";
    }
    return R"({"ty":"sh","ks":)" +
           still("{\"i\":[" + tangents + "],\"o\":[" + tangents + "],\"v\":[" + points + "],\"c\":true}") + '}';
}

/// A document that grows by shape layers with one element each.
class Document {
public:
    explicit Document(int frames) : frames_{std::to_string(frames)} {}

    /// @param x, y  pixels from the composition's middle
    void add(const char* name, double x, double y, double degrees, const std::string& element) {
        ++count_;
        layers_ += layers_.empty() ? "" : ",";
        layers_ += R"({"ddd":0,"ind":)" + std::to_string(count_) + R"(,"ty":4,"nm":")" + name +
                   R"(","sr":1,"ks":{"o":)" + still("100") + ",\"r\":" + still(text(degrees)) +
                   ",\"p\":" + still(pair(middle + x, middle + y)) + ",\"a\":" + still("[0,0]") +
                   ",\"s\":" + still("[100,100]") + R"(},"ao":0,"shapes":[)" + element + R"(,{"ty":"fl","c":)" +
                   still("[0.2,0.5,0.8,1]") + ",\"o\":" + still("100") + R"(}],"ip":0,"op":)" + frames_ +
                   R"(,"st":0,"bm":0})";
    }

    [[nodiscard]] std::string whole() const {
        const std::string size = text(compositionSize);
        return R"({"v":"5.7.0","fr":60,"ip":0,"op":)" + frames_ + ",\"w\":" + size + ",\"h\":" + size +
               R"(,"nm":"Scene","ddd":0,"assets":[],"layers":[)" + layers_ + "]}";
    }

private:
    std::string frames_;
    std::string layers_;
    int count_ = 0;
};

} // namespace

SolveScene circlesToSolve(int circles, int frames) {
    constexpr int columns = 40;
    Document document(frames);
    for (int i = 0; i < circles; ++i) {
        const int row = i / columns;
        document.add("circle", 29 * (i % columns - 19.5) + (row % 2 == 0 ? 0 : 10), -50 - 40.0 * row, 0,
                     ellipse(20 + 2.0 * (i % 6)));
    }
    document.add("wall", 0, 50, 0, rectangle(1400, 100));
    document.add("wall", -650, -1000, 0, rectangle(100, 2000));
    document.add("wall", 650, -1000, 0, rectangle(100, 2000));
    return {"circles", document.whole(), {"wall.type=Static"}};
}

SolveScene boxesToSolve(int boxes, int frames) {
    Document document(frames);
    int done = 0;
    for (int row = 0; done < boxes; ++row) {
        const int columns = row < 32 ? 32 - row : 1;
        for (int i = 0; i < columns && done < boxes; ++i, ++done)
            document.add("box", 44 * (i - 0.5 * (columns - 1)), -40 * (row + 0.5), 0, rectangle(40, 40));
    }
    document.add("wall", 0, 50, 0, rectangle(4000, 100));
    return {"boxes", document.whole(), {"wall.type=Static"}};
}

SolveScene compoundsToSolve(int compounds, int frames) {
    constexpr int columns = 16;
    Document document(frames);
    for (int i = 0; i < compounds; ++i)
        document.add("star", 90 * (i % columns - 7.5), 400 - 90.0 * (i / columns), 6.0 * i, star(42, 40, 25));
    document.add("wall", 0, 550, 0, rectangle(1600, 100));
    document.add("wall", -850, 0, 30, rectangle(100, 2000));
    document.add("wall", 850, 0, -30, rectangle(100, 2000));
    return {"compounds", document.whole(), {"wall.type=Static"}};
}

SolveScene restlessToSolve(int circles, int frames) {
    constexpr int columns = 10;
    constexpr const char* headings[] = {"east", "south", "west", "north"};
    Document document(frames);
    for (int i = 0; i < circles; ++i)
        document.add(headings[i % 4], 90 * (i % columns - 4.5), -50 - 90.0 * (i / columns), 0,
                     ellipse(30 + 3.0 * (i % 6)));
    document.add("wall", 0, 50, 0, rectangle(1200, 100));
    document.add("wall", 0, -1150, 0, rectangle(1200, 100));
    document.add("wall", -550, -550, 0, rectangle(100, 1400));
    document.add("wall", 550, -550, 0, rectangle(100, 1400));
    return {"restless",
            document.whole(),
            {"gravity.magnitude=0", "*.restitution=1", "*.friction=0", "*.linearVelocityMagnitude=4",
             "*.angularVelocity=3", "south.linearVelocityDirection=95", "west.linearVelocityDirection=190",
             "north.linearVelocityDirection=275", "wall.type=Static"}};
}

} // namespace jostle
