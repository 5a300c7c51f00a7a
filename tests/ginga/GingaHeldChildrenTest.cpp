#include "orvu/Ncl.h"
#include "support/HeldRules.h"

using namespace Orvu;

namespace OrvuTests {

INSTANTIATE_TEST_SUITE_P(
    Ginga, AHeldChildOf,
    testing::Values(heldChild("NCLNodePresentationEvent", "presentationEvent", &NCLNode::presentationEvent),
                    heldChild("NCLNodePreparationEvent", "preparationEvent", &NCLNode::preparationEvent)),
    heldName);

}  // namespace OrvuTests
