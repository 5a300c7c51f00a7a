#include "orvu/Services.h"
#include "support/KeyRules.h"

using namespace Orvu;

namespace OrvuTests {

INSTANTIATE_TEST_SUITE_P(
    Services, AMessage,
    testing::Values(keysOf<Service>("Service", {text("serviceContextId", &Service::serviceContextId),
                                                text("serviceName", &Service::serviceName),
                                                number("transportStreamId", &Service::transportStreamId),
                                                number("originalNetworkId", &Service::originalNetworkId),
                                                number("serviceId", &Service::serviceId)}),
                    keysOf<ServiceSelection>("ServiceSelection",
                                             {text("serviceContextId", &ServiceSelection::serviceContextId)}),
                    keysOf<ServiceTime>("ServiceTime", {required(text("time", &ServiceTime::time))})),
    nameOf);

}  // namespace OrvuTests
