// The command line of zenqayctl.
#pragma once

#include "control/commands.h"

namespace zenqay {

/// Does what the arguments ask for and gives the exit status. What is wrong with them or with the job file is said on
/// `err`, a line for each thing.
int RunZenqayctl(const std::vector<Text>& arguments, Surroundings& surroundings);

/// The page of a command, and of zenqayctl itself for an empty name. Empty for a command that there is not.
Text HelpOf(const Text& command);

/// The commands, and the options of each as they are written, --help left out.
std::map<Text, std::vector<Text>> CommandsAndOptions();

}  // namespace zenqay
