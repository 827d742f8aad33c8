#include "VnZEL10cmn/document/internal/DocumentDates.h"

namespace VnZEL10cmn::internal {

Date EarliestDate() {
  static const Date earliest = Date::FromCivil(2000, 1, 1);
  return earliest;
}

Date LatestDate() {
  static const Date latest = Date::FromCivil(2099, 12, 31, 23, 59, 59);
  return latest;
}

Date WithinRange(Date date) {
  const Date earliest = EarliestDate();
  const Date latest = LatestDate();
  return date < earliest ? earliest : date > latest ? latest : date;
}

bool IsUndated(Date date) { return date <= EarliestDate() || date >= LatestDate(); }

Date Combine(Date day, Date time) {
  const Date::Civil d = day.ToCivil();
  const Date::Civil t = time.ToCivil();
  return Date::FromCivil(d.year, d.month, d.day, t.hour, t.minute, t.second);
}

}  // namespace VnZEL10cmn::internal
