// Forms: how a value stands in JSON. read() takes it from there or throws ReadError, write() makes what read() takes,
// null where there is nothing, tell() says what stands there, eachText() visits the texts in it, and at() knows what
// they and the names in it tell.
#pragma once

#include <concepts>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "simwin/station/Member.h"
#include "simwin/station/TextForms.h"

namespace simwin {

// An object with a table of members.
template <class Object>
struct ObjectForm {
    static constexpr bool kIsText = false;
    static void read(const JsonView& view, Object& object) { readMembers(view, object); }
    static JsonView::Json write(const Object& object) { return writeMembers(object); }
    static void tell(MemberText& member, MemberTexts& below) {
        member.value = "object";
        tellMembers<Object>(member.path + ".", below);
    }
    static void eachText(Object& object, const Told&, const TextVisitor& visit) { eachTextOf(object, visit); }
    static ToldAt at(PathBelow path, Tells) { return toldBelow<Object>(path); }
};

template <std::integral Number>
struct NumberForm : OneValue {
    static void read(const JsonView& view, Number& number) { number = view.number<Number>(); }
    static JsonView::Json write(Number number) { return number; }
    static void tell(MemberText& member, MemberTexts&) { member.value = wholeNumber<Number>(); }
};

struct FlagForm : OneValue {
    static void read(const JsonView& view, bool& flag) { flag = view.flag(); }
    static JsonView::Json write(bool flag) { return flag; }
    static void tell(MemberText& member, MemberTexts&) { member.value = "true or false"; }
};

// What may not be there.
template <class Form>
struct Maybe {
    static constexpr bool kIsText = Form::kIsText;
    template <class Value>
    static void read(const JsonView& view, std::optional<Value>& value) {
        Form::read(view, value.emplace());
    }
    template <class Value>
    static JsonView::Json write(const std::optional<Value>& value) {
        return value ? Form::write(*value) : JsonView::Json();
    }
    static void tell(MemberText& member, MemberTexts& below) { Form::tell(member, below); }
    template <class Value>
    static void eachText(std::optional<Value>& value, const Told& told, const TextVisitor& visit) {
        if (value)
            Form::eachText(*value, told, visit);
    }
    static ToldAt at(PathBelow path, Tells tells) { return Form::at(path, tells); }
};

// A list.
template <class Form>
struct ListOf {
    static constexpr bool kIsText = Form::kIsText;
    template <class Value>
    static void read(const JsonView& view, std::vector<Value>& values) {
        view.eachItem([&](const JsonView& item) { Form::read(item, values.emplace_back()); });
    }
    template <class Value>
    static JsonView::Json write(const std::vector<Value>& values) {
        JsonView::Json list = JsonView::Json::array();
        for (const Value& value : values)
            list.push_back(Form::write(value));
        return list;
    }
    static void tell(MemberText& member, MemberTexts& below) {
        MemberText item{.path = member.path + ".N", .value = {}, .byDefault = {}, .meaning = {}};
        Form::tell(item, below);
        member.value = "list, of each: " + item.value;
    }
    template <class Value>
    static void eachText(std::vector<Value>& values, const Told& told, const TextVisitor& visit) {
        for (Value& value : values)
            Form::eachText(value, told, visit);
    }
    static ToldAt at(PathBelow path, Tells tells) {
        if (path.empty())
            return {.isMember = true};
        const bool isNumber = !path[0].empty() && path[0].find_first_not_of("0123456789") == std::string::npos;
        return isNumber ? Form::at(path.subspan(1), tells) : ToldAt{};
    }
};

// The form that values of a type have unless a row names another one.
template <class Object>
struct FormOf : ObjectForm<Object> {};
template <std::integral Number>
struct FormOf<Number> : NumberForm<Number> {};
template <>
struct FormOf<bool> : FlagForm {};
template <>
struct FormOf<std::string> : TextForm {};
template <class Value>
struct FormOf<std::optional<Value>> : Maybe<FormOf<Value>> {};
template <class Value>
struct FormOf<std::vector<Value>> : ListOf<FormOf<Value>> {};

// A structure that one of its fields tells.
template <auto Field, class Form = FormOfField<Field>>
struct Only {
    static constexpr bool kIsText = Form::kIsText;
    static void read(const JsonView& view, ObjectOf<Field>& object) { Form::read(view, object.*Field); }
    static JsonView::Json write(const ObjectOf<Field>& object) { return Form::write(object.*Field); }
    static void tell(MemberText& member, MemberTexts& below) { Form::tell(member, below); }
    static void eachText(ObjectOf<Field>& object, const Told& told, const TextVisitor& visit) {
        Form::eachText(object.*Field, told, visit);
    }
    static ToldAt at(PathBelow path, Tells tells) { return Form::at(path, tells); }
};

// Tells an object whose members' names are of one kind.
template <class Name, class Form>
void tellNamed(MemberText& member, MemberTexts& below) {
    member.path += "." + std::string(Name::kPlaceholder);
    Form::tell(member, below);
    member.value += "; " + std::string(Name::kPlaceholder) + ": " + std::string(Name::kMeaning);
}

// A list as an object: the members are named by a field of the items.
template <auto NameField, class Name, class Form = FormOf<ObjectOf<NameField>>>
struct Named {
    static constexpr bool kIsText = Form::kIsText;
    using Items = std::vector<ObjectOf<NameField>>;

    static void read(const JsonView& view, Items& items) {
        view.eachMember([&](const std::string& name, const JsonView& value) {
            ObjectOf<NameField>& item = items.emplace_back();
            item.*NameField = Name::read(name, value);
            Form::read(value, item);
        });
    }
    static JsonView::Json write(const Items& items) {
        JsonView::Json object = JsonView::Json::object();
        for (const ObjectOf<NameField>& item : items)
            object[toProperUtf8(item.*NameField)] = Form::write(item);
        return object;
    }
    static void tell(MemberText& member, MemberTexts& below) { tellNamed<Name, Form>(member, below); }
    // The name last, which tells what its value is.
    static void eachText(Items& items, const Told& told, const TextVisitor& visit) {
        for (ObjectOf<NameField>& item : items) {
            Form::eachText(item, {told.tells, item.*NameField}, visit);
            visit(item.*NameField, {Name::kTells, {}});
        }
    }
    static ToldAt at(PathBelow path, Tells tells) {
        return path.empty() ? ToldAt{.isMember = true, .names = Name::kTells} : Form::at(path.subspan(1), tells);
    }
};

}  // namespace simwin
