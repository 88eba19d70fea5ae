#pragma once
// The two world formats: ".STATE" binary and ".WLD" text. Each writes a
// WorldSource to a sink and reads a source into a WorldBuilder. Failures say
// why in plain words (the builder's error, or `error` for the writers).
// Not for use outside src/engine (see WorldFormat.h).

#include <string>

#include "engine/WorldData.h"
#include "engine/WorldStream.h"

namespace engine::world {

// Format numbers this program writes and reads.
constexpr std::uint32_t kStateVersion = 1;
constexpr std::uint32_t kTextVersion = 1;

// The first bytes of a binary world (the high byte and the line ends catch a
// file that went through a text conversion).
constexpr char kStateMagic[8] = {'\x89', 'T', 'V', 'K', '\r', '\n', '\x1a', '\n'};
// The first line of a text world, before its version number.
constexpr char kTextMagic[] = "TARVIK WORLD TEXT ";

enum class Detected { State, Text, Foreign };
// What the first bytes of a file say it is.
Detected detectFormat(std::string_view firstBytes);

bool writeState(const WorldSource& src, ByteSink& out, std::string& error);
bool readState(ByteSource& in, WorldBuilder& b);

bool writeText(const WorldSource& src, ByteSink& out, std::string& error);
bool readText(ByteSource& in, WorldBuilder& b);

// The messages both readers give for a file that is not theirs or too new.
std::string foreignMessage();
std::string newerMessage(std::uint64_t version, std::uint32_t known);

}  // namespace engine::world
