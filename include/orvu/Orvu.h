#pragma once

/// \file
/// All of the library.

#include "orvu/ClientApplications.h"
#include "orvu/Codecs.h"
#include "orvu/EventDescriptors.h"
#include "orvu/EventInformation.h"
#include "orvu/ExchangeReport.h"
#include "orvu/Files.h"
#include "orvu/GingaApps.h"
#include "orvu/JsonAccess.h"
#include "orvu/Keyset.h"
#include "orvu/MediaPlayers.h"
#include "orvu/Ncl.h"
#include "orvu/OrvuRestInterface.h"
#include "orvu/OrvuRestRequest.h"
#include "orvu/PairingScreens.h"
#include "orvu/PlatformCapabilities.h"
#include "orvu/Position.h"
#include "orvu/Properties.h"
#include "orvu/Results.h"
#include "orvu/Serializable.h"
#include "orvu/ServiceComponents.h"
#include "orvu/ServiceContext.h"
#include "orvu/Services.h"
#include "orvu/Status.h"
#include "orvu/TargetApplications.h"
