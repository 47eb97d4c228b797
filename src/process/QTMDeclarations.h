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

// The managers of the ERP's entities, by generation.
inline constexpr const char* kContractsManager1 = "Kv40QTMtssmaContracts.ContractsManager";
inline constexpr const char* kInstallationsManager1 = "Kv40QTMtssmaInstallations.InstallationsManager";
inline constexpr const char* kLocationsManager1 = "Kv40QTMtssmaLocations.LocationsManager";
inline constexpr const char* kPrioritiesManager1 = "Kv40QTMtssmaPriorities.PrioritiesManager";
inline constexpr const char* kWarrantiesManager1 = "Kv40QTMtssmaWarranties.WarrantiesManager";
inline constexpr const char* kProblemsManager1 = "Kv40QTMtsspfProblems.ProblemsManager";
inline constexpr const char* kSymptomsManager1 = "Kv40QTMtsspfSymptoms.SymptomsManager";

inline constexpr const char* kPrioritiesManager3 = "Kv50QTMtcmcsPriorities.PrioritiesManager";
inline constexpr const char* kConfigurationsManager3 = "Kv50QTMtscfgConfigurations.ConfigurationsManager";
inline constexpr const char* kObjectsManager3 = "Kv50QTMtscfgObjects.ObjectsManager";
inline constexpr const char* kProblemsManager3 = "Kv50QTMtsclmProblems.ProblemsManager";
inline constexpr const char* kContractConfigurationLinesManager3 =
    "Kv50QTMtsctmContractConfigurationLines.ContractConfigurationLinesManager";
inline constexpr const char* kServiceContractsManager3 = "Kv50QTMtsctmServiceContracts.ServiceContractsManager";
inline constexpr const char* kWarrantiesManager3 = "Kv50QTMtsctmWarranties.WarrantiesManager";

inline constexpr const char* kPrioritiesManager8 = "Kv61QTMtcmcsPriorities.PrioritiesManager";
inline constexpr const char* kClustersManager8 = "Kv61QTMtsbscClusters.ClustersManager";
inline constexpr const char* kSerializedItemsManager8 = "Kv61QTMtscfgSerializedItems.SerializedItemsManager";
inline constexpr const char* kProblemsManager8 = "Kv61QTMtsclmProblems.ProblemsManager";
inline constexpr const char* kContractConfigurationLinesManager8 =
    "Kv61QTMtsctmContractConfigurationLines.ContractConfigurationLinesManager";
inline constexpr const char* kServiceContractsManager8 = "Kv61QTMtsctmServiceContracts.ServiceContractsManager";
inline constexpr const char* kWarrantiesManager8 = "Kv61QTMtsctmWarranties.WarrantiesManager";

/// The status component, a sibling program.
inline constexpr const char* kStatusClass = "ZenqayInstHandler.InstanceHandle";

}  // namespace zenqay
