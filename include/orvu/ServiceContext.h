#pragma once

#include <string>

#include "orvu/Export.h"

namespace Orvu {

/// Service locators: the dotted text that messages carry as "serviceContextId", such as "1840.1840.01", or one of the
/// keywords "current-service" and "all-services". Pure functions; any thread.
///
/// A locator is `firstId`, a dot, `secondId`, a dot, the service's type (0, 8, 16 or 24) and its number (1 to 8). The
/// applications decide what the two ids are; the examples use the original network id and the transport stream id.
class ORVU_EXPORT ServiceContext {
public:
    /// What a locator says. All numbers are 0 unless `valid` is set and the text was not a keyword.
    struct ServiceContextData {
        int firstId = 0;              ///< The number before the first dot, 1 or more.
        int secondId = 0;             ///< The number between the dots, 1 or more.
        int serviceTypeDigit = 0;     ///< The service type: tens of the third number; 0 when it has one digit.
        int serviceNumberDigit = 0;   ///< The service number: units of the third number.
        bool valid = false;           ///< The text was accepted.
        bool currentService = false;  ///< The text was "current-service".
        bool allServices = false;     ///< The text was "all-services".
    };

    /// The locator of a service. Its third part is made of `serviceId`: bits 3 and 4, not shifted, followed without a
    /// separator by bits 0 to 2 plus one. 58880 gives "01", 58881 "02", 58889 "82" and 58904 "241". parse() does not
    /// accept the last one: a service of type 16 or 24 has a third part of three digits.
    static std::string generateStringId(unsigned firstId, unsigned secondId, unsigned serviceId);

    /// Reads a locator or keyword. Numbers are read as `atoi` reads them (saturating at the ends of 32 bits); a text
    /// that is not accepted gives a record with `valid` false and all else 0. Never fails otherwise.
    static ServiceContextData parse(std::string text);
};

}  // namespace Orvu
