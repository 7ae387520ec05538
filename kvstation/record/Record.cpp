#include "kvstation/record/Record.h"

#include <cstring>

#include "simwin/text/CodePage.h"

namespace kvstation {
namespace {

// A field need not be terminated within its width.
Value decodeText(const char* bytes, std::size_t width) {
    const std::size_t length = strnlen(bytes, width);
    const std::string_view value(bytes, length);
    return {.text = simwin::toUtf8(value), .number = 0, .filled = length, .bytes = std::string(value)};
}

std::uint32_t littleEndian(const char* bytes) {
    std::uint32_t number = 0;
    for (unsigned i = 0; i < 4; ++i)
        number |= static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[i])) << (8 * i);
    return number;
}

Value decodeNumber(const char* bytes, FieldType type) {
    const std::uint32_t number = littleEndian(bytes);
    if (type == FieldType::Unsigned)
        return {.text = {}, .number = number, .filled = sizeof number, .bytes = {}};
    return {.text = {}, .number = static_cast<std::int32_t>(number), .filled = sizeof number, .bytes = {}};
}

}  // namespace

std::vector<std::size_t> differingFields(const RecordBytes& left, const RecordBytes& right) {
    std::vector<std::size_t> differing;
    if (left == right)
        return differing;
    for (std::size_t i = 0; i < fields().size(); ++i) {
        const Field& field = fields()[i];
        if (std::memcmp(left.data() + field.offset, right.data() + field.offset, field.width) != 0)
            differing.push_back(i);
    }
    return differing;
}

Record::Record(const RecordBytes& bytes) {
    m_values.reserve(fields().size());
    for (const Field& field : fields()) {
        const char* place = bytes.data() + field.offset;
        m_values.push_back(field.type == FieldType::Text ? decodeText(place, field.width)
                                                         : decodeNumber(place, field.type));
    }
}

bool Record::isEmpty(std::size_t field) const {
    switch (fields()[field].type) {
        case FieldType::Text:
            return m_values[field].text.empty();
        case FieldType::Number:
            return m_values[field].number == 0;
        case FieldType::Unsigned:
            return false;
    }
    return false;
}

std::string Record::textOf(std::size_t field) const {
    const Value& value = m_values[field];
    return fields()[field].type == FieldType::Text ? value.text : std::to_string(value.number);
}

}  // namespace kvstation
