#include "kvstation/sets/Sources.h"

#include <CLI/App.hpp>
#include <algorithm>
#include <string_view>
#include <unordered_map>

#include "kvstation/platform/Errors.h"
#include "kvstation/platform/Files.h"
#include "kvstation/report/RecordFile.h"
#include "kvstation/sets/Pattern.h"
#include "kvstation/sets/StandardInput.h"

namespace kvstation {
namespace {

constexpr std::size_t kLongestList = std::size_t{256} << 20;
constexpr std::string_view kRecordEndings[] = {".bin", ".json"};

// A record's file is named after its station.
std::string withoutEnding(std::string name) {
    for (const std::string_view ending : kRecordEndings)
        if (name.size() > ending.size() && name.ends_with(ending))
            name.resize(name.size() - ending.size());
    return name;
}

// "stations/pc-17/" is pc-17, and "." what the folder is called.
std::string lastComponent(const std::string& place) {
    std::error_code ignored;
    std::filesystem::path path = std::filesystem::absolute(pathOf(place), ignored).lexically_normal();
    if (!path.has_filename())
        path = path.parent_path();
    return utf8Of(path.filename());
}

// One run through the places, which gathers what they stand for.
class Search {
  public:
    explicit Search(SourceKind kind) : m_kind(kind) {}

    void add(const std::string& place) {
        std::error_code ignored;
        if (place == kStandardInput && m_kind == SourceKind::Records)
            m_found.push_back({kStandardInput, kStandardInput, {}});
        else if (isFolder(place))
            addFolder(place);
        else if (isPattern(place) && !std::filesystem::exists(pathOf(place), ignored))
            addPattern(place);
        else
            addOne(place);
    }

    void lookThrough(const std::string& folder) { lookThrough(pathOf(folder), {}); }

    void addWrong(const std::string& path, const std::string& wrong) { m_found.push_back({path, path, wrong}); }

    std::vector<Source> take() { return std::move(m_found); }

  private:
    void addOne(const std::string& path) {
        const std::string name = lastComponent(path);
        m_found.push_back({m_kind == SourceKind::Records ? withoutEnding(name) : name, path, {}});
    }

    void addPattern(const std::string& pattern) {
        const std::vector<std::string> matches = pathsLike(pattern);
        if (matches.empty())
            addWrong(pattern, pattern + " matches no file and no folder");
        for (const std::string& match : matches)
            add(match);
    }

    void addFolder(const std::string& folder) {
        if (isStationFolder(folder)) {
            if (m_kind == SourceKind::Stations)
                addOne(folder);
            else
                addWrong(folder, folder + " is a described station; 'kvstation simulate' makes its record");
            return;
        }
        const std::size_t before = m_found.size();
        lookThrough(folder);
        if (m_found.size() == before)
            addWrong(folder, folder + (m_kind == SourceKind::Stations
                                           ? " holds no station, which is a folder with registry.reg and station.json"
                                           : " holds no file"));
    }

    // `name`: of the folder below the one that was named.
    void lookThrough(const std::filesystem::path& folder, const std::string& name) {
        std::error_code error;
        std::vector<std::filesystem::directory_entry> entries;
        for (std::filesystem::directory_iterator at(folder, error), end; !error && at != end; at.increment(error))
            entries.push_back(*at);
        if (error)
            addWrong(utf8Of(folder),
                     describeFileError(utf8Of(folder), "read", error.default_error_condition().value()));
        std::ranges::sort(entries, {}, &std::filesystem::directory_entry::path);
        for (const std::filesystem::directory_entry& entry : entries)
            addEntry(entry,
                     name.empty() ? utf8Of(entry.path().filename()) : name + "/" + utf8Of(entry.path().filename()));
    }

    // A link to a station is one; a link to a folder of them may lead round in a circle.
    void addEntry(const std::filesystem::directory_entry& entry, const std::string& name) {
        std::error_code ignored;
        if (utf8Of(entry.path().filename()).starts_with('.'))
            return;
        if (!entry.is_directory(ignored)) {
            if (m_kind == SourceKind::Records)
                m_found.push_back({withoutEnding(name), utf8Of(entry.path()), {}});
        } else if (isStationFolder(utf8Of(entry.path()))) {
            if (m_kind == SourceKind::Stations)
                m_found.push_back({name, utf8Of(entry.path()), {}});
        } else if (!entry.is_symlink(ignored)) {
            lookThrough(entry.path(), name);
        }
    }

    SourceKind m_kind;
    std::vector<Source> m_found;
};

void addList(Search& search, const std::string& list) {
    const bool isInput = list == kStandardInput;
    const std::string text = utf8Text(isInput ? readStandardInput(kLongestList) : readFile(list, kLongestList));
    const std::string name = isInput ? "standard input" : list;
    if (text.find('\0') != std::string::npos)
        throw Failure(name + " is no list of names in UTF-8 or UTF-16: it holds zero bytes");
    for (std::string_view rest = text; !rest.empty();) {
        const std::size_t end = std::min(rest.find('\n'), rest.size());
        std::string_view line = rest.substr(0, end);
        rest.remove_prefix(std::min(end + 1, rest.size()));
        if (line.ends_with('\r'))
            line.remove_suffix(1);
        if (isInput && line == kStandardInput)
            search.addWrong(kStandardInput, "standard input is the list, and no record");
        else if (!line.empty())
            search.add(std::string(line));
    }
}

// Those of one name are told apart by their paths.
void distinguish(std::vector<Source>& sources) {
    std::unordered_map<std::string, std::size_t> counts;
    for (const Source& source : sources)
        ++counts[source.name];
    for (Source& source : sources)
        if (counts[source.name] > 1)
            source.name = utf8Of(pathOf(source.path));
}

}  // namespace

void addPlaces(CLI::App& command, Places& places) {
    command
        .add_option("--from", places.list,
                    "Take those too that FILE lists, a line each; - reads the list from standard input")
        ->type_name("FILE|-")
        ->check(checkFileName);
}

void addStationPlaces(CLI::App& command, Places& places) {
    command
        .add_option("STATION", places.given,
                    "Described stations' folders, folders of them, or patterns; without one this computer (Windows)")
        ->type_name("")
        ->check(checkFileName);
    addPlaces(command, places);
}

bool isStationFolder(const std::string& path) {
    std::error_code ignored;
    return std::filesystem::exists(pathOf(path + "/station.json"), ignored) ||
           std::filesystem::exists(pathOf(path + "/registry.reg"), ignored);
}

bool isOne(const Places& places) {
    if (!places.list.empty() || places.given.size() != 1)
        return false;
    const std::string& place = places.given.front();
    std::error_code ignored;
    return isFolder(place) ? isStationFolder(place)
                           : !isPattern(place) || std::filesystem::exists(pathOf(place), ignored);
}

std::vector<Source> sourcesOf(const Places& places, SourceKind kind) {
    const auto records = kind == SourceKind::Records ? std::ranges::count(places.given, kStandardInput) : 0;
    if (records > 1 || (records == 1 && places.list == kStandardInput))
        throw WrongUse("standard input is one record or the list, and not two of these");
    Search search(kind);
    for (const std::string& place : places.given)
        search.add(place);
    if (!places.list.empty())
        addList(search, places.list);
    std::vector<Source> sources = search.take();
    distinguish(sources);
    return sources;
}

std::vector<Source> sourcesIn(const std::string& folder, SourceKind kind) {
    Search search(kind);
    search.lookThrough(folder);
    return search.take();
}

std::string doubleText(const Source& source, const Source& first) {
    if (source.path == first.path)
        return source.path + " is named twice";
    return source.path + " has the name of " + first.path + ", '" + source.name + "'";
}

void refuseDoubles(std::vector<Source>& sources) {
    std::unordered_map<std::string_view, const Source*> first;
    first.reserve(sources.size());
    for (Source& source : sources) {
        const auto [at, isNew] = first.try_emplace(source.name, &source);
        if (!isNew && source.wrong.empty())
            source.wrong = doubleText(source, *at->second);
    }
}

}  // namespace kvstation
