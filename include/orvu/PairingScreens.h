#pragma once

#include <string>
#include <vector>

#include "orvu/Serializable.h"

namespace Orvu {

/// Whether pairing with companion (mobile) applications is enabled. Wire name "pairMobileAppScreen".
class ORVU_EXPORT PairMobileAppScreen : public Serializable {
public:
    static constexpr DataType kDataType = DataTypePairMobileAppScreen;

    bool pairingEnabled = false;  ///< True while companion applications may pair.

    PairMobileAppScreen();
    ~PairMobileAppScreen() override;
    PairMobileAppScreen(const PairMobileAppScreen&) = default;
    PairMobileAppScreen& operator=(const PairMobileAppScreen&) = default;

    bool isPairingEnabled() const { return pairingEnabled; }
    void setPairingEnabled(bool value) { pairingEnabled = value; }

    /// Always with "HEADER".
    char* serialize() override;
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

/// The question whether a named device may pair. Wire name "confirmationScreen".
///
/// A request client waits for the answer to one whose `dispose` is false without any time-out: the user decides. For
/// one of a class that the application derives without run-time type information it waits 5 s as for any other request.
/// A receiver sees by OrvuRestRequest::isPeerGone() that nobody waits any more.
///
/// The library does not connect a request that takes the screen away (`dispose`) with the one that asked. The one that
/// asked waits until the application answers it, too, for example with `canceled`.
class ORVU_EXPORT ConfirmationScreen : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeConfirmationScreen;

    std::string displayName;  ///< The device's name, as shown to the user.
    bool confirmed = false;   ///< The user agreed.
    bool canceled = false;    ///< The user declined.
    bool dispose = false;     ///< Takes the screen away instead of showing it.
    bool success = false;     ///< The step succeeded.

    explicit ConfirmationScreen(std::string displayName);
    ~ConfirmationScreen() override;
    ConfirmationScreen(const ConfirmationScreen&) = default;
    ConfirmationScreen& operator=(const ConfirmationScreen&) = default;

    const std::string& getDisplayName() const { return displayName; }
    void setDisplayName(const std::string& value) { displayName = value; }
    bool isConfirmed() const { return confirmed; }
    void setConfirmed(bool value) { confirmed = value; }
    bool isCanceled() const { return canceled; }
    void setCanceled(bool value) { canceled = value; }
    bool isDispose() const { return dispose; }
    void setDispose(bool value) { dispose = value; }
    bool isSuccess() const { return success; }
    void setSuccess(bool value) { success = value; }

    /// Always with "HEADER".
    char* serialize() override;
    /// "displayName" is required; without it nothing changes.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

/// A QR code to scan with the companion device. Wire name "qrCodeScreen".
class ORVU_EXPORT QrCodeScreen : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeQrCodeScreen;

    std::string displayName;  ///< The device's name, as shown to the user.
    std::string qrCodeData;   ///< The text that the code carries.
    bool dispose = false;     ///< Takes the screen away instead of showing it.
    bool success = false;     ///< The step succeeded.

    QrCodeScreen(std::string displayName, std::string qrCodeData);
    ~QrCodeScreen() override;
    QrCodeScreen(const QrCodeScreen&) = default;
    QrCodeScreen& operator=(const QrCodeScreen&) = default;

    const std::string& getDisplayName() const { return displayName; }
    void setDisplayName(const std::string& value) { displayName = value; }
    const std::string& getQrCodeData() const { return qrCodeData; }
    void setQrCodeData(const std::string& value) { qrCodeData = value; }
    bool isDispose() const { return dispose; }
    void setDispose(bool value) { dispose = value; }
    bool isSuccess() const { return success; }
    void setSuccess(bool value) { success = value; }

    /// Always with "HEADER".
    char* serialize() override;
    /// "displayName" and "qrCodeData" are required; a name without data is stored all the same.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

/// A PIN to type on the companion device. Wire name "pinScreen".
class ORVU_EXPORT PinScreen : public Serializable {
public:
    static constexpr DataType kDataType = DataTypePinScreen;

    std::string displayName;  ///< The device's name, as shown to the user.
    std::string pin;          ///< The PIN to type, as text: leading zeros stay.
    bool dispose = false;     ///< Takes the screen away instead of showing it.
    bool success = false;     ///< The step succeeded.

    PinScreen(std::string displayName, std::string pin);
    ~PinScreen() override;
    PinScreen(const PinScreen&) = default;
    PinScreen& operator=(const PinScreen&) = default;

    const std::string& getDisplayName() const { return displayName; }
    void setDisplayName(const std::string& value) { displayName = value; }
    const std::string& getPin() const { return pin; }
    void setPin(const std::string& value) { pin = value; }
    bool isDispose() const { return dispose; }
    void setDispose(bool value) { dispose = value; }
    bool isSuccess() const { return success; }
    void setSuccess(bool value) { success = value; }

    /// Always with "HEADER".
    char* serialize() override;
    /// "displayName" is required; "pin", unlike a QrCodeScreen's data, is not.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

/// One item of a described screen, with its children to any depth. Wire name "screenItem".
class ORVU_EXPORT ScreenItem : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeScreenItem;

    std::string type;                ///< Kind of item; the applications agree on the words.
    bool enabled = false;            ///< The user can choose it.
    bool focused = false;            ///< It has the focus.
    bool visible = false;            ///< It is shown.
    std::string checked;             ///< "true" or "false"; empty when the item has no check state.
    std::string content;             ///< An item with content has no children on the wire.
    std::vector<ScreenItem*> items;  ///< The children. Owned; deleted with the item. Written only without `content`.

    ScreenItem();
    ~ScreenItem() override;
    ScreenItem(const ScreenItem&) = delete;
    ScreenItem& operator=(const ScreenItem&) = delete;

    /// Appends `item` and takes it; null is ignored.
    void addItem(ScreenItem* item);

    const std::string& getType() const { return type; }
    void setType(const std::string& value) { type = value; }
    bool isEnabled() const { return enabled; }
    void setEnabled(bool value) { enabled = value; }
    bool isFocused() const { return focused; }
    void setFocused(bool value) { focused = value; }
    bool isVisible() const { return visible; }
    void setVisible(bool value) { visible = value; }
    const std::string& getChecked() const { return checked; }
    void setChecked(const std::string& value) { checked = value; }
    const std::string& getContent() const { return content; }
    void setContent(const std::string& value) { content = value; }

    /// Switches the header flag of every child off, for good: see serializeHeader(true). At most 500 items deep.
    char* serialize() override;
    /// Children are appended; "isSelected" counts where "focused" is absent.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

/// A screen of the pairing dialogue as a tree of items. Wire name "screenDescription".
class ORVU_EXPORT ScreenDescription : public Serializable {
public:
    static constexpr DataType kDataType = DataTypeScreenDescription;

    std::vector<ScreenItem*> items;  ///< Owned; deleted with the description.

    ScreenDescription();
    ~ScreenDescription() override;
    ScreenDescription(const ScreenDescription&) = delete;
    ScreenDescription& operator=(const ScreenDescription&) = delete;

    /// Appends `item` and takes it; null is ignored.
    void addItem(ScreenItem* item);

    /// Always with "HEADER". Switches the header flag of every item off, for good: see serializeHeader(true).
    char* serialize() override;
    /// Appends the items under "screen_items", which is required.
    bool deserialize(const char* text) override;
    using Serializable::deserialize;
};

}  // namespace Orvu
