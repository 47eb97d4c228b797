// The closed components that more than one unit knows, by class id, and the codes of the ERP's generations.
#pragma once

namespace zenqay {

// The generations of the ERP's components, the codes of ErpGeneration.
inline constexpr const char* kGeneration1 = "1";
inline constexpr const char* kGeneration3 = "3";
inline constexpr const char* kGeneration8 = "8";

inline constexpr const char* kAdapterInfoClass = "java:com.korvel.k3impl.about.AdapterComponentInfo";
inline constexpr const char* kAdapterAccessClass = "java:com.korvel.k3.kxi1.AccessForCom";

inline constexpr const char* kDateClass = "java:java.util.Date";
inline constexpr const char* kCalendarClass = "java:java.util.GregorianCalendar";

inline constexpr const char* kCriteriaClass = "NetListSelectionCriteria.NetListSelectionCriteria";
inline constexpr const char* kCriteriaInputClass = "NetListSelectionCriteria.NetListIn";
inline constexpr const char* kCriteriaOutputClass = "NetListSelectionCriteria.NetListOut";
inline constexpr const char* kCriteriaPeriodClass = "NetListSelectionCriteria.NetListPeriod";
inline constexpr const char* kCriteriaParameterClass = "NetListSelectionCriteria.NetListParameter";

/// The status component, a sibling program.
inline constexpr const char* kStatusClass = "ZenqayInstHandler.InstanceHandle";

}  // namespace zenqay
