#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <type_traits>

namespace jostle {

/// How the value of an attribute is written as text.
enum class AttributeForm { Integer, Real, Boolean };

/// One named value of a record: how it is called in settings, and how it is read and written. The settings file, the
/// snapshots in it and the overrides of the command line all go by these.
///
/// Every value passes through a double, which holds all of them exactly (32-bit integers, floats, flags).
template<class Record>
struct Attribute {
    std::string_view name;
    AttributeForm form; ///< in which a file has it
    double least;       ///< what the command line takes; a file may go beyond
    double greatest;
    double (*read)(const Record&);
    void (*write)(Record&, double);
    std::span<const std::string_view> choices{}; ///< names of the values 0, 1, 2 ...; empty if it has none
    bool withNext = false;                       ///< a file sets it only if it has the next one too
    bool wholeWhenRead = false;                  ///< a real number of which a file's reader takes the whole part
    double (*throughPanel)(double) = nullptr;    ///< what the panel leaves of a file's value; null if all of it
};

namespace detail {

template<class Member>
struct MemberOf;

template<class Record_, class Value_>
struct MemberOf<Value_ Record_::*> {
    using Record = Record_;
    using Value = Value_;
};

template<class Value>
constexpr AttributeForm formOf() {
    if constexpr (std::is_same_v<Value, bool>) {
        return AttributeForm::Boolean;
    } else if constexpr (std::is_floating_point_v<Value>) {
        return AttributeForm::Real;
    } else {
        return AttributeForm::Integer;
    }
}

/// A value as its field holds it. Integers of 16 bits keep the lower bits of larger ones.
template<class Value>
constexpr Value narrowed(double value) {
    if constexpr (std::is_unsigned_v<Value> && !std::is_same_v<Value, bool>) {
        return static_cast<Value>(static_cast<std::int32_t>(value));
    } else {
        return static_cast<Value>(value);
    }
}

/// Follows a chain of member pointers: through<&BodyRecord::position, &b2Vec2::x>(body) is body.position.x.
template<auto First, auto... Rest, class Object>
constexpr auto& through(Object& object) {
    if constexpr (sizeof...(Rest) == 0) {
        return object.*First;
    } else {
        return through<Rest...>(object.*First);
    }
}

} // namespace detail

/// The attribute of a field, or of a field's field.
/// @param least, greatest  limits of the value, both allowed; those of a flag are 0 and 1
template<auto First, auto... Rest>
constexpr auto attribute(std::string_view name, double least, double greatest,
                         std::span<const std::string_view> choices = {}) {
    using Record = typename detail::MemberOf<decltype(First)>::Record;
    using Value = std::remove_reference_t<decltype(detail::through<First, Rest...>(std::declval<Record&>()))>;
    return Attribute<Record>{
        name,
        detail::formOf<Value>(),
        least,
        greatest,
        [](const Record& record) { return static_cast<double>(detail::through<First, Rest...>(record)); },
        [](Record& record, double value) { detail::through<First, Rest...>(record) = detail::narrowed<Value>(value); },
        choices};
}

/// An attribute that a file sets only along with the next one of its table.
template<class Record>
constexpr Attribute<Record> withNext(Attribute<Record> attribute) {
    attribute.withNext = true;
    return attribute;
}

/// An attribute whose value in a file goes through a panel, as the panel's slider would have it.
template<class Record>
constexpr Attribute<Record> throughPanel(double (*panel)(double), Attribute<Record> attribute) {
    attribute.throughPanel = panel;
    return attribute;
}

/// The attribute of a flag.
template<auto First>
constexpr auto flagAttribute(std::string_view name) {
    return attribute<First>(name, 0, 1);
}

} // namespace jostle
