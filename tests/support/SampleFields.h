#pragma once

#include "orvu/Orvu.h"

namespace OrvuTests {

// Each gives every field of a new message a value of its own.

void fill(Orvu::Bounds& bounds);
void fill(Orvu::CAUnit& unit);
void fill(Orvu::ClientApplication& app);
void fill(Orvu::ClientApplicationList& list);
void fill(Orvu::Codecs& codecs);
void fill(Orvu::ComponentGroup& group);
void fill(Orvu::ComponentGroupDescriptor& descriptor);
void fill(Orvu::ConfirmationScreen& screen);
void fill(Orvu::ContentDescriptor& descriptor);
void fill(Orvu::DeepLink& link);
void fill(Orvu::Directory& directory);
void fill(Orvu::DisplayLayer& layer);
void fill(Orvu::DrmSystem& system);
void fill(Orvu::DrmSystemList& list);
void fill(Orvu::DsmccFileList& list);
void fill(Orvu::EventGroup& group);
void fill(Orvu::EventGroupDescriptor& descriptor);
void fill(Orvu::EventInfo& event);
void fill(Orvu::EventInfoList& list);
void fill(Orvu::File& file);
void fill(Orvu::GingaAppAction& action);
void fill(Orvu::GingaAppList& list);
void fill(Orvu::GingaEditCommand& command);
void fill(Orvu::GingaFileList& list);
void fill(Orvu::GingaKeyset& keyset);
void fill(Orvu::HyperlinkDescriptor& descriptor);
void fill(Orvu::LinkageDescriptor& descriptor);
void fill(Orvu::MediaPlayer& player);
void fill(Orvu::MediaPlayerAction& command);
void fill(Orvu::MediaPlayerList& list);
void fill(Orvu::NCLDocument& document);
void fill(Orvu::NCLEvent& event);
void fill(Orvu::NCLNode& node);
void fill(Orvu::NCLNodeAction& action);
void fill(Orvu::NCLNodeList& list);
void fill(Orvu::NetworkInterface& interface);
void fill(Orvu::NodeProperties& properties);
void fill(Orvu::PairMobileAppScreen& screen);
void fill(Orvu::PersistProperty& persist);
void fill(Orvu::PersistentProperties& properties);
void fill(Orvu::PinScreen& screen);
void fill(Orvu::PlatformCapabilities& can);
void fill(Orvu::Position& position);
void fill(Orvu::Property& property);
void fill(Orvu::QrCodeScreen& screen);
void fill(Orvu::RestGingaApp& app);
void fill(Orvu::RevokeToken& revoke);
void fill(Orvu::RtkChangeComponentStatus& status);
void fill(Orvu::ScreenDescription& description);
void fill(Orvu::ScreenItem& item);
void fill(Orvu::SeriesDescriptor& descriptor);
void fill(Orvu::Service& service);
void fill(Orvu::ServiceBindTokens& tokens);
void fill(Orvu::ServiceBindTokensList& list);
void fill(Orvu::ServiceBoundTokenList& list);
void fill(Orvu::ServiceCompTagAction& action);
void fill(Orvu::ServiceComponent& component);
void fill(Orvu::ServiceComponentList& list);
void fill(Orvu::ServiceComponentTag& tag);
void fill(Orvu::ServiceList& list);
void fill(Orvu::ServiceSelection& selection);
void fill(Orvu::ServiceTime& time);
void fill(Orvu::StreamEventDispose& dispose);
void fill(Orvu::StreamEventRequest& request);
void fill(Orvu::StreamPidsRequest& request);
void fill(Orvu::StreamPidsResponse& response);
void fill(Orvu::TargetApp& target);
void fill(Orvu::TargetAppAction& action);
void fill(Orvu::TargetAppFilter& filter);
void fill(Orvu::TargetAppList& list);
void fill(Orvu::TargetAppPerformAction& action);
void fill(Orvu::BinaryData& data);
void fill(Orvu::BinaryDataMultipart& message);

/// A new message with its fields filled in; the caller's.
template <class Message, class... Arguments>
Message* filled(Arguments... arguments)
{
    auto* const message = new Message(arguments...);
    fill(*message);
    return message;
}

}  // namespace OrvuTests
