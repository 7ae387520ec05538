#include "kvstation/record/FieldTable.h"

#include <algorithm>

#include "kvstation/platform/Errors.h"
#include "kvstation/text/Similar.h"
#include "simwin/text/CodePage.h"
#include "simwin/text/HexText.h"

namespace kvstation {
namespace {

constexpr std::size_t kNumberWidth = 4;

constexpr Field kFields[] = {
#define KV_TEXT(name, offset, width, limit, group, meaning) \
    {#name, offset, width, limit, FieldType::Text, false, group, meaning},
#define KV_LIST(name, offset, width, limit, group, meaning) \
    {#name, offset, width, limit, FieldType::Text, true, group, meaning},
#define KV_NUMBER(name, offset, group, meaning) \
    {#name, offset, kNumberWidth, 0, FieldType::Number, false, group, meaning},
#define KV_UNSIGNED(name, offset, group, meaning) \
    {#name, offset, kNumberWidth, 0, FieldType::Unsigned, false, group, meaning},
#include "include/kvcstat_fields.inc"
};

constexpr Group kGroups[] = {{"Station", 222}, {"User", 172},    {"System", 262}, {"Session", 312},
                             {"Network", 198}, {"Software", 38}, {"Drives", 138}, {"Hardware", 8}};

}  // namespace

std::span<const Field> fields() {
    return kFields;
}

std::span<const Group> groups() {
    return kGroups;
}

std::size_t findField(std::string_view name) {
    const auto found = std::ranges::find(kFields, name, &Field::name);
    return static_cast<std::size_t>(found - std::begin(kFields));
}

std::size_t findTypedField(std::string_view name) {
    const auto isMeant = [&](const Field& field) { return simwin::equalNoCaseInUtf8(field.name, name); };
    return static_cast<std::size_t>(std::ranges::find_if(kFields, isMeant) - std::begin(kFields));
}

std::size_t requireTypedField(std::string_view name) {
    const std::size_t field = findTypedField(name);
    if (field == fields().size())
        throw WrongUse("the record has no field '" + std::string(name) + "'" + describeSimilar(similarFields(name)) +
                       "; 'kvstation layout' lists them");
    return field;
}

std::string hexOffset(std::size_t offset) {
    return "0x" + simwin::hexDigits(offset, 4, simwin::HexCase::Upper);
}

std::vector<std::string_view> similarFields(std::string_view name) {
    std::vector<std::string_view> names;
    for (const Field& field : kFields)
        names.push_back(field.name);
    return similarWords(name, names);
}

}  // namespace kvstation
