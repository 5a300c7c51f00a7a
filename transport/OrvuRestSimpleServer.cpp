#include "transport/OrvuRestSimpleServer.h"

namespace Orvu {

OrvuRestSimpleServer::~OrvuRestSimpleServer() = default;

}  // namespace Orvu
