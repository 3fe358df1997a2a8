// The software installed for the whole machine through the Windows Installer,
// read from the installer's per-machine data under the local system account's
// security identifier, one subkey per product.
#include "collectors/CProductsList.h"

#include <iomanip>
#include <ostream>

#include "collectors/KeywordFilter.h"
#include "collectors/ReportTexts.h"
#include "inventory/RegistryReader.h"
#include "recorder/CLogger.h"

namespace {

const char kProductsKey[] =
    "SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Installer\\UserData\\S-1-5-18\\Products";

using texts::software::kColumnWidths;
using texts::software::kHeader;
using texts::software::kRule;

bool IsBlank(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r';
}

}  // namespace

// Read as the runtime's decimal conversion into a 32-bit long reads it: blanks,
// a sign, the digits up to the first other character, held within the range
// of the long. The long's 32 bits are then taken as unsigned.
std::uint32_t LanguageNumber(const std::string& text)
{
    constexpr std::int64_t kLongMax = 2147483647;
    constexpr std::int64_t kLongMin = -kLongMax - 1;
    std::size_t i = 0;
    while (i < text.size() && IsBlank(text[i]))
        ++i;
    bool negative = false;
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) {
        negative = text[i] == '-';
        ++i;
    }
    std::int64_t magnitude = 0;
    for (; i < text.size() && text[i] >= '0' && text[i] <= '9'; ++i) {
        if (magnitude <= kLongMax + 1)
            magnitude = magnitude * 10 + (text[i] - '0');
    }
    std::int64_t number = negative ? -magnitude : magnitude;
    if (number > kLongMax)
        number = kLongMax;
    if (number < kLongMin)
        number = kLongMin;
    return static_cast<std::uint32_t>(static_cast<std::int32_t>(number));
}

CProductsList::CProductsList() {}

CProductsList::~CProductsList() {}

// Every subkey gives a record, whether its InstallProperties key is there or
// not. The list isn't emptied first: a second call appends everything again.
// The installer keeps this data in the native view of 64-bit Windows only,
// for 32-bit packages too, so the x86 build reads it there: in its own view
// the key doesn't exist, and every machine would show no software at all.
int CProductsList::Collect()
{
    const std::string root = kProductsKey;
    constexpr RegistryView kView = RegistryView::Native;
    for (const std::string& name : EnumRegistrySubKeys(root, kView)) {
        const std::string key = root + "\\" + name + "\\InstallProperties";
        ProductEntry entry;
        entry.displayName = ReadRegistryValue(key, "DisplayName", kView);
        entry.displayVersion = ReadRegistryValue(key, "DisplayVersion", kView);
        entry.installDate = ReadRegistryValue(key, "InstallDate", kView);
        entry.installLocation = ReadRegistryValue(key, "InstallLocation", kView);
        entry.language = LanguageNumber(ReadRegistryValue(key, "Language", kView));
        entry.publisher = ReadRegistryValue(key, "Publisher", kView);
        products.push_back(entry);
    }
    return 0;
}

// The rows set the left-adjust bit alone, which then stays on for the rest of
// the run, and a blank fill after the publisher.
int CProductsList::Write()
{
    CLogger& log = CLogger::Instance();
    log << std::endl;
    log << kRule << std::endl;
    log << kHeader << std::endl;
    log << kRule << std::endl;
    for (const ProductEntry& entry : products) {
        if (!IsSelected(entry))
            continue;
        log.setf(std::ios_base::left);
        log << std::setw(kColumnWidths[0]) << entry.publisher;
        log.fill(' ');
        log << std::setw(kColumnWidths[1]) << entry.displayName << std::setw(kColumnWidths[2])
            << entry.displayVersion << std::setw(kColumnWidths[3]) << entry.installDate
            << std::setw(kColumnWidths[4]) << entry.language << entry.installLocation << std::endl;
    }
    log << kRule << std::endl;
    return 0;
}

bool CProductsList::IsSelected(const ProductEntry& entry)
{
    return MatchesKeywords(entry.publisher, ProductKeywords, 4, AllSwitch::WholeWord);
}
