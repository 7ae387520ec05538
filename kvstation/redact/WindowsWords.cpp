#include "kvstation/redact/WindowsWords.h"

#include <algorithm>
#include <vector>

#include "kvstation/experiments/OtherTexts.h"
#include "kvstation/redact/StandIns.h"

namespace kvstation {
namespace {

constexpr std::size_t kShortestTelling = 3;  // by weightOf
constexpr std::size_t kShortestTellingNumber = 5;

// Words of Windows and of the product that the module or a program asks for, beside those that stand in the module's
// sources; a name made of them stays in paths.
constexpr std::string_view kAsked =
    "Program Files Service Pack unknown Presentation Enterprise HP LaserJet winspool com htmlfile RDP iexplore NTFS "
    "FAT FAT32 LanmanWorkstation Intel Pentium AMD netscp6 CentralProcessor Components";

// Other words that are the same on every computer of a kind.
constexpr std::string_view kFurther =
    // files and folders
    "appdata local locallow roaming temp tmp profile profiles common commonprogramfiles programfiles programdata "
    "programme users documents dokumente settings einstellungen einstell winnt winnt35 wtsrv windir bin system "
    "syswow64 "
    "sysnative drivers drv sys inf ini bat cmd cpl ocx scr html htm url xhtml ftp http https file java jre psf pfad "
    "path pathext perl comspec kvstation capture captured imported redacted from disk hive hives registry workstation "
    // variables
    "allusersprofile userprofile userdomain username userdnsdomain logonserver homepath homedrive homeshare public "
    "sessionname console clientname computername number of processors processor architecture level revision "
    "systemdrive "
    "systemroot psmodulepath driverdata windir commonprogramw6432 programw6432 "
    // keys and values
    "acpi adapter add address adressen application appid arp assembly associations assocs assignment axis base "
    "base_ boot bus button cache caption card category cdr certificates cfg channel clsid cmboot code codepage "
    "compatible computer computername config configuration connection connections controller controlset001 "
    "controlset002 "
    "controlset003 csdversion csname current currentbuild currentbuildnumber currentconfig currenttype currentuser "
    "currentversion data default defaultusername defaultpassword dell dependonservice detected devicekey dhcp "
    "dhcpdefaultgateway dhcpdomain dhcpipaddress dhcpnameserver dhcpserver dhcpsubnetmask dialup disable disk disks "
    "dlls dns dnsregisteredadapters domain domainname dword dyn edid edition eisa enable enabled enabledhcp enhanced "
    "environment error errorcontrol ethernet eventlog explorer expand export family fax feature flags floppy font "
    "fonts "
    "friendlyname generic group groups guid hard harddisk hardwareid high host hostname hotfix icafile icon ide "
    "imagepath infpath infsection initiator input install installation installed instance integrated interface "
    "interrupt iptables item key keyboards key_ keys lan lanman lanmanserver language layout legacy library link list "
    "locale logon low map mapper mask matchingdeviceid memory message mfg miniport mode model modem module monitors "
    "mouse mpr msi multi multifunction multimedia multiprocessor nameserver ndi ndis ndiswan net netbios netbt netcfg "
    "netcfginstanceid network networks nic nls nodetype none null oem oemcp acp option options package partial pci "
    "peripheral physical plug play pnp policies policy ports power primary printers private product productid "
    "producttype profilelist progid programs protocol protocols provider providers ps2 queue rdpnp rdr reader "
    "redirector "
    "registered release remote resource rom root route routes run safeboot screen secondary security select serial "
    "service servicedll servicename services session sessions setup share shell smart source speed standard start "
    "startup state status stepping storage string style subkeys subnet subsys subsystem suite support target task "
    "tcp tcpip6 team text time timezone title transport type types ultra uninstall universal update upper usb user "
    "value values vendor version vga video virtual vmware volume wan wdm webclient wide wifi win32 win32s winlogon "
    "winlogin wins winsock winsxs wireless wlan wmi work workgroup write x86 x64 amd64 arm64 ia64 alpha mips powerpc "
    "ppc i386 pmax "
    // what Windows says of itself and of devices without a driver of their own
    "advanced and basic business com1 compact computer datacenter desktop deutsch digital edition english enhanced "
    "essentials for home mass media millennium mobile multiple notebook open personal premium pro professional "
    "remotedesktop sha small starter tablet the ultimate vista web with xp beta preview evaluation "
    "gerat geraet kompatibel kompatible standardmonitor standarddrucker standard pnpmonitor nichtpnpmonitor "
    "plugandplay "
    "tastatur maus drucker bildschirm netzwerk netzwerkkarte anschluss laufwerk diskette festplatte "
    // makers, families and their kinds of devices
    "3com accton acer adaptec advantech agere american apple asus asustek ati athlon atheros award ami broadcom "
    "brother "
    "canon celeron cirrus compaq conexant core creative cypress dec dell desktopjet deskjet digital dvd elsa epson "
    "fujitsu geforce genuineintel authenticamd gigabit gigabyte google hewlett packard hitachi hyundai ibm iiyama "
    "innotek kingston kyocera laser laserprinter lenovo lexmark lg logic logitech lucent matrox matshita maxtor "
    "megatrends mitsumi "
    "mitsubishi micron nec nvidia oki opteron oracle panasonic parallels philips phoenix pioneer plextor qemu qlogic "
    "quadro quantum radeon realtek ricoh ryzen samsung sandisk sanyo seagate sharp siemens sis sony supermicro "
    "symbios technologies teac tektronix texas toshiba trident tulip tyan vbox verbatim viewsonic virtualbox wdc "
    "western xeon xen xerox yamaha zebra corporation corp inc ltd gmbh "
    // programs
    "acrobat adobe chrome chromium edge msedge eudora express flash groupwise hotmail htmlfile ie incredimail java "
    "lotus "
    "mapi mailto msn msoe navigator netscape6 notes novell netware nwfs nds office outlook pegasus pmail reader safari "
    "seamonkey thunderbird wab winmail winword word excel firefoxhtml firefoxurl operastable iexplore mshta "
    "applications "
    "mstsc wfica wfcrun32 pnagent receiver workspace xenapp xenappl xendesktop ica32 client32 "
    // names of devices, by their makers' numbers
    "ven dev rev subsys pid vid uid mi cc build dsdt resourcemap path paths w2k capabilities perceived wds tds "
    "interactive "
    "delay hw metric lease terminates obtained legacy good blink rate smoothing active preferences selected remote "
    "over "
    "creates maintains natural key failed dac msmsgs requestpending osint nohome num interfaces buffer 64k deny dma "
    // further words in names of values, services, drivers and file types
    "10 100 1000 abstraction access accessories acroexch acrord32 action activecomputername activetimebias "
    "addins administrative afd agent agp aic78xx alert alerter allow anchor apic apm appevent appinit applet "
    "apps arc area arial asynchronous atapi atdisk attributes audio audioendpointbuilder audiosrv authority "
    "authorized auto autocheck autochk autoend autologon autorun avi background bad baseboard beep below "
    "bindable bindform bindings biosinfo bit bits blank blaster bluetooth bmp board book bowser bpp bridge "
    "browsers bt buslogic busses cached cdaudio cdclass cdfs cdmprov cdmservice cdmsvc cdname center centrino "
    "changer characteristics child chip classguid client comctl32 commands comment communications communicator "
    "companion compatibleids component compressed configmg content control coolswitch count countmsg country "
    "cpqarray crash create created creates crypt32 ctfmon ctxgina ctxhook currentcontrolset "
    "currentmajorversionnumber currentminorversionnumber cursor dac database dataword date davclnt dc21x4 dde "
    "ddeexec debug decchip delivery depend dependencies depth dev developer device deviceguard deviceidentifier "
    "devloader diagnostic dial dir direct directx dirs disabled disk0 displays dma dnscache dnsrslvr doc "
    "document docx dos dosdevices drag drawing drive driverdate driversmodified driverstore drives duplex edit "
    "elnk3 embedding enclosure engine enum esr event evt exchng32 exclusive execute exif extension extensions "
    "external facility fast features featureset fields fileexts filerepository firewall firmware first fix flag "
    "floating flop folder fon fontsmoothing frame framebuffer free friendly fullname func functions game gateway "
    "gbe gdi general gif gina global graphics grpconv hal hardware hardwarekey hash help helper hidden hlp "
    "hmmapi hook i8042prt iastor icabrowser icacli icaclient icons idle igdkmdn64 image imaging imaservice "
    "inetcpl info information inherit init inquiry installdate installer insyde int intel intel64 interactive "
    "internat international interval into io ipc ipsec irq isa joystick jpg kbd kbdclass kbdhid kerberos kernel "
    "kernelsp known lan82 last layer left legal license licensing linked lmhosts load loader loadpowerprofile "
    "loadwc localservice localsystem locked log logging logo logoff lower lowerfilters lsa lsass lsi lsisas mac "
    "machine mailslot major management manager manufacturer mapi32 mapix max maximum maxlanas menu messages "
    "messaging messenger mhzvalue midi min minimum minor mirror mmcss mmdevldr mmx mobsync more mounted mpeg "
    "mprexe mpssvc mrxdav mrxsmb10 mrxsmb20 msacm msgstore msimn msnp32 msoutlook mstask mta mup music "
    "mypictures name named names nbf ncalrpc ncsi ndis5 ndisuio ne2000 netbeui netbiossmb netcfgx netdde "
    "netmeeting netscapemarkup netsvcs networkservice netxtreme next nfuse non nonpnpmonitor nosave notepad "
    "nothing notification notify nsi ntlanman ntldr ntoskrnl ntuser ntvdm nul numlock nvlddmkm nvme "
    "nwcworkstation nwlink nwlnkipx nwlnknb nwnp32 nwprovau nwrdr object objectname obsolete odbc officedocument "
    "ole olmapi32 one onedrive openxmlformats operations optical order other outline page paint palette panel "
    "parallel parameter parport partition passthru password pattern pcie pcmcia pcnet pdf pen perfdisk "
    "performance perfproc persistent phoenixbios picaclientnetwork picture pif pipe pipes plain platform plugin "
    "png pnsson point pointer pointers pool powrprof pps preferred prefs preload prerequisite present previous "
    "principal process processes processing progman progra prompt property proxy publisher pvscsi query quick "
    "raid ram random raster raw rdpclip rdpdd rdpdr rdpwd read real recycle redir reg region registrar remove "
    "removed report reserved reset resolution resolver restart result rights rpc rpcss rtf rundll rundll32 "
    "runonce runtime s3 sam samss sans sas sata scan scanregistry scanregw scecli schannel schedule scheduled "
    "schedulingagent scheme schemes scope script scrnsave scsilun scsitargetid search sequence serif server "
    "sessionmanager sets sfc shared shdocvw shell32 short shortdate show shutdown sid sign simple single size "
    "slot slow smartcard smb smooth smp snmp socket sockets sound spaceport spool spooler spoolss spoolsv sql "
    "srv srv2 srvsvc sst stack startmenu staticvxd station stop storahci stornvme storport stream sub sum "
    "svchost svga swap switch symmpi sync synchronization sysdm systemtray systray tab tag tape tapedrive "
    "taskbar taskman taskmon taskmonitor tasks tcpipcfg tdi tds tdtcp termdd termserv termservice termsrv "
    "termsvcs test tile timer token tools tracing transceiver tray true truetype trust two tx txt txtfile "
    "txtfilelegacy tzres uaspstor underline unexpanded unicode uniprocessor updatesignature updatestatus "
    "upperfilters userinit using utility vcache vdd vector verify vgasave vhdmp vmscsi vmx vnd vnetbios vnetsup "
    "volatile volumes vredir vserver vtdi vxd w32time wabfile wait wake wallpaper wanarp wave wbem wdigest "
    "webdav window winmgmt winprint winspl winstation winstations winzip wkssvc wordpad wordprocessingml wsearch "
    "wuaueng wuauserv x11 xps yes zip zone zones ";

// Names of things that Windows counts: LPT1, Ne00, Video0.
constexpr std::string_view kCounted =
    "com lpt ne usb video cdrom harddisk harddiskvolume tape device pcl port bus line dot4 nul monitor display disk "
    "ide "
    "controlset oem eisa x86 ip ts tpvm winspool ps pcl5 atapi mouse ndis vol dr serial parallel kbdclass pointerport "
    "keyboardport keyboardclass os win mmx vga sp pnp oem ";

const std::set<PageText>& windowsWords() {
    static const std::set<PageText> words = [] {
        std::set<PageText> all = askedWords();
        all.merge(wordsOf(pageText(kFurther)));
        return all;
    }();
    return words;
}

char32_t at(PageTextView text, std::size_t place) {
    return place < text.size() ? text[place] : U'\0';
}

// One of several numbers with dots between them, as versions and addresses are.
bool isInVersion(PageTextView text, std::size_t start, PageTextView word) {
    const std::size_t end = start + word.size();
    return (start > 1 && text[start - 1] == U'.' && isDigit(text[start - 2])) ||
           (at(text, end) == U'.' && isDigit(at(text, end + 1)));
}

// A number that was drawn by chance once, such as {4d36e96e-e325-11ce-bfc1-08002be10318}.
bool isInGuid(PageTextView text, std::size_t start) {
    constexpr PageTextView kForm = U"{xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx}";
    const std::size_t open = text.substr(0, start + 1).rfind(U'{');
    if (open == PageTextView::npos || open + kForm.size() <= start || text.size() - open < kForm.size())
        return false;
    for (std::size_t i = 0; i < kForm.size(); ++i) {
        if (kForm[i] == U'x' ? !isHexDigit(text[open + i]) : text[open + i] != kForm[i])
            return false;
    }
    return true;
}

// A part of the name that Windows makes for a device, as in VEN_10EC&DEV_8168 and 4&1f5d7e2a&0&UID50528768.
bool isOfDevice(PageTextView text, std::size_t start, PageTextView word) {
    if (std::ranges::none_of(word, isDigit))
        return false;
    constexpr PageTextView kMarks[] = {U"VEN_", U"DEV_", U"SUBSYS_", U"REV_", U"CC_", U"VID_", U"PID_"};
    const PageTextView before = text.substr(0, start);
    return before.ends_with(U'&') || at(text, start + word.size()) == U'&' ||
           std::ranges::any_of(kMarks, [&](PageTextView mark) { return before.ends_with(mark); });
}

// "DisplayName" is two words; a capital behind a small letter begins the second.
std::vector<PageTextView> humpsOf(PageTextView word) {
    std::vector<PageTextView> humps;
    for (std::size_t begin = 0, i = 1; i <= word.size(); ++i) {
        const bool isEnd = i == word.size() || (isUpper(word[i]) && !isUpper(word[i - 1]));
        if (isEnd) {
            humps.push_back(word.substr(begin, i - begin));
            begin = i;
        }
    }
    return humps;
}

bool isListed(PageTextView word) {
    static const std::set<PageText> counted = wordsOf(pageText(kCounted));
    const PageText lower = lowerCase(word);
    return windowsWords().contains(lower) ||
           counted.contains(lower.substr(0, lower.find_last_not_of(U"0123456789") + 1));
}

}  // namespace

std::set<PageText> askedWords() {
    std::set<PageText> words = wordsOf(pageText(kAsked));
    for (const std::string_view word : moduleWords())
        words.merge(wordsOf(pageText(word)));
    for (const std::string_view name : moduleNames())
        words.merge(wordsOf(pageText(name)));
    return words;
}

bool isWindowsWord(PageTextView word) {
    return isListed(word) || std::ranges::all_of(humpsOf(word), isListed);
}

bool isTelling(PageTextView text, PageTextView word, TextPlace place) {
    const bool isNumber = std::ranges::all_of(word, isDigit);
    const bool isLong = isNumber ? word.size() >= kShortestTellingNumber : weightOf(word) >= kShortestTelling;
    const bool isOneLetter = word.find_first_not_of(word.front()) == PageTextView::npos;  // FFFF in binary data
    const auto start = static_cast<std::size_t>(word.data() - text.data());
    if (!isLong || isOneLetter || isInGuid(text, start) || isOfDevice(text, start, word))
        return false;
    return isNumber ? place != TextPlace::Version && !isInVersion(text, start, word) : !isWindowsWord(word);
}

}  // namespace kvstation
