#include "standalone/lottie/splice.h"

#include <algorithm>
#include <iterator>

#include "standalone/lottie/json_string.h"

namespace jostle::standalone {

namespace {

/// White space before the first member of an object, within its brace.
std::string_view leadIn(const JsonValue& object) {
    const JsonValue first = object.firstChild();
    if (!first)
        return {};
    return object.text().substr(1, first.keySpan().begin - object.span().begin - 1);
}

std::string_view afterLineBreak(std::string_view space) {
    return space.substr(space.rfind('\n') + 1);
}

} // namespace

TextStyle styleOf(const JsonValue& root) {
    TextStyle style;
    const JsonValue first = root.firstChild();
    if (!first)
        return style;
    const std::string_view lead = leadIn(root);
    if (lead.find('\n') != std::string_view::npos) {
        style.newline = lead.find("\r\n") != std::string_view::npos ? "\r\n" : "\n";
        style.unit = style.indent = afterLineBreak(lead);
    }
    if (first.span().begin > first.keySpan().end + 1) {
        style.colon = ": ";
        style.comma = ", ";
    }
    return style;
}

void TextEdits::replace(SourceSpan span, std::string text) {
    edits_.push_back({span, std::move(text), {}});
}

void TextEdits::replacePrinted(SourceSpan span, TextPrinter print) {
    edits_.push_back({span, {}, std::move(print)});
}

void TextEdits::append(TextEdits&& others) {
    std::move(others.edits_.begin(), others.edits_.end(), std::back_inserter(edits_));
}

void TextEdits::apply(std::string_view source, SourceSpan part, TextSink& out) const {
    std::vector<const Edit*> order;
    for (const Edit& edit : edits_) {
        if (part.begin <= edit.span.begin && edit.span.end <= part.end)
            order.push_back(&edit);
    }
    // What is inserted at a place comes before what is taken away from there on.
    std::stable_sort(order.begin(), order.end(), [](const Edit* a, const Edit* b) {
        return a->span.begin != b->span.begin ? a->span.begin < b->span.begin : a->span.empty() && !b->span.empty();
    });
    std::size_t reached = part.begin;
    for (const Edit* edit : order) {
        out.write(source.substr(reached, edit->span.begin - reached));
        if (edit->print)
            edit->print(out);
        else
            out.write(edit->text);
        reached = edit->span.end;
    }
    out.write(source.substr(reached, part.end - reached));
}

std::string TextEdits::applied(std::string_view source, SourceSpan part) const {
    StringSink out;
    apply(source, part, out);
    return out.text();
}

TextStyle ObjectText::innerStyle() const {
    TextStyle inner = style_;
    inner.indent += inner.unit;
    return inner;
}

void ObjectText::add(std::string_view name, std::string_view value) {
    if (!members_.empty())
        members_ += style_.newline.empty() ? style_.comma : ',' + style_.newline + style_.indent;
    appendQuoted(members_, name);
    members_ += style_.colon;
    members_ += value;
}

void ObjectText::addString(std::string_view name, std::string_view utf8) {
    std::string quoted;
    appendQuoted(quoted, utf8);
    add(name, quoted);
}

std::string ObjectText::text() const {
    if (members_.empty() || style_.newline.empty())
        return '{' + members_ + '}';
    const std::size_t outer = style_.indent.size() - std::min(style_.indent.size(), style_.unit.size());
    return '{' + style_.newline + style_.indent + members_ + style_.newline + style_.indent.substr(0, outer) + '}';
}

ListLayout layoutOf(const JsonValue& array, const TextStyle& owner) {
    ListLayout layout;
    if (!owner.newline.empty()) {
        layout.lead = owner.newline + owner.indent + owner.unit;
        layout.tail = owner.newline + owner.indent;
    }
    layout.between = owner.newline.empty() ? owner.comma : ',' + layout.lead;
    const JsonValue first = array.isArray() ? array.firstChild() : JsonValue{};
    if (!first)
        return layout;
    const std::string_view text = array.text();
    const std::uint32_t begin = array.span().begin;
    SourceSpan last = first.span();
    forEachChild(array, [&](const JsonValue& entry) { last = entry.span(); });
    layout.lead = text.substr(1, first.span().begin - begin - 1);
    layout.tail = text.substr(last.end - begin, text.size() - 1 - (last.end - begin));
    layout.between = ',' + layout.lead;
    if (const JsonValue second = first.nextSibling(array))
        layout.between = text.substr(first.span().end - begin, second.span().begin - first.span().end);
    return layout;
}

std::string listText(const JsonValue& array, const TextStyle& owner, const std::vector<std::string>& entries) {
    if (entries.empty())
        return "[]";
    const ListLayout layout = layoutOf(array, owner);
    std::string out = '[' + layout.lead;
    for (std::size_t i = 0; i < entries.size(); ++i) {
        if (i > 0)
            out += layout.between;
        out += entries[i];
    }
    return out + layout.tail + ']';
}

TextStyle entryStyle(const JsonValue& array, const TextStyle& owner, const TextStyle& document) {
    JsonValue present;
    if (array.isArray())
        forEachChild(array, [&](const JsonValue& entry) { present = !present && entry.isObject() ? entry : present; });
    if (present)
        return ObjectEdit(present, document).style();
    TextStyle style = owner;
    style.indent += style.unit + style.unit;
    return style;
}

ObjectEdit::ObjectEdit(const JsonValue& object, const TextStyle& document)
    : object_{object}, members_{object}, style_{document} {
    const std::string_view lead = leadIn(object);
    if (lead.find('\n') != std::string_view::npos)
        style_.indent = afterLineBreak(lead);
    else
        style_.newline.clear();
}

std::string ObjectEdit::separator() const {
    return style_.newline.empty() ? style_.comma : ',' + style_.newline + style_.indent;
}

void ObjectEdit::set(std::string_view name, std::string value) {
    if (const JsonValue present = members_[name]) {
        if (present.text() == value)
            return;
        replaced_.replace(present.span(), std::move(value));
        return;
    }
    if (!inserted_.empty())
        inserted_ += separator();
    appendQuoted(inserted_, name);
    inserted_ += style_.colon;
    inserted_ += value;
}

void ObjectEdit::setString(std::string_view name, std::string_view utf8) {
    std::string quoted;
    appendQuoted(quoted, utf8);
    set(name, std::move(quoted));
}

void ObjectEdit::setPrinted(std::string_view name, TextPrinter print) {
    if (const JsonValue present = members_[name]) {
        replaced_.replacePrinted(present.span(), std::move(print));
        return;
    }
    StringSink text;
    print(text);
    set(name, text.text());
}

void ObjectEdit::remove(std::string_view name) {
    if (members_[name])
        removed_.emplace_back(name);
}

void ObjectEdit::commit(TextEdits& edits) {
    edits.append(std::move(replaced_));

    // A removed member goes with what parts it from the member kept before it, or, without one, after it.
    std::uint32_t keptEnd = 0;      // end of the last member kept
    std::uint32_t removedBegin = 0; // of members at the front
    std::uint32_t last = 0;
    for (const JsonValue& member : members_) {
        const bool goes =
            std::any_of(removed_.begin(), removed_.end(), [&](const std::string& name) { return member.hasKey(name); });
        if (goes && keptEnd != 0)
            edits.replace({last, member.span().end}, {});
        else if (goes && removedBegin == 0)
            removedBegin = member.keySpan().begin;
        else if (!goes && keptEnd == 0 && removedBegin != 0)
            edits.replace({removedBegin, member.keySpan().begin}, {});
        if (!goes)
            keptEnd = member.span().end;
        last = member.span().end;
    }
    if (keptEnd == 0 && removedBegin != 0)
        edits.replace({removedBegin, last}, {});
    if (inserted_.empty())
        return;
    const std::uint32_t place = keptEnd != 0 ? keptEnd : removedBegin != 0 ? removedBegin : object_.span().begin + 1;
    edits.replace({place, place}, (keptEnd != 0 ? separator() : std::string()) + inserted_);
}

} // namespace jostle::standalone
