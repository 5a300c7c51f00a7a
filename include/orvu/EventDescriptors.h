#pragma once

#include <string>
#include <vector>

#include "orvu/Serializable.h"

namespace Orvu {

/// The genre of an event. Wire name "contentDescription". Travels nested.
class ORVU_EXPORT ContentDescriptor : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeContentDescription;

    int content[4] = {};  ///< content_nibble_level_1 and 2, user_nibble 1 and 2, as signalled.

    ContentDescriptor();
    ~ContentDescriptor() override;
    ContentDescriptor(const ContentDescriptor&) = default;
    ContentDescriptor& operator=(const ContentDescriptor&) = default;

    /// Whether every field has its default, as in a descriptor that was read from null.
    bool isEmpty() const { return content[0] == 0 && content[1] == 0 && content[2] == 0 && content[3] == 0; }

    /// Compact, never with "HEADER".
    char* serialize() override;
    /// "contentDescription" is required; a list of another length than 4 changes nothing.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;  // the error-reporting reader stays the base's: false
};

/// A linkage to another service. Wire name "linkageDescriptor". Travels nested.
class ORVU_EXPORT LinkageDescriptor : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeLinkageDescriptor;

    int tsId = 0;
    int networkId = 0;
    int serviceId = 0;
    int type = 0;
    std::string data;  ///< Never read back.

    LinkageDescriptor();
    ~LinkageDescriptor() override;
    LinkageDescriptor(const LinkageDescriptor&) = default;
    LinkageDescriptor& operator=(const LinkageDescriptor&) = default;

    /// Whether every field has its default, as in a descriptor that was read from null.
    bool isEmpty() const { return tsId == 0 && networkId == 0 && serviceId == 0 && type == 0 && data.empty(); }

    /// Compact, never with "HEADER".
    char* serialize() override;
    /// Every key is optional: true for any JSON text.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;  // the error-reporting reader stays the base's: false
};

/// A hyperlink to a service, an event, a module or a page. Wire name "hyperlinkDescriptor". Travels nested.
class ORVU_EXPORT HyperlinkDescriptor : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeHyperlinkDescriptor;

    int type = 0;
    int destinationType = 0;
    int tsId = 0;
    int networkId = 0;
    int eventId = 0;
    int componentTag = 0;
    int moduleId = 0;
    int serviceId = 0;
    int contentId = 0;
    std::string url;

    HyperlinkDescriptor();
    ~HyperlinkDescriptor() override;
    HyperlinkDescriptor(const HyperlinkDescriptor&) = default;
    HyperlinkDescriptor& operator=(const HyperlinkDescriptor&) = default;

    /// Whether every field has its default, as in a descriptor that was read from null.
    bool isEmpty() const
    {
        return type == 0 && destinationType == 0 && tsId == 0 && networkId == 0 && eventId == 0 && componentTag == 0 &&
               moduleId == 0 && serviceId == 0 && contentId == 0 && url.empty();
    }

    /// Compact, never with "HEADER".
    char* serialize() override;
    /// Every key is optional: true for any JSON text.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;  // the error-reporting reader stays the base's: false
};

/// The series that an event belongs to. Wire name "seriesDescriptor". Travels nested.
class ORVU_EXPORT SeriesDescriptor : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeSeriesDescriptor;

    int id = 0;
    int url = 0;  ///< A number, whatever its name says.
    int repeatLabel = 0;
    int programPattern = 0;
    int episodeNumber = 0;
    int lastEpisodeNumber = 0;
    std::string name;

    SeriesDescriptor();
    ~SeriesDescriptor() override;
    SeriesDescriptor(const SeriesDescriptor&) = default;
    SeriesDescriptor& operator=(const SeriesDescriptor&) = default;

    /// Whether every field has its default, as in a descriptor that was read from null.
    bool isEmpty() const
    {
        return id == 0 && url == 0 && repeatLabel == 0 && programPattern == 0 && episodeNumber == 0 &&
               lastEpisodeNumber == 0 && name.empty();
    }

    /// Compact, never with "HEADER".
    char* serialize() override;
    /// Every key is optional: true for any JSON text.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;  // the error-reporting reader stays the base's: false
};

/// One event of a group. Wire name "eventGroupDescriptor". Travels nested.
class ORVU_EXPORT EventGroupDescriptor : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeEventGroupDescriptor;

    int id = 0;
    int tsId = 0;
    int networkId = 0;
    int serviceId = 0;

    EventGroupDescriptor();
    ~EventGroupDescriptor() override;
    EventGroupDescriptor(const EventGroupDescriptor&) = default;
    EventGroupDescriptor& operator=(const EventGroupDescriptor&) = default;

    /// Compact, never with "HEADER".
    char* serialize() override;
    /// Every key is optional: true for any JSON text.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;  // the error-reporting reader stays the base's: false
};

/// The events that belong together. Wire name "eventGroup". Travels nested.
class ORVU_EXPORT EventGroup : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeEventGroup;

    int type = 0;
    std::vector<EventGroupDescriptor*> descriptors;  ///< Owned; deleted with the group.

    EventGroup();
    ~EventGroup() override;
    EventGroup(const EventGroup&) = delete;
    EventGroup& operator=(const EventGroup&) = delete;

    /// Whether every field has its default, as in a descriptor that was read from null.
    bool isEmpty() const { return type == 0 && descriptors.empty(); }

    /// Appends `descriptor` and takes it; null is ignored.
    void addDescriptor(EventGroupDescriptor* descriptor);

    /// Compact, never with "HEADER".
    char* serialize() override;
    /// Reads the list that stands behind "type", whatever its name; false when nothing does. Without a "type" nothing
    /// changes. Appends to the descriptors held.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;  // the error-reporting reader stays the base's: false
};

/// A conditional-access unit: the components that are scrambled together. Wire name "cAUnit". Travels nested.
class ORVU_EXPORT CAUnit : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeCAUnit;

    int id = 0;
    std::vector<int> componentTags;

    CAUnit();
    ~CAUnit() override;
    CAUnit(const CAUnit&) = default;
    CAUnit& operator=(const CAUnit&) = default;

    /// Appends `tag`, whatever its value.
    void addComponentTag(int tag);

    /// Compact, never with "HEADER".
    char* serialize() override;
    /// Reads the list that stands behind "id", whatever its name; false when nothing does. Without an "id" nothing
    /// changes. Appends to the tags held; any other item counts as 0.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;  // the error-reporting reader stays the base's: false
};

/// One group of components of an event. Wire name "componentGroupDescriptor". Travels nested.
class ORVU_EXPORT ComponentGroupDescriptor : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeComponentGroupDescriptor;

    int id = 0;
    int totalBitRate = 0;
    std::string description;
    CAUnit* caUnit;  ///< Owned; made with the descriptor.

    ComponentGroupDescriptor();
    ~ComponentGroupDescriptor() override;
    ComponentGroupDescriptor(const ComponentGroupDescriptor&) = delete;
    ComponentGroupDescriptor& operator=(const ComponentGroupDescriptor&) = delete;

    /// Compact, never with "HEADER".
    char* serialize() override;
    /// Every key is optional: true for any JSON text.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;  // the error-reporting reader stays the base's: false
};

/// The component groups of an event. Wire name "componentGroup". Travels nested.
class ORVU_EXPORT ComponentGroup : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeComponentGroup;

    int type = 0;
    std::vector<ComponentGroupDescriptor*> components;  ///< Owned; deleted with the group.

    ComponentGroup();
    ~ComponentGroup() override;
    ComponentGroup(const ComponentGroup&) = delete;
    ComponentGroup& operator=(const ComponentGroup&) = delete;

    /// Whether every field has its default, as in a descriptor that was read from null.
    bool isEmpty() const { return type == 0 && components.empty(); }

    /// Appends `component` and takes it; null is ignored.
    void addComponent(ComponentGroupDescriptor* component);

    /// Compact, never with "HEADER".
    char* serialize() override;
    /// Reads the list that stands behind "type", whatever its name; false when nothing does. Without a "type" nothing
    /// changes. Appends to the components held.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;  // the error-reporting reader stays the base's: false
};

}  // namespace Orvu
