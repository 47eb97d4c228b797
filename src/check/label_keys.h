// The texts that a job can ask for.
#pragma once

#include <array>

namespace zenqay {

/// The key of every label in I18nText.xml that the program looks up, by number.
inline constexpr std::array kLabelKeys = {
    "SLBL0006", "SLBL0007", "SLBL0009", "SLBL0010", "SLBL0026", "SLBL0041", "SLBL0120", "SLBL0133",
    "SLBL0143", "SLBL0232", "SLBL0234", "SLBL0235", "SLBL0237", "SLBL0278", "SLBL0302", "SLBL0321",
    "SLBL0374", "SLBL0375", "SLBL0376", "SLBL0377", "SLBL0455", "SLBL0456", "SLBL0504", "SLBL0507",
    "STIT0015", "STIT0039", "STIT0088", "STIT0089", "STIT0090", "STIT0091", "STIT0092", "STIT0095",
    "STIT0097", "STIT0098", "STIT0099", "STIT0100", "STIT0101"};

}  // namespace zenqay
