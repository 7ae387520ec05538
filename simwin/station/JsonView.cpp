#include "simwin/station/JsonView.h"

#include <set>
#include <vector>

namespace simwin {
namespace {

// The parser itself takes any depth and the last of several members of one name, and looks through all that an object
// or a list has at each member and each object that comes: a file of a few megabytes it would read for hours.
class JsonGuard {
  public:
    explicit JsonGuard(const std::string& fileName) : m_fileName(fileName) {}

    bool operator()(int depth, JsonView::Json::parse_event_t event, const JsonView::Json& parsed) {
        using Event = JsonView::Json::parse_event_t;
        if (depth > kDeepestJson)
            throw ReadError(m_fileName + ": nested deeper than " + std::to_string(kDeepestJson) + " levels");
        if (event == Event::value || event == Event::object_start || event == Event::array_start)
            count();
        if (event == Event::object_start)
            m_names.emplace_back();
        else if (event == Event::object_end)
            m_names.pop_back();
        else if (event == Event::key && !m_names.back().insert(parsed.get<std::string>()).second)
            throw ReadError(m_fileName + ": " + parsed.dump() + " stands twice in one object");
        return true;
    }

  private:
    static constexpr int kDeepestJson = 16;
    static constexpr std::size_t kMostValues = 10000;

    void count() {
        if (++m_values > kMostValues)
            throw ReadError(m_fileName + ": more than " + std::to_string(kMostValues) + " values");
    }

    const std::string& m_fileName;
    std::vector<std::set<std::string>> m_names;
    std::size_t m_values = 0;  // objects and lists too
};

}  // namespace

JsonView::Json parseJson(std::string_view content, const std::string& fileName) {
    try {
        return JsonView::Json::parse(content, JsonGuard(fileName));
    } catch (const JsonView::Json::exception& error) {
        // Without the name of the exception, which stands in brackets before the text.
        const std::string_view what = error.what();
        throw ReadError(fileName + ": " + std::string(what.substr(what.find("] ") + 2)));
    }
}

}  // namespace simwin
