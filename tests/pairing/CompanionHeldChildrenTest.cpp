#include "orvu/ClientApplications.h"
#include "support/HeldRules.h"

using namespace Orvu;

namespace OrvuTests {

INSTANTIATE_TEST_SUITE_P(Companions, AHeldChildOf,
                         testing::Values(heldChild("ServiceBindTokensService", "service", &ServiceBindTokens::service)),
                         heldName);

}  // namespace OrvuTests
