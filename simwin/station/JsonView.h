// A place in a JSON document that knows where it is, for readers that must say what is wrong and where.
#pragma once

#include <cstdint>
#include <functional>
#include <limits>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "simwin/text/CodePage.h"
#include "simwin/text/ReadError.h"

namespace simwin {

// The numbers of a type, in words.
template <class Number>
std::string wholeNumber() {
    return "whole number from " + std::to_string(std::numeric_limits<Number>::min()) + " to " +
           std::to_string(std::numeric_limits<Number>::max());
}

class JsonView {
  public:
    using Json = nlohmann::ordered_json;

    JsonView(const Json& json, std::string fileName, std::string path)
        : m_json(json), m_fileName(std::move(fileName)), m_path(std::move(path)) {}

    [[noreturn]] void fail(const std::string& what) const {
        throw ReadError(m_fileName + ": " + (m_path.empty() ? "/" : inOneLine(m_path)) + ": " + what);
    }
    [[noreturn]] void failUnknown() const { fail("is not known"); }

    bool isObject() const { return m_json.is_object(); }
    bool isText() const { return m_json.is_string(); }

    using Visitor = std::function<void(const std::string& name, const JsonView& value)>;

    // Every member of an object, in the file's order. One that is null is as if it were not there.
    void eachMember(const Visitor& visit) const {
        if (!m_json.is_object())
            fail("is no object");
        for (const auto& [name, value] : m_json.items())
            if (!value.is_null())
                visit(name, JsonView(value, m_fileName, m_path + "/" + name));
    }

    void eachItem(const std::function<void(const JsonView&)>& visit) const {
        if (!m_json.is_array())
            fail("is no list");
        for (std::size_t i = 0; i < m_json.size(); ++i)
            visit(JsonView(m_json[i], m_fileName, m_path + "/" + std::to_string(i)));
    }

    std::string utf8() const {
        if (!m_json.is_string())
            fail("is no text");
        return m_json.get<std::string>();
    }

    bool flag() const {
        if (!m_json.is_boolean())
            fail("is neither true nor false");
        return m_json.get<bool>();
    }

    template <class Number>
    Number number() const {
        constexpr auto least = std::numeric_limits<Number>::min();
        constexpr auto most = std::numeric_limits<Number>::max();
        if (m_json.is_number_unsigned() && m_json.get<std::uint64_t>() <= static_cast<std::uint64_t>(most))
            return static_cast<Number>(m_json.get<std::uint64_t>());
        if constexpr (std::numeric_limits<Number>::is_signed)
            if (m_json.is_number_integer() && !m_json.is_number_unsigned() && m_json.get<std::int64_t>() >= least)
                return static_cast<Number>(m_json.get<std::int64_t>());
        fail("is no " + wholeNumber<Number>());
    }

  private:
    // Control characters as the document writes them.
    static std::string inOneLine(const std::string& path) {
        std::string line;
        for (const char character : path) {
            const std::string quoted = byteOf(character) < ' ' ? Json(std::string(1, character)).dump() : "";
            line += quoted.empty() ? std::string(1, character) : quoted.substr(1, quoted.size() - 2);
        }
        return line;
    }

    const Json& m_json;
    std::string m_fileName;
    std::string m_path;
};

// A file's JSON. Throws ReadError for what is none, for a member that stands twice in one object, and beyond these
// limits: 16 levels, 10000 values with the objects and lists.
JsonView::Json parseJson(std::string_view content, const std::string& fileName);

}  // namespace simwin
