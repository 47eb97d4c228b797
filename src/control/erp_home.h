// What Components.xml in an ERP's home says, as it holds for any directory.
#pragma once

#include "control/job_file.h"
#include "system/xml_file.h"

namespace zenqay {

/// Reads the file with its paths made absolute. Raises WrongUsage, with the place in the job file, when it cannot be
/// read.
void ReadComponents(const ErpSettings& erp, pugi::xml_document& components);

/// The parts of a class path, which stand with ":" between them.
std::vector<Text> ClassPathParts(const Text& classPath);

}  // namespace zenqay
