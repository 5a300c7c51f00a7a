#include "orvu/ServiceContext.h"

#include <algorithm>
#include <climits>
#include <cstdlib>

namespace Orvu {
namespace {

/// As `atoi`, but a number beyond 32 bits is the nearest that fits.
int numberAt(const char* text)
{
    const long long value = std::strtoll(text, nullptr, 10);
    return static_cast<int>(std::clamp<long long>(value, INT_MIN, INT_MAX));
}

}  // namespace

std::string ServiceContext::generateStringId(unsigned firstId, unsigned secondId, unsigned serviceId)
{
    const unsigned serviceType = serviceId & 0x18u;  // printed unshifted, as peers expect it
    const unsigned serviceNumber = (serviceId & 7u) + 1;
    return std::to_string(firstId) + "." + std::to_string(secondId) + "." + std::to_string(serviceType) +
           std::to_string(serviceNumber);
}

ServiceContext::ServiceContextData ServiceContext::parse(std::string text)
{
    ServiceContextData data;
    if (text == "current-service") {
        data.valid = data.currentService = true;
        return data;
    }
    if (text == "all-services") {
        data.valid = data.allServices = true;
        return data;
    }
    if (std::count(text.begin(), text.end(), '.') != 2) return data;

    const int firstId = numberAt(text.c_str());  // each number ends at its dot
    const int secondId = numberAt(text.c_str() + text.find('.') + 1);
    const int service = numberAt(text.c_str() + text.rfind('.') + 1);
    if (firstId < 1 || secondId < 1 || service < 1 || service > 99) return data;

    data.firstId = firstId;
    data.secondId = secondId;
    data.serviceTypeDigit = service / 10;
    data.serviceNumberDigit = service % 10;
    data.valid = true;
    return data;
}

}  // namespace Orvu
