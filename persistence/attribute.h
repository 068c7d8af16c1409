#pragma once

#include <span>
#include <string_view>
#include <type_traits>

namespace jostle {

/// How the value of an attribute is written as text.
enum class AttributeForm { Integer, Real, Boolean };

/// One named value of a record: how it is called in settings, and how it is read and written.
///
/// Every value passes through a double, which holds all of them exactly (32-bit integers, floats, flags).
template<class Record>
struct Attribute {
    std::string_view name;
    AttributeForm form;
    double least;
    double greatest;
    double (*read)(const Record&);
    void (*write)(Record&, double);
    std::span<const std::string_view> choices{}; ///< names of the values 0, 1, 2 ...; empty if it has none
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
        [](Record& record, double value) { detail::through<First, Rest...>(record) = static_cast<Value>(value); },
        choices};
}

/// The attribute of a flag.
template<auto First>
constexpr auto flagAttribute(std::string_view name) {
    return attribute<First>(name, 0, 1);
}

} // namespace jostle
