#include "tools/zorctl/text/SinceText.h"

#include "System/DateTime.h"
#include "System/Numbers.h"

namespace {

// Seconds of a span's unit, 0 for none.
std::int32_t UnitOf(char unit) {
    switch (unit) {
        case 's':
            return 1;
        case 'm':
            return 60;
        case 'h':
            return 60 * 60;
        case 'd':
            return 24 * 60 * 60;
        default:
            return 0;
    }
}

bool IsSpan(const std::string& text) {
    constexpr std::size_t kMostDigits = 4;  // so that even days stay within 32 bits of seconds
    const std::size_t digits = text.find_first_not_of("0123456789");
    return digits >= 1 && digits <= kMostDigits && digits + 1 == text.size() && UnitOf(text.back()) != 0;
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
        time.AddSeconds(-ParseInt32(given.c_str()) * UnitOf(given.back()));
        since = time.FullText();
        return true;
    }
    since = given;
    if (const std::size_t mark = since.find('T'); mark != std::string::npos) since[mark] = ' ';
    return IsDate(since);
}
