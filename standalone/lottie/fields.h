#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <variant>

#include "standalone/document/composition.h"
#include "standalone/lottie/json_tree.h"

namespace jostle::standalone {

// Every member of the format that we know, by the object that holds it, with what we do with it. Reader and writer go
// by these tables. Members that stand in none of them are carried along as they are, as are those marked Ignore.

enum class FieldUse {
    Read,   ///< read by the table, never written
    Write,  ///< read by the table; replaced where it was changed
    Remove, ///< taken out of an object whose value is written, because players would prefer it to that
    Ignore, ///< not read
    Custom, ///< read, and maybe written, by code of its own
};

/// How a value is written, and what is made of it.
enum class FieldForm {
    None,
    Raw,     ///< handed on as it stands
    Number,  ///< finite number
    Boolean, ///< true or false
    ZeroOne, ///< 0 or 1
    Plain,   ///< one number that is no property

    // Properties. Of those with two or three components, a new one has three, or two if it lies in a plane.
    Point,      ///< two or three components; handles of plain numbers
    PlanePoint, ///< the same in a plane
    Scale,      ///< two or three components, percent; handles in arrays
    PlaneScale, ///< the same in a plane
    Size,       ///< two components; handles in arrays
    Single,     ///< one component; handles in arrays
    Percent,    ///< the same, whole if it is missing
    Colour,     ///< red, green and blue from 0 to 1; handles of plain numbers
    Outline,    ///< a path; handles of plain numbers
};

/// What sets the forms of properties apart.
struct PropertyFacts {
    int least = 1, most = 1;   ///< components
    int missing = 1;           ///< components of a property that is not there
    double fallback = 0;       ///< of a component that is not there
    bool plainHandles = false; ///< easing handles are numbers, not arrays with one for each component
    bool spatial = false;      ///< its way may be curved
};

[[nodiscard]] constexpr PropertyFacts propertyFacts(FieldForm form) {
    switch (form) {
    case FieldForm::Point:
        return {2, 3, 3, 0, true, true};
    case FieldForm::PlanePoint:
        return {2, 3, 2, 0, true, true};
    case FieldForm::Scale:
        return {2, 3, 3, 100};
    case FieldForm::PlaneScale:
        return {2, 3, 2, 100};
    case FieldForm::Size:
        return {2, 2, 2};
    case FieldForm::Percent:
        return {1, 1, 1, 100};
    case FieldForm::Colour:
        return {3, 3, 3, 1, true};
    default:
        return {};
    }
}

/// Length and first, second and last character of a name: those of other names are nearly always others.
[[nodiscard]] constexpr std::uint32_t signatureOf(std::string_view name) {
    const auto byte = [name](std::size_t place) {
        return static_cast<std::uint32_t>(static_cast<unsigned char>(name[place]));
    };
    if (name.empty())
        return 0;
    return static_cast<std::uint32_t>(name.size() & 0xFF) | byte(0) << 8 | byte(name.size() > 1 ? 1 : 0) << 16 |
           byte(name.size() - 1) << 24;
}

template<class Record>
struct Field {
    using Member =
        std::variant<std::monostate, JsonValue Record::*, double Record::*, bool Record::*, Stream Record::*>;

    std::string_view name;
    FieldUse use = FieldUse::Ignore;
    FieldForm form = FieldForm::None;
    Member member{};
    std::uint32_t signature = signatureOf(name);
};

/// The field that a member of an object belongs to, or null.
template<class Table>
[[nodiscard]] const typename Table::value_type* findField(const Table& table, const JsonValue& member) {
    const std::string_view raw = member.rawKey();
    const std::uint32_t signature = signatureOf(raw);
    for (const auto& field : table) {
        if (field.signature == signature && (raw.size() <= 3 || raw == field.name))
            return &field;
    }
    if (raw.find('\\') == std::string_view::npos)
        return nullptr;
    for (const auto& field : table) {
        if (member.hasKey(field.name))
            return &field;
    }
    return nullptr;
}

/// Reads one member of an object by the table alone. Members of a wrong type leave the record's defaults.
template<class Table, class Record>
void readField(const Table& table, const JsonValue& value, Record& record) {
    const auto* field = findField(table, value);
    if (!field)
        return;
    if (field->form == FieldForm::Raw)
        record.*std::get<JsonValue Record::*>(field->member) = value;
    else if (field->form == FieldForm::Number)
        record.*std::get<double Record::*>(field->member) =
            value.number(record.*std::get<double Record::*>(field->member));
    else if (field->form == FieldForm::Boolean)
        record.*std::get<bool Record::*>(field->member) = value.boolean(false);
    else if (field->form == FieldForm::ZeroOne)
        record.*std::get<bool Record::*>(field->member) = value.flag();
}

/// Reads all members of an object so; nothing of what is none.
template<class Table, class Record>
void readFields(const Table& table, const JsonValue& object, Record& record) {
    if (object.isObject())
        forEachChild(object, [&](const JsonValue& value) { readField(table, value, record); });
}

/// The members of a document.
struct DocumentMembers {
    JsonValue version, frameRate, inFrame, outFrame, width, height, name, layers, assets, slots, complete, extension;
};

inline constexpr std::array documentFields{
    Field<DocumentMembers>{"fr", FieldUse::Read, FieldForm::Raw, &DocumentMembers::frameRate},
    Field<DocumentMembers>{"ip", FieldUse::Write, FieldForm::Raw, &DocumentMembers::inFrame},
    Field<DocumentMembers>{"op", FieldUse::Write, FieldForm::Raw, &DocumentMembers::outFrame},
    Field<DocumentMembers>{"w", FieldUse::Read, FieldForm::Raw, &DocumentMembers::width},
    Field<DocumentMembers>{"h", FieldUse::Read, FieldForm::Raw, &DocumentMembers::height},
    Field<DocumentMembers>{"nm", FieldUse::Write, FieldForm::Raw, &DocumentMembers::name},
    Field<DocumentMembers>{"layers", FieldUse::Read, FieldForm::Raw, &DocumentMembers::layers},
    Field<DocumentMembers>{"assets", FieldUse::Read, FieldForm::Raw, &DocumentMembers::assets},
    Field<DocumentMembers>{"slots", FieldUse::Read, FieldForm::Raw, &DocumentMembers::slots},
    Field<DocumentMembers>{"jostle", FieldUse::Write, FieldForm::Raw, &DocumentMembers::extension},
    Field<DocumentMembers>{"v", FieldUse::Read, FieldForm::Raw, &DocumentMembers::version},
    Field<DocumentMembers>{"__complete", FieldUse::Read, FieldForm::Raw, &DocumentMembers::complete},
    Field<DocumentMembers>{"ver", FieldUse::Ignore},
    Field<DocumentMembers>{"ddd", FieldUse::Ignore},
    Field<DocumentMembers>{"fonts", FieldUse::Ignore},
    Field<DocumentMembers>{"chars", FieldUse::Ignore},
    Field<DocumentMembers>{"markers", FieldUse::Ignore},
    Field<DocumentMembers>{"meta", FieldUse::Ignore},
    Field<DocumentMembers>{"metadata", FieldUse::Ignore},
    Field<DocumentMembers>{"props", FieldUse::Ignore},
    Field<DocumentMembers>{"comps", FieldUse::Ignore},
    Field<DocumentMembers>{"mb", FieldUse::Ignore},
    Field<DocumentMembers>{"tgs", FieldUse::Ignore},
};

inline constexpr std::array layerFields{
    Field<Layer>{"ip", FieldUse::Read, FieldForm::Number, &Layer::inFrame},
    Field<Layer>{"op", FieldUse::Read, FieldForm::Number, &Layer::outFrame},
    Field<Layer>{"st", FieldUse::Read, FieldForm::Number, &Layer::startFrame},
    Field<Layer>{"sr", FieldUse::Read, FieldForm::Number, &Layer::stretch},
    Field<Layer>{"ddd", FieldUse::Read, FieldForm::ZeroOne, &Layer::threeD},
    Field<Layer>{"td", FieldUse::Read, FieldForm::ZeroOne, &Layer::matteSource},
    Field<Layer>{"ao", FieldUse::Write, FieldForm::ZeroOne, &Layer::autoOrient},
    Field<Layer>{"mb", FieldUse::Write, FieldForm::Boolean, &Layer::motionBlur},
    Field<Layer>{"hd", FieldUse::Write, FieldForm::Boolean, &Layer::hidden},
    Field<Layer>{"ty", FieldUse::Custom},
    Field<Layer>{"nm", FieldUse::Custom},
    Field<Layer>{"ind", FieldUse::Custom},
    Field<Layer>{"parent", FieldUse::Custom},
    Field<Layer>{"refId", FieldUse::Custom},
    Field<Layer>{"ks", FieldUse::Custom},
    Field<Layer>{"tt", FieldUse::Custom},
    Field<Layer>{"tp", FieldUse::Custom},
    Field<Layer>{"masksProperties", FieldUse::Custom},
    Field<Layer>{"hasMask", FieldUse::Custom},
    Field<Layer>{"shapes", FieldUse::Custom},
    Field<Layer>{"t", FieldUse::Custom},
    Field<Layer>{"sw", FieldUse::Custom},
    Field<Layer>{"sh", FieldUse::Custom},
    Field<Layer>{"sc", FieldUse::Custom},
    Field<Layer>{"w", FieldUse::Custom},
    Field<Layer>{"h", FieldUse::Custom},
    Field<Layer>{"jostle", FieldUse::Custom},
    Field<Layer>{"bm", FieldUse::Ignore},
    Field<Layer>{"tm", FieldUse::Ignore},
    Field<Layer>{"ef", FieldUse::Ignore},
    Field<Layer>{"sy", FieldUse::Ignore},
    Field<Layer>{"ct", FieldUse::Ignore},
    Field<Layer>{"cp", FieldUse::Ignore},
    Field<Layer>{"cl", FieldUse::Ignore},
    Field<Layer>{"ln", FieldUse::Ignore},
    Field<Layer>{"tg", FieldUse::Ignore},
    Field<Layer>{"au", FieldUse::Ignore},
    Field<Layer>{"xt", FieldUse::Ignore},
};

/// Members of a layer that take more than the table.
struct LayerMembers {
    JsonValue type, name, id, parent, transform, matte, matteId, masks, shapes, extension;
};

inline constexpr std::array layerMemberFields{
    Field<LayerMembers>{"ty", FieldUse::Read, FieldForm::Raw, &LayerMembers::type},
    Field<LayerMembers>{"nm", FieldUse::Read, FieldForm::Raw, &LayerMembers::name},
    Field<LayerMembers>{"ind", FieldUse::Read, FieldForm::Raw, &LayerMembers::id},
    Field<LayerMembers>{"parent", FieldUse::Read, FieldForm::Raw, &LayerMembers::parent},
    Field<LayerMembers>{"ks", FieldUse::Read, FieldForm::Raw, &LayerMembers::transform},
    Field<LayerMembers>{"tt", FieldUse::Read, FieldForm::Raw, &LayerMembers::matte},
    Field<LayerMembers>{"tp", FieldUse::Read, FieldForm::Raw, &LayerMembers::matteId},
    Field<LayerMembers>{"masksProperties", FieldUse::Read, FieldForm::Raw, &LayerMembers::masks},
    Field<LayerMembers>{"shapes", FieldUse::Read, FieldForm::Raw, &LayerMembers::shapes},
    Field<LayerMembers>{"jostle", FieldUse::Read, FieldForm::Raw, &LayerMembers::extension},
};

// On 3D layers "rz" takes the place of "r".
inline constexpr std::array transformFields{
    Field<Transform>{"a", FieldUse::Write, FieldForm::Point, &Transform::anchor},
    Field<Transform>{"p", FieldUse::Write, FieldForm::Point, &Transform::position},
    Field<Transform>{"s", FieldUse::Write, FieldForm::Scale, &Transform::scale},
    Field<Transform>{"r", FieldUse::Write, FieldForm::Single, &Transform::rotation},
    Field<Transform>{"sk", FieldUse::Write, FieldForm::Single, &Transform::skew},
    Field<Transform>{"sa", FieldUse::Write, FieldForm::Single, &Transform::skewAxis},
    Field<Transform>{"o", FieldUse::Write, FieldForm::Percent, &Transform::opacity},
    Field<Transform>{"rz", FieldUse::Custom},
    Field<Transform>{"rx", FieldUse::Ignore},
    Field<Transform>{"ry", FieldUse::Ignore},
    Field<Transform>{"or", FieldUse::Ignore},
};

/// The separated dimensions of a position.
inline constexpr std::array dimensionFields{
    Field<Dimensions>{"x", FieldUse::Write, FieldForm::Single, &Dimensions::x},
    Field<Dimensions>{"y", FieldUse::Write, FieldForm::Single, &Dimensions::y},
    Field<Dimensions>{"z", FieldUse::Write, FieldForm::Single, &Dimensions::z},
};

/// The members of a property.
struct PropertyMembers {
    JsonValue value, expression, slot;
};

inline constexpr std::array propertyFields{
    Field<PropertyMembers>{"a", FieldUse::Custom},
    Field<PropertyMembers>{"k", FieldUse::Custom, FieldForm::Raw, &PropertyMembers::value},
    Field<PropertyMembers>{"x", FieldUse::Remove, FieldForm::Raw, &PropertyMembers::expression},
    Field<PropertyMembers>{"sid", FieldUse::Remove, FieldForm::Raw, &PropertyMembers::slot},
    Field<PropertyMembers>{"s", FieldUse::Custom},
    Field<PropertyMembers>{"y", FieldUse::Custom},
    Field<PropertyMembers>{"z", FieldUse::Custom},
    Field<PropertyMembers>{"ix", FieldUse::Ignore},
    Field<PropertyMembers>{"l", FieldUse::Ignore},
    Field<PropertyMembers>{"ty", FieldUse::Ignore},
};

/// The members of a keyframe.
struct KeyframeMembers {
    JsonValue time, start, end, easeOut, easeIn, tangentOut, tangentIn, hold;
};

inline constexpr std::array keyframeFields{
    Field<KeyframeMembers>{"t", FieldUse::Read, FieldForm::Raw, &KeyframeMembers::time},
    Field<KeyframeMembers>{"s", FieldUse::Read, FieldForm::Raw, &KeyframeMembers::start},
    Field<KeyframeMembers>{"e", FieldUse::Read, FieldForm::Raw, &KeyframeMembers::end},
    Field<KeyframeMembers>{"o", FieldUse::Read, FieldForm::Raw, &KeyframeMembers::easeOut},
    Field<KeyframeMembers>{"i", FieldUse::Read, FieldForm::Raw, &KeyframeMembers::easeIn},
    Field<KeyframeMembers>{"to", FieldUse::Read, FieldForm::Raw, &KeyframeMembers::tangentOut},
    Field<KeyframeMembers>{"ti", FieldUse::Read, FieldForm::Raw, &KeyframeMembers::tangentIn},
    Field<KeyframeMembers>{"h", FieldUse::Read, FieldForm::Raw, &KeyframeMembers::hold},
    Field<KeyframeMembers>{"n", FieldUse::Ignore},
};

/// The members of an asset.
struct AssetMembers {
    JsonValue id, name, layers;
    double width = 0, height = 0;
};

inline constexpr std::array assetFields{
    Field<AssetMembers>{"id", FieldUse::Read, FieldForm::Raw, &AssetMembers::id},
    Field<AssetMembers>{"nm", FieldUse::Read, FieldForm::Raw, &AssetMembers::name},
    Field<AssetMembers>{"layers", FieldUse::Read, FieldForm::Raw, &AssetMembers::layers},
    Field<AssetMembers>{"w", FieldUse::Read, FieldForm::Number, &AssetMembers::width},
    Field<AssetMembers>{"h", FieldUse::Read, FieldForm::Number, &AssetMembers::height},
    Field<AssetMembers>{"u", FieldUse::Ignore},
    Field<AssetMembers>{"p", FieldUse::Ignore},
    Field<AssetMembers>{"e", FieldUse::Ignore},
    Field<AssetMembers>{"t", FieldUse::Ignore},
    Field<AssetMembers>{"fr", FieldUse::Ignore},
    Field<AssetMembers>{"xt", FieldUse::Ignore},
};

} // namespace jostle::standalone
