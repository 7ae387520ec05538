// Forms of values that are checked against what there is: times, versions, code pages, libraries, calls.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "simwin/station/Forms.h"
#include "simwin/station/Station.h"

namespace simwin {

struct TimeForm : KnownWords {
    static void read(const JsonView& view, std::string& time);
    static JsonView::Json write(const std::string& time) { return time; }
    static void tell(MemberText& member, MemberTexts&);
};

// A version of this project: numbers alone.
struct ReleaseForm : KnownWords {
    static void read(const JsonView& view, std::string& version);
    static JsonView::Json write(const std::string& version) { return version; }
    static void tell(MemberText& member, MemberTexts&);
};

struct AnsiCodePageForm : NumberForm<unsigned> {
    static void read(const JsonView& view, unsigned& codePage);
    static void tell(MemberText& member, MemberTexts&);
};

// The name of a member.
struct VariableName {
    static constexpr std::string_view kPlaceholder = "NAME";
    static constexpr std::string_view kMeaning = "variable's name";
    static constexpr Tells kTells = Tells::OwnName;
    static std::string read(const std::string& name, const JsonView& value);
};

// The name of a member.
struct HostName {
    static constexpr std::string_view kPlaceholder = "NAME";
    static constexpr std::string_view kMeaning = "host's name as it is asked for";
    static constexpr Tells kTells = Tells::Host;
    static std::string read(const std::string& name, const JsonView& value) { return toCodePage(name, value); }
};

// An object of sections, each an object of entries.
struct ProfileForm {
    static constexpr bool kIsText = true;
    static void read(const JsonView& view, std::vector<ProfileEntry>& profile);
    static JsonView::Json write(const std::vector<ProfileEntry>& profile);
    static void tell(MemberText& member, MemberTexts&);
    static void eachText(std::vector<ProfileEntry>& profile, const Told& told, const TextVisitor& visit);
    static ToldAt at(PathBelow path, Tells tells);
};

template <>
struct FormOf<std::vector<ProfileEntry>> : ProfileForm {};

// "wsock32.dll" or "netapi32.dll!NetWkstaGetInfo".
struct MissingNameForm : KnownWords {
    static void read(const JsonView& view, std::string& name);
    static JsonView::Json write(const std::string& name) { return TextForm::write(name); }
    static void tell(MemberText& member, MemberTexts&);
};

// Errors of calls by name.
struct CallErrorsForm : KnownWords {
    static void read(const JsonView& view, CallErrors& errors);
    static JsonView::Json write(const CallErrors& errors) { return errors; }
    static void tell(MemberText& member, MemberTexts&);
    static ToldAt at(PathBelow path, Tells);
};
template <>
struct FormOf<CallErrors> : CallErrorsForm {};

}  // namespace simwin
