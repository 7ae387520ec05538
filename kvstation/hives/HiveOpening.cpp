#include "kvstation/hives/HiveOpening.h"

#include <filesystem>
#include <utility>

#include "kvstation/Errors.h"
#include "kvstation/Files.h"
#include "kvstation/hives/BaseBlock.h"
#include "kvstation/hives/FolderEntries.h"
#include "kvstation/hives/HiveLog.h"
#include "kvstation/hives/NtHive.h"
#include "kvstation/hives/OldHive.h"

namespace kvstation {
namespace {

constexpr std::size_t kLongestOldHive = std::size_t{64} << 20;

std::vector<LogFile> logsBeside(const std::string& path) {
    const std::filesystem::path hive(path);
    std::vector<LogFile> logs;
    for (const char* ending : {".LOG", ".LOG1", ".LOG2"}) {
        const auto log =
            findEntry(hive.has_parent_path() ? hive.parent_path() : ".", hive.filename().string() + ending);
        if (log && !isFolder(log->string()))
            logs.push_back({log->string(), readFile(log->string(), kLongestLog)});
    }
    return logs;
}

std::string joinTexts(const std::vector<std::string>& parts) {
    std::string all;
    for (const std::string& part : parts)
        all += (all.empty() ? "" : ", ") + part;
    return all;
}

bool isNtHive(std::string_view bytes) {
    return BaseBlock(bytes).hasSignature();
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
        remarks.push_back(path + what + "applied in memory: " + joinTexts(applied));
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

OpenedHive openNtHive(const std::string& path, std::string bytes, const std::vector<LogFile>& logs) {
    OpenedHive opened{path, HiveForm::Nt, nullptr, {}};
    if (bytes.size() < kSector)
        throw Failure(path + " is cut short: it has " + std::to_string(bytes.size()) + " bytes");
    finishWriting(bytes, path, logs, opened.remarks);
    shorten(bytes, path, opened.remarks);
    opened.hive = std::make_unique<NtHive>(std::move(bytes), path);
    return opened;
}

}  // namespace

OpenedHive openHive(const std::string& path) {
    std::string bytes = readFile(path, kLongestHive);
    const bool wantsLogs = isNtHive(bytes) && bytes.size() >= kSector && !isFinished(bytes);
    const std::vector<LogFile> logs = wantsLogs ? logsBeside(path) : std::vector<LogFile>();
    return openHive(path, std::move(bytes), logs);
}

OpenedHive openHive(const std::string& path, std::string bytes, const std::vector<LogFile>& logs) {
    if (isNtHive(bytes))
        return openNtHive(path, std::move(bytes), logs);
    if (!bytes.starts_with("CREG"))
        throw Failure(path + " is no registry hive: it begins with neither \"regf\" nor \"CREG\"");
    if (bytes.size() > kLongestOldHive)
        throw Failure(path + " is longer than " + std::to_string(kLongestOldHive) + " bytes");
    return {path, HiveForm::Windows9x, std::make_unique<OldHive>(std::move(bytes), path), {}};
}

}  // namespace kvstation
