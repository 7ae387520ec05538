// The record's layout, held against a second, independent statement of every offset and width.
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "include/kvcstat.h"
#include "tests/stations/RecordPlace.h"

namespace {

#define EXPECT_TEXT_AT(offset, width, field) \
    static_assert(offsetof(STATIONDATA, field) == (offset) && sizeof(STATIONDATA::field) == (width))
#define EXPECT_NUMBER_AT(offset, type, field) \
    static_assert(offsetof(STATIONDATA, field) == (offset) && std::is_same_v<decltype(STATIONDATA::field), type>)

EXPECT_TEXT_AT(0, 51, szStation);
EXPECT_TEXT_AT(51, 256, szUserName);
EXPECT_TEXT_AT(307, 51, szUserDisplayedName);
EXPECT_NUMBER_AT(360, std::int32_t, dwKeyboardType);
EXPECT_NUMBER_AT(364, std::int32_t, dwOEMCodePage);
EXPECT_TEXT_AT(368, 101, szKeyboard);
EXPECT_TEXT_AT(469, 51, szSystemIdentifier);
EXPECT_NUMBER_AT(520, std::int32_t, dwTotalMemoryMB);
EXPECT_TEXT_AT(524, 251, szDiskDevices);
EXPECT_TEXT_AT(775, 251, szCDRomDevices);
EXPECT_TEXT_AT(1026, 101, szTapeDevices);
EXPECT_TEXT_AT(1127, 251, szOtherDevices);
EXPECT_TEXT_AT(1378, 251, szPrinters);
EXPECT_TEXT_AT(1629, 101, szCDRomDrives);
EXPECT_TEXT_AT(1730, 101, szRemovableDrives);
EXPECT_TEXT_AT(1831, 101, szFixedDrives);
EXPECT_TEXT_AT(1932, 51, szWorkgroup);
EXPECT_NUMBER_AT(1992, std::int32_t, bInternetExplorer);
EXPECT_NUMBER_AT(1996, std::int32_t, bNetscape);
EXPECT_TEXT_AT(2000, 51, szTSProduct);
EXPECT_TEXT_AT(2051, 51, szDnsName);
EXPECT_TEXT_AT(2102, 16, szDefaultGateway);
EXPECT_TEXT_AT(2118, 16, szSubnetMask);
EXPECT_TEXT_AT(2134, 251, szProtocols);
EXPECT_TEXT_AT(2385, 256, szNetworkDrivers);
EXPECT_TEXT_AT(2641, 16, szServerIPAddress);
EXPECT_TEXT_AT(2657, 13, szServerMACAddress);
EXPECT_TEXT_AT(2670, 51, szTSClientName);
EXPECT_TEXT_AT(2721, 101, szMailClient);
EXPECT_TEXT_AT(2822, 251, szProviders);
EXPECT_TEXT_AT(3073, 201, szBrowser);
EXPECT_TEXT_AT(3274, 51, szDefaultBrowser);
EXPECT_TEXT_AT(3325, 16, szIPAddress);
EXPECT_TEXT_AT(3341, 251, szNetworkAdapters);
EXPECT_NUMBER_AT(3592, std::int32_t, bOutlook);
EXPECT_NUMBER_AT(3596, std::int32_t, bExchange);
EXPECT_TEXT_AT(3600, 81, szOS);
EXPECT_TEXT_AT(3708, 51, szClientName);
EXPECT_TEXT_AT(3759, 101, szBiosVersion);
EXPECT_TEXT_AT(3860, 51, szCurrentUser);
EXPECT_TEXT_AT(3911, 251, szProcessorName);
EXPECT_TEXT_AT(4162, 51, szMonitor);
EXPECT_TEXT_AT(4213, 101, szVideoAdapter);
EXPECT_TEXT_AT(4314, 51, szTSVersion);
EXPECT_TEXT_AT(4365, 51, szServerName);
EXPECT_NUMBER_AT(4416, std::int32_t, dwTSDefaultSrvSessions);
EXPECT_NUMBER_AT(4420, std::int32_t, dwWinFrame);
EXPECT_NUMBER_AT(4424, std::int32_t, dwMetaFrame);
EXPECT_NUMBER_AT(4428, std::int32_t, dwTSClientSession);
EXPECT_TEXT_AT(4432, 13, szMACAddress);
EXPECT_TEXT_AT(4445, 101, szDefaultPrinter);
EXPECT_TEXT_AT(4546, 51, szDefaultDomainName);
EXPECT_TEXT_AT(4597, 11, szBiosDate);
EXPECT_TEXT_AT(4612, 256, szWinUser);
EXPECT_NUMBER_AT(4868, std::uint32_t, dwSessionId);
EXPECT_NUMBER_AT(4872, std::int32_t, dwNumberOfProcessors);
EXPECT_NUMBER_AT(4876, std::int32_t, dwCurrentMhz);
EXPECT_TEXT_AT(4880, 21, szICAClient);
EXPECT_TEXT_AT(4901, 21, szRDPClient);
EXPECT_TEXT_AT(4922, 12, szVCDVersion);

// The areas that no call writes.
EXPECT_TEXT_AT(358, 2, reserved358);
EXPECT_TEXT_AT(1983, 9, reserved1983);
EXPECT_TEXT_AT(3681, 27, reserved3681);
EXPECT_TEXT_AT(4608, 4, reserved4608);
static_assert(KVCSTAT_RECORD_SIZE == 4934);
static_assert(offsetof(STATIONDATA, szVCDVersion) + sizeof(STATIONDATA::szVCDVersion) == KVCSTAT_RECORD_SIZE);

struct FieldRow {
    std::string name;
    std::size_t offset;
    std::size_t width;
    std::size_t limit;
};

std::vector<FieldRow> FieldTable() {
    return {
#define KV_TEXT(name, offset, width, limit, group, meaning) {#name, offset, width, limit},
#define KV_NUMBER(name, offset, group, meaning) {#name, offset, 4, 0},
#define KV_UNSIGNED(name, offset, group, meaning) {#name, offset, 4, 0},
#include "include/kvcstat_fields.inc"
    };
}

struct StructMember {
    std::size_t offset;
    std::size_t width;
};

std::vector<StructMember> StructMembers() {
#define MEMBER(name) {offsetof(STATIONDATA, name), sizeof(STATIONDATA::name)},
    return {
#define KV_TEXT(name, offset, width, limit, group, meaning) MEMBER(name)
#define KV_NUMBER(name, offset, group, meaning) MEMBER(name)
#define KV_UNSIGNED(name, offset, group, meaning) MEMBER(name)
#include "include/kvcstat_fields.inc"
    };
}

TEST(FieldTable, NamesAllOfTheRecordButTheReservedAreasInTheOrderOfOffsets) {
    using Area = std::pair<std::size_t, std::size_t>;  // offset and width
    std::vector<Area> unnamed;
    std::size_t end = 0;
    for (const FieldRow& row : FieldTable()) {
        if (row.offset != end)
            unnamed.emplace_back(end, row.offset - end);
        end = row.offset + row.width;
    }
    EXPECT_EQ(end, std::size_t{KVCSTAT_RECORD_SIZE});
    std::vector<Area> reserved;
    for (const kvtest::RecordPlace& area : kvtest::RecordPlace::reserved())
        reserved.emplace_back(area.offset, area.width);
    EXPECT_EQ(unnamed, reserved);
}

TEST(FieldTable, AgreesWithTheStructureOnEveryOffsetAndWidth) {
    const auto rows = FieldTable();
    const auto members = StructMembers();
    for (std::size_t i = 0; i < rows.size(); ++i) {
        EXPECT_EQ(rows[i].offset, members[i].offset) << rows[i].name;
        EXPECT_EQ(rows[i].width, members[i].width) << rows[i].name;
    }
}

TEST(FieldTable, LimitsEveryTextToItsWidthMinusOne) {
    for (const FieldRow& row : FieldTable()) {
        if (row.limit != 0) {
            EXPECT_EQ(row.limit, row.width - 1) << row.name;
        }
    }
}

}  // namespace
