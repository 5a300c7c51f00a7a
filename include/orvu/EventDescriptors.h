#pragma once

#include <string>
#include <vector>

#include "orvu/Serializable.h"

namespace Orvu {

/// The genre of an event: a content_descriptor (ARIB STD-B10). Wire name "contentDescription". Travels nested.
class ORVU_EXPORT ContentDescriptor : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeContentDescription;

    int content[4] = {};  ///< content_nibble_level_1 and 2, user_nibble 1 and 2, each 0 to 15.

    ContentDescriptor();
    ~ContentDescriptor() override;
    ContentDescriptor(const ContentDescriptor&) = default;
    ContentDescriptor& operator=(const ContentDescriptor&) = default;

    /// Whether every field has its default, as after reading null.
    bool isEmpty() const { return content[0] == 0 && content[1] == 0 && content[2] == 0 && content[3] == 0; }

    /// Compact, never with "HEADER".
    char* serialize() override;
    /// "contentDescription" is required; a list of another length than 4 changes nothing.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

/// A linkage to another service: a linkage_descriptor (ETSI EN 300 468, ARIB STD-B10). Wire name "linkageDescriptor".
/// Travels nested.
class ORVU_EXPORT LinkageDescriptor : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeLinkageDescriptor;

    int tsId = 0;       ///< transport_stream_id, 0 to 65535.
    int networkId = 0;  ///< original_network_id, 0 to 65535.
    int serviceId = 0;  ///< service_id, 0 to 65535.
    int type = 0;       ///< linkage_type, 0 to 255.
    std::string data;   ///< The private data as text. Never read back.

    LinkageDescriptor();
    ~LinkageDescriptor() override;
    LinkageDescriptor(const LinkageDescriptor&) = default;
    LinkageDescriptor& operator=(const LinkageDescriptor&) = default;

    /// Whether every field has its default, as after reading null.
    bool isEmpty() const { return tsId == 0 && networkId == 0 && serviceId == 0 && type == 0 && data.empty(); }

    /// Compact, never with "HEADER".
    char* serialize() override;
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

/// A hyperlink to a service, an event, a module or a page: a hyperlink_descriptor (ARIB STD-B10). Wire name
/// "hyperlinkDescriptor". Travels nested. An id that does not apply is 0.
class ORVU_EXPORT HyperlinkDescriptor : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeHyperlinkDescriptor;

    int type = 0;             ///< hyper_linkage_type, 0 to 255.
    int destinationType = 0;  ///< link_destination_type, 0 to 255: which of the fields below name the destination.
    int tsId = 0;             ///< transport_stream_id, 0 to 65535.
    int networkId = 0;        ///< original_network_id, 0 to 65535.
    int eventId = 0;          ///< event_id, 0 to 65535.
    int componentTag = 0;     ///< component_tag, 0 to 255.
    int moduleId = 0;         ///< module_id, 0 to 65535.
    int serviceId = 0;        ///< service_id, 0 to 65535.
    int contentId = 0;        ///< content_id, 32 bits.
    std::string url;          ///< URL of the page that it leads to; empty without one.

    HyperlinkDescriptor();
    ~HyperlinkDescriptor() override;
    HyperlinkDescriptor(const HyperlinkDescriptor&) = default;
    HyperlinkDescriptor& operator=(const HyperlinkDescriptor&) = default;

    /// Whether every field has its default, as after reading null.
    bool isEmpty() const
    {
        return type == 0 && destinationType == 0 && tsId == 0 && networkId == 0 && eventId == 0 && componentTag == 0 &&
               moduleId == 0 && serviceId == 0 && contentId == 0 && url.empty();
    }

    /// Compact, never with "HEADER".
    char* serialize() override;
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

/// The series that an event belongs to: a series_descriptor (ARIB STD-B10). Wire name "seriesDescriptor". Travels
/// nested.
class ORVU_EXPORT SeriesDescriptor : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeSeriesDescriptor;

    int id = 0;                 ///< series_id, 0 to 65535.
    int url = 0;                ///< A number, whatever its name says; the applications agree on its meaning.
    int repeatLabel = 0;        ///< repeat_label, 0 to 15.
    int programPattern = 0;     ///< program_pattern, 0 to 7.
    int episodeNumber = 0;      ///< episode_number, 0 to 4095.
    int lastEpisodeNumber = 0;  ///< last_episode_number, 0 to 4095.
    std::string name;           ///< Name of the series, UTF-8, as broadcast.

    SeriesDescriptor();
    ~SeriesDescriptor() override;
    SeriesDescriptor(const SeriesDescriptor&) = default;
    SeriesDescriptor& operator=(const SeriesDescriptor&) = default;

    /// Whether every field has its default, as after reading null.
    bool isEmpty() const
    {
        return id == 0 && url == 0 && repeatLabel == 0 && programPattern == 0 && episodeNumber == 0 &&
               lastEpisodeNumber == 0 && name.empty();
    }

    /// Compact, never with "HEADER".
    char* serialize() override;
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

/// One event of a group. Wire name "eventGroupDescriptor". Travels nested.
class ORVU_EXPORT EventGroupDescriptor : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeEventGroupDescriptor;

    int id = 0;         ///< event_id, 0 to 65535.
    int tsId = 0;       ///< transport_stream_id, 0 to 65535.
    int networkId = 0;  ///< original_network_id, 0 to 65535.
    int serviceId = 0;  ///< service_id, 0 to 65535.

    EventGroupDescriptor();
    ~EventGroupDescriptor() override;
    EventGroupDescriptor(const EventGroupDescriptor&) = default;
    EventGroupDescriptor& operator=(const EventGroupDescriptor&) = default;

    /// Compact, never with "HEADER".
    char* serialize() override;
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

/// The events that belong together: an event_group_descriptor (ARIB STD-B10). Wire name "eventGroup". Travels nested.
class ORVU_EXPORT EventGroup : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeEventGroup;

    int type = 0;                                    ///< group_type, 0 to 15.
    std::vector<EventGroupDescriptor*> descriptors;  ///< Owned; deleted with the group.

    EventGroup();
    ~EventGroup() override;
    EventGroup(const EventGroup&) = delete;
    EventGroup& operator=(const EventGroup&) = delete;

    /// Whether every field has its default, as after reading null.
    bool isEmpty() const { return type == 0 && descriptors.empty(); }

    /// Appends `descriptor` and takes it; null is ignored.
    void addDescriptor(EventGroupDescriptor* descriptor);

    /// Compact, never with "HEADER".
    char* serialize() override;
    /// Reads the list that follows "type", whatever its key; false when nothing follows. Without a "type" nothing
    /// changes. Appends to the descriptors held.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

/// A conditional-access unit: the components that are scrambled together. Wire name "cAUnit". Travels nested.
class ORVU_EXPORT CAUnit : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeCAUnit;

    int id = 0;                      ///< CA_unit_id, 0 to 15.
    std::vector<int> componentTags;  ///< component_tag of each component, 0 to 255; duplicates stay.

    CAUnit();
    ~CAUnit() override;
    CAUnit(const CAUnit&) = default;
    CAUnit& operator=(const CAUnit&) = default;

    /// Appends `tag`, whatever its value; duplicates stay.
    void addComponentTag(int tag);

    /// Compact, never with "HEADER".
    char* serialize() override;
    /// Reads the list that follows "id", whatever its key; false when nothing follows. Without an "id" nothing
    /// changes. Appends to the tags held; any other item counts as 0.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

/// One group of components of an event. Wire name "componentGroupDescriptor". Travels nested.
class ORVU_EXPORT ComponentGroupDescriptor : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeComponentGroupDescriptor;

    int id = 0;               ///< component_group_id, 0 to 15.
    int totalBitRate = 0;     ///< total_bit_rate, 0 to 255, in units of 0.25 Mbit/s.
    std::string description;  ///< Text for the viewer, UTF-8, as broadcast.
    CAUnit* caUnit;           ///< Owned; made with the descriptor.

    ComponentGroupDescriptor();
    ~ComponentGroupDescriptor() override;
    ComponentGroupDescriptor(const ComponentGroupDescriptor&) = delete;
    ComponentGroupDescriptor& operator=(const ComponentGroupDescriptor&) = delete;

    /// Compact, never with "HEADER".
    char* serialize() override;
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

/// The component groups of an event: a component_group_descriptor (ARIB STD-B10). Wire name "componentGroup". Travels
/// nested.
class ORVU_EXPORT ComponentGroup : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeComponentGroup;

    int type = 0;                                       ///< component_group_type, 0 to 7.
    std::vector<ComponentGroupDescriptor*> components;  ///< Owned; deleted with the group.

    ComponentGroup();
    ~ComponentGroup() override;
    ComponentGroup(const ComponentGroup&) = delete;
    ComponentGroup& operator=(const ComponentGroup&) = delete;

    /// Whether every field has its default, as after reading null.
    bool isEmpty() const { return type == 0 && components.empty(); }

    /// Appends `component` and takes it; null is ignored.
    void addComponent(ComponentGroupDescriptor* component);

    /// Compact, never with "HEADER".
    char* serialize() override;
    /// Reads the list that follows "type", whatever its key; false when nothing follows. Without a "type" nothing
    /// changes. Appends to the components held.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

}  // namespace Orvu
