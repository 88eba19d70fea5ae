#pragma once
// World files: the engine's own formats for a whole scene.
//
//  * ".STATE" binary: a header with a magic number and the format version, then
//    sections in a fixed order, each with the CRC-32C of its header and of its
//    bytes. Coordinates are stored as they are; names once each in a table;
//    per-polygon fields in runs, so a large scene costs little beyond its points.
//  * ".WLD" text: the same content one item a line, in sections that carry their
//    line count and checksum.
//
// Both hold everything a scene holds: the polygons in walk order with their
// points, names, colours, point colours and alpha, bitmap coordinates, flags and
// light; the groups in creation order with names, fathers and reference points,
// and the order in which polygons joined them; the lights; the bitmaps by
// reference (path); the camera, the background and the fog.
//
// A load either succeeds whole or leaves the engine as it was: the file is read
// and checked into a scene of its own first. A save writes a temporary file in
// the same folder, flushes it to the disk and renames it over the old one, so
// that a crash or a full disk never leaves a half-written world.

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "engine/Engine.h"

namespace engine {

enum class WorldFormat { State, Text };

struct WorldResult {
    bool ok = false;
    // Why it failed, in plain words with the file's path (empty when ok).
    std::string message;
    // What loaded but not whole (a bitmap that is not there), one line each.
    std::vector<std::string> notes;
    // An add: the group that holds the added world.
    Handle group = 0;
    std::size_t polygons = 0;  // read or written
};

struct WorldSaveOptions {
    // 0: the whole world; else the group and its descendants (the group becomes a top group).
    Handle group = 0;
    // Copies every bitmap into the folder "Bitmaps" beside the file and refers to it there.
    bool bitmaps = false;
    // By the file's extension when not given: ".wld" (any case) text, else binary.
    std::optional<WorldFormat> format;
};

WorldFormat worldFormatFor(const std::filesystem::path& file);

// Replaces the scene by the world in the file. Bitmap references are taken from
// the file's folder; a reference that is not found there is looked for by its
// file name in bitmapDir.
WorldResult loadWorld(Engine& e, const std::filesystem::path& file,
                      const std::filesystem::path& bitmapDir = {});
// Adds the world in the file to the scene under a new group named groupName,
// moved by offset. The camera, background and fog stay; lights whose name the
// scene has already are left out. result.group is the new group.
WorldResult addWorld(Engine& e, const std::filesystem::path& file,
                     const std::filesystem::path& bitmapDir, Point3 offset,
                     std::string_view groupName);
WorldResult saveWorld(const Engine& e, const std::filesystem::path& file,
                      const WorldSaveOptions& options = {});

// The same in memory (tests, fuzzing, conversion). baseDir stands for the file's folder.
WorldResult loadWorldBytes(Engine& e, std::string_view bytes,
                           const std::filesystem::path& baseDir = {});
WorldResult addWorldBytes(Engine& e, std::string_view bytes, const std::filesystem::path& baseDir,
                          Point3 offset, std::string_view groupName);
WorldResult encodeWorld(const Engine& e, WorldFormat format, std::string& out, Handle group = 0);

// True when the file starts as one of the world formats (it may still be damaged).
bool isWorldFile(const std::filesystem::path& file);

}  // namespace engine
