// The date classes that this program brings along: what stands behind "java:java.util.Date" and
// "java:java.util.GregorianCalendar" where no adapter serves them.
#pragma once

#include "components/catalogue_element.h"
#include "process/QTMDeclarations.h"

namespace zenqay {

/// Creates date and calendar objects that stand at the current millisecond, in the time zone of the process (TZ).
///
/// A date answers getYear (since 1900), getMonth (from 0), getDate, getHours, getMinutes, getSeconds, each with its
/// setter of one 32-bit integer; getTime and setTime (milliseconds since 1970 UTC, a double); getTimeZoneOffset (UTC
/// minus local time, in minutes); and toLocaleString ("Jan 31, 2004 10:11:12 AM", English in every locale). Values out
/// of their range carry over, once all setters have run and something is asked for. A calendar answers the property
/// ZONE_OFFSET and get(ZONE_OFFSET): the zone's standard offset in milliseconds, positive east; any other field
/// raises 5.
class BuiltinDateHost : public ComponentHost {
 public:
  /// For kind="builtin".
  static std::shared_ptr<ComponentHost> Make(const CatalogueElement& element,
                                             const std::shared_ptr<ComponentHost>& former);

  Object Create(const Text& classId) override;
};

/// A date object that stands at this local time, its milliseconds 0. The month must be 1 to 12; everything else may
/// carry over. A time that a change of the clock skips or repeats is read as standard time.
Object MakeDateObject(const DateTimeParts& localTime);

}  // namespace zenqay
