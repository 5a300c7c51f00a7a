#include "orvu/PairingScreens.h"

#include <utility>

#include "messages/core/Message.h"
#include "messages/core/Ownership.h"

namespace Orvu {

PairMobileAppScreen::PairMobileAppScreen() : Serializable(kDataType) {}
PairMobileAppScreen::~PairMobileAppScreen() = default;

void write(JsonWriter& json, PairMobileAppScreen& screen)
{
    json.header(screen);
    json.put("pairingEnabled", screen.pairingEnabled);
}

void read(JsonReader& json, PairMobileAppScreen& screen)
{
    json.optional("pairingEnabled", screen.pairingEnabled);
}

MESSAGE(PairMobileAppScreen, Formatted)

ConfirmationScreen::ConfirmationScreen(std::string displayName)
    : Serializable(kDataType), displayName(std::move(displayName))
{}
ConfirmationScreen::~ConfirmationScreen() = default;

void write(JsonWriter& json, ConfirmationScreen& screen)
{
    json.header(screen);
    json.put("displayName", screen.displayName);
    json.put("confirmed", screen.confirmed);
    json.put("canceled", screen.canceled);
    json.put("dispose", screen.dispose);
    json.put("success", screen.success);
}

void read(JsonReader& json, ConfirmationScreen& screen)
{
    json.required("displayName", screen.displayName);
    json.optional("confirmed", screen.confirmed);
    json.optional("canceled", screen.canceled);
    json.optional("dispose", screen.dispose);
    json.optional("success", screen.success);
}

MESSAGE(ConfirmationScreen, Formatted)

QrCodeScreen::QrCodeScreen(std::string displayName, std::string qrCodeData)
    : Serializable(kDataType), displayName(std::move(displayName)), qrCodeData(std::move(qrCodeData))
{}
QrCodeScreen::~QrCodeScreen() = default;

void write(JsonWriter& json, QrCodeScreen& screen)
{
    json.header(screen);
    json.put("displayName", screen.displayName);
    json.put("qrCodeData", screen.qrCodeData);
    json.put("dispose", screen.dispose);
    json.put("success", screen.success);
}

void read(JsonReader& json, QrCodeScreen& screen)
{
    json.required("displayName", screen.displayName);  // stays, also when the code's data is then missing
    json.required("qrCodeData", screen.qrCodeData);
    json.optional("dispose", screen.dispose);
    json.optional("success", screen.success);
}

MESSAGE(QrCodeScreen, Formatted)

PinScreen::PinScreen(std::string displayName, std::string pin)
    : Serializable(kDataType), displayName(std::move(displayName)), pin(std::move(pin))
{}
PinScreen::~PinScreen() = default;

void write(JsonWriter& json, PinScreen& screen)
{
    json.header(screen);
    json.put("displayName", screen.displayName);
    json.put("pin", screen.pin);
    json.put("dispose", screen.dispose);
    json.put("success", screen.success);
}

void read(JsonReader& json, PinScreen& screen)
{
    json.required("displayName", screen.displayName);
    json.optional("pin", screen.pin);  // a PIN may come later, a QR code's data may not
    json.optional("dispose", screen.dispose);
    json.optional("success", screen.success);
}

MESSAGE(PinScreen, Formatted)

ScreenItem::ScreenItem() : Serializable(kDataType) {}
ScreenItem::~ScreenItem()
{
    deleteAll(items);
}
void ScreenItem::addItem(ScreenItem* item)
{
    take(items, item);
}

void write(JsonWriter& json, ScreenItem& item)
{
    json.headerIfSet(item);
    json.put("type", item.type);
    json.put("visible", item.visible);
    json.put("enabled", item.enabled);
    json.put("focused", item.focused);
    json.putIf(!item.checked.empty(), "checked", item.checked == "true");  // kept as a text, sent as a boolean
    if (item.content.empty()) {
        json.list("contentList", item.items);
    } else {
        json.put("content", item.content);  // an item with content does not show its children
    }
}

void read(JsonReader& json, ScreenItem& item)
{
    json.optional("type", item.type);
    json.optional("visible", item.visible);
    json.optional("enabled", item.enabled);
    json.alternative("focused", "isSelected", item.focused);  // peers use both names
    bool checked = false;
    if (json.optional("checked", checked)) json.assign(item.checked, checked ? "true" : "false");
    if (json.optional("content", item.content)) return;  // content hides children
    json.optional("contentList", item.items);
}

MESSAGE(ScreenItem, Formatted)

ScreenDescription::ScreenDescription() : Serializable(kDataType) {}
ScreenDescription::~ScreenDescription()
{
    deleteAll(items);
}
void ScreenDescription::addItem(ScreenItem* item)
{
    take(items, item);
}

void write(JsonWriter& json, ScreenDescription& description)
{
    json.header(description);
    json.list("screen_items", description.items);
}

void read(JsonReader& json, ScreenDescription& description)
{
    json.required("screen_items", description.items);
}

MESSAGE(ScreenDescription, Formatted)

}  // namespace Orvu
