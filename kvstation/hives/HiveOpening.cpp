#include "kvstation/hives/HiveOpening.h"

#include <filesystem>
#include <utility>

#include "kvstation/hives/BaseBlock.h"
#include "kvstation/hives/FolderEntries.h"
#include "kvstation/hives/HiveLog.h"
#include "kvstation/hives/NtHive.h"
#include "kvstation/hives/OldHive.h"
#include "kvstation/platform/Errors.h"
#include "kvstation/platform/Files.h"
#include "kvstation/text/JoinWords.h"

namespace kvstation {
namespace {

constexpr std::size_t kLongestOldHive = std::size_t{64} << 20;
constexpr const char* kIsNoHive = " is no registry hive: it begins with neither \"regf\" nor \"CREG\"";

// A log that cannot be read is none, as for Windows, but people are told.
std::vector<LogFile> logsBeside(const std::string& path, std::vector<std::string>& remarks) {
    const std::filesystem::path hive(path);
    std::vector<LogFile> logs;
    for (const char* ending : {".LOG", ".LOG1", ".LOG2"}) {
        const auto log =
            findEntry(hive.has_parent_path() ? hive.parent_path() : ".", hive.filename().string() + ending);
        if (!log || isFolder(log->string()))
            continue;
        try {
            logs.push_back({log->string(), readFile(log->string(), kLongestLog)});
        } catch (const Failure& error) {
            remarks.push_back(error.what() + std::string("; what Windows kept there is missing"));
        }
    }
    return logs;
}

// Without its signature a hive is known by its first bin.
bool isNtHive(std::string_view bytes) {
    return BaseBlock(bytes).hasSignature() ||
           (bytes.size() > kBaseBlock && bytes.substr(kBaseBlock).starts_with("hbin"));
}

bool isFinished(std::string_view bytes) {
    const BaseBlock block(bytes);
    return block.hasRightSum() && block.firstSequence() == block.secondSequence();
}

// Applies the logs where Windows would, and says so.
void finishWriting(std::string& bytes, const std::string& path, const std::vector<LogFile>& logs,
                   std::vector<std::string>& remarks) {
    if (isFinished(bytes))
        return;
    const bool isWhole = BaseBlock(bytes).hasRightSum();
    const std::vector<std::string> applied = applyLogs(bytes, logs);
    const std::string what = isWhole ? " was not written to its end; " : " has a damaged first block; ";
    if (!applied.empty())
        remarks.push_back(path + what + "applied in memory: " + joinWords(applied, ", "));
    else if (!isWhole)
        remarks.push_back(path + what + "no log beside it has another one, and it is read as it stands");
    else
        remarks.push_back(path + what +
                          (logs.empty() ? "what Windows kept in the log beside it is missing"
                                        : "no log beside it goes with it, and what Windows kept there is missing"));
    putRightSum(bytes);
}

void shorten(std::string& bytes, const std::string& path, std::vector<std::string>& remarks) {
    const std::size_t whole = kBaseBlock + BaseBlock(bytes).binsSize();
    if (bytes.size() >= whole)
        return;
    const std::string cut =
        path + " is cut short: it has " + std::to_string(bytes.size()) + " of " + std::to_string(whole) + " bytes";
    if (bytes.size() < kBaseBlock + kPage)
        throw Failure(cut);
    remarks.push_back(cut + "; what stood behind them is missing");
    const std::size_t bins = (bytes.size() - kBaseBlock) / kPage * kPage;
    bytes.resize(kBaseBlock + bins);
    putBinsSize(bytes, static_cast<std::uint32_t>(bins));
}

// Where the sum is right with a signature, nothing else is damaged in the first block.
void mendSignature(std::string& bytes, const std::string& path, std::vector<std::string>& remarks) {
    if (BaseBlock(bytes).hasSignature())
        return;
    std::string mended = bytes.substr(0, kSector);
    putSignature(mended);
    if (!BaseBlock(mended).hasRightSum())
        return;
    putSignature(bytes);
    remarks.push_back(path + " does not begin with \"regf\", which its sum tells to be all that is damaged there");
}

OpenedHive openNtHive(const std::string& path, std::string bytes, const std::vector<LogFile>& logs) {
    OpenedHive opened{path, HiveForm::Nt, nullptr, {}};
    if (bytes.size() < kSector)
        throw Failure(path + " is cut short: it has " + std::to_string(bytes.size()) + " bytes");
    mendSignature(bytes, path, opened.remarks);
    finishWriting(bytes, path, logs, opened.remarks);
    if (!BaseBlock(bytes).hasSignature())
        throw Failure(path + kIsNoHive);
    shorten(bytes, path, opened.remarks);
    opened.hive = std::make_unique<NtHive>(std::move(bytes), path);
    return opened;
}

}  // namespace

OpenedHive openHive(const std::string& path) {
    std::string bytes = readFile(path, kLongestHive);
    const bool wantsLogs = isNtHive(bytes) && bytes.size() >= kSector && !isFinished(bytes);
    std::vector<std::string> remarks;
    const std::vector<LogFile> logs = wantsLogs ? logsBeside(path, remarks) : std::vector<LogFile>();
    OpenedHive opened = openHive(path, std::move(bytes), logs);
    opened.remarks.insert(opened.remarks.begin(), remarks.begin(), remarks.end());
    return opened;
}

OpenedHive openHive(const std::string& path, std::string bytes, const std::vector<LogFile>& logs) {
    if (isNtHive(bytes))
        return openNtHive(path, std::move(bytes), logs);
    if (!bytes.starts_with("CREG"))
        throw Failure(path + kIsNoHive);
    if (bytes.size() > kLongestOldHive)
        throw Failure(path + " is longer than " + std::to_string(kLongestOldHive) + " bytes");
    const std::size_t length = bytes.size();
    auto hive = std::make_unique<OldHive>(std::move(bytes), path);
    std::vector<std::string> remarks;
    if (hive->isWithoutNames())
        throw Failure(path + " is cut short: it has " + std::to_string(length) + " bytes, and no key's name");
    if (const std::string loss = hive->loss(); !loss.empty())
        remarks.push_back(path + " " + loss);
    return {path, HiveForm::Windows9x, std::move(hive), std::move(remarks)};
}

}  // namespace kvstation
