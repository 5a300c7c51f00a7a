#pragma once

/// \file
/// All of the library.

#include "orvu/JsonAccess.h"
#include "orvu/OrvuRestInterface.h"
#include "orvu/OrvuRestRequest.h"
#include "orvu/PairingScreens.h"
#include "orvu/Results.h"
#include "orvu/Serializable.h"
#include "orvu/ServiceContext.h"
#include "orvu/Services.h"
