// Tables of the members of JSON objects: a row reads, writes and documents one of them, and gives out its texts.
//
// kMembers<Object> is the table of a structure. A row names the field and takes the form in which it stands in the file
// from the field's type (Forms.h), unless it names another one:
//
//     template <>
//     constexpr Member<Keyboard> kMembers<Keyboard>[] = {
//         always<&Keyboard::type>("type", "GetKeyboardType(0)"),
//         ...
#pragma once

#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "simwin/station/JsonView.h"

namespace simwin {

// What a text tells of whose the station is. A redaction goes by this order, so that it is the same each time.
enum class Tells {
    Nothing,
    Name,           // a name as a whole
    AddressBytes,   // an IPv4 address of 4 bytes, an IPv6 address of 16, or else a physical one
    Address,        // an IPv4 address with dots
    Host,           // a name as a whole, or an address with dots in its place
    PhysicalBytes,  // a physical address
    Utf8Words,      // names and addresses among others, in UTF-8
    Words,          // the same in the code page, as all that follows
    Addresses,      // the same, addresses first of all
    Version,        // the same, and numbers that may look like an address
    Setting,        // any of these, by the name of the variable
    OwnWords,       // words, of a file's path or of an entry in kvcstat64.ini
    Key,            // the full path of a key
    Unknown,        // the same, or the path of a member with dots
    VersionBytes,   // a raw version resource
    OwnName,        // the name of a variable, of a section or of an entry
    Last = OwnName,
};

struct Told {
    Tells tells;
    std::string_view name;  // under which the text stands, where that is the station's own: a variable's
};

using TextVisitor = std::function<void(std::string& text, const Told& told)>;

// The names and numbers that lead from a place to one below it, in UTF-8.
using PathBelow = std::span<const std::string>;

// What stands at a place.
struct ToldAt {
    bool isMember = false;         // a station can have something there
    Tells text = Tells::Nothing;   // of a text
    Tells names = Tells::Nothing;  // of an object's names, where they are the station's own
};

// What people are told of a member.
struct MemberText {
    std::string path;       // such as "version.major", "drives.X.label"
    std::string value;      // what stands there
    std::string byDefault;  // of numbers, true and false
    std::string meaning;
};
using MemberTexts = std::vector<MemberText>;

template <class Object>
struct Member {
    std::string_view name;
    std::string_view meaning;
    Tells tells;
    bool isAlwaysWritten;                     // else only when it is not as in an object of which nothing is told
    void (*read)(const JsonView&, Object&);   // throws ReadError
    JsonView::Json (*write)(const Object&);   // null leaves the member out
    void (*tell)(MemberText&, MemberTexts&);  // the value, and the members below it
    void (*eachText)(Object&, const Told&, const TextVisitor&);
    ToldAt (*at)(PathBelow, Tells);

    // With a rule of its own about what is left out.
    constexpr Member writtenBy(JsonView::Json (*own)(const Object&)) const {
        Member member = *this;
        member.write = own;
        return member;
    }
};

// The table of a structure's members, in the order in which they are written.
template <class Object>
constexpr auto kMembers = nullptr;

// The form of a field's type, in Forms.h.
template <class Value>
struct FormOf;

template <class Object, class Value>
Object objectOf(Value Object::*);
template <class Object, class Value>
Value valueOf(Value Object::*);

template <auto Field>
using ObjectOf = decltype(objectOf(Field));
template <auto Field>
using FormOfField = FormOf<decltype(valueOf(Field))>;

template <auto Field, class Form>
constexpr Member<ObjectOf<Field>> rowOf(std::string_view name, std::string_view meaning, Tells tells) {
    using Object = ObjectOf<Field>;
    return {.name = name,
            .meaning = meaning,
            .tells = tells,
            .isAlwaysWritten = false,
            .read = [](const JsonView& value, Object& object) { Form::read(value, object.*Field); },
            .write = [](const Object& object) -> JsonView::Json { return Form::write(object.*Field); },
            .tell = [](MemberText& member, MemberTexts& below) { Form::tell(member, below); },
            .eachText = [](Object& object, const Told& told,
                           const TextVisitor& visit) { Form::eachText(object.*Field, told, visit); },
            .at = [](PathBelow path, Tells told) { return Form::at(path, told); }};
}

// A row. That of a text, or of several in a list or under names of the station's own, says what each tells; what the
// names do is said where they are read.
template <auto Field, class Form = FormOfField<Field>>
requires(!Form::kIsText) constexpr auto member(std::string_view name, std::string_view meaning) {
    return rowOf<Field, Form>(name, meaning, Tells::Nothing);
}
template <auto Field, class Form = FormOfField<Field>>
requires Form::kIsText constexpr auto member(std::string_view name, Tells tells, std::string_view meaning) {
    return rowOf<Field, Form>(name, meaning, tells);
}

// The row of a member that is always written, of the same words.
template <auto Field, class Form = FormOfField<Field>, class... Told>
constexpr auto always(Told... told) {
    auto row = member<Field, Form>(told...);
    row.isAlwaysWritten = true;
    return row;
}

template <class Object>
const Object& untold() {
    static const Object object{};
    return object;
}

template <class Object>
void readMembers(const JsonView& view, Object& object) {
    view.eachMember([&](const std::string& name, const JsonView& value) {
        for (const Member<Object>& member : kMembers<Object>)
            if (member.name == name)
                return member.read(value, object);
        value.failUnknown();
    });
}

template <class Object>
JsonView::Json writeMembers(const Object& object) {
    JsonView::Json json = JsonView::Json::object();
    for (const Member<Object>& member : kMembers<Object>) {
        JsonView::Json value = member.write(object);
        if (!value.is_null() && (member.isAlwaysWritten || value != member.write(untold<Object>())))
            json[std::string(member.name)] = std::move(value);
    }
    return json;
}

template <class Object>
void tellMembers(const std::string& path, MemberTexts& texts) {
    for (const Member<Object>& member : kMembers<Object>) {
        const JsonView::Json byDefault = member.write(untold<Object>());
        const bool isTold = byDefault.is_number() || byDefault.is_boolean();
        MemberText text{.path = path + std::string(member.name),
                        .value = {},
                        .byDefault = isTold ? byDefault.dump() : "",
                        .meaning = std::string(member.meaning)};
        MemberTexts below;
        member.tell(text, below);
        texts.push_back(std::move(text));
        texts.insert(texts.end(), below.begin(), below.end());
    }
}

template <class Object>
void eachTextOf(Object& object, const TextVisitor& visit) {
    for (const Member<Object>& member : kMembers<Object>)
        member.eachText(object, {member.tells, {}}, visit);
}

template <class Object>
ToldAt toldBelow(PathBelow path) {
    for (const Member<Object>& member : kMembers<Object>)
        if (!path.empty() && member.name == path.front())
            return member.at(path.subspan(1), member.tells);
    return {.isMember = path.empty()};
}

}  // namespace simwin
