#pragma once

#include <string>
#include <vector>

#include "orvu/Serializable.h"

namespace Orvu {

/// The groups of remote-control keys that an interactive application wants, or gives back. Wire name "keyset".
///
/// Keys are named by group, never one by one, and no message carries a key press. To act on what is shown, send a
/// ServiceCompTagAction (start, pause or stop a component, move its window, set its volume) or a MediaPlayerAction.
class ORVU_EXPORT GingaKeyset : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeKeyset;

    std::vector<std::string> keys;  ///< Names of groups, as given: unknown names and duplicates stay.
    bool releaseKeyset = false;     ///< Gives the keys back. Written only while it is set.

    GingaKeyset();
    ~GingaKeyset() override;
    GingaKeyset(const GingaKeyset&) = default;
    GingaKeyset& operator=(const GingaKeyset&) = default;

    static const char* const NUMERIC_KEYSET;    ///< "numeric_keys"
    static const char* const COLORED_KEYSET;    ///< "colored_keys"
    static const char* const SELECTION_KEYSET;  ///< "selection_keys"
    static const char* const CURSOR_KEYSET;     ///< "cursor_keys"

    /// Appends the names in order, without the empty ones; duplicates stay.
    void addKeyset(std::vector<std::string> names);
    /// The groups that a name stands for: itself for the four basic groups, the coloured, selection and cursor keys for
    /// "interactive_keys", none for anything else.
    static std::vector<std::string> getKeySetByName(std::string name);
    static bool isNumericKeyset(std::string name);      ///< Whether `name` is "numeric_keys", compared exactly.
    static bool isColoredKeyset(std::string name);      ///< Whether `name` is "colored_keys", compared exactly.
    static bool isSelectionKeyset(std::string name);    ///< Whether `name` is "selection_keys", compared exactly.
    static bool isCursorKeyset(std::string name);       ///< Whether `name` is "cursor_keys", compared exactly.
    static bool isInteractiveKeyset(std::string name);  ///< Whether `name` is "interactive_keys", compared exactly.

    /// Always with "HEADER".
    char* serialize() override;
    /// Appends the names under "keyset", which is required; empty ones are left out.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

}  // namespace Orvu
