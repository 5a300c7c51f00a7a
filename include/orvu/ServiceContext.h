#pragma once

#include <string>

#include "orvu/Export.h"

namespace Orvu {

/// Service locators: the dotted text that messages carry as "serviceContextId", such as "1.2.01", or one of the keywords
/// "current-service" and "all-services". Pure functions; any thread.
class ORVU_EXPORT ServiceContext {
public:
    /// What a locator says. All numbers are 0 unless `valid` is set and the text was no keyword.
    struct ServiceContextData {
        int firstId = 0;              ///< The number before the first dot, 1 or more.
        int secondId = 0;             ///< The number between the dots, 1 or more.
        int serviceTypeDigit = 0;     ///< Tens of the third number; 0 when it has one digit.
        int serviceNumberDigit = 0;   ///< Units of the third number.
        bool valid = false;           ///< The text was accepted.
        bool currentService = false;  ///< The text was "current-service".
        bool allServices = false;     ///< The text was "all-services".
    };

    /// The locator of a service. The third part is bits 3 and 4 of `serviceId`, unshifted, followed without a separator by
    /// its lowest three bits plus one; only service types 0 and 1 (bits 3 and 4) give a text that parse() accepts.
    static std::string generateStringId(unsigned firstId, unsigned secondId, unsigned serviceId);

    /// Reads a locator or keyword. Numbers are read as `atoi` reads them (saturating at the ends of 32 bits); what is not
    /// accepted gives a record with `valid` false and all else 0. Never fails otherwise.
    static ServiceContextData parse(std::string text);
};

}  // namespace Orvu
