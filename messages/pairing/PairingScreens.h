#pragma once

#include "messages/core/Contract.h"

namespace Orvu {

class ConfirmationScreen;
class PairMobileAppScreen;
class PinScreen;
class QrCodeScreen;
class ScreenDescription;
class ScreenItem;

void write(JsonWriter& json, PairMobileAppScreen& screen);
void read(JsonReader& json, PairMobileAppScreen& screen);

void write(JsonWriter& json, ConfirmationScreen& screen);
void read(JsonReader& json, ConfirmationScreen& screen);

void write(JsonWriter& json, QrCodeScreen& screen);
void read(JsonReader& json, QrCodeScreen& screen);

void write(JsonWriter& json, PinScreen& screen);
void read(JsonReader& json, PinScreen& screen);

void write(JsonWriter& json, ScreenItem& item);
void read(JsonReader& json, ScreenItem& item);

void write(JsonWriter& json, ScreenDescription& description);
void read(JsonReader& json, ScreenDescription& description);

}  // namespace Orvu
