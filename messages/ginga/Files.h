#pragma once

#include "messages/core/Contract.h"

namespace Orvu {

class BinaryDataMultipart;
class Directory;
class DsmccFileList;
class File;
class GingaFileList;
class StreamEventDispose;
class StreamEventRequest;

void write(JsonWriter& json, File& message);
void read(JsonReader& json, File& message);

void write(JsonWriter& json, Directory& message);
void read(JsonReader& json, Directory& message);

void write(JsonWriter& json, GingaFileList& message);
void read(JsonReader& json, GingaFileList& message);

void write(JsonWriter& json, DsmccFileList& message);
void read(JsonReader& json, DsmccFileList& message);

void write(JsonWriter& json, StreamEventRequest& message);
void read(JsonReader& json, StreamEventRequest& message);

void write(JsonWriter& json, StreamEventDispose& message);
void read(JsonReader& json, StreamEventDispose& message);

void write(JsonWriter& json, BinaryDataMultipart& message);
void read(JsonReader& json, BinaryDataMultipart& message);

}  // namespace Orvu
