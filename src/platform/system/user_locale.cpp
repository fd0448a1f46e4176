#include "platform/system/user_locale.h"

#include <langinfo.h>
#include <locale.h>

namespace platform {
namespace {

// The place of the first of these conversions in the form, past its flags and modifiers; npos for none.
std::size_t FindConversion(std::string_view form, std::string_view conversions) {
  for (std::size_t at = form.find('%'); at < form.size(); at = form.find('%', at + 1)) {
    at = form.find_first_not_of("_-0^#EO", at + 1);
    if (at == std::string_view::npos) break;
    if (conversions.find(form[at]) != std::string_view::npos) return at;
  }
  return std::string_view::npos;
}

}  // namespace

TimeCustoms CustomsOfForms(std::string_view time, std::string_view date) {
  constexpr std::string_view kNobodysTime = "%H:%M:%S";
  constexpr std::string_view kNobodysDate = "%m/%d/%y";
  TimeCustoms customs;
  if (time == kNobodysTime && date == kNobodysDate) return customs;
  customs.twelveHours = FindConversion(time, "Ilr") != std::string_view::npos;
  const std::size_t month = FindConversion(date, "mbBhD");
  const std::size_t day = FindConversion(date, "de");
  const std::size_t year = FindConversion(date, "YyGgFC");
  if (year > month || year > day) customs.monthFirst = month < day;
  return customs;
}

TimeCustoms UserTimeCustoms() {
  const locale_t locale = newlocale(LC_TIME_MASK, "", nullptr);
  if (locale == nullptr) return {};
  const TimeCustoms customs = CustomsOfForms(nl_langinfo_l(T_FMT, locale), nl_langinfo_l(D_FMT, locale));
  freelocale(locale);
  return customs;
}

}  // namespace platform
