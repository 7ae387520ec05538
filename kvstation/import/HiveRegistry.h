// The registry of a Windows that does not run, out of its hive files.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "kvstation/hives/HiveOpening.h"
#include "kvstation/import/HiveFolder.h"
#include "simwin/station/RegistryTree.h"
#include "simwin/text/CodePage.h"

namespace kvstation {

// Keys that are hives, or begin in them.
inline constexpr std::string_view kFileTypes = "HKEY_LOCAL_MACHINE\\SOFTWARE\\Classes";
inline constexpr std::string_view kUserKeys = "HKEY_CURRENT_USER";
inline constexpr std::string_view kUserFileTypes = "HKEY_CURRENT_USER\\Software\\Classes";

class HiveRegistry {
  public:
    // Throws Failure when a file is no hive or another one than its name tells, or SYSTEM tells no current control set.
    // Puts the disk's ANSI code page in force for this object's life.
    explicit HiveRegistry(const HiveFolder& files);

    // Whether it is Windows 95, 98 or Me.
    bool isWindows9x() const { return m_is9x; }

    // Copies a key's values and the names of its sub-keys, by the key's full path in the running Windows: below
    // HKEY_LOCAL_MACHINE\SYSTEM, CurrentControlSet is the set that was the current one; HKEY_CLASSES_ROOT is the
    // machine's file types and, before them, the user's. False when no hive holds it.
    bool copyKey(std::string_view fullPath, simwin::RegistryTree& tree);

    // The key of which a part is lost by damage, where that may be what is looked for at this path: the key itself, or
    // the one on the way to it that cannot be found in a list that is not whole.
    enum class Part { Itself, Values, SubKeys };
    std::optional<std::string> lossAt(std::string_view fullPath, Part part);

    // False: the page in force is the default one.
    bool tellsCodePage() const { return m_tellsCodePage; }

    // The keys for which there is no file, such as HKEY_CURRENT_USER.
    std::vector<std::string> missingRoots() const;
    // Whether the user's are missing because nobody's were wanted.
    bool isUserLeftOut() const { return m_isUserLeftOut; }
    // A line for each thing about the files that people should know.
    const std::vector<std::string>& remarks() const { return m_remarks; }

  private:
    struct Mount {
        std::string root;     // the full path
        Hive* hive;           // null: there is none
        Hive::Node base = 0;  // the key of the hive that stands at `root`
    };
    struct Place {
        Hive* hive;
        Hive::Node key;
        std::string path;     // in the letter case of the hive
        std::string missing;  // the next name on the way, of which there is no key; empty: the way's end
    };

    Hive* take(OpenedHive opened, std::string_view kind);
    // Null for no path.
    Hive* open(const std::string& path, std::string_view kind);
    void mount(std::string root, Hive* hive, Hive::Node base);
    void mount(std::string root, Hive* hive);
    void mountNt(OpenedHive system, const HiveFolder& files);
    void mount9x(OpenedHive system, const HiveFolder& files);
    void mountCurrentConfig(const std::string& key);

    void readCurrentControlSet();
    void readCodePage();
    bool hasControlSet(std::string_view name);
    bool hasClasses();
    bool takeAnyControlSet();
    // As far as there are keys on the way to the path; none when there is no hive of it.
    std::optional<Place> walk(std::string_view path);
    std::optional<Place> find(std::string_view path);
    // To a sub-key; false when there is none of that name.
    bool goDown(Place& place, std::string_view name) const;
    bool copy(std::string_view path, simwin::RegistryTree& tree, std::string_view asRoot, std::string_view root);

    simwin::CodePageScope m_codePage{simwin::kDefaultCodePage};
    bool m_tellsCodePage = false;
    bool m_is9x = false;
    bool m_isUserLeftOut;
    std::vector<OpenedHive> m_hives;
    std::vector<Mount> m_mounts;
    std::vector<std::string> m_remarks;
    std::string m_controlSet;  // the name of the current one, such as ControlSet001
};

}  // namespace kvstation
