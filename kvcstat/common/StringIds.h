// Names for the entries of the string table (StringTable.inc) that the code asks for one by one.
#pragma once

inline constexpr unsigned IDS_TERMINAL_SERVER = 16002;
inline constexpr unsigned IDS_UNKNOWN_VALUE = 16003;  // a MAC address or monitor that was not found
inline constexpr unsigned IDS_INTERNET_EXPLORER = 16004;
inline constexpr unsigned IDS_NETSCAPE = 16005;
inline constexpr unsigned IDS_PRINTER_NAME = 16006;  // the format of a printer's name
inline constexpr unsigned IDS_TERMINAL_SESSION = 16007;
inline constexpr unsigned IDS_UNKNOWN_NAME = 16008;  // a user or station without a name
inline constexpr unsigned IDS_INTEL_80386 = 16009;
inline constexpr unsigned IDS_INTEL_80486 = 16010;
inline constexpr unsigned IDS_INTEL_PENTIUM = 16011;
inline constexpr unsigned IDS_MIPS_R4000 = 16012;
inline constexpr unsigned IDS_ALPHA_21064 = 16013;
inline constexpr unsigned IDS_INTEL_PROCESSOR = 16014;
inline constexpr unsigned IDS_MIPS_PROCESSOR = 16015;
inline constexpr unsigned IDS_ALPHA_21066 = 16016;
inline constexpr unsigned IDS_ALPHA_21164 = 16017;
inline constexpr unsigned IDS_ALPHA_PROCESSOR = 16018;
inline constexpr unsigned IDS_PPC_601 = 16019;
inline constexpr unsigned IDS_PPC_603 = 16020;
inline constexpr unsigned IDS_PPC_604 = 16021;
inline constexpr unsigned IDS_PPC_603_PLUS = 16022;
inline constexpr unsigned IDS_PPC_604_PLUS = 16023;
inline constexpr unsigned IDS_PPC_620 = 16024;
inline constexpr unsigned IDS_PPC_PROCESSOR = 16025;
inline constexpr unsigned IDS_UNKNOWN_PROCESSOR = 16026;
inline constexpr unsigned IDS_KEYBOARD_XT = 16027;
inline constexpr unsigned IDS_KEYBOARD_OLIVETTI = 16028;
inline constexpr unsigned IDS_KEYBOARD_AT = 16029;
inline constexpr unsigned IDS_KEYBOARD_EXTENDED = 16030;
inline constexpr unsigned IDS_KEYBOARD_NOKIA_1050 = 16031;
inline constexpr unsigned IDS_KEYBOARD_NOKIA_9140 = 16032;
inline constexpr unsigned IDS_KEYBOARD_JAPANESE = 16033;
inline constexpr unsigned IDS_OPERA = 16035;
inline constexpr unsigned IDS_MOZILLA = 16036;
inline constexpr unsigned IDS_FIREFOX = 16037;
