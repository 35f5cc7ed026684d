// A small reader of GAM tables that follows the game's own loaders field by field (texture,
// sound, door, generic, ship and weapon pages, each for its version), independent of the
// program's page reader. Tests use it to prove that what we write is what the game reads:
// every page must end exactly where its fields end.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace mw::test {

struct EnginePage {
    std::uint8_t Type = 0;
    int Version = 0;
    std::string Name;
    std::vector<std::string> Models;  // generic: model, medium, low; ship: + dying; weapon: fire
    std::string Bitmap;               // texture pages
    float Speed = 0.0f;               // texture pages
    std::uint32_t Flags = 0;          // texture pages
    float Size = 0.0f;                // generic and ship pages
    int HitPoints = 0;                // generic pages
    std::int16_t AnimFrom[5][24] = {};
    std::int16_t AnimTo[5][24] = {};
    std::vector<std::string> Weapons;  // every weapon name of the batteries, in order
    std::vector<std::uint8_t> Masks;   // every battery's firing masks, in order
    std::size_t Declared = 0;          // the length the page says it has (after the type)
    std::size_t Read = 0;              // the bytes its fields took (after the type)
};

struct EngineTable {
    std::vector<EnginePage> Pages;
    std::string Error;  // where the game's reader would stop or read past its data
};

// Reads the pages the way the game does. A page whose length differs from its fields, an
// unknown page type, or fields running past the data give an Error.
EngineTable ReadAsEngine(std::span<const std::uint8_t> table);

}  // namespace mw::test
