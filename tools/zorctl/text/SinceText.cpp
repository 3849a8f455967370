#include "tools/zorctl/text/SinceText.h"

#include <string_view>

#include "System/DateTime.h"
#include "System/Numbers.h"

namespace {

constexpr std::string_view kUnits = "smhd";
constexpr std::int32_t kUnitSeconds[] = {1, 60, 60 * 60, 24 * 60 * 60};

bool IsSpan(const std::string& text) {
    constexpr std::size_t kMostDigits = 4;  // so that even days stay within 32 bits of seconds
    const std::size_t digits = text.find_first_not_of("0123456789");
    return digits >= 1 && digits <= kMostDigits && digits + 1 == text.size() &&
           kUnits.find(text.back()) != std::string_view::npos;
}

// True for the beginning of a full date and time that holds at least the date.
bool IsDate(const std::string& text) {
    const std::string form = "0000-00-00 00:00:00";
    constexpr std::size_t kDateLength = 10;
    if (text.size() < kDateLength || text.size() > form.size()) return false;
    for (std::size_t i = 0; i < text.size(); ++i)
        if (form[i] == '0' ? text[i] < '0' || text[i] > '9' : text[i] != form[i]) return false;
    return true;
}

}  // namespace

bool SinceText(const std::string& given, std::string& since) {
    if (IsSpan(given)) {
        CDateTime time = CDateTime::Now();
        time.AddSeconds(-ParseInt32(given.c_str()) * kUnitSeconds[kUnits.find(given.back())]);
        since = time.FullText();
        return true;
    }
    since = given;
    if (const std::size_t mark = since.find('T'); mark != std::string::npos) since[mark] = ' ';
    return IsDate(since);
}
