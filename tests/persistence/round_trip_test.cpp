#include <gtest/gtest.h>

#include <clocale>
#include <locale>
#include <random>

#include "persistence/attribute_tables.h"
#include "tests/persistence/loading.h"

namespace jostle {
namespace {

/// Values within the ranges of their rows, on a grid that single precision and six decimals hold exactly.
class RandomSetup {
public:
    explicit RandomSetup(unsigned seed) : random_(seed) {}

    template<class Record>
    void fill(std::span<const Attribute<Record>> table, Record& record) {
        for (const Attribute<Record>& row : table) {
            const int least = static_cast<int>(std::max(row.least, -1000.0)) * 4;
            const int greatest = static_cast<int>(std::min(row.greatest, 1000.0)) * 4;
            const double value = number(least, greatest) / 4.0;
            row.write(record, row.form == AttributeForm::Integer ? std::floor(value) : value);
        }
    }

    void fill(Scene& scene) {
        for (BodyRecord& body : scene.bodies) {
            fill(bodyAttributes(), body);
        }
        scene.joints.clear();
        for (int i = number(0, 20); i > 0; --i) {
            JointRecord& joint = addJoint(scene, static_cast<JointType>(number(0, 3)), number(0, scene.bodyCount() - 1),
                                          number(0, scene.bodyCount() - 1));
            fill(jointAttributes(joint.type), joint);
        }
        // Only what the panels' sliders can show comes back, and only channels whose six decimals are not less.
        scene.preview = {number(1, 2000), static_cast<float>(number(-50, 50)), 1.5f, {255, 51, 204}, false};
        scene.globals.timeDivider = number(1, 20) / 4.0;
        scene.globals.tolerance = number(1, 100);
        scene.globals.stepsPerFrame = number(1, 10);
        scene.globals.magnitude = number(0, 200) / 4.0;
        scene.globals.direction = number(0, 360);
        scene.globals.takeValueFrom = number(0, 1) == 1;
        scene.globals.layerIndex = scene.globals.takeValueFrom ? number(0, 2) : 0;
    }

    int number(int least, int greatest) { return std::uniform_int_distribution(least, greatest)(random_); }

private:
    std::mt19937 random_;
};

void expectRoundTrip(unsigned seed) {
    SCOPED_TRACE(seed);
    RandomSetup random(seed);
    Loading first;
    for (int i = random.number(0, 4); i > 0; --i) {
        addBox(first.scene, {0, 0}, 1, 1);
    }
    Loading second;
    second.scene = first.scene;
    for (int i = random.number(0, 3); i > 0; --i) {
        random.fill(first.scene);
        first.strip.add(takeSnapshot(first.scene), 5);
    }
    random.fill(first.scene);
    const std::string text = first.save();
    ASSERT_EQ(second.load(text), LoadResult::Complete);
    EXPECT_EQ(second.save(), text);
    EXPECT_EQ(second.messages.texts, std::vector<std::string>{});
}

TEST(RoundTrip, GivesTheSameBytes) {
    for (unsigned seed = 1; seed <= 200; ++seed) {
        expectRoundTrip(seed);
    }
}

TEST(RoundTrip, OfValuesBetweenTheGridLosesOnlyOnce) {
    Loading loading;
    loading.scene.globals.tolerance = 49.5;
    loading.scene.globals.timeDivider = 7.7777;
    loading.body().angle = 0.1234567f;
    loading.body(1).position = {1.0f / 3.0f, 12345.678f};
    const std::string first = loading.save();
    ASSERT_EQ(loading.load(first), LoadResult::Complete);
    const std::string second = loading.save();
    EXPECT_NE(second, first);
    ASSERT_EQ(loading.load(second), LoadResult::Complete);
    EXPECT_EQ(loading.save(), second);
}

TEST(RoundTrip, WritesTheElementsInTheirOrder) {
    Scene scene;
    EXPECT_EQ(settingsText(scene, {}),
              "<?xml version=\"1.0\"?>\n"
              "<JostleSettings majorVersion=\"1\" minorVersion=\"2\">\n"
              "    <preview zoom=\"250.000000\" panX=\"0.000000\" panY=\"0.000000\" bgColorR=\"0.149020\" "
              "bgColorG=\"0.149020\" bgColorB=\"0.149020\"/>\n"
              "    <solver timeDivider=\"1.000000\" tolerance=\"50.000000\" stepsPerFrame=\"2\"/>\n"
              "    <gravity magnitude=\"10.000000\" direction=\"90.000000\" takeValueFrom=\"0\" layerIndex=\"0\"/>\n"
              "    <bodies/>\n    <joints/>\n    <presets/>\n</JostleSettings>\n");
}

/// Puts the program under a locale that writes 1,5 for a half more than one, as far as the system has one.
class DecimalComma {
public:
    DecimalComma() : before_(std::locale::global(std::locale(std::locale(), new Comma))) {
        for (const char* name : {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8", "pl_PL.UTF-8", "ru_RU.UTF-8"}) {
            if (std::setlocale(LC_ALL, name) != nullptr) {
                break;
            }
        }
    }
    ~DecimalComma() {
        std::locale::global(before_);
        std::setlocale(LC_ALL, "C");
    }
    DecimalComma(const DecimalComma&) = delete;
    DecimalComma& operator=(const DecimalComma&) = delete;

private:
    struct Comma : std::numpunct<char> {
        char do_decimal_point() const override { return ','; }
        char do_thousands_sep() const override { return '.'; }
        std::string do_grouping() const override { return "\3"; }
    };
    std::locale before_;
};

TEST(RoundTrip, DoesNotDependOnTheLocale) {
    Loading plain;
    plain.scene.globals.magnitude = 1234.5;
    const DecimalComma comma;
    EXPECT_NE(plain.save().find("magnitude=\"1234.500000\""), std::string::npos);
    expectRoundTrip(7);
}

} // namespace
} // namespace jostle
