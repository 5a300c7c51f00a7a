#pragma once

#include "messages/core/Contract.h"

namespace Orvu {

class MediaPlayer;
class MediaPlayerAction;
class MediaPlayerList;

void write(JsonWriter& json, MediaPlayer& message);
void read(JsonReader& json, MediaPlayer& message);

void write(JsonWriter& json, MediaPlayerList& message);
void read(JsonReader& json, MediaPlayerList& message);

void write(JsonWriter& json, MediaPlayerAction& message);
void read(JsonReader& json, MediaPlayerAction& message);

}  // namespace Orvu
